// The control codes of single-line texts as drawn: %%d, %%p and %%c symbols, %%nnn character
// numbers, %%% for a percent sign, %%u and %%o switching under- and overlining, and the "\U+XXXX"
// and "\M+NXXXX" escapes that keep characters outside the drawing's code page.
#pragma once

#include <string>
#include <vector>

#include "kit/base/OdString.h"

namespace gi {

struct DecodedChar {
  char32_t ch = 0;
  bool underline = false;
  bool overline = false;
};

// The characters of a text as they are to be drawn; `raw` texts only have their escapes decoded.
std::vector<DecodedChar> decodeTextCodes(const std::u32string& text, bool raw);
std::vector<DecodedChar> decodeTextCodes(const OdChar* text, int32_t count, bool raw);

// The UTF-8 text as 32-bit characters (invalid bytes become U+FFFD).
std::u32string utf8ToU32(std::string_view text);

}  // namespace gi
