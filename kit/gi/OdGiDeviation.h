// How far a tessellated curve may stray from the true curve: asked by the simplifier per kind of
// geometry, in the units of the space the simplifier works in (device units for a device's sink).
#pragma once

#include "kit/base/Geometry.h"

enum OdGiDeviationType {
  kOdGiMaxDevForCircle = 0,
  kOdGiMaxDevForCurve = 1,
  kOdGiMaxDevForBoundary = 2,
  kOdGiMaxDevForIsoline = 3,
  kOdGiMaxDevForFacet = 4,
};

class OdGiDeviation {
public:
  virtual ~OdGiDeviation() = default;
  virtual double deviation(OdGiDeviationType type, const OdGePoint3d& point) const = 0;
};

// The same deviation everywhere and for every kind.
class OdGiUniformDeviation : public OdGiDeviation {
public:
  explicit OdGiUniformDeviation(double value) : value_(value) {}
  double deviation(OdGiDeviationType, const OdGePoint3d&) const override { return value_; }
  void setValue(double value) { value_ = value; }

private:
  double value_;
};
