// Curves and simple faces: LINE, POINT, CIRCLE, ARC, ELLIPSE, LWPOLYLINE, POLYLINE with its
// VERTEX records, SPLINE, HELIX, XLINE, RAY, SOLID, TRACE, 3DFACE.
#include <algorithm>

#include "kit/dxf/DxfEntityGroups.h"

namespace {

// Points and vectors by their x group code; true when the code was one of the three.
bool takePoint(DxfLoader& in, int code, int base, OdGePoint3d& p) {
  if (code != base && code != base + 10 && code != base + 20) return false;
  in.coordinate(p, base);
  return true;
}

bool takeVector(DxfLoader& in, int code, int base, OdGeVector3d& v) {
  if (code != base && code != base + 10 && code != base + 20) return false;
  in.coordinate(v, base);
  return true;
}

// A reservation a file's claimed count may ask for: never more than its remaining bytes could
// hold (each record takes at least `minBytes` of them).
size_t boundedReserve(DxfLoader& in, int64_t claimed, size_t minBytes) {
  if (claimed <= 0) return 0;
  size_t bound = in.remainingBytes() / minBytes;
  return std::min<size_t>({size_t(claimed), bound, kMaxRecordCount});
}

template <class Corners>
bool takeCorner(DxfLoader& in, int code, Corners& corners) {
  int x = code % 10;
  if (code < 10 || code > 33 || x > 3) return false;
  in.coordinate(corners[x], 10 + x);
  return true;
}

}  // namespace

Entity* readLineEntity(DxfLoader& in) {
  auto* e = in.newEntity<LineEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->start, 10); return true;
      case 11: case 21: case 31: in.coordinate(e->end, 11); return true;
      case 39: e->thickness = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readPointEntity(DxfLoader& in) {
  auto* e = in.newEntity<PointEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->position, 10); return true;
      case 39: e->thickness = in.real(); return true;
      case 50: e->xAxisAngle = in.angle(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readCircleEntity(DxfLoader& in) {
  auto* e = in.newEntity<CircleEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->center, 10); return true;
      case 40: e->radius = in.real(); return true;
      case 39: e->thickness = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readArcEntity(DxfLoader& in) {
  auto* e = in.newEntity<ArcEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->center, 10); return true;
      case 40: e->radius = in.real(); return true;
      case 50: e->startAngle = in.angle(); return true;
      case 51: e->endAngle = in.angle(); return true;
      case 39: e->thickness = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readEllipseEntity(DxfLoader& in) {
  auto* e = in.newEntity<EllipseEntity>();
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(e->center, 10); return true;
      case 11: case 21: case 31: in.coordinate(e->majorAxis, 11); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      case 40: e->radiusRatio = in.real(); return true;
      case 41: e->startParam = in.real(); return true;
      case 42: e->endParam = in.real(); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readLwPolylineEntity(DxfLoader& in) {
  auto* e = in.newEntity<LwPolylineEntity>();
  auto ensure = [&](std::vector<double>& values) {
    if (values.size() < e->points.size()) values.resize(e->points.size(), 0.0);
  };
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 90: e->points.reserve(boundedReserve(in, in.integer(), 12)); return true;
      case 70: e->flags = uint16_t(in.int16()); return true;
      case 43: e->constantWidth = in.real(); return true;
      case 38: e->elevation = in.real(); return true;
      case 39: e->thickness = in.real(); return true;
      case 10:
        if (e->points.size() >= kMaxRecordCount) return true;
        e->points.push_back({in.real(), 0.0});
        return true;
      case 20:
        if (!e->points.empty()) e->points.back().y = in.real();
        return true;
      case 30: return true;  // some writers add a z; the elevation holds it
      case 40:
      case 41: {
        if (e->points.empty()) return true;
        double w = in.real();
        if (w == 0.0 && e->widths.empty()) return true;
        if (e->widths.size() < e->points.size()) e->widths.resize(e->points.size());
        (code == 40 ? e->widths.back().x : e->widths.back().y) = w;
        return true;
      }
      case 42: {
        if (e->points.empty()) return true;
        double b = in.real();
        if (b == 0.0 && e->bulges.empty()) return true;
        ensure(e->bulges);
        e->bulges.back() = b;
        return true;
      }
      case 91: return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  if (!e->bulges.empty()) ensure(e->bulges);
  if (!e->widths.empty() && e->widths.size() < e->points.size()) e->widths.resize(e->points.size());
  return in.finish(e);
}

namespace {

void readVertex(DxfLoader& in, PolylineVertex& v) {
  bool trueColor = false;
  while (in.next()) {
    const int code = in.tag.code;
    if (code == 0) {
      in.pushBack();
      return;
    }
    switch (code) {
      case 5: v.handle = in.handle(); break;
      case 10: case 20: case 30: in.coordinate(v.position, 10); break;
      case 40: v.startWidth = in.real(); break;
      case 41: v.endWidth = in.real(); break;
      case 42: v.bulge = in.real(); break;
      case 50: v.tangent = in.angle(); break;
      case 70: v.flags = uint16_t(in.int16()); break;
      case 71: case 72: case 73: case 74: v.faceIndices[code - 71] = in.int32(); break;
      case 62: if (!trueColor) v.color = OdCmEntityColor::fromACI(in.int16()); break;
      case 420:
        v.color = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32()));
        trueColor = true;
        break;
      case 102: {
        DbObject scratch(DbType::kUnknown);
        in.readApplicationGroup(scratch);
        break;
      }
      default: break;
    }
  }
}

}  // namespace

