// IMAGE, WIPEOUT, VIEWPORT (with the MVIEW extended data of R12 files), OLE2FRAME, MLINE,
// the underlays, the modeler kinds kept whole, and proxies for everything else.
#include <algorithm>
#include <cstdint>

#include "kit/dxf/DxfEntityGroups.h"

namespace {

bool takeRasterGroup(DxfLoader& in, int code, RasterImageData& r) {
  switch (code) {
    case 90: r.classVersion = in.int32(); return true;
    case 10: case 20: case 30: in.coordinate(r.origin, 10); return true;
    case 11: case 21: case 31: in.coordinate(r.uVector, 11); return true;
    case 12: case 22: case 32: in.coordinate(r.vVector, 12); return true;
    case 13: case 23: in.coordinate(r.imageSize, 13); return true;
    case 340: r.imageDefinition = in.handle(); return true;
    case 360: r.definitionReactor = in.handle(); return true;
    case 70: r.displayFlags = in.int16(); return true;
    case 280: r.clipping = in.boolean(); return true;
    case 281: r.brightness = in.int16(); return true;
    case 282: r.contrast = in.int16(); return true;
    case 283: r.fade = in.int16(); return true;
    case 71: r.clipBoundaryType = in.int16(); return true;
    case 91: return true;  // vertex count: the 14 groups say it
    case 14:
      if (r.clipBoundary.size() < kMaxRecordCount) r.clipBoundary.push_back({in.real(), 0.0});
      return true;
    case 24:
      if (!r.clipBoundary.empty()) r.clipBoundary.back().y = in.real();
      return true;
    case 290: r.clipInverted = in.boolean(); return true;
    default: return false;
  }
}

// R12 viewports keep their view in ACAD extended data: "MVIEW", then a brace-delimited list of
// target, direction, twist, height, centre, lens, clips, modes, snap and grid settings, and a
// nested list of frozen layer names.
void applyMViewExtendedData(DxfLoader& in, ViewportEntity& v) {
  const XDataGroup* acad = v.xdata("ACAD");
  if (!acad || acad->values.empty() || acad->values[0].text != "MVIEW") return;
  std::vector<const TaggedValue*> points, reals, ints;
  std::vector<std::string> frozen;
  int depth = 0;
  for (size_t i = 1; i < acad->values.size(); ++i) {
    const TaggedValue& t = acad->values[i];
    if (t.code == 1002) {
      depth += t.text == "{" ? 1 : -1;
      continue;
    }
    if (depth >= 2 && t.code == 1003) frozen.push_back(t.text);
    else if (t.code == 1010) points.push_back(&t);
    else if (t.code == 1040) reals.push_back(&t);
    else if (t.code == 1070) ints.push_back(&t);
  }
  // 1010 groups come as x with y (1020) and z (1030) following in the list.
  auto point = [&](size_t index, OdGeVector3d& out) {
    if (index >= points.size()) return;
    const TaggedValue* x = points[index];
    const TaggedValue* end = acad->values.data() + acad->values.size();
    out.x = x->real;
    if (x + 1 < end && x[1].code == 1020) out.y = x[1].real;
    if (x + 2 < end && x[2].code == 1030) out.z = x[2].real;
  };
  OdGeVector3d target;
  point(0, target);
  v.viewTarget = OdGePoint3d(target.x, target.y, target.z);
  point(1, v.viewDirection);
  auto real = [&](size_t i, double fallback) { return i < reals.size() ? reals[i]->real : fallback; };
  v.twistAngle = real(0, 0.0);
  v.viewHeight = real(1, v.viewHeight);
  v.viewCenter = {real(2, 0.0), real(3, 0.0)};
  v.lensLength = real(4, 50.0);
  v.frontClip = real(5, 0.0);
  v.backClip = real(6, 0.0);
  for (const std::string& name : frozen) v.frozenLayers.push_back(in.db.layerNamed(name));
  (void)ints;
}

}  // namespace

Entity* readImageEntity(DxfLoader& in) {
  auto* e = in.newEntity<RasterImageEntity>();
  readEntityGroups(in, *e, [&](int code) { return takeRasterGroup(in, code, *e); });
  return in.finish(e);
}

