// The shape definition language: vector bytes (length in the high nibble, one of 16 directions in
// the low one) and the special commands 0 to 14. Arcs become bulged vertices of at most half a
// turn each, so the text stroker tessellates them like any other glyph arc.
#include <cmath>
#include <numbers>

#include "kit/gi/ShxFont.h"

namespace gi {

namespace {

// Subshapes nest this deep at most; deeper means a shape calls itself.
constexpr int kMaxDepth = 8;
// Commands decoded for one shape, subshapes included; beyond it the definition is looping.
constexpr int kMaxSteps = 200000;
constexpr size_t kMaxStack = 16;

class ShapeDecoder {
public:
  ShapeDecoder(ShxKind kind, const std::map<uint32_t, std::string_view>& definitions, double above)
      : kind_(kind), definitions_(definitions), above_(above) {}

  bool run(std::string_view bytes, int depth) {
    if (depth > kMaxDepth) return false;
    size_t at = 0;
    bool skipNext = false;
    while (true) {
      if (++steps_ > kMaxSteps || at >= bytes.size()) return false;
      uint8_t code = uint8_t(bytes[at++]);
      if (code == 0) return true;
      bool skip = skipNext;
      skipNext = false;
      if (code == 14) {
        skipNext = true;
        continue;
      }
      if (!command(code, bytes, at, skip, depth)) return false;
    }
  }

  void finish(Glyph& out) {
    endStroke();
    out.strokes = std::move(strokes_);
    out.advance = position_.x;
  }

private:
  // One command after its code byte; with `skip` its argument bytes are read and nothing drawn.
  bool command(uint8_t code, std::string_view bytes, size_t& at, bool skip, int depth) {
    auto take = [&](int8_t& value) {
      if (at >= bytes.size()) return false;
      value = int8_t(bytes[at++]);
      return true;
    };
    int8_t a = 0, b = 0, c = 0;
    switch (code) {
      case 1: if (!skip) penDown_ = true; return true;
      case 2: if (!skip) penUp(); return true;
      case 3:
      case 4:
        if (!take(a)) return false;
        if (skip) return true;
        if (uint8_t(a) == 0) return false;
        scale_ = code == 3 ? scale_ / uint8_t(a) : scale_ * uint8_t(a);
        return true;
      case 5:
        if (skip) return true;
        if (stack_.size() >= kMaxStack) return false;
        stack_.push_back(position_);
        return true;
      case 6:
        if (skip) return true;
        if (stack_.empty()) return false;
        moveTo(stack_.back());
        stack_.pop_back();
        return true;
      case 7: return subshape(bytes, at, skip, depth);
      case 8:
        if (!take(a) || !take(b)) return false;
        if (!skip) displace(a, b, 0.0);
        return true;
      case 9:
      case 13:
        while (true) {
          if (!take(a) || !take(b)) return false;
          if (a == 0 && b == 0) return true;
          if (code == 13 && !take(c)) return false;
          if (!skip) displace(a, b, code == 13 ? clampedBulge(c) : 0.0);
        }
      case 10:
        if (!take(a) || !take(b)) return false;
        if (!skip) octantArc(uint8_t(a), b);
        return true;
      case 11: {
        int8_t startOffset = 0, endOffset = 0, high = 0;
        if (!take(startOffset) || !take(endOffset) || !take(high) || !take(a) || !take(b)) return false;
        if (!skip) fractionalArc(uint8_t(startOffset), uint8_t(endOffset), uint8_t(high) * 256 + uint8_t(a), b);
        return true;
      }
      case 12:
        if (!take(a) || !take(b) || !take(c)) return false;
        if (!skip) displace(a, b, clampedBulge(c));
        return true;
      default: vector(code, skip); return true;
    }
  }

  static double clampedBulge(int8_t value) { return std::max<int>(value, -127) / 127.0; }

  // Length in the high nibble, direction in the low one: 16 directions whose major component is 1.
  void vector(uint8_t code, bool skip) {
    static constexpr double kDirections[16][2] = {{1, 0},     {1, 0.5},  {1, 1},   {0.5, 1}, {0, 1},   {-0.5, 1},
                                                  {-1, 1},    {-1, 0.5}, {-1, 0},  {-1, -0.5}, {-1, -1}, {-0.5, -1},
                                                  {0, -1},    {0.5, -1}, {1, -1},  {1, -0.5}};
    if (skip) return;
    double length = (code >> 4) * scale_;
    const double* d = kDirections[code & 15];
    lineTo({position_.x + d[0] * length, position_.y + d[1] * length}, 0.0);
  }

  void displace(int8_t dx, int8_t dy, double bulge) {
    lineTo({position_.x + dx * scale_, position_.y + dy * scale_}, bulge);
  }

