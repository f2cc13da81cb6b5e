#include "kit/gi/acis/AcisWireframe.h"

#include <cmath>

namespace {

bool endsWith(std::string_view s, std::string_view tail) {
  return s.size() >= tail.size() && s.substr(s.size() - tail.size()) == tail;
}

class WireframeWalk {
public:
  WireframeWalk(const AcisModel& model, AcisWireframe& out)
      : model_(model), out_(out), visited_(model.records.size(), false) {}

  void body(const AcisRecord& body) {
    std::vector<int64_t> p = pointers(body);  // lump, wire, transform
    transform_ = transformOf(p.size() > 2 ? p[2] : -1);
    for (int64_t lump : chain(p.size() > 0 ? p[0] : -1, "lump", 0)) {
      std::vector<int64_t> l = pointers(model_.records[size_t(lump)]);  // next, shell, body
      for (int64_t shell : chain(l.size() > 1 ? l[1] : -1, "shell", 0)) this->shell(shell);
    }
    for (int64_t wire : chain(p.size() > 1 ? p[1] : -1, "wire", 0)) this->wire(wire);
  }

private:
  std::vector<int64_t> pointers(const AcisRecord& r) const {
    std::vector<int64_t> out;
    for (size_t i = model_.firstValue(r); i < r.values.size(); ++i) {
      if (r.values[i].isPointer()) out.push_back(r.values[i].index());
    }
    return out;
  }

  bool is(int64_t index, std::string_view kind) const {
    const AcisRecord* r = model_.at(index);
    return r && endsWith(r->name, kind);
  }

  // Records linked by their `next` pointer (the one at `nextAt`), each once.
  std::vector<int64_t> chain(int64_t first, std::string_view kind, size_t nextAt) {
    std::vector<int64_t> out;
    for (int64_t at = first; is(at, kind) && !visited_[size_t(at)];) {
      visited_[size_t(at)] = true;
      out.push_back(at);
      std::vector<int64_t> p = pointers(model_.records[size_t(at)]);
      at = p.size() > nextAt ? p[nextAt] : -1;
    }
    return out;
  }

  void shell(int64_t index) {
    std::vector<int64_t> s = pointers(model_.records[size_t(index)]);  // next, subshell, face, wire, lump
    for (int64_t face : chain(s.size() > 2 ? s[2] : -1, "face", 0)) {
      std::vector<int64_t> f = pointers(model_.records[size_t(face)]);  // next, loop, shell ...
      for (int64_t loop : chain(f.size() > 1 ? f[1] : -1, "loop", 0)) {
        std::vector<int64_t> l = pointers(model_.records[size_t(loop)]);  // next, coedge, face
        coedges(l.size() > 1 ? l[1] : -1, false);
      }
    }
    for (int64_t wire : chain(s.size() > 3 ? s[3] : -1, "wire", 0)) this->wire(wire);
  }

  void wire(int64_t index) {
    std::vector<int64_t> w = pointers(model_.records[size_t(index)]);  // next, coedge, owner
    coedges(w.size() > 1 ? w[1] : -1, true);
  }

  // A coedge ring through the next pointers; wires, which may be open chains, also through the
  // previous pointers.
  void coedges(int64_t first, bool inWire) {
    walkCoedges(first, 0, inWire);
    if (!inWire || !is(first, "coedge")) return;
    std::vector<int64_t> c = pointers(model_.records[size_t(first)]);
    if (c.size() > 1) walkCoedges(c[1], 1, inWire);
  }

  void walkCoedges(int64_t at, size_t linkAt, bool inWire) {
    while (is(at, "coedge") && !visited_[size_t(at)]) {
      visited_[size_t(at)] = true;
      std::vector<int64_t> c = pointers(model_.records[size_t(at)]);  // next, previous, partner, edge
      if (c.size() > 3) edge(c[3], inWire);
      at = c.size() > linkAt ? c[linkAt] : -1;
    }
  }

