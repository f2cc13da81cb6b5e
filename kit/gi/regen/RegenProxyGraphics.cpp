// Proxies (entities of applications this kit does not know) are drawn from the graphics their
// application left with them, as AutoCAD draws them without the application. The traits the
// records change (colour, layer, fill) last until the end of the entity; the entity stays on its
// own layer, a layer the records name only says what "by layer" colours are.
#include <cmath>
#include <cstdlib>

#include "kit/dxf/DxfTextDecoder.h"
#include "kit/gi/ProxyGraphics.h"
#include "kit/gi/regen/RegenEntities.h"
#include "kit/gi/regen/RegenPrimitives.h"

namespace gi {
namespace {

using Kind = ProxyGraphicsItem::Kind;

class ProxyDrawing {
public:
  explicit ProxyDrawing(GiRegenContext& ctx) : ctx_(ctx) {}

  void draw(const ProxyGraphicsItem& it) {
    switch (it.kind) {
      case Kind::kPolyline: polyline(it); break;
      case Kind::kPolygon: polygon(it); break;
      case Kind::kArc: arc(it); break;
      case Kind::kMesh: mesh(it); break;
      case Kind::kShell: shell(it); break;
      case Kind::kText: text(it); break;
      case Kind::kColor:
        color_ = it.color;
        applyColor();
        break;
      case Kind::kLayer: {
        const auto& layers = ctx_.database().layers();
        layer_ = it.layerIndex >= 0 && size_t(it.layerIndex) < layers.size() ? layers[size_t(it.layerIndex)] : nullptr;
        applyColor();
        break;
      }
      case Kind::kFill: fill_ = it.fill; break;
      case Kind::kPushTransform:
        stack_.push_back(current_);
        current_ = current_ * it.transform;
        break;
      case Kind::kPopTransform:
        if (!stack_.empty()) {
          current_ = stack_.back();
          stack_.pop_back();
        }
        break;
    }
  }

private:
  // "By layer" means the layer the records name, once they name one.
  void applyColor() {
    if (color_.isByLayer() && layer_) ctx_.traits().setTrueColor(ctx_.resolveColor(color_, layer_));
    else ctx_.setTraitsColor(color_);
  }

  std::vector<OdGePoint3d> placed(const std::vector<OdGePoint3d>& points) const {
    std::vector<OdGePoint3d> out;
    out.reserve(points.size());
    for (const OdGePoint3d& p : points) out.push_back(current_.transform(p));
    return out;
  }
  const OdGeVector3d& normal(const OdGeVector3d& n) {
    normal_ = current_.transform(n);
    if (!normal_.isZeroLength()) normal_ = normal_.normal();
    return normal_;
  }

  // Straight runs as chains; segments with a bulge as arcs (bulge: the tangent of a quarter of
  // the arc's angle, positive counter-clockwise about the normal).
  void polyline(const ProxyGraphicsItem& it) {
    std::vector<OdGePoint3d> points = placed(it.points);
    if (it.closed) points.push_back(points.front());
    OdGeVector3d n = it.normal.isZeroLength() ? OdGeVector3d(0, 0, 1) : normal(it.normal);
    const OdGeVector3d* given = it.normal.isZeroLength() ? nullptr : &n;
    std::vector<OdGePoint3d> chain{points.front()};
    for (size_t i = 0; i + 1 < points.size(); ++i) {
      double bulge = i < it.bulges.size() ? it.bulges[i] : 0.0;
      if (bulge == 0.0 || points[i] == points[i + 1]) {
        chain.push_back(points[i + 1]);
        continue;
      }
      if (chain.size() >= 2) drawChain(ctx_, chain, given);
      bulgeArc(points[i], points[i + 1], bulge, n);
      chain = {points[i + 1]};
    }
    if (chain.size() >= 2) drawChain(ctx_, chain, given);
  }
  void bulgeArc(const OdGePoint3d& from, const OdGePoint3d& to, double bulge, const OdGeVector3d& n) {
    OdGeVector3d chord = to - from;
    double length = chord.length();
    OdGeVector3d left = n.crossProduct(chord * (1.0 / length));
    OdGePoint3d center = from + chord * 0.5 + left * (length * (1.0 - bulge * bulge) / (4.0 * bulge));
    double radius = length * (1.0 + bulge * bulge) / (4.0 * std::fabs(bulge));
    drawArc(ctx_, center, radius, n, from - center, 4.0 * std::atan(bulge));
  }

