// HATCH: boundary loops (polyline loops and edge loops of lines, arcs, elliptic arcs and
// splines), pattern definition lines, seed points and gradient fills. The same group codes mean
// different things in each part, so the reader tracks where it is.
#include "kit/dxf/DxfEntityGroups.h"

namespace {

class HatchReader {
public:
  HatchReader(DxfLoader& in, HatchData& hatch, MPolygonEntity* mpolygon = nullptr)
      : in_(in), h_(hatch), mpolygon_(mpolygon) {}

  bool take(int code) {
    switch (phase_) {
      case Phase::kHeader:
        if (code == 91) {
          phase_ = Phase::kLoops;
          return true;
        }
        return takeHeader(code);
      case Phase::kLoops:
        if (takeLoopGroup(code)) return true;
        phase_ = Phase::kAfterLoops;
        return takeAfterLoops(code);
      case Phase::kAfterLoops:
        return takeAfterLoops(code);
      case Phase::kSeeds:
        if (code == 10 || code == 20) {
          if (code == 10) {
            if (h_.seedPoints.size() < kMaxRecordCount) h_.seedPoints.push_back({in_.real(), 0.0});
          } else if (!h_.seedPoints.empty()) {
            h_.seedPoints.back().y = in_.real();
          }
          return true;
        }
        return takeAfterLoops(code);
    }
    return false;
  }

private:
  enum class Phase { kHeader, kLoops, kAfterLoops, kSeeds };

  bool takeHeader(int code) {
    if (mpolygon_ && code == 70) return true;  // version
    if (mpolygon_ && code == 71) {
      h_.solidFill = in_.boolean();
      return true;
    }
    switch (code) {
      case 10: case 20: case 30: in_.coordinate(h_.elevationPoint, 10); return true;
      case 210: case 220: case 230: in_.coordinate(h_.normal, 210); return true;
      case 2: h_.patternName = in_.text(); return true;
      case 70: h_.solidFill = in_.boolean(); return true;
      case 71: h_.associative = in_.boolean(); return true;
      case 63: case 421: case 431: return true;  // MPOLYGON fill colour
      default: return takeAfterLoops(code);
    }
  }

  HatchLoop* loop() { return h_.loops.empty() ? nullptr : &h_.loops.back(); }
  HatchEdge* edge() {
    HatchLoop* l = loop();
    return l && !l->edges.empty() ? &l->edges.back() : nullptr;
  }

  bool takeLoopGroup(int code) {
    if (code == 92) {
      if (h_.loops.size() >= kMaxRecordCount) return true;
      h_.loops.emplace_back();
      h_.loops.back().flags = in_.int32();
      return true;
    }
    HatchLoop* l = loop();
    if (!l) return false;
    if (code == 97) return true;  // source object count: the 330 groups say it
    if (code == 330) {
      l->sourceObjects.push_back(in_.handle());
      return true;
    }
    return l->isPolyline() ? takePolylineLoop(code, *l) : takeEdgeLoop(code, *l);
  }

  bool takePolylineLoop(int code, HatchLoop& l) {
    switch (code) {
      case 72: return true;  // has bulges: the 42 groups say it
      case 73: l.closed = in_.boolean(); return true;
      case 93: return true;
      case 10:
        if (l.points.size() < kMaxRecordCount) l.points.push_back({in_.real(), 0.0});
        return true;
      case 20:
        if (!l.points.empty()) l.points.back().y = in_.real();
        return true;
      case 42: {
        if (l.points.empty()) return true;
        if (l.bulges.size() < l.points.size()) l.bulges.resize(l.points.size(), 0.0);
        l.bulges.back() = in_.real();
        return true;
      }
      default: return false;
    }
  }

  bool takeEdgeLoop(int code, HatchLoop& l) {
    if (code == 93) return true;  // edge count: the 72 groups say it
    if (code == 72) {
      if (l.edges.size() >= kMaxRecordCount) return true;
      l.edges.emplace_back();
      int type = in_.int16();
      l.edges.back().type = (type >= 1 && type <= 4) ? HatchEdge::Type(type) : HatchEdge::kLine;
      if (type == HatchEdge::kSpline) l.edges.back().spline = std::make_unique<HatchSplineEdge>();
      return true;
    }
    HatchEdge* e = edge();
    if (!e) return false;
    if (e->type == HatchEdge::kSpline) return takeSplineEdge(code, *e->spline);
    switch (code) {
      case 10: case 20: in_.coordinate(e->start, 10); return true;
      case 11: case 21: in_.coordinate(e->end, 11); return true;
      case 40: e->radius = in_.real(); return true;
      case 50: e->startAngle = in_.angle(); return true;
      case 51: e->endAngle = in_.angle(); return true;
      case 73: e->counterClockwise = in_.boolean(); return true;
      default: return false;
    }
  }

