// Circles and arcs in the drawing plane go to the driver as they are: exact and far smaller than
// their tessellations. Anything tilted out of the plane is tessellated by the simplifier base.
#include <cmath>

#include "drivers/TRANS_BASE2.h"
#include "kit/gi/GiCurves.h"
#include "vectorizer/EntityDrawState.h"
#include "vectorizer/OdGiConveyorGeometryDumper.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/ViewportExtents.h"

namespace {

// The driver's degrees, with the program's own conversion factor.
constexpr double kDegreesPerRadian = 57.29578;

void AddCircleSquare(const OdGePoint3d& center, double radius) {
  g_ViewportExtents.AddPoint({center.x - radius, center.y - radius, center.z});
  g_ViewportExtents.AddPoint({center.x + radius, center.y + radius, center.z});
}

// The sweep from one vector to another about the normal, in [0, 2 pi).
double SweepAbout(const OdGeVector3d& from, const OdGeVector3d& to, const OdGeVector3d& normal) {
  double angle = std::atan2(from.crossProduct(to).dotProduct(normal.normal()), from.dotProduct(to));
  return angle < 0.0 ? angle + 2 * kPi : angle;
}

}  // namespace

void OdGiConveyorGeometryDumper::drawNativeCircle(const OdGePoint3d& center, double radius) {
  EntityDrawState& s = g_EntityDrawState;
  if (TRANS_BASE2* driver = g_pOutputDriver) {
    driver->ResetPendingPath();
    driver->DrawCircle(s.forceFill, s.lineTypeName, s.isContinuous, s.widthIsGeometric, center.x, center.y, radius,
                       s.lineTypeScale, s.lineWidth);
  }
  AddCircleSquare(center, radius);
  s.forceFill = 0;
}

void OdGiConveyorGeometryDumper::drawNativeArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                               const OdGeVector3d& startVector, double sweepAngle) {
  EntityDrawState& s = g_EntityDrawState;
  TRANS_BASE2* driver = g_pOutputDriver;
  if (driver) driver->ResetPendingPath();
  double a = angleOf(startVector.x, startVector.y);
  // The driver always receives a counter-clockwise arc: an arc running clockwise seen from above
  // (a -Z normal, or a negative sweep about +Z) is given from its other end.
  double clockwise = normal.z > 0.0 ? -sweepAngle : sweepAngle;
  double start = clockwise > 0.0 ? a - clockwise : a;
  double end = clockwise > 0.0 ? a : a - clockwise;
  AddCircleSquare(center, radius);
  if (driver) {
    driver->DrawArc(s.lineTypeName, s.isContinuous, s.widthIsGeometric, center.x, center.y, radius,
                    start * kDegreesPerRadian, end * kDegreesPerRadian, s.lineTypeScale, s.lineWidth);
  }
}

void OdGiConveyorGeometryDumper::circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                            const OdGeVector3d* extrusion) {
  g_EntityDrawState.closedFlag = 0;
  if (IsZNormal(normal)) drawNativeCircle(center, radius);
  else if (simplifies()) OdGiGeometrySimplifier::circleProc(center, radius, normal, extrusion);
}

void OdGiConveyorGeometryDumper::circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                            const OdGePoint3d& thirdPoint, const OdGeVector3d* extrusion) {
  g_EntityDrawState.closedFlag = 0;
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  if (circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    circleProc(center, radius, normal, extrusion);
  }
}

void OdGiConveyorGeometryDumper::circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                                                 const OdGeVector3d& startVector, double sweepAngle,
                                                 OdGiArcType arcType, const OdGeVector3d* extrusion) {
  g_EntityDrawState.closedFlag = 0;
  if (IsZNormal(normal)) drawNativeArc(center, radius, normal, startVector, sweepAngle);
  else if (simplifies()) {
    OdGiGeometrySimplifier::circularArcProc(center, radius, normal, startVector, sweepAngle, arcType, extrusion);
  }
}

void OdGiConveyorGeometryDumper::circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                                                 const OdGePoint3d& thirdPoint, OdGiArcType arcType,
                                                 const OdGeVector3d* extrusion) {
  g_EntityDrawState.closedFlag = 0;
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  bool flat = firstPoint.z == 0.0 && secondPoint.z == 0.0 && thirdPoint.z == 0.0;
  if (flat && circleThroughPoints(firstPoint, secondPoint, thirdPoint, center, radius, normal)) {
    g_ViewportExtents.AddPoint(firstPoint);
    g_ViewportExtents.AddPoint(secondPoint);
    g_ViewportExtents.AddPoint(thirdPoint);
    OdGeVector3d startVector = firstPoint - center;
    circularArcProc(center, radius, normal, startVector, SweepAbout(startVector, thirdPoint - center, normal),
                    arcType, extrusion);
  } else if (simplifies()) {
    OdGiGeometrySimplifier::circularArcProc(firstPoint, secondPoint, thirdPoint, arcType, extrusion);
  }
}
