// Path data of the SVG writer: coordinates shifted into the page and the step commands between
// points. Short steps are written relative ("h", "v", "l"), long ones absolute ("H", "V", "L"),
// which keeps large drawings small; the threshold is 100 SVG units.
#pragma once

#include <string>

class SvgCoordinates {
public:
  // The page's left edge and top edge (SVG's y axis points down), the decimals written and the
  // distance under which two coordinates count as equal.
  SvgCoordinates(double pageMinX, double pageMaxY, int precision, double tolerance)
      : minX_(pageMinX), maxY_(pageMaxY), precision_(precision), tolerance_(tolerance) {}

  void AppendX(std::string& out, double x) const;  // absolute x
  void AppendY(std::string& out, double y) const;  // absolute y, flipped
  void AppendPair(std::string& out, double x, double y) const;  // "x,y"
  void AppendDx(std::string& out, double dx) const;
  void AppendDy(std::string& out, double dy) const;  // flipped
  std::string XText(double x) const;
  std::string YText(double y) const;

  // "M" and the absolute pair.
  void MoveTo(std::string& out, double x, double y) const;
  // One step command from the pen (px, py) to (x, y); the pen moves to the point as written. False,
  // writing nothing, when the point is within the tolerance of the pen in both axes or is not a
  // finite number.
  bool StepTo(std::string& out, double& px, double& py, double x, double y) const;

  // Page coordinates before formatting.
  double ShiftX(double x) const { return x - minX_; }
  double ShiftY(double y) const { return maxY_ - y; }
  double tolerance() const { return tolerance_; }
  int precision() const { return precision_; }

private:
  double minX_;
  double maxY_;
  int precision_;
  double tolerance_;
};

bool IsFinitePoint(double x, double y);

// Long point runs are cut into elements of at most this many points, which keeps single path
// elements short for the viewer.
constexpr int kPointsPerPathElement = 200;

// Writes one point run (any container of points with x and y) as "M" and step commands into the
// open path element. pointsInElement counts the points the open element already holds; when it
// reaches the limit and points remain, splitElement() closes that element and opens a new one,
// which goes on with "M" at the current point. Points that are not finite numbers are left out.
// Returns false when the run had no finite point (nothing written).
template <typename Points, typename SplitElement>
bool AppendPointRun(std::string& out, const SvgCoordinates& page, const Points& points, int& pointsInElement,
                    SplitElement&& splitElement) {
  auto it = points.begin();
  while (it != points.end() && !IsFinitePoint(it->x, it->y)) ++it;
  if (it == points.end()) return false;
  if (pointsInElement >= kPointsPerPathElement) {
    splitElement();
    pointsInElement = 0;
  }
  double px = it->x, py = it->y;
  page.MoveTo(out, px, py);
  ++pointsInElement;
  for (++it; it != points.end(); ++it) {
    if (pointsInElement >= kPointsPerPathElement) {
      splitElement();
      pointsInElement = 1;
      page.MoveTo(out, px, py);
    }
    if (page.StepTo(out, px, py, it->x, it->y)) ++pointsInElement;
  }
  return true;
}
