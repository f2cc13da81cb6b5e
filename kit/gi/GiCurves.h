// Curve values the conveyor carries besides lines and circles: elliptical arcs and NURBS curves,
// with the evaluation that tessellation and transforms need. Angles and parameters in radians.
#pragma once

#include <vector>

#include "kit/base/Geometry.h"

// An elliptical arc: centre, two perpendicular axes given as unit vectors with their radii, and
// the parameter range (start < end; a full ellipse spans 2 pi). A point at parameter t is
// centre + major * majorRadius * cos t + minor * minorRadius * sin t.
class OdGeEllipArc3d {
public:
  OdGeEllipArc3d() = default;
  OdGeEllipArc3d(const OdGePoint3d& center, const OdGeVector3d& majorAxis, const OdGeVector3d& minorAxis,
                 double majorRadius, double minorRadius, double startAngle = 0.0, double endAngle = 2 * kPi);

  const OdGePoint3d& center() const { return center_; }
  const OdGeVector3d& majorAxis() const { return major_; }
  const OdGeVector3d& minorAxis() const { return minor_; }
  double majorRadius() const { return majorRadius_; }
  double minorRadius() const { return minorRadius_; }
  double startAng() const { return start_; }
  double endAng() const { return end_; }
  OdGeVector3d normal() const { return major_.crossProduct(minor_).normal(); }
  bool isClosed() const { return end_ - start_ >= 2 * kPi - 1e-12; }
  bool isCircular(double tol = 1e-9) const;

  OdGePoint3d evalPoint(double t) const;
  OdGePoint3d startPoint() const { return evalPoint(start_); }
  OdGePoint3d endPoint() const { return evalPoint(end_); }

  // The arc under an affine transform: the image of an ellipse is an ellipse; its axes are found
  // again so that the result keeps the perpendicular-axes form (parameters shift accordingly).
  OdGeEllipArc3d transformedBy(const OdGeMatrix3d& m) const;

private:
  OdGePoint3d center_;
  OdGeVector3d major_{1.0, 0.0, 0.0};
  OdGeVector3d minor_{0.0, 1.0, 0.0};
  double majorRadius_ = 1.0;
  double minorRadius_ = 1.0;
  double start_ = 0.0;
  double end_ = 2 * kPi;
};

// A (possibly rational) B-spline curve. Knots as given; with no knots a clamped uniform vector is
// made. Weights empty unless rational.
class OdGeNurbCurve3d {
public:
  OdGeNurbCurve3d() = default;
  OdGeNurbCurve3d(int degree, std::vector<double> knots, std::vector<OdGePoint3d> controlPoints,
                  std::vector<double> weights = {});

  int degree() const { return degree_; }
  const std::vector<double>& knots() const { return knots_; }
  const std::vector<OdGePoint3d>& controlPoints() const { return controlPoints_; }
  const std::vector<double>& weights() const { return weights_; }
  bool isRational() const { return !weights_.empty(); }
  // Usable: degree >= 1, at least degree + 1 control points, knots consistent and finite.
  bool isValid() const { return valid_; }
  double startParam() const;
  double endParam() const;
  OdGePoint3d evalPoint(double t) const;

  OdGeNurbCurve3d transformedBy(const OdGeMatrix3d& m) const;

  // A curve through the fit points: a clamped cubic (or lower degree for few points) with
  // chord-length parameters, the end tangents used when not zero.
  static OdGeNurbCurve3d throughPoints(const std::vector<OdGePoint3d>& fitPoints, const OdGeVector3d& startTangent,
                                       const OdGeVector3d& endTangent, bool closed);

private:
  void validate();

  int degree_ = 3;
  std::vector<double> knots_;
  std::vector<OdGePoint3d> controlPoints_;
  std::vector<double> weights_;
  bool valid_ = false;
};

// Circle through three points in space: false when they are (nearly) collinear or coincide.
bool circleThroughPoints(const OdGePoint3d& p1, const OdGePoint3d& p2, const OdGePoint3d& p3, OdGePoint3d& center,
                         double& radius, OdGeVector3d& normal);

// Angle of (x, y) in [0, 2 pi).
double angleOf(double x, double y);