  bool takeSplineEdge(int code, HatchSplineEdge& s) {
    switch (code) {
      case 94: s.degree = in_.int16(); return true;
      case 73: s.rational = in_.boolean(); return true;
      case 74: s.periodic = in_.boolean(); return true;
      case 95: case 96: case 97: return true;  // counts: the value groups say them
      case 40: if (s.knots.size() < kMaxRecordCount) s.knots.push_back(in_.real()); return true;
      case 42: if (s.weights.size() < kMaxRecordCount) s.weights.push_back(in_.real()); return true;
      case 10:
        if (s.controlPoints.size() < kMaxRecordCount) s.controlPoints.push_back({in_.real(), 0.0});
        return true;
      case 20:
        if (!s.controlPoints.empty()) s.controlPoints.back().y = in_.real();
        return true;
      case 11:
        if (s.fitPoints.size() < kMaxRecordCount) s.fitPoints.push_back({in_.real(), 0.0});
        return true;
      case 21:
        if (!s.fitPoints.empty()) s.fitPoints.back().y = in_.real();
        return true;
      case 12: s.startTangent.x = in_.real(); return true;
      case 22: s.startTangent.y = in_.real(); return true;
      case 13: s.endTangent.x = in_.real(); return true;
      case 23: s.endTangent.y = in_.real(); return true;
      default: return false;
    }
  }

  // MPOLYGON's own groups after its loops: the fill colour and the pattern offset.
  bool takeMPolygonGroup(int code) {
    if (!mpolygon_) return false;
    MPolygonEntity& m = *mpolygon_;
    switch (code) {
      case 63:
        if (!h_.gradient.colors.empty()) return false;
        m.fillColor = OdCmEntityColor::fromACI(in_.int16());
        m.hasFillColor = true;
        return true;
      case 421:
        if (!h_.gradient.colors.empty()) return false;
        m.fillColor = OdCmEntityColor::fromPackedRGB(uint32_t(in_.int32()));
        m.hasFillColor = true;
        return true;
      case 11: m.patternOffset.x = in_.real(); return true;
      case 21: m.patternOffset.y = in_.real(); return true;
      case 99: return true;  // degenerate loop count
      default: return false;
    }
  }

  bool takeAfterLoops(int code) {
    if (takeMPolygonGroup(code)) return true;
    HatchPatternLine* line = h_.patternLines.empty() ? nullptr : &h_.patternLines.back();
    switch (code) {
      case 75: h_.style = in_.int16(); return true;
      case 76: h_.patternType = in_.int16(); return true;
      case 52: h_.patternAngle = in_.angle(); return true;
      case 41: h_.patternScale = in_.real(); return true;
      case 73: return true;  // boundary annotation (MPOLYGON)
      case 77: h_.patternDouble = in_.boolean(); return true;
      case 78: return true;  // line count: the 53 groups say it
      case 53:
        if (h_.patternLines.size() < kMaxRecordCount) h_.patternLines.emplace_back();
        h_.patternLines.back().angle = in_.angle();
        return true;
      case 43: if (line) line->basePoint.x = in_.real(); return true;
      case 44: if (line) line->basePoint.y = in_.real(); return true;
      case 45: if (line) line->offset.x = in_.real(); return true;
      case 46: if (line) line->offset.y = in_.real(); return true;
      case 79: return true;
      case 49:
        if (line && line->dashes.size() < kMaxRecordCount) line->dashes.push_back(in_.real());
        return true;
      case 47: h_.pixelSize = in_.real(); return true;
      case 98:
        phase_ = Phase::kSeeds;
        return true;
      case 450: h_.gradient.enabled = in_.boolean(); return true;
      case 451: case 453: return true;
      case 452: h_.gradient.singleColor = in_.boolean(); return true;
      case 460: h_.gradient.angle = in_.real(); return true;
      case 461: h_.gradient.shift = in_.real(); return true;
      case 462: h_.gradient.tint = in_.real(); return true;
      case 463:
        h_.gradient.colors.push_back({in_.real(), OdCmEntityColor::fromACI(7)});
        return true;
      case 63:
        if (!h_.gradient.colors.empty()) h_.gradient.colors.back().second = OdCmEntityColor::fromACI(in_.int16());
        return true;
      case 421:
        if (!h_.gradient.colors.empty()) {
          h_.gradient.colors.back().second = OdCmEntityColor::fromPackedRGB(uint32_t(in_.int32()));
        }
        return true;
      case 470: h_.gradient.name = in_.text(); return true;
      default: return false;
    }
  }

  DxfLoader& in_;
  HatchData& h_;
  MPolygonEntity* mpolygon_;
  Phase phase_ = Phase::kHeader;
};

}  // namespace

namespace {

template <class E>
Entity* readHatchLike(DxfLoader& in, MPolygonEntity* mpolygon, E* e) {
  HatchReader reader(in, *e, mpolygon);
  readEntityGroups(in, *e, [&](int code) { return code == 100 || reader.take(code); });
  for (HatchLoop& loop : e->loops) {
    if (!loop.bulges.empty() && loop.bulges.size() < loop.points.size()) loop.bulges.resize(loop.points.size(), 0.0);
  }
  return in.finish(e);
}

}  // namespace

Entity* readHatchEntity(DxfLoader& in) { return readHatchLike(in, nullptr, in.newEntity<HatchEntity>()); }

// MPOLYGON: a hatch's groups, but 70 is its version and 71 its solid fill flag.
Entity* readMPolygonEntity(DxfLoader& in) {
  auto* e = in.newEntity<MPolygonEntity>();
  return readHatchLike(in, e, e);
}
