#include "kit/base/Geometry.h"

OdGeMatrix3d OdGeMatrix3d::translation(const OdGeVector3d& v) {
  OdGeMatrix3d m;
  m.entry[0][3] = v.x;
  m.entry[1][3] = v.y;
  m.entry[2][3] = v.z;
  return m;
}

OdGeMatrix3d OdGeMatrix3d::scaling(double sx, double sy, double sz) {
  OdGeMatrix3d m;
  m.entry[0][0] = sx;
  m.entry[1][1] = sy;
  m.entry[2][2] = sz;
  return m;
}

OdGeMatrix3d OdGeMatrix3d::rotation(double angle, const OdGeVector3d& axis) {
  OdGeVector3d a = axis.normal();
  double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
  OdGeMatrix3d m;
  m.entry[0][0] = t * a.x * a.x + c;
  m.entry[0][1] = t * a.x * a.y - s * a.z;
  m.entry[0][2] = t * a.x * a.z + s * a.y;
  m.entry[1][0] = t * a.x * a.y + s * a.z;
  m.entry[1][1] = t * a.y * a.y + c;
  m.entry[1][2] = t * a.y * a.z - s * a.x;
  m.entry[2][0] = t * a.x * a.z - s * a.y;
  m.entry[2][1] = t * a.y * a.z + s * a.x;
  m.entry[2][2] = t * a.z * a.z + c;
  return m;
}

OdGeVector3d arbitraryAxisX(const OdGeVector3d& normal) {
  OdGeVector3d n = normal.normal();
  // Normals close to the world z axis take the world y axis as reference, others the z axis.
  const double limit = 1.0 / 64.0;
  OdGeVector3d ref = (std::fabs(n.x) < limit && std::fabs(n.y) < limit) ? OdGeVector3d::kYAxis()
                                                                       : OdGeVector3d::kZAxis();
  return ref.crossProduct(n).normal();
}

OdGeMatrix3d OdGeMatrix3d::fromAxes(const OdGePoint3d& origin, const OdGeVector3d& xAxis,
                                    const OdGeVector3d& yAxis, const OdGeVector3d& zAxis) {
  OdGeMatrix3d m;
  const OdGeVector3d* axes[3] = {&xAxis, &yAxis, &zAxis};
  for (int c = 0; c < 3; ++c) {
    m.entry[0][c] = axes[c]->x;
    m.entry[1][c] = axes[c]->y;
    m.entry[2][c] = axes[c]->z;
  }
  m.entry[0][3] = origin.x;
  m.entry[1][3] = origin.y;
  m.entry[2][3] = origin.z;
  return m;
}

OdGeMatrix3d OdGeMatrix3d::planeToWorld(const OdGeVector3d& normal) {
  OdGeVector3d z = normal.isZeroLength() ? OdGeVector3d::kZAxis() : normal.normal();
  if (z == OdGeVector3d::kZAxis()) return {};
  OdGeVector3d x = arbitraryAxisX(z);
  OdGeVector3d y = z.crossProduct(x).normal();
  return fromAxes(OdGePoint3d(), x, y, z);
}

OdGeMatrix3d OdGeMatrix3d::operator*(const OdGeMatrix3d& m) const {
  OdGeMatrix3d r;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += entry[i][k] * m.entry[k][j];
      r.entry[i][j] = sum;
    }
  }
  return r;
}

OdGePoint3d OdGeMatrix3d::transform(const OdGePoint3d& p) const {
  double x = entry[0][0] * p.x + entry[0][1] * p.y + entry[0][2] * p.z + entry[0][3];
  double y = entry[1][0] * p.x + entry[1][1] * p.y + entry[1][2] * p.z + entry[1][3];
  double z = entry[2][0] * p.x + entry[2][1] * p.y + entry[2][2] * p.z + entry[2][3];
  double w = entry[3][0] * p.x + entry[3][1] * p.y + entry[3][2] * p.z + entry[3][3];
  if (w != 1.0 && w != 0.0) return {x / w, y / w, z / w};
  return {x, y, z};
}

OdGeVector3d OdGeMatrix3d::transform(const OdGeVector3d& v) const {
  return {entry[0][0] * v.x + entry[0][1] * v.y + entry[0][2] * v.z,
          entry[1][0] * v.x + entry[1][1] * v.y + entry[1][2] * v.z,
          entry[2][0] * v.x + entry[2][1] * v.y + entry[2][2] * v.z};
}

namespace {

double minor3(const double m[4][4], int r0, int r1, int r2, int c0, int c1, int c2) {
  return m[r0][c0] * (m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1]) -
         m[r0][c1] * (m[r1][c0] * m[r2][c2] - m[r1][c2] * m[r2][c0]) +
         m[r0][c2] * (m[r1][c0] * m[r2][c1] - m[r1][c1] * m[r2][c0]);
}

// The 3x3 minor of m without row r and column c.
double cofactorMinor(const double m[4][4], int r, int c) {
  int rows[3], cols[3];
  for (int i = 0, k = 0; i < 4; ++i) if (i != r) rows[k++] = i;
  for (int i = 0, k = 0; i < 4; ++i) if (i != c) cols[k++] = i;
  return minor3(m, rows[0], rows[1], rows[2], cols[0], cols[1], cols[2]);
}

}  // namespace

double OdGeMatrix3d::determinant() const {
  double det = 0.0;
  for (int c = 0; c < 4; ++c) {
    double sign = (c % 2 == 0) ? 1.0 : -1.0;
    det += sign * entry[0][c] * cofactorMinor(entry, 0, c);
  }
  return det;
}

bool OdGeMatrix3d::invert(OdGeMatrix3d& result) const {
  double det = determinant();
  if (std::fabs(det) < 1e-300 || !std::isfinite(det)) {
    result = OdGeMatrix3d();
    return false;
  }
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      double sign = ((r + c) % 2 == 0) ? 1.0 : -1.0;
      result.entry[c][r] = sign * cofactorMinor(entry, r, c) / det;
    }
  }
  return true;
}

bool OdGeMatrix3d::isIdentity(double tol) const {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      if (std::fabs(entry[r][c] - (r == c ? 1.0 : 0.0)) > tol) return false;
    }
  }
  return true;
}
