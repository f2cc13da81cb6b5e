// Binary ACIS data (the modeler data of R2004 and later files) turned into the SAT text lines that
// DXF files hold, as AutoCAD writes them there: the header's three lines, then one line per
// record, "name values #". True/false values print as words that depend on the record and their
// place in it; only records whose words are known convert, so that no guessed text is written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct AcisSatText {
  std::vector<std::string> lines;  // plain text, without line ends
  size_t bytesUsed = 0;            // of the binary data, up to and with its end marker
};

// Nothing when the data is damaged or holds a value or record this conversion does not know.
std::optional<AcisSatText> acisBinaryToSat(std::string_view data);

// The light cipher of SAT text in drawing files, in place: printable characters but the blank
// become 159 less their code. It is its own inverse.
void acisCipher(std::string& text);
