// Splines kept as fit points only (as DWG files keep splines drawn through points) become the
// cubics AutoCAD makes of them: checked against the control points and knots AutoCAD wrote into
// the DXF twin of the same drawing, with and without end tangents.
#include <gtest/gtest.h>

#include <cmath>

#include "kit/db/Entities.h"
#include "kit/gi/GiCurves.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

const SplineEntity* splineOf(const OdDbDatabase& db, const char* handle) {
  return dbCast<SplineEntity>(db.find(OdDbHandle::fromHex(handle)));
}

TEST(SplineInterpolation, FitPointsGiveAutoCadsControlPoints) {
  OdDbDatabasePtr dwg = readDwgFile(corpusPath("dwg/example_2000.dwg"));
  OdDbDatabasePtr dxf = readDxfFile(corpusPath("dwg/example_2000.dxf"));
  const SplineEntity* fitOnly = splineOf(*dwg, "16E");  // both end tangents given
  const SplineEntity* autocad = splineOf(*dxf, "16E");
  ASSERT_TRUE(fitOnly && autocad);
  ASSERT_TRUE(fitOnly->controlPoints.empty());
  OdGeNurbCurve3d curve = OdGeNurbCurve3d::throughPoints(fitOnly->fitPoints, fitOnly->startTangent, fitOnly->endTangent, false);
  ASSERT_EQ(curve.controlPoints().size(), autocad->controlPoints.size());
  ASSERT_EQ(curve.knots().size(), autocad->knots.size());
  for (size_t i = 0; i < curve.knots().size(); ++i) EXPECT_NEAR(curve.knots()[i], autocad->knots[i], 1e-6) << i;
  for (size_t i = 0; i < autocad->controlPoints.size(); ++i) {
    EXPECT_NEAR(curve.controlPoints()[i].distanceTo(autocad->controlPoints[i]), 0.0, 1e-6) << i;
  }
}

// Without tangents the curve stops bending at its ends: the first control points AutoCAD's
// property dump gives for a spline drawn through three points.
TEST(SplineInterpolation, NoTangentsMeanNoBendAtTheEnds) {
  OdDbDatabasePtr dwg = readDwgFile(corpusPath("dwg/2013/Spline.dwg"));
  const SplineEntity* s = splineOf(*dwg, "1BE");
  ASSERT_TRUE(s);
  ASSERT_EQ(s->fitPoints.size(), 3u);
  OdGeNurbCurve3d curve = OdGeNurbCurve3d::throughPoints(s->fitPoints, s->startTangent, s->endTangent, false);
  ASSERT_EQ(curve.controlPoints().size(), 5u);  // "NumberOfControlPoints (RO) = 5"
  EXPECT_NEAR(curve.controlPoints()[0].x, 28.059, 5e-4);
  EXPECT_NEAR(curve.controlPoints()[1].x, 33.9643, 5e-4);  // "ControlPoints = (28.059 8.80677 0.0 33.9643 7.72128 ..."
  EXPECT_NEAR(curve.controlPoints()[1].y, 7.72128, 5e-5);
  EXPECT_NEAR(curve.knots()[4], 12.2776, 5e-4);  // "Knots = (0.0 0.0 0.0 0.0 12.2776 26.0835 ..."
  EXPECT_NEAR(curve.knots()[5], 26.0835, 5e-4);
}

}  // namespace
