#include "kit/gi/ProxyGraphics.h"

#include <cmath>
#include <cstring>

#include "kit/dwg/DwgLwPolylineData.h"
#include "kit/dxf/DxfTextDecoder.h"
#include "kit/gi/GiCurves.h"

namespace {

using Kind = ProxyGraphicsItem::Kind;

enum RecordType : uint32_t {
  kCircle = 2,
  kCircle3Points = 3,
  kCircularArc = 4,
  kCircularArc3Points = 5,
  kPolyline = 6,
  kPolygon = 7,
  kMesh = 8,
  kShell = 9,
  kText = 10,
  kText2 = 11,
  kColor = 14,
  kLayer = 16,
  kFill = 20,
  kTrueColor = 22,
  kPushModelTransform = 29,
  kPushModelTransform2 = 30,
  kPopModelTransform = 31,
  kPolylineWithNormal = 32,
  kLwPolyline = 33,
  kUnicodeText = 36,
  kUnicodeText2 = 38,
};

constexpr double kFullTurn = 2.0 * M_PI;

// The values of one record, read with bounds: a read past the end yields zeros and marks the
// record as damaged.
class Values {
public:
  Values(const uint8_t* data, size_t size) : p_(data), begin_(data), end_(data + size) {}

  bool ok() const { return ok_; }
  size_t left() const { return size_t(end_ - p_); }

  uint32_t rl() {
    uint8_t b[4] = {};
    take(b, 4);
    return uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24;
  }
  int32_t signedRl() { return int32_t(rl()); }
  double rd() {
    uint8_t b[8] = {};
    take(b, 8);
    uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = bits << 8 | b[i];
    double v;
    std::memcpy(&v, &bits, 8);
    return std::isfinite(v) ? v : 0.0;
  }
  OdGePoint3d point() {
    double x = rd(), y = rd();
    return {x, y, rd()};
  }
  OdGeVector3d vector() { return point().asVector(); }
  std::string raw(size_t n) {
    std::string out(n, '\0');
    take(reinterpret_cast<uint8_t*>(out.data()), n);
    return out;
  }

  // A count of items of `itemBytes` each, no more than the record holds.
  uint32_t count(size_t itemBytes) {
    uint32_t n = rl();
    if (itemBytes && n > left() / itemBytes) {
      ok_ = false;
      return 0;
    }
    return n;
  }
  std::vector<OdGePoint3d> points(uint32_t n) {
    std::vector<OdGePoint3d> out;
    out.reserve(n);
    for (uint32_t i = 0; i < n && ok_; ++i) out.push_back(point());
    return out;
  }

  // A zero-terminated string in the drawing's code page, padded to four bytes.
  std::string paddedString(const DxfTextDecoder* decoder) {
    const uint8_t* start = p_;
    while (p_ < end_ && *p_) ++p_;
    std::string_view raw(reinterpret_cast<const char*>(start), size_t(p_ - start));
    if (p_ < end_) ++p_;
    align();
    if (decoder) return decoder->decode(raw);
    std::string out;
    for (unsigned char c : raw) appendUtf8(out, c);
    return out;
  }
  // A string of UTF-16 units ending with a zero unit, padded to four bytes.
  std::string paddedUnicode() {
    std::string out;
    while (left() >= 2) {
      uint32_t c = uint32_t(p_[0]) | uint32_t(p_[1]) << 8;
      p_ += 2;
      if (c == 0) break;
      if (c >= 0xD800 && c < 0xDC00 && left() >= 2) {
        uint32_t low = uint32_t(p_[0]) | uint32_t(p_[1]) << 8;
        if (low >= 0xDC00 && low < 0xE000) {
          p_ += 2;
          c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        }
      }
      appendUtf8(out, c);
    }
    align();
    return out;
  }

private:
  void take(uint8_t* out, size_t n) {
    if (left() < n) {
      ok_ = false;
      p_ = end_;
      return;
    }
    std::memcpy(out, p_, n);
    p_ += n;
  }
  void align() {
    size_t offset = size_t(p_ - begin_);
    size_t pad = (4 - offset % 4) % 4;
    p_ = pad > left() ? end_ : p_ + pad;
  }

