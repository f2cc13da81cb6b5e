// Plain geometry values shared by the whole kit: points, vectors, 4x4 matrices and extents.
// They are trivially copyable aggregates of doubles so that readers can fill them in place and
// entity records stay compact.
#pragma once

#include <algorithm>
#include <cmath>

constexpr double kPi = 3.14159265358979323846;

struct OdGeVector2d {
  double x = 0.0;
  double y = 0.0;

  constexpr OdGeVector2d() = default;
  constexpr OdGeVector2d(double vx, double vy) : x(vx), y(vy) {}

  double length() const { return std::hypot(x, y); }
  constexpr double dotProduct(const OdGeVector2d& v) const { return x * v.x + y * v.y; }
  constexpr OdGeVector2d operator*(double s) const { return {x * s, y * s}; }
  constexpr OdGeVector2d operator+(const OdGeVector2d& v) const { return {x + v.x, y + v.y}; }
  constexpr OdGeVector2d operator-(const OdGeVector2d& v) const { return {x - v.x, y - v.y}; }
  constexpr bool operator==(const OdGeVector2d&) const = default;
};

struct OdGePoint2d {
  double x = 0.0;
  double y = 0.0;

  constexpr OdGePoint2d() = default;
  constexpr OdGePoint2d(double px, double py) : x(px), y(py) {}

  constexpr OdGePoint2d operator+(const OdGeVector2d& v) const { return {x + v.x, y + v.y}; }
  constexpr OdGeVector2d operator-(const OdGePoint2d& p) const { return {x - p.x, y - p.y}; }
  double distanceTo(const OdGePoint2d& p) const { return std::hypot(x - p.x, y - p.y); }
  constexpr bool operator==(const OdGePoint2d&) const = default;
};

struct OdGeVector3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  constexpr OdGeVector3d() = default;
  constexpr OdGeVector3d(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}

  static constexpr OdGeVector3d kXAxis() { return {1.0, 0.0, 0.0}; }
  static constexpr OdGeVector3d kYAxis() { return {0.0, 1.0, 0.0}; }
  static constexpr OdGeVector3d kZAxis() { return {0.0, 0.0, 1.0}; }

  double length() const { return std::sqrt(x * x + y * y + z * z); }
  bool isZeroLength(double tol = 1e-12) const { return length() <= tol; }
  OdGeVector3d normal() const {
    double len = length();
    return len > 0.0 ? OdGeVector3d(x / len, y / len, z / len) : *this;
  }
  constexpr double dotProduct(const OdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  constexpr OdGeVector3d crossProduct(const OdGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }
  constexpr OdGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
  constexpr OdGeVector3d operator+(const OdGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  constexpr OdGeVector3d operator-(const OdGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  constexpr OdGeVector3d operator-() const { return {-x, -y, -z}; }
  constexpr bool operator==(const OdGeVector3d&) const = default;
};

struct OdGePoint3d {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  constexpr OdGePoint3d() = default;
  constexpr OdGePoint3d(double px, double py, double pz = 0.0) : x(px), y(py), z(pz) {}

  constexpr OdGePoint2d to2d() const { return {x, y}; }
  constexpr OdGePoint3d operator+(const OdGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  constexpr OdGePoint3d operator-(const OdGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  constexpr OdGeVector3d operator-(const OdGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
  constexpr OdGeVector3d asVector() const { return {x, y, z}; }
  double distanceTo(const OdGePoint3d& p) const { return (*this - p).length(); }
  constexpr bool operator==(const OdGePoint3d&) const = default;
};

// A 4x4 matrix acting on column vectors: p' = M * p.
class OdGeMatrix3d {
public:
  double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

  static OdGeMatrix3d kIdentity() { return {}; }
  static OdGeMatrix3d translation(const OdGeVector3d& v);
  static OdGeMatrix3d scaling(double sx, double sy, double sz);
  // Rotation by angle (radians, counter-clockwise) about an axis through the origin.
  static OdGeMatrix3d rotation(double angle, const OdGeVector3d& axis);
  // The object coordinate system of a planar entity with this normal (the arbitrary axis rule),
  // mapping plane coordinates to world coordinates.
  static OdGeMatrix3d planeToWorld(const OdGeVector3d& normal);
  // Columns from axes and an origin.
  static OdGeMatrix3d fromAxes(const OdGePoint3d& origin, const OdGeVector3d& xAxis,
                               const OdGeVector3d& yAxis, const OdGeVector3d& zAxis);

  OdGeMatrix3d operator*(const OdGeMatrix3d& m) const;
  OdGePoint3d transform(const OdGePoint3d& p) const;
  OdGeVector3d transform(const OdGeVector3d& v) const;
  double determinant() const;
  // The inverse; a singular matrix yields identity and false.
  bool invert(OdGeMatrix3d& result) const;
  bool isIdentity(double tol = 1e-12) const;
};

// The x axis of the object coordinate system whose z axis is the given normal.
OdGeVector3d arbitraryAxisX(const OdGeVector3d& normal);

struct OdGeExtents3d {
  OdGePoint3d minPoint{1e300, 1e300, 1e300};
  OdGePoint3d maxPoint{-1e300, -1e300, -1e300};

  constexpr OdGeExtents3d() = default;
  constexpr OdGeExtents3d(const OdGePoint3d& lo, const OdGePoint3d& hi) : minPoint(lo), maxPoint(hi) {}

  bool isValidExtents() const {
    return minPoint.x <= maxPoint.x && minPoint.y <= maxPoint.y && minPoint.z <= maxPoint.z;
  }
  void addPoint(const OdGePoint3d& p) {
    minPoint = {std::min(minPoint.x, p.x), std::min(minPoint.y, p.y), std::min(minPoint.z, p.z)};
    maxPoint = {std::max(maxPoint.x, p.x), std::max(maxPoint.y, p.y), std::max(maxPoint.z, p.z)};
  }
  void addExt(const OdGeExtents3d& e) {
    if (!e.isValidExtents()) return;
    addPoint(e.minPoint);
    addPoint(e.maxPoint);
  }
};
