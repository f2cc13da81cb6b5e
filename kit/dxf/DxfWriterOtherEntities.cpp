// IMAGE, WIPEOUT, VIEWPORT, OLE2FRAME, MLINE, the underlays, the modeler kinds and proxies
// (written back with the groups kept when they were read), and MESH.
#include "kit/dxf/DxfWriterEntities.h"

namespace {

void writeRasterGroups(DxfWriterContext& c, const RasterImageData& r) {
  c.out.integer(90, r.classVersion);
  c.out.point(10, r.origin);
  c.out.point(11, r.uVector);
  c.out.point(12, r.vVector);
  c.out.point(13, r.imageSize);
  c.out.handle(340, r.imageDefinition);
  c.out.integer(70, r.displayFlags);
  c.out.boolean(280, r.clipping);
  c.out.integer(281, r.brightness);
  c.out.integer(282, r.contrast);
  c.out.integer(283, r.fade);
  if (!r.definitionReactor.isNull()) c.out.handle(360, r.definitionReactor);
  c.out.integer(71, r.clipBoundaryType);
  c.out.integer(91, int64_t(r.clipBoundary.size()));
  for (const OdGePoint2d& p : r.clipBoundary) c.out.point(14, p);
  if (r.clipInverted) c.out.boolean(290, true);
}

}  // namespace

void writeRasterImage(DxfWriterContext& c, const RasterImageEntity& e) {
  c.entityStart("IMAGE", e);
  c.out.raw(100, "AcDbRasterImage");
  writeRasterGroups(c, e);
  c.entityEnd(e);
}

void writeWipeout(DxfWriterContext& c, const WipeoutEntity& e) {
  c.entityStart("WIPEOUT", e);
  c.out.raw(100, "AcDbRasterImage");
  writeRasterGroups(c, e);
  c.entityEnd(e);
}

namespace {

// R12 and R13 files keep a viewport's view in "MVIEW" extended data of ACAD, frozen layers by
// name in a nested list. The reader takes those layers first and the handle groups after them;
// the extended data is written back as it is, so the handle groups carry only the others.
size_t layersNamedInViewportData(const ViewportEntity& e) {
  const XDataGroup* acad = e.xdata("ACAD");
  if (!acad || acad->values.empty() || acad->values[0].text != "MVIEW") return 0;
  size_t names = 0;
  int depth = 0;
  for (size_t i = 1; i < acad->values.size(); ++i) {
    const TaggedValue& t = acad->values[i];
    if (t.code == 1002) depth += t.text == "{" ? 1 : -1;
    else if (depth >= 2 && t.code == 1003) ++names;
  }
  return names;
}

}  // namespace

void writeViewport(DxfWriterContext& c, const ViewportEntity& e) {
  c.entityStart("VIEWPORT", e);
  c.out.raw(100, "AcDbViewport");
  c.out.point(10, e.center);
  c.out.real(40, e.width);
  c.out.real(41, e.height);
  c.out.integer(68, e.status);
  c.out.integer(69, e.number);
  c.out.point(12, e.viewCenter);
  c.out.point(13, e.snapBase);
  c.out.point(14, e.snapSpacing);
  c.out.point(15, e.gridSpacing);
  c.out.point(16, e.viewDirection);
  c.out.point(17, e.viewTarget);
  c.out.real(42, e.lensLength);
  c.out.real(43, e.frontClip);
  c.out.real(44, e.backClip);
  c.out.real(45, e.viewHeight);
  c.out.angle(50, e.snapAngle);
  c.out.angle(51, e.twistAngle);
  c.out.integer(72, e.circleSides);
  for (size_t i = layersNamedInViewportData(e); i < e.frozenLayers.size(); ++i) {
    if (e.frozenLayers[i]) c.out.handle(331, e.frozenLayers[i]->handle);
  }
  c.out.integer(90, e.statusFlags);
  if (c.existing(e.clipBoundary).value()) c.out.handle(340, e.clipBoundary);
  c.out.text(1, e.plotStyleSheet);
  c.out.integer(281, e.renderMode);
  c.out.boolean(71, e.ucsPerViewport);
  c.out.point(110, e.ucsOrigin);
  c.out.point(111, e.ucsXAxis);
  c.out.point(112, e.ucsYAxis);
  c.out.real(146, e.elevation);
  c.out.integer(170, e.shadePlotMode);
  if (c.atLeast(1021) && c.existing(e.visualStyle).value()) c.out.handle(348, e.visualStyle);
  c.entityEnd(e);
}