OdDbHandle readSequenceEnd(DxfLoader& in) {
  if (!in.next()) return OdDbHandle();
  if (in.tag.code != 0 || in.tag.trimmed() != "SEQEND") {
    in.pushBack();
    return OdDbHandle();
  }
  OdDbHandle h;
  while (in.next()) {
    if (in.tag.code == 0) {
      in.pushBack();
      break;
    }
    if (in.tag.code == 5) h = in.handle();
  }
  return h;
}

Entity* readPolylineEntity(DxfLoader& in) {
  auto* e = in.newEntity<PolylineEntity>();
  OdGePoint3d elevationPoint;
  readEntityGroups(in, *e, [&](int code) {
    switch (code) {
      case 66: return true;
      case 10: case 20: case 30: in.coordinate(elevationPoint, 10); return true;
      case 39: e->thickness = in.real(); return true;
      case 70: e->flags = uint16_t(in.int16()); return true;
      case 40: e->defaultStartWidth = in.real(); return true;
      case 41: e->defaultEndWidth = in.real(); return true;
      case 71: e->meshM = in.int16(); return true;
      case 72: e->meshN = in.int16(); return true;
      case 73: e->smoothM = in.int16(); return true;
      case 74: e->smoothN = in.int16(); return true;
      case 75: e->curveType = in.int16(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  e->elevation = elevationPoint.z;
  while (in.next()) {
    if (in.tag.code != 0 || in.tag.trimmed() != "VERTEX") {
      in.pushBack();
      break;
    }
    PolylineVertex v;
    v.startWidth = e->defaultStartWidth;
    v.endWidth = e->defaultEndWidth;
    readVertex(in, v);
    if (e->vertices.size() < kMaxRecordCount) e->vertices.push_back(v);
  }
  e->seqendHandle = readSequenceEnd(in);
  return in.finish(e);
}

// Groups of the AcDbSpline subclass, shared with HELIX.
static bool takeSplineGroup(DxfLoader& in, int code, SplineData& s, OdGeVector3d* normal) {
  switch (code) {
    case 210: case 220: case 230:
      if (normal) in.coordinate(*normal, 210);
      return true;
    case 70: s.flags = uint16_t(in.int16()); return true;
    case 71: s.degree = in.int16(); return true;
    case 72: s.knots.reserve(boundedReserve(in, in.integer(), 6)); return true;
    case 73: s.controlPoints.reserve(boundedReserve(in, in.integer(), 18)); return true;
    case 74: s.fitPoints.reserve(boundedReserve(in, in.integer(), 18)); return true;
    case 42: s.knotTolerance = in.real(); return true;
    case 43: s.controlTolerance = in.real(); return true;
    case 44: s.fitTolerance = in.real(); return true;
    case 12: case 22: case 32: in.coordinate(s.startTangent, 12); return true;
    case 13: case 23: case 33: in.coordinate(s.endTangent, 13); return true;
    case 40: if (s.knots.size() < kMaxRecordCount) s.knots.push_back(in.real()); return true;
    case 41: if (s.weights.size() < kMaxRecordCount) s.weights.push_back(in.real()); return true;
    case 10:
      if (s.controlPoints.size() < kMaxRecordCount) s.controlPoints.push_back({in.real(), 0.0, 0.0});
      return true;
    case 20: case 30:
      if (!s.controlPoints.empty()) in.coordinate(s.controlPoints.back(), 10);
      return true;
    case 11:
      if (s.fitPoints.size() < kMaxRecordCount) s.fitPoints.push_back({in.real(), 0.0, 0.0});
      return true;
    case 21: case 31:
      if (!s.fitPoints.empty()) in.coordinate(s.fitPoints.back(), 11);
      return true;
    default: return false;
  }
}

Entity* readSplineEntity(DxfLoader& in) {
  auto* e = in.newEntity<SplineEntity>();
  readEntityGroups(in, *e, [&](int code) { return takeSplineGroup(in, code, *e, &e->normal); });
  return in.finish(e);
}

Entity* readHelixEntity(DxfLoader& in) {
  auto* e = in.newEntity<HelixEntity>();
  readEntityGroups(in, *e, [&](int code) {
    if (in.subclass != "AcDbHelix") return takeSplineGroup(in, code, *e, nullptr);
    switch (code) {
      case 90: case 91: return true;
      case 40: e->radius = in.real(); return true;
      case 41: e->turns = in.real(); return true;
      case 42: e->turnHeight = in.real(); return true;
      case 290: e->rightHanded = in.boolean(); return true;
      case 280: e->constraint = in.int16(); return true;
      default:
        return takePoint(in, code, 10, e->axisBasePoint) || takePoint(in, code, 11, e->startPoint) ||
               takeVector(in, code, 12, e->axisVector);
    }
  });
  return in.finish(e);
}

Entity* readXLineEntity(DxfLoader& in) {
  auto* e = in.newEntity<XLineEntity>();
  readEntityGroups(in, *e, [&](int code) {
    return takePoint(in, code, 10, e->basePoint) || takeVector(in, code, 11, e->direction);
  });
  return in.finish(e);
}

Entity* readRayEntity(DxfLoader& in) {
  auto* e = in.newEntity<RayEntity>();
  readEntityGroups(in, *e, [&](int code) {
    return takePoint(in, code, 10, e->basePoint) || takeVector(in, code, 11, e->direction);
  });
  return in.finish(e);
}

template <class E>
static Entity* readFourCorners(DxfLoader& in) {
  auto* e = in.newEntity<E>();
  readEntityGroups(in, *e, [&](int code) {
    if (takeCorner(in, code, e->corners)) return true;
    switch (code) {
      case 39: e->thickness = in.real(); return true;
      case 210: case 220: case 230: in.coordinate(e->normal, 210); return true;
      default: return false;
    }
  });
  return in.finish(e);
}

Entity* readSolidEntity(DxfLoader& in) { return readFourCorners<SolidEntity>(in); }
Entity* readTraceEntity(DxfLoader& in) { return readFourCorners<TraceEntity>(in); }

Entity* readFaceEntity(DxfLoader& in) {
  auto* e = in.newEntity<FaceEntity>();
  readEntityGroups(in, *e, [&](int code) {
    if (takeCorner(in, code, e->corners)) return true;
    if (code == 70) {
      e->invisibleEdges = in.int16();
      return true;
    }
    return false;
  });
  return in.finish(e);
}
