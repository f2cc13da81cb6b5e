// Compiled shape files (SHX): shape fonts and shape libraries ("AutoCAD-86 shapes 1.0/1.1"), big
// fonts (double-byte codes with escape ranges) and unifonts (Unicode shape numbers). Every shape's
// definition bytes are decoded into strokes in the font's own units, with the origin at the
// shape's start and the advance where the pen ends.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kit/gi/StrokeFont.h"

namespace gi {

enum class ShxKind { kShapes, kBigFont, kUnifont };

class ShxFont {
public:
  // Null, with the reason in `error`, when the bytes are not a readable SHX file.
  static std::unique_ptr<ShxFont> fromBytes(std::string bytes, std::string* error = nullptr);
  static std::unique_ptr<ShxFont> fromFile(const std::string& path, std::string* error = nullptr);

  ShxKind kind() const { return kind_; }
  // The height above and below the baseline the font declares (its shape 0); zero for a shape
  // library without that shape.
  double above() const { return above_; }
  double below() const { return below_; }
  // The height of one text height in font units: `above`, or 1 for shape libraries.
  double unitsPerHeight() const { return above_ > 0.0 ? above_ : 1.0; }

  // The decoded shape, null when the file lacks it or its definition is broken.
  const Glyph* shape(uint32_t number) const;
  bool hasShape(uint32_t number) const { return definitions_.count(number) > 0; }
  size_t shapeCount() const { return definitions_.size(); }
  // The number of the shape with this name (case-insensitive), 0 when none has it.
  uint32_t numberOf(std::string_view name) const;
  // Big fonts: whether a byte starts a double-byte code.
  bool isLeadByte(uint8_t byte) const;
  // How many of the shapes asked for could not be decoded (loops, bad commands, running past
  // their end).
  size_t brokenShapes() const { return broken_; }

private:
  bool readShapes(std::string_view body, std::string* error);
  bool readUnifont(std::string_view body, std::string* error);
  bool readBigFont(std::string_view body, size_t bodyOffset, std::string* error);
  void takeInfo(std::string_view definition);
  bool takeShape(uint32_t number, std::string_view definition, std::string* error);

  std::string bytes_;
  ShxKind kind_ = ShxKind::kShapes;
  double above_ = 0.0;
  double below_ = 0.0;
  std::map<uint32_t, std::string_view> definitions_;  // bytes after the name
  std::map<std::string, uint32_t> names_;             // lower-case
  std::vector<std::pair<uint16_t, uint16_t>> escapes_;
  mutable std::map<uint32_t, std::optional<Glyph>> decoded_;  // empty: broken
  mutable size_t broken_ = 0;
};

// Decodes one shape definition (the bytes after its name) of a font of this kind into strokes in
// font units; false when the definition is broken (a command running past the end, a subshape
// calling itself, too many steps, a division by zero, the position stack misused).
// `definitions` holds the font's other shapes, for subshapes; `above` scales big-font subshapes.
bool decodeShxShape(ShxKind kind, std::string_view bytes, const std::map<uint32_t, std::string_view>& definitions,
                    double above, Glyph& out);

}  // namespace gi