  const uint8_t* p_;
  const uint8_t* begin_;
  const uint8_t* end_;
  bool ok_ = true;
};

ProxyGraphicsItem item(Kind kind) {
  ProxyGraphicsItem it;
  it.kind = kind;
  return it;
}

bool circle(Values& v, ProxyGraphicsItem& it) {
  it.center = v.point();
  it.radius = v.rd();
  it.normal = v.vector();
  it.startVector = arbitraryAxisX(it.normal.isZeroLength() ? OdGeVector3d(0, 0, 1) : it.normal.normal());
  it.sweep = kFullTurn;
  return true;
}

bool arc(Values& v, ProxyGraphicsItem& it) {
  it.center = v.point();
  it.radius = v.rd();
  it.normal = v.vector();
  it.startVector = v.vector();
  it.sweep = v.rd();
  return true;
}

// The arc from p1 through p2 to p3 (or the whole circle): centre form.
bool arcThrough(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3, bool whole, ProxyGraphicsItem& it) {
  OdGeVector3d normal;
  if (!circleThroughPoints(p1, p2, p3, it.center, it.radius, normal)) return false;
  it.normal = normal;
  it.startVector = p1 - it.center;
  if (whole) {
    it.sweep = kFullTurn;
    return true;
  }
  OdGeVector3d x = it.startVector.normal(), y = normal.crossProduct(x);
  OdGeVector3d toEnd = p3 - it.center;
  double sweep = std::atan2(toEnd.dotProduct(y), toEnd.dotProduct(x));
  if (sweep <= 0.0) sweep += kFullTurn;
  it.sweep = sweep;
  return true;
}

bool text(Values& v, bool unicode, bool second, const DxfTextDecoder* decoder, ProxyGraphicsItem& it) {
  it.points = {v.point()};
  it.normal = v.vector();
  it.direction = v.vector();
  if (!second) {
    it.height = v.rd();
    it.widthFactor = v.rd();
    it.oblique = v.rd();
  }
  it.text = unicode ? v.paddedUnicode() : v.paddedString(decoder);
  if (second) {
    v.rl();  // length
    v.rl();  // raw
    it.height = v.rd();
    it.widthFactor = v.rd();
    it.oblique = v.rd();
  }
  return !it.text.empty();
}

bool shell(Values& v, ProxyGraphicsItem& it) {
  uint32_t n = v.count(24);
  it.points = v.points(n);
  uint32_t entries = v.count(4);
  it.faces.reserve(entries);
  for (uint32_t i = 0; i < entries && v.ok(); ++i) it.faces.push_back(v.signedRl());
  return true;
}

bool mesh(Values& v, ProxyGraphicsItem& it) {
  uint32_t rows = v.rl(), columns = v.rl();
  if (rows == 0 || columns == 0 || uint64_t(rows) * columns > v.left() / 24) return false;
  it.rows = int32_t(rows);
  it.columns = int32_t(columns);
  it.points = v.points(rows * columns);
  return true;
}

// A lightweight polyline in its DWG bit-coded form, after its byte count.
bool lwPolyline(Values& v, int dwgVersion, ProxyGraphicsItem& it) {
  uint32_t size = v.count(1);
  std::string bytes = v.raw(size);
  DwgBitReader bits(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  LwPolylineEntity pline;
  readDwgLwPolylineData(bits, dwgVersion, pline);
  if (bits.overrun() || pline.points.size() < 2) return false;
  // Points in the polyline's plane (its elevation, about its normal) into world coordinates.
  OdGeMatrix3d toWorld = OdGeMatrix3d::planeToWorld(pline.normal.isZeroLength() ? OdGeVector3d(0, 0, 1) : pline.normal);
  for (const OdGePoint2d& p : pline.points) it.points.push_back(toWorld.transform(OdGePoint3d(p.x, p.y, pline.elevation)));
  it.bulges = pline.bulges;
  it.normal = toWorld.transform(OdGeVector3d(0, 0, 1));
  it.closed = pline.isClosed();
  return true;
}

bool transform(Values& v, ProxyGraphicsItem& it) {
  for (auto& row : it.transform.entry) {
    for (double& value : row) value = v.rd();
  }
  return true;
}

// Reads one record's values into `it`; false when it is not drawn.
bool decode(uint32_t type, Values& v, const DxfTextDecoder* decoder, int dwgVersion, ProxyGraphicsItem& it) {
  switch (type) {
    case kCircle: it = item(Kind::kArc); return circle(v, it);
    case kCircularArc: it = item(Kind::kArc); return arc(v, it);
    case kCircle3Points:
    case kCircularArc3Points: {
      it = item(Kind::kArc);
      OdGePoint3d p1 = v.point(), p2 = v.point(), p3 = v.point();
      return arcThrough(p1, p2, p3, type == kCircle3Points, it);
    }
    case kPolyline:
    case kPolylineWithNormal:
    case kPolygon: {
      it = item(type == kPolygon ? Kind::kPolygon : Kind::kPolyline);
      it.points = v.points(v.count(24));
      if (type == kPolylineWithNormal) it.normal = v.vector();
      return it.points.size() >= 2;
    }
    case kLwPolyline: it = item(Kind::kPolyline); return lwPolyline(v, dwgVersion, it);
    case kMesh: it = item(Kind::kMesh); return mesh(v, it);
    case kShell: it = item(Kind::kShell); return shell(v, it);
    case kText:
    case kText2:
    case kUnicodeText:
    case kUnicodeText2:
      it = item(Kind::kText);
      return text(v, type == kUnicodeText || type == kUnicodeText2, type == kText2 || type == kUnicodeText2, decoder, it);
    case kColor: it = item(Kind::kColor); it.color = OdCmEntityColor::fromACI(v.signedRl()); return true;
    case kTrueColor: {
      it = item(Kind::kColor);
      uint32_t packed = v.rl();
      uint8_t method = uint8_t(packed >> 24);
      it.color = method >= OdCmEntityColor::kByLayer ? OdCmEntityColor::fromPacked(packed) : OdCmEntityColor::fromPackedRGB(packed);
      return true;
    }
    case kLayer: it = item(Kind::kLayer); it.layerIndex = v.signedRl(); return true;
    case kFill: it = item(Kind::kFill); it.fill = v.rl() != 0; return true;
    case kPushModelTransform:
    case kPushModelTransform2: it = item(Kind::kPushTransform); return transform(v, it);
    case kPopModelTransform: it = item(Kind::kPopTransform); return true;
    default: return false;
  }
}

uint32_t le32(const uint8_t* p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24; }

}  // namespace

std::vector<ProxyGraphicsItem> parseProxyGraphics(std::string_view bytes, const DxfTextDecoder* decoder,
                                                  int dwgVersion) {
  std::vector<ProxyGraphicsItem> items;
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  if (bytes.size() < 8) return items;
  size_t total = std::min<size_t>(le32(data), bytes.size());
  uint32_t records = le32(data + 4);
  size_t at = 8;
  for (uint32_t i = 0; i < records && at + 8 <= total; ++i) {
    uint32_t size = le32(data + at), type = le32(data + at + 4);
    if (size < 8 || size > total - at) break;  // damaged: the rest cannot be found
    Values values(data + at + 8, size - 8);
    ProxyGraphicsItem it;
    if (decode(type, values, decoder, dwgVersion, it) && values.ok()) items.push_back(std::move(it));
    at += size;
  }
  return items;
}

std::string proxyGraphicsBytes(const ProxyEntity& proxy) {
  auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  bool isProxy = false;
  std::string bytes;
  const TaggedValues& groups = proxy.data;
  for (size_t i = 0; i < groups.size(); ++i) {
    if (groups[i].code == 90 && groups[i].asInteger() == 498) isProxy = true;
    if (!isProxy || (groups[i].code != 92 && groups[i].code != 160)) continue;
    for (size_t k = i + 1; k < groups.size() && groups[k].code == 310; ++k) {
      const std::string& hex = groups[k].text;
      for (size_t h = 0; h + 1 < hex.size(); h += 2) {
        if (!std::isxdigit(uint8_t(hex[h])) || !std::isxdigit(uint8_t(hex[h + 1]))) return {};
        bytes += char(digit(hex[h]) << 4 | digit(hex[h + 1]));
      }
    }
    break;
  }
  return bytes;
}
