#include "kit/gi/acis/AcisSplines.h"

#include <cmath>

namespace {

using Kind = AcisValue::Kind;

// Reads values one after the other, a failed read leaving a mark instead of throwing.
class ValueCursor {
public:
  ValueCursor(const std::vector<AcisValue>& values, size_t at) : values_(values), at_(at) {}

  bool ok() const { return ok_; }
  size_t remaining() const { return at_ < values_.size() ? values_.size() - at_ : 0; }
  const AcisValue* peek() const { return at_ < values_.size() ? &values_[at_] : nullptr; }
  double number() {
    const AcisValue* v = peek();
    if (!v || !v->isNumber() || !std::isfinite(v->number)) {
      ok_ = false;
      return 0.0;
    }
    ++at_;
    return v->number;
  }
  void skip() { ++at_; }

private:
  const std::vector<AcisValue>& values_;
  size_t at_;
  bool ok_ = true;
};

bool isWord(const AcisValue* v, std::string_view word) {
  return v && (v->kind == Kind::kWord || v->kind == Kind::kString) && v->text == word;
}

// The place of the sub-type data an intcurve's "{" leads to, following one "ref n".
bool subtypeData(const AcisModel& model, const AcisRecord& intcurve, const std::vector<AcisValue>*& values,
                 size_t& at) {
  const std::vector<AcisValue>& v = intcurve.values;
  size_t open = model.firstValue(intcurve);
  while (open < v.size() && v[open].kind != Kind::kOpen) ++open;
  if (open >= v.size()) return false;
  values = &v;
  at = open + 1;
  if (isWord(at < v.size() ? &v[at] : nullptr, "ref")) {
    if (at + 1 >= v.size() || !v[at + 1].isNumber()) return false;
    double n = v[at + 1].number;
    if (!(n >= 0.0) || n >= static_cast<double>(model.subtypes.size())) return false;
    const AcisModel::Place& place = model.subtypes[static_cast<size_t>(n)];
    values = &model.records[place.record].values;
    at = place.value + 1;
  }
  return true;
}

// "nubs degree closure knotCount (knot multiplicity)... controlPoints" (nurbs: a weight after
// each point).
bool readBs3(ValueCursor& in, AcisSpline& out) {
  bool rational = isWord(in.peek(), "nurbs");
  if (!rational && !isWord(in.peek(), "nubs")) return false;
  in.skip();
  double degree = in.number();
  if (!in.ok() || degree < 1.0 || degree > 30.0) return false;
  in.skip();  // open, closed or periodic (a word, or a number in binary data)
  double knotCount = in.number();
  if (!in.ok() || knotCount < 2.0 || knotCount * 2.0 > static_cast<double>(in.remaining())) return false;
  std::vector<double> knots;
  for (size_t k = 0; k < static_cast<size_t>(knotCount); ++k) {
    double value = in.number();
    double multiplicity = in.number();
    if (!in.ok() || multiplicity < 1.0 || multiplicity > degree + 1.0) return false;
    knots.insert(knots.end(), static_cast<size_t>(multiplicity), value);
  }
  int order = static_cast<int>(degree);
  if (knots.size() < static_cast<size_t>(order) + 1) return false;
  size_t controls = knots.size() - static_cast<size_t>(order) + 1;
  size_t perPoint = rational ? 4 : 3;
  std::vector<double> weights;
  for (size_t i = 0; i < controls && in.remaining() >= perPoint; ++i) {
    double x = in.number(), y = in.number(), z = in.number();
    double w = rational ? in.number() : 1.0;
    if (!in.ok()) break;
    out.controlPoints.push_back({x, y, z});
    weights.push_back(w);
  }
  if (out.controlPoints.size() != controls) return !out.controlPoints.empty();
  knots.insert(knots.begin(), knots.front());
  knots.push_back(knots.back());
  if (!rational) weights.clear();
  out.curve = OdGeNurbCurve3d(order, std::move(knots), out.controlPoints, std::move(weights));
  return true;
}

}  // namespace

bool readAcisSpline(const AcisModel& model, const AcisRecord& intcurve, AcisSpline& out) {
  const std::vector<AcisValue>& v = intcurve.values;
  for (size_t i = model.firstValue(intcurve); i < v.size(); ++i) {
    if (v[i].kind == Kind::kOpen) break;
    if (v[i].isFlag()) out.reversed = v[i].flagSet();
  }
  const std::vector<AcisValue>* values = nullptr;
  size_t at = 0;
  if (!subtypeData(model, intcurve, values, at)) return false;
  ValueCursor in(*values, at);
  // The sub-type's name, then perhaps how much of it was saved ("full", a number in binary data),
  // before the bs3 data.
  for (int words = 0; words < 3 && in.peek() && !isWord(in.peek(), "nubs") && !isWord(in.peek(), "nurbs"); ++words) {
    if (in.peek()->kind == Kind::kOpen || in.peek()->kind == Kind::kClose) return false;
    in.skip();
  }
  return readBs3(in, out);
}
