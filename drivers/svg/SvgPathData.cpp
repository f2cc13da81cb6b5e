#include "drivers/svg/SvgPathData.h"

#include <cmath>

#include "drivers/svg/SvgNumberText.h"

namespace {
constexpr double kRelativeStepLimit = 100.0;
}

bool IsFinitePoint(double x, double y) { return std::isfinite(x) && std::isfinite(y); }

void SvgCoordinates::AppendX(std::string& out, double x) const { AppendCoordinate(out, x - minX_, precision_); }

void SvgCoordinates::AppendY(std::string& out, double y) const { AppendCoordinate(out, maxY_ - y, precision_); }

void SvgCoordinates::AppendPair(std::string& out, double x, double y) const {
  AppendX(out, x);
  out += ',';
  AppendY(out, y);
}

void SvgCoordinates::AppendDx(std::string& out, double dx) const { AppendCoordinate(out, dx, precision_); }

void SvgCoordinates::AppendDy(std::string& out, double dy) const { AppendCoordinate(out, -dy, precision_); }

std::string SvgCoordinates::XText(double x) const {
  std::string text;
  AppendX(text, x);
  return text;
}

std::string SvgCoordinates::YText(double y) const {
  std::string text;
  AppendY(text, y);
  return text;
}

void SvgCoordinates::MoveTo(std::string& out, double x, double y) const {
  out += 'M';
  AppendPair(out, x, y);
}

bool SvgCoordinates::StepTo(std::string& out, double& px, double& py, double x, double y) const {
  if (!IsFinitePoint(x, y)) return false;
  double dx = x - px;
  double dy = y - py;
  bool flatX = std::fabs(dx) <= tolerance_;
  bool flatY = std::fabs(dy) <= tolerance_;
  if (flatX && flatY) return false;
  // The pen moves to the point as written: a step written level keeps the pen's height, so that
  // a run of shallow steps cannot drift away from the curve by more than the tolerance.
  if (flatY) {
    px = x;
    if (std::fabs(dx) < kRelativeStepLimit) {
      out += 'h';
      AppendDx(out, dx);
    } else {
      out += 'H';
      AppendX(out, x);
    }
  } else if (flatX) {
    py = y;
    if (std::fabs(dy) < kRelativeStepLimit) {
      out += 'v';
      AppendDy(out, dy);
    } else {
      out += 'V';
      AppendY(out, y);
    }
  } else if (std::fabs(dx) < kRelativeStepLimit && std::fabs(dy) < kRelativeStepLimit) {
    px = x;
    py = y;
    out += 'l';
    AppendDx(out, dx);
    out += ',';
    AppendDy(out, dy);
  } else {
    px = x;
    py = y;
    out += 'L';
    AppendPair(out, x, y);
  }
  return true;
}