void writeOle2Frame(DxfWriterContext& c, const Ole2FrameEntity& e) {
  c.entityStart("OLE2FRAME", e);
  c.out.raw(100, "AcDbOle2Frame");
  c.out.integer(70, e.version);
  c.out.text(3, e.programName);
  c.out.point(10, e.upperLeft);
  c.out.point(11, e.lowerRight);
  c.out.integer(71, e.oleType);
  c.out.integer(72, e.tileMode);
  c.out.integer(90, int64_t(e.data.size()));
  c.out.binary(310, e.data.data(), e.data.size());
  c.out.raw(1, "OLE");
  c.entityEnd(e);
}

void writeMLine(DxfWriterContext& c, const MLineEntity& e) {
  c.entityStart("MLINE", e);
  c.out.raw(100, "AcDbMline");
  c.out.text(2, e.styleName);
  c.out.handle(340, e.style);
  c.out.real(40, e.scale);
  c.out.integer(70, e.justification);
  c.out.integer(71, e.flags);
  c.out.integer(72, int64_t(e.vertices.size()));
  c.out.integer(73, e.styleElementCount);
  c.out.point(10, e.startPoint);
  c.out.point(210, e.normal);
  for (const MLineVertex& v : e.vertices) {
    c.out.point(11, v.position);
    c.out.point(12, v.direction);
    c.out.point(13, v.miter);
    size_t elements = std::max(v.elementParams.size(), v.elementFillParams.size());
    for (size_t i = 0; i < elements; ++i) {
      static const std::vector<double> kNone;
      const std::vector<double>& params = i < v.elementParams.size() ? v.elementParams[i] : kNone;
      const std::vector<double>& fills = i < v.elementFillParams.size() ? v.elementFillParams[i] : kNone;
      if (i < v.elementParams.size()) {
        c.out.integer(74, int64_t(params.size()));
        for (double p : params) c.out.real(41, p);
      }
      if (i < v.elementFillParams.size()) {
        c.out.integer(75, int64_t(fills.size()));
        for (double f : fills) c.out.real(42, f);
      }
    }
  }
  c.entityEnd(e);
}

void writeUnderlay(DxfWriterContext& c, const UnderlayEntity& e) {
  const char* name = e.format == UnderlayEntity::Format::kPdf   ? "PDFUNDERLAY"
                     : e.format == UnderlayEntity::Format::kDwf ? "DWFUNDERLAY"
                                                                : "DGNUNDERLAY";
  c.entityStart(name, e);
  c.out.raw(100, "AcDbUnderlayReference");
  c.out.handle(340, e.definition);
  c.out.point(10, e.position);
  c.out.real(41, e.scale.x);
  c.out.real(42, e.scale.y);
  c.out.real(43, e.scale.z);
  c.out.angle(50, e.rotation);
  writeNormal(c, e.normal);
  c.out.integer(280, e.flags);
  c.out.integer(281, e.contrast);
  c.out.integer(282, e.fade);
  for (const OdGePoint2d& p : e.clipBoundary) c.out.point(11, p);
  c.entityEnd(e);
}

void writeModelerGeometry(DxfWriterContext& c, const ModelerGeometryEntity& e) {
  c.entityStart(e.dxfName, e);
  bool hasMarker = !e.data.empty() && e.data.front().code == 100;
  if (!hasMarker) {
    c.out.raw(100, "AcDbModelerGeometry");
    c.out.integer(70, e.modelerVersion);
  }
  for (const TaggedValue& v : e.data) c.out.tagged(v);
  c.entityEnd(e);
}

void writeMesh(DxfWriterContext& c, const MeshEntity& e) {
  c.entityStart("MESH", e);
  c.out.raw(100, "AcDbSubDMesh");
  c.out.integer(71, e.version);
  c.out.boolean(72, e.blendCrease);
  c.out.integer(91, e.subdivisionLevel);
  c.out.integer(92, int64_t(e.vertices.size()));
  for (const OdGePoint3d& p : e.vertices) c.out.point(10, p);
  c.out.integer(93, int64_t(e.faceList.size()));
  for (int32_t i : e.faceList) c.out.integer(90, i);
  c.out.integer(94, int64_t(e.edges.size()));
  for (const auto& [a, b] : e.edges) {
    c.out.integer(90, a);
    c.out.integer(90, b);
  }
  c.out.integer(95, int64_t(e.edgeCreases.size()));
  for (double crease : e.edgeCreases) c.out.real(140, crease);
  c.out.integer(90, 0);  // no per-level overrides
  c.entityEnd(e);
}

void writeProxyEntity(DxfWriterContext& c, const ProxyEntity& e) {
  c.entityStart(e.dxfName, e);
  for (const TaggedValue& v : e.data) c.out.tagged(v);
  c.entityEnd(e);
}