  // The arc byte [-]0SC: S the starting octant, C the number of octants (0 is all eight); the
  // compiler writes the minus of a clockwise arc as the high bit, not as a negative byte.
  struct Octants {
    int start, count;
    double sign;
  };
  static Octants octants(int8_t spec) {
    int magnitude = uint8_t(spec) & 0x7F;
    int count = magnitude & 7;
    return {(magnitude >> 4) & 7, count == 0 ? 8 : count, (uint8_t(spec) & 0x80) ? -1.0 : 1.0};
  }

  void octantArc(uint8_t radius, int8_t spec) {
    Octants o = octants(spec);
    double octant = std::numbers::pi / 4;
    arc(radius * scale_, o.start * octant, o.sign * o.count * octant);
  }

  // Start and end offsets are 256ths of an octant from the octant boundaries the arc starts and
  // ends in; the octant counted last is the one the arc ends in.
  void fractionalArc(uint8_t startOffset, uint8_t endOffset, int radius, int8_t spec) {
    auto [start, count, sign] = octants(spec);
    double octant = std::numbers::pi / 4;
    double from = (start + sign * startOffset / 256.0) * octant;
    int last = start + int(sign) * (count - 1);
    double to = endOffset == 0 ? (start + sign * count) * octant : (last + sign * endOffset / 256.0) * octant;
    double sweep = to - from;
    double turn = 2 * std::numbers::pi;
    if (sign > 0) while (sweep <= 0.0) sweep += turn;
    else while (sweep >= 0.0) sweep -= turn;
    arc(radius * scale_, from, sweep);
  }

  void arc(double radius, double startAngle, double sweep) {
    OdGePoint2d center{position_.x - radius * std::cos(startAngle), position_.y - radius * std::sin(startAngle)};
    int pieces = int(std::ceil(std::abs(sweep) / std::numbers::pi - 1e-9));
    if (pieces < 1) pieces = 1;
    double step = sweep / pieces;
    for (int i = 1; i <= pieces; ++i) {
      double angle = startAngle + step * i;
      lineTo({center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)}, std::tan(step / 4));
    }
  }

  // Code 7: one byte for shape fonts, two for unifonts and big fonts; in big fonts a leading 0
  // gives the extended form with the subshape's origin and cell size.
  bool subshape(std::string_view bytes, size_t& at, bool skip, int depth) {
    auto need = [&](size_t n) { return at + n <= bytes.size(); };
    uint32_t number = 0;
    bool extended = false;
    uint8_t cell[4] = {0, 0, 0, 0};
    if (kind_ == ShxKind::kShapes) {
      if (!need(1)) return false;
      number = uint8_t(bytes[at++]);
    } else if (kind_ == ShxKind::kBigFont && need(1) && bytes[at] == 0) {
      if (!need(7)) return false;
      number = uint8_t(bytes[at + 1]) << 8 | uint8_t(bytes[at + 2]);
      for (int i = 0; i < 4; ++i) cell[i] = uint8_t(bytes[at + 3 + i]);
      at += 7;
      extended = true;
    } else {
      if (!need(2)) return false;
      number = uint8_t(bytes[at]) << 8 | uint8_t(bytes[at + 1]);
      at += 2;
    }
    if (skip) return true;
    auto found = definitions_.find(number);
    if (found == definitions_.end()) return true;  // a missing subshape draws nothing
    if (!extended) return run(found->second, depth + 1);
    // The primitive fills a cell of the given size at the given origin; the pen comes back after.
    OdGePoint2d before = position_;
    double savedScale = scale_;
    moveTo({position_.x + cell[0] * scale_, position_.y + cell[1] * scale_});
    double unit = above_ > 0.0 ? above_ : 1.0;
    scale_ = savedScale * cell[3] / unit;
    bool ok = run(found->second, depth + 1);
    scale_ = savedScale;
    moveTo(before);
    return ok;
  }

  void penUp() {
    penDown_ = false;
    endStroke();
  }

  void moveTo(const OdGePoint2d& p) {
    endStroke();
    position_ = p;
  }

  void lineTo(const OdGePoint2d& p, double bulge) {
    if (penDown_) {
      if (current_.empty()) current_.push_back({position_, 0.0});
      current_.push_back({p, bulge});
    }
    position_ = p;
  }

  void endStroke() {
    if (current_.size() >= 2) strokes_.push_back(std::move(current_));
    current_.clear();
  }

  ShxKind kind_;
  const std::map<uint32_t, std::string_view>& definitions_;
  double above_;
  int steps_ = 0;
  double scale_ = 1.0;
  bool penDown_ = true;
  OdGePoint2d position_{0.0, 0.0};
  std::vector<OdGePoint2d> stack_;
  std::vector<GlyphVertex> current_;
  std::vector<std::vector<GlyphVertex>> strokes_;
};

}  // namespace

bool decodeShxShape(ShxKind kind, std::string_view bytes, const std::map<uint32_t, std::string_view>& definitions,
                    double above, Glyph& out) {
  ShapeDecoder decoder(kind, definitions, above);
  if (!decoder.run(bytes, 0)) return false;
  decoder.finish(out);
  return true;
}

}  // namespace gi