Entity* readWipeoutEntity(DxfLoader& in) {
  auto* e = in.newEntity<WipeoutEntity>();
  readEntityGroups(in, *e, [&](int code) { return takeRasterGroup(in, code, *e); });
  return in.finish(e);
}

Entity* readViewportEntity(DxfLoader& in) {
  auto* e = in.newEntity<ViewportEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->center, 10); return true;
      case 40: e->width = in.real(); return true;
      case 41: e->height = in.real(); return true;
      case 68: e->status = in.int16(); return true;
      case 69: e->number = in.int16(); return true;
      case 12: case 22: in.coordinate(e->viewCenter, 12); return true;
      case 13: case 23: in.coordinate(e->snapBase, 13); return true;
      case 14: case 24: in.coordinate(e->snapSpacing, 14); return true;
      case 15: case 25: in.coordinate(e->gridSpacing, 15); return true;
      case 16: case 26: case 36: in.coordinate(e->viewDirection, 16); return true;
      case 17: case 27: case 37: in.coordinate(e->viewTarget, 17); return true;
      case 42: e->lensLength = in.real(); return true;
      case 43: e->frontClip = in.real(); return true;
      case 44: e->backClip = in.real(); return true;
      case 45: e->viewHeight = in.real(); return true;
      case 50: e->snapAngle = in.angle(); return true;
      case 51: e->twistAngle = in.angle(); return true;
      case 72: e->circleSides = in.int16(); return true;
      case 331: case 341: e->frozenLayerHandles.push_back(in.handle()); return true;
      case 90: e->statusFlags = in.int32(); return true;
      case 340: e->clipBoundary = in.handle(); return true;
      case 1: e->plotStyleSheet = in.text(); return true;
      case 281: e->renderMode = in.int16(); return true;
      case 71: e->ucsPerViewport = in.boolean(); return true;
      case 110: case 120: case 130: in.coordinate(e->ucsOrigin, 110); return true;
      case 111: case 121: case 131: in.coordinate(e->ucsXAxis, 111); return true;
      case 112: case 122: case 132: in.coordinate(e->ucsYAxis, 112); return true;
      case 146: e->elevation = in.real(); return true;
      case 170: e->shadePlotMode = in.int16(); return true;
      case 348: e->visualStyle = in.handle(); return true;
      default: return false;
    }
  });
  applyMViewExtendedData(in, *e);
  return in.finish(e);
}

