// A colour-dependent plot style table (.ctb): per colour index the colour, screening and
// lineweight that plotting puts in place of the entity's own. The file is a short text header
// followed by zlib-compressed text in braces.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "kit/gs/OdGsPalette.h"

struct PlotStyle {
  std::string name;
  bool overridesColor = false;  // false: the entity's own colour is used
  ODCOLORREF color = 0;
  int screen = 100;             // per cent of the colour's intensity
  double lineweight = -1.0;     // millimetres; negative: the entity's own lineweight
};

class PlotStyleTable {
public:
  // Reads a .ctb file's bytes; false (and the table left empty) when they are not one.
  bool load(const std::vector<uint8_t>& bytes);
  bool load(std::istream& stream);
  // Reads the uncompressed text of a table.
  bool loadText(const std::string& text);

  bool isLoaded() const { return !styles_.empty(); }
  // The style of a colour index 1..255, or null.
  const PlotStyle* styleForColorIndex(int index) const;
  const std::string& description() const { return description_; }
  double scaleFactor() const { return scaleFactor_; }
  bool applyFactor() const { return applyFactor_; }
  // The table's text as the file holds it once uncompressed.
  const std::string& text() const { return text_; }

private:
  std::vector<PlotStyle> styles_;  // index 0 is colour index 1
  std::vector<double> lineweights_;
  std::string description_;
  double scaleFactor_ = 1.0;
  bool applyFactor_ = false;
  std::string text_;
};

// Inflates a zlib stream; false when the data is not one (or inflates beyond `limit` bytes).
bool inflateZlib(const uint8_t* data, size_t size, std::string& out, size_t limit = size_t(64) << 20);