  bool pointOf(int64_t vertex, OdGePoint3d& p) const {
    const AcisRecord* v = model_.at(vertex);
    if (!v || !endsWith(v->name, "vertex")) return false;
    for (int64_t target : pointers(*v)) {
      const AcisRecord* point = model_.at(target);
      if (!point || point->name != "point") continue;
      std::vector<double> n = acisNumbers(model_, *point);
      if (n.size() < 3 || !std::isfinite(n[0]) || !std::isfinite(n[1]) || !std::isfinite(n[2])) return false;
      p = {n[0], n[1], n[2]};
      return true;
    }
    return false;
  }

  // "start vertex [start param] end vertex [end param] coedge curve sense ..."
  void edge(int64_t index, bool inWire) {
    if (!is(index, "edge") || visited_[size_t(index)]) return;
    visited_[size_t(index)] = true;
    const AcisRecord& e = model_.records[size_t(index)];
    std::vector<int64_t> p;
    std::vector<double> params;
    bool sense = false;
    for (size_t i = model_.firstValue(e); i < e.values.size(); ++i) {
      const AcisValue& v = e.values[i];
      if (v.isPointer()) p.push_back(v.index());
      else if (v.isNumber() && p.size() <= 2 && params.size() < p.size()) params.push_back(v.number);
      else if ((v.isFlag() || v.isNumber()) && p.size() >= 4) {
        // The oldest releases write the sense as 0 or 1.
        sense = v.isNumber() ? v.number != 0.0 : v.flagSet();
        break;
      }
    }
    AcisEdgeEnds ends;
    if (p.size() < 4 || !pointOf(p[0], ends.start) || !pointOf(p[1], ends.end)) return;
    ends.closed = p[0] == p[1];
    ends.reversed = sense;
    ends.hasRange = params.size() == 2 && std::isfinite(params[0]) && std::isfinite(params[1]);
    if (ends.hasRange) {
      ends.startParam = params[0];
      ends.endParam = params[1];
    }
    const AcisRecord* curve = model_.at(p[3]);
    if (!curve) {
      // Edges without a curve: a lone vertex of a wire; on faces, a degenerate edge (a cone's apex).
      if (inWire && ends.closed) add(AcisEdgeShape{AcisEdgeShape::Kind::kPoint, {ends.start}, {}, {}});
      return;
    }
    AcisEdgeShape shape;
    switch (acisEdgeShape(model_, curve, ends, shape)) {
      case AcisCurveFit::kExact: ++out_.exactEdges; break;
      case AcisCurveFit::kApprox: ++out_.approximateEdges; break;
      case AcisCurveFit::kChord:
        ++out_.chordEdges;
        out_.unknownCurves.insert(curve->name);
        if (ends.closed) return;
        break;
    }
    add(std::move(shape));
  }

  void add(AcisEdgeShape shape) {
    if (!transform_.isIdentity()) {
      for (OdGePoint3d& p : shape.points) p = transform_.transform(p);
      if (shape.kind == AcisEdgeShape::Kind::kArc) shape.arc = shape.arc.transformedBy(transform_);
      if (shape.kind == AcisEdgeShape::Kind::kSpline) shape.spline = shape.spline.transformedBy(transform_);
    }
    out_.edges.push_back(std::move(shape));
  }

  // "rotation rows (3 x 3), translation, scale, flags": points are rows multiplied by the matrix.
  OdGeMatrix3d transformOf(int64_t index) const {
    OdGeMatrix3d m;
    const AcisRecord* t = model_.at(index);
    if (!t || t->name != "transform") return m;
    std::vector<double> n = acisNumbers(model_, *t);
    if (n.size() < 13) return m;
    n.resize(13);
    for (double x : n) {
      if (!std::isfinite(x)) return m;
    }
    double scale = n[12];
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) m.entry[i][j] = n[size_t(j * 3 + i)] * scale;
      m.entry[i][3] = n[size_t(9 + i)];
    }
    return m;
  }

  const AcisModel& model_;
  AcisWireframe& out_;
  std::vector<bool> visited_;
  OdGeMatrix3d transform_;
};

}  // namespace

AcisWireframe acisWireframe(const AcisModel& model) {
  AcisWireframe out;
  out.problem = model.problem;
  WireframeWalk walk(model, out);
  for (const AcisRecord& r : model.records) {
    if (r.name == "body") walk.body(r);
  }
  return out;
}