Entity* readOle2FrameEntity(DxfLoader& in) {
  auto* e = in.newEntity<Ole2FrameEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 70: e->version = in.int16(); return true;
      case 3: e->programName = in.text(); return true;
      case 10: case 20: case 30: in.coordinate(e->upperLeft, 10); return true;
      case 11: case 21: case 31: in.coordinate(e->lowerRight, 11); return true;
      case 71: e->oleType = in.int16(); return true;
      case 72: e->tileMode = in.int16(); return true;
      case 90: e->data.reserve(std::min<size_t>(size_t(std::max<int64_t>(in.integer(), 0)), in.remainingBytes())); return true;
      case 310: in.appendBinary(e->data); return true;
      case 1: return true;  // "OLE" end marker
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readMLineEntity(DxfLoader& in) {
  auto* e = in.newEntity<MLineEntity>();
  readEntityGroups(in, *e, [&](int code) {
    MLineVertex* v = e->vertices.empty() ? nullptr : &e->vertices.back();
    switch (code) {
      case 2: e->styleName = in.text(); return true;
      case 340: e->style = in.handle(); return true;
      case 40: e->scale = in.real(); return true;
      case 70: e->justification = in.int16(); return true;
      case 71: e->flags = in.int16(); return true;
      case 72: return true;  // vertex count: the 11 groups say it
      case 73: e->styleElementCount = in.int16(); return true;
      case 10: case 20: case 30: in.coordinate(e->startPoint, 10); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      case 11:
        if (e->vertices.size() < kMaxRecordCount) e->vertices.emplace_back();
        e->vertices.back().position.x = in.real();
        return true;
      case 21: case 31: if (v) in.coordinate(v->position, 11); return true;
      case 12: case 22: case 32: if (v) in.coordinate(v->direction, 12); return true;
      case 13: case 23: case 33: if (v) in.coordinate(v->miter, 13); return true;
      case 74: if (v) v->elementParams.emplace_back(); return true;
      case 41:
        if (v && !v->elementParams.empty() && v->elementParams.back().size() < kMaxRecordCount) {
          v->elementParams.back().push_back(in.real());
        }
        return true;
      case 75: if (v) v->elementFillParams.emplace_back(); return true;
      case 42:
        if (v && !v->elementFillParams.empty() && v->elementFillParams.back().size() < kMaxRecordCount) {
          v->elementFillParams.back().push_back(in.real());
        }
        return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readUnderlayEntity(DxfLoader& in, UnderlayEntity::Format format) {
  auto* e = in.newEntity<UnderlayEntity>();
  e->format = format;
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 340: e->definition = in.handle(); return true;
      case 10: case 20: case 30: in.coordinate(e->position, 10); return true;
      case 41: e->scale.x = in.real(); return true;
      case 42: e->scale.y = in.real(); return true;
      case 43: e->scale.z = in.real(); return true;
      case 50: e->rotation = in.angle(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      case 280: e->flags = in.int16(); return true;
      case 281: e->contrast = in.int16(); return true;
      case 282: e->fade = in.int16(); return true;
      case 11:
        if (e->clipBoundary.size() < kMaxRecordCount) e->clipBoundary.push_back({in.real(), 0.0});
        return true;
      case 21:
        if (!e->clipBoundary.empty()) e->clipBoundary.back().y = in.real();
        return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readModelerGeometryEntity(DxfLoader& in, std::string_view dxfName) {
  auto* e = in.newEntity<ModelerGeometryEntity>();
  e->dxfName = std::string(dxfName);
  readEntityGroups(in, *e, [&](int code) {
    if (code == 100 && in.subclass == "AcDbEntity") return true;
    if (code == 70 && e->data.empty()) e->modelerVersion = in.int16();
    e->data.push_back(in.taggedValue());
    return true;
  });
  return in.finish(e);
}

Entity* readMeshEntity(DxfLoader& in) {
  auto* e = in.newEntity<MeshEntity>();
  // Code 90 carries face list items, then edge vertex pairs, then override data, in that order:
  // the counts before each list say which one a 90 belongs to.
  enum class List { kNone, kFaces, kEdges } list = List::kNone;
  int64_t remaining = 0;
  bool edgeFirst = true;
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 71: e->version = in.int16(); return true;
      case 72: e->blendCrease = in.boolean(); return true;
      case 91: e->subdivisionLevel = in.int32(); return true;
      case 92: list = List::kNone; return true;
      case 10:
        if (e->vertices.size() < kMaxRecordCount) e->vertices.push_back({in.real(), 0.0, 0.0});
        return true;
      case 20: case 30:
        if (!e->vertices.empty()) in.coordinate(e->vertices.back(), 10);
        return true;
      case 93:
        list = List::kFaces;
        remaining = std::min<int64_t>(in.integer(), INT32_MAX);
        return true;
      case 94:
        list = List::kEdges;
        remaining = std::min<int64_t>(in.integer(), INT32_MAX) * 2;
        edgeFirst = true;
        return true;
      case 95: list = List::kNone; return true;
      case 140: if (e->edgeCreases.size() < kMaxRecordCount) e->edgeCreases.push_back(in.real()); return true;
      case 90:
        if (remaining <= 0) return true;  // override data
        --remaining;
        if (list == List::kFaces && e->faceList.size() < kMaxRecordCount) {
          e->faceList.push_back(in.int32());
        } else if (list == List::kEdges && e->edges.size() < kMaxRecordCount) {
          if (edgeFirst) e->edges.push_back({in.int32(), 0});
          else e->edges.back().second = in.int32();
          edgeFirst = !edgeFirst;
        }
        return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readProxyEntity(DxfLoader& in, std::string_view dxfName) {
  auto* e = in.newEntity<ProxyEntity>();
  e->dxfName = std::string(dxfName);
  readEntityGroups(in, *e, [&](int code) {
    if (code == 100 && in.subclass == "AcDbEntity") return true;
    e->data.push_back(in.taggedValue());
    return true;
  });
  LoadReport& report = in.db.loadReport();
  ++report.proxyEntities;
  ++report.proxyNames[e->dxfName];
  return in.finish(e);
}
