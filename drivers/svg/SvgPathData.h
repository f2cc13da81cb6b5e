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
  // One step command from (px, py) to (x, y). False, writing nothing, when the point is within
  // the tolerance of the previous one in both axes or is not a finite number; such a point does
  // not become the previous point.
  bool StepTo(std::string& out, double px, double py, double x, double y) const;

  double tolerance() const { return tolerance_; }
  int precision() const { return precision_; }

private:
  double minX_;
  double maxY_;
  int precision_;
  double tolerance_;
};

bool IsFinitePoint(double x, double y);