  void polygon(const ProxyGraphicsItem& it) {
    std::vector<OdGePoint3d> points = placed(it.points);
    if (fill_ && ctx_.fillMode()) {
      drawFilledPolygon(ctx_, points, nullptr);
    } else {
      points.push_back(points.front());
      drawChain(ctx_, points);
    }
  }

  void arc(const ProxyGraphicsItem& it) {
    OdGeVector3d n = it.normal.isZeroLength() ? OdGeVector3d(0, 0, 1) : it.normal;
    OdGeVector3d start = current_.transform(it.startVector);
    // Radii scale with the transform (taken as keeping shapes, as applications use it).
    double radius = it.radius * current_.transform(it.startVector.normal()).length();
    OdGeVector3d placedNormal = normal(n);
    if (std::fabs(it.sweep) >= 2.0 * M_PI - 1e-12) drawCircle(ctx_, current_.transform(it.center), radius, placedNormal);
    else drawArc(ctx_, current_.transform(it.center), radius, placedNormal, start, it.sweep);
  }

  void mesh(const ProxyGraphicsItem& it) {
    std::vector<OdGePoint3d> points = placed(it.points);
    ctx_.geometry().meshProc(it.rows, it.columns, points.data());
  }

  // Each face's outline; the face list gives a vertex count (negative for holes) and the indices.
  void shell(const ProxyGraphicsItem& it) {
    std::vector<OdGePoint3d> points = placed(it.points);
    const std::vector<int32_t>& faces = it.faces;
    for (size_t at = 0; at < faces.size();) {
      int32_t count = std::abs(faces[at++]);
      if (count == 0 || size_t(count) > faces.size() - at) break;
      std::vector<OdGePoint3d> outline;
      for (int32_t k = 0; k < count; ++k) {
        int32_t index = faces[at + size_t(k)];
        if (index >= 0 && size_t(index) < points.size()) outline.push_back(points[size_t(index)]);
      }
      at += size_t(count);
      if (outline.size() < 2) continue;
      outline.push_back(outline.front());
      drawChain(ctx_, outline);
    }
  }

  void text(const ProxyGraphicsItem& it) {
    TextData data;
    data.text = it.text;
    data.normal = it.normal.isZeroLength() ? OdGeVector3d(0, 0, 1) : normal(it.normal);
    OdGeMatrix3d toPlane;
    OdGeMatrix3d::planeToWorld(data.normal).invert(toPlane);
    data.position = toPlane.transform(current_.transform(it.points.front()));
    OdGeVector3d direction = toPlane.transform(current_.transform(it.direction));
    data.rotation = std::atan2(direction.y, direction.x);
    if (!std::isfinite(data.rotation)) data.rotation = 0.0;
    data.height = it.height * current_.transform(it.direction.isZeroLength() ? OdGeVector3d(1, 0, 0) : it.direction.normal()).length();
    data.widthFactor = it.widthFactor > 0.0 ? it.widthFactor : 1.0;
    data.oblique = it.oblique;
    if (data.height > 0.0) regenText(ctx_, data);
  }

  GiRegenContext& ctx_;
  OdGeMatrix3d current_;
  std::vector<OdGeMatrix3d> stack_;
  OdGeVector3d normal_;
  bool fill_ = false;
  OdCmEntityColor color_ = OdCmEntityColor::byLayer();
  const LayerRecord* layer_ = nullptr;
};

}  // namespace

void regenProxyEntity(GiRegenContext& ctx, const ProxyEntity& e) {
  std::string bytes = proxyGraphicsBytes(e);
  if (bytes.empty()) return;
  const DatabaseHeader& header = ctx.database().header();
  DxfTextDecoder decoder;
  decoder.setCodePage(header.dwgCodePage);
  // "AC1027": the release whose form the polylines inside are written in.
  int release = header.acadVer.size() == 6 ? std::atoi(header.acadVer.c_str() + 2) : 1015;
  ProxyDrawing drawing(ctx);
  for (const ProxyGraphicsItem& it : parseProxyGraphics(bytes, &decoder, release)) drawing.draw(it);
}

}  // namespace gi
