// Entity and layer colours and transparencies, packed into 32 bits the way drawing files store
// them: the top byte says how the colour is given (by layer, by block, an index into the AutoCAD
// colour index palette, or a true colour), the low bytes hold the index or the RGB value.
#pragma once

#include <cstdint>

class OdCmEntityColor {
public:
  enum ColorMethod : uint8_t {
    kByLayer = 0xC0,
    kByBlock = 0xC1,
    kByColor = 0xC2,  // true colour, RGB in the low 24 bits
    kByACI = 0xC3,    // palette index 1..255 in the low 16 bits
    kForeground = 0xC5,
    kNone = 0xC8,
  };
  static constexpr int16_t kACIbyBlock = 0;
  static constexpr int16_t kACIbyLayer = 256;

  constexpr OdCmEntityColor() = default;

  static constexpr OdCmEntityColor byLayer() { return OdCmEntityColor(uint32_t(kByLayer) << 24); }
  static constexpr OdCmEntityColor byBlock() { return OdCmEntityColor(uint32_t(kByBlock) << 24); }
  static constexpr OdCmEntityColor none() { return OdCmEntityColor(uint32_t(kNone) << 24); }
  // A palette index as files store it: 0 by block, 256 by layer, 257 by entity (taken as
  // foreground), negative values are the index of a switched-off layer.
  static constexpr OdCmEntityColor fromACI(int index) {
    if (index < 0) index = -index;
    if (index == kACIbyBlock) return byBlock();
    if (index == kACIbyLayer) return byLayer();
    if (index == 257) return OdCmEntityColor(uint32_t(kForeground) << 24);
    if (index > 255) index = 7;
    return OdCmEntityColor((uint32_t(kByACI) << 24) | uint32_t(index));
  }
  static constexpr OdCmEntityColor fromRGB(uint8_t r, uint8_t g, uint8_t b) {
    return OdCmEntityColor((uint32_t(kByColor) << 24) | (uint32_t(r) << 16) | (uint32_t(g) << 8) | b);
  }
  // The 24-bit value of a true colour group (0x00RRGGBB).
  static constexpr OdCmEntityColor fromPackedRGB(uint32_t rgb) {
    return OdCmEntityColor((uint32_t(kByColor) << 24) | (rgb & 0xFFFFFFu));
  }

  // A colour as stored whole (method byte and value), as MLEADER and DWG files keep it. Unknown
  // methods are read as by layer.
  static constexpr OdCmEntityColor fromPacked(uint32_t packed) {
    uint8_t method = uint8_t(packed >> 24);
    if (method < kByLayer || method > kNone) return byLayer();
    return OdCmEntityColor(packed);
  }

  constexpr ColorMethod colorMethod() const { return ColorMethod(value_ >> 24); }
  constexpr bool isByLayer() const { return colorMethod() == kByLayer; }
  constexpr bool isByBlock() const { return colorMethod() == kByBlock; }
  constexpr bool isByACI() const { return colorMethod() == kByACI; }
  constexpr bool isByColor() const { return colorMethod() == kByColor; }
  constexpr bool isForeground() const { return colorMethod() == kForeground; }
  constexpr bool isNone() const { return colorMethod() == kNone; }
  // The palette index: 0 by block, 256 by layer, 1..255 for an indexed colour, 7 for foreground,
  // and for a true colour the index it was saved with (0 when unknown).
  constexpr int16_t colorIndex() const {
    switch (colorMethod()) {
      case kByLayer: return kACIbyLayer;
      case kByBlock: return kACIbyBlock;
      case kByACI: return int16_t(value_ & 0xFFFF);
      case kForeground: return 7;
      default: return 0;
    }
  }
  constexpr uint8_t red() const { return uint8_t(value_ >> 16); }
  constexpr uint8_t green() const { return uint8_t(value_ >> 8); }
  constexpr uint8_t blue() const { return uint8_t(value_); }
  constexpr uint32_t rgb() const { return value_ & 0xFFFFFFu; }
  constexpr uint32_t packed() const { return value_; }
  constexpr bool operator==(const OdCmEntityColor&) const = default;

private:
  constexpr explicit OdCmEntityColor(uint32_t v) : value_(v) {}
  uint32_t value_ = uint32_t(kByLayer) << 24;
};

// Transparency as files store it: method in the top byte (0 by layer, 1 by block, 2 by alpha) and
// the alpha value 0 (clear) .. 255 (opaque) in the low byte.
class OdCmTransparency {
public:
  enum Method : uint8_t { kByLayer = 0, kByBlock = 1, kByAlpha = 2 };

  constexpr OdCmTransparency() = default;
  static constexpr OdCmTransparency fromRaw(uint32_t raw) { return OdCmTransparency(raw); }
  static constexpr OdCmTransparency fromAlpha(uint8_t alpha) {
    return OdCmTransparency((uint32_t(kByAlpha) << 24) | alpha);
  }

  constexpr Method method() const {
    uint8_t m = uint8_t(raw_ >> 24);
    return m <= kByAlpha ? Method(m) : kByAlpha;
  }
  constexpr bool isByLayer() const { return method() == kByLayer; }
  constexpr bool isByBlock() const { return method() == kByBlock; }
  constexpr bool isByAlpha() const { return method() == kByAlpha; }
  constexpr uint8_t alpha() const { return isByAlpha() ? uint8_t(raw_ & 0xFF) : 255; }
  constexpr uint32_t raw() const { return raw_; }
  constexpr bool operator==(const OdCmTransparency&) const = default;

private:
  constexpr explicit OdCmTransparency(uint32_t raw) : raw_(raw) {}
  uint32_t raw_ = 0;
};
