// Geometry helpers of the vectorization: curve transforms, fit-point splines, circles through
// points, clipping, polygons with holes and the text control codes.
#include <gtest/gtest.h>

#include <cmath>

#include "kit/gi/GiClipping.h"
#include "kit/gi/GiPolygonHoles.h"
#include "kit/gi/GiTessellation.h"
#include "kit/gi/TextCodes.h"
#include "tests/kit/GiRecordingSink.h"

namespace {

TEST(GiCurves, EllipseTransformMapsEveryPoint) {
  OdGeEllipArc3d arc(OdGePoint3d(2, 3, 0), OdGeVector3d(1, 0, 0), OdGeVector3d(0, 1, 0), 4.0, 4.0, 0.5, 2.5);
  OdGeMatrix3d transforms[] = {
      OdGeMatrix3d::scaling(3.0, 1.0, 1.0),
      OdGeMatrix3d::scaling(-2.0, 1.0, 1.0) * OdGeMatrix3d::rotation(0.7, OdGeVector3d::kZAxis()),
      OdGeMatrix3d::rotation(1.1, OdGeVector3d(1, 0, 0)) * OdGeMatrix3d::scaling(1.0, 0.25, 1.0),
  };
  for (const OdGeMatrix3d& m : transforms) {
    OdGeEllipArc3d moved = arc.transformedBy(m);
    EXPECT_GE(moved.majorRadius(), moved.minorRadius());
    EXPECT_NEAR(moved.majorAxis().dotProduct(moved.minorAxis()), 0.0, 1e-12);
    for (double f : {0.0, 0.3, 0.5, 1.0}) {
      OdGePoint3d expected = m.transform(arc.evalPoint(arc.startAng() + f * (arc.endAng() - arc.startAng())));
      OdGePoint3d actual = moved.evalPoint(moved.startAng() + f * (moved.endAng() - moved.startAng()));
      EXPECT_NEAR(actual.distanceTo(expected), 0.0, 1e-9);
    }
  }
}

TEST(GiCurves, FitPointSplinesPassThroughTheirPoints) {
  std::vector<OdGePoint3d> fit = {{0, 0, 0}, {3, 4, 0}, {7, 1, 0}, {10, 6, 0}, {12, 0, 0}};
  for (bool closed : {false, true}) {
    OdGeNurbCurve3d curve = OdGeNurbCurve3d::throughPoints(fit, {}, {}, closed);
    ASSERT_TRUE(curve.isValid());
    std::vector<OdGePoint3d> pts;
    gi::tessellateNurbs(curve, 0.001, pts);
    for (const OdGePoint3d& p : fit) EXPECT_NEAR(distanceToChain(p, pts), 0.0, 1e-9);
    if (closed) {
      EXPECT_NEAR(pts.front().distanceTo(pts.back()), 0.0, 1e-9);
    }
  }
  // Broken knots are replaced by a clamped uniform vector: the curve still ends at its ends.
  OdGeNurbCurve3d broken(3, {0, 1, 0.5}, {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}});
  ASSERT_TRUE(broken.isValid());
  EXPECT_EQ(broken.evalPoint(broken.startParam()), OdGePoint3d(0, 0, 0));
  EXPECT_EQ(broken.evalPoint(broken.endParam()), OdGePoint3d(4, 0, 0));
  OdGeNurbCurve3d tooFew(3, {}, {{0, 0, 0}, {1, 1, 0}});
  EXPECT_FALSE(tooFew.isValid());
}

TEST(GiCurves, CircleThroughThreePoints) {
  OdGePoint3d c;
  double r;
  OdGeVector3d n;
  ASSERT_TRUE(circleThroughPoints({5, 0, 1}, {0, 5, 1}, {-5, 0, 1}, c, r, n));
  EXPECT_NEAR(c.distanceTo(OdGePoint3d(0, 0, 1)), 0.0, 1e-12);
  EXPECT_NEAR(r, 5.0, 1e-12);
  EXPECT_NEAR(n.z, 1.0, 1e-12);
  ASSERT_TRUE(circleThroughPoints({-5, 0, 0}, {0, 5, 0}, {5, 0, 0}, c, r, n));
  EXPECT_NEAR(n.z, -1.0, 1e-12) << "clockwise points give the reversed normal";
  EXPECT_FALSE(circleThroughPoints({0, 0, 0}, {1, 1, 0}, {2, 2, 0}, c, r, n));
  EXPECT_FALSE(circleThroughPoints({1, 1, 0}, {1, 1, 0}, {1, 1, 0}, c, r, n));
}

TEST(GiClipping, PolylinesKeepOnlyTheirInsidePieces) {
  std::vector<OdGePoint2d> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  auto pieces = gi::clipPolyline({{-5, 5, 0}, {15, 5, 0}}, square);
  ASSERT_EQ(pieces.size(), 1u);
  EXPECT_EQ(pieces[0].front(), OdGePoint3d(0, 5, 0));
  EXPECT_EQ(pieces[0].back(), OdGePoint3d(10, 5, 0));
  // A U-shaped clip cuts a line across its opening into two pieces.
  std::vector<OdGePoint2d> u = {{0, 0}, {10, 0}, {10, 10}, {7, 10}, {7, 3}, {3, 3}, {3, 10}, {0, 10}};
  pieces = gi::clipPolyline({{-1, 6, 0}, {11, 6, 0}}, u);
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_NEAR(pieces[0].back().x, 3.0, 1e-12);
  EXPECT_NEAR(pieces[1].front().x, 7.0, 1e-12);
  // Entirely outside, and a polyline bending in and out keeps its inside vertex.
  EXPECT_TRUE(gi::clipPolyline({{20, 20, 0}, {30, 30, 0}}, square).empty());
  pieces = gi::clipPolyline({{-5, 5, 0}, {5, 5, 0}, {5, 15, 0}}, square);
  ASSERT_EQ(pieces.size(), 1u);
  ASSERT_EQ(pieces[0].size(), 3u);
  EXPECT_EQ(pieces[0][1], OdGePoint3d(5, 5, 0));
}

TEST(GiClipping, AreasAreCutToTheClip) {
  std::vector<OdGePoint2d> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  std::vector<OdGePoint3d> big = {{-5, -5, 0}, {15, -5, 0}, {15, 15, 0}, {-5, 15, 0}};
  EXPECT_NEAR(std::fabs(areaOf(gi::clipPolygon(big, square))), 100.0, 1e-9);
  std::vector<OdGePoint3d> half = {{5, -5, 0}, {15, -5, 0}, {15, 15, 0}, {5, 15, 0}};
  EXPECT_NEAR(std::fabs(areaOf(gi::clipPolygon(half, square))), 50.0, 1e-9);
  std::vector<OdGePoint3d> clockwiseClip = {{2, 2, 0}, {4, 2, 0}, {4, 4, 0}, {2, 4, 0}};
  std::vector<OdGePoint2d> reversed(square.rbegin(), square.rend());
  EXPECT_NEAR(std::fabs(areaOf(gi::clipPolygon(clockwiseClip, reversed))), 4.0, 1e-9);
  EXPECT_TRUE(gi::clipPolygon({{20, 20, 0}, {30, 20, 0}, {30, 30, 0}}, square).empty());
}

TEST(GiClipping, BoxRelations) {
  std::vector<OdGePoint2d> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  struct Case {
    OdGeExtents3d box;
    gi::BoxRelation expected;
  } cases[] = {
      {{{1, 1, 0}, {2, 2, 0}}, gi::BoxRelation::kInside},
      {{{-1, 1, 0}, {2, 2, 0}}, gi::BoxRelation::kCrossing},
      {{{11, 1, 0}, {12, 2, 0}}, gi::BoxRelation::kOutside},
      {{{-5, -5, 0}, {15, 15, 0}}, gi::BoxRelation::kCrossing},
      {OdGeExtents3d(), gi::BoxRelation::kOutside},
  };
  for (const Case& c : cases) EXPECT_EQ(gi::boxRelation(c.box, square), c.expected);
  // A concave clip whose notch reaches into the box.
  std::vector<OdGePoint2d> notched = {{0, 0}, {10, 0}, {10, 10}, {5, 5}, {0, 10}};
  EXPECT_EQ(gi::boxRelation({{4, 4, 0}, {6, 4.5, 0}}, notched), gi::BoxRelation::kInside);
  EXPECT_EQ(gi::boxRelation({{1, 1, 0}, {9, 9.9, 0}}, notched), gi::BoxRelation::kCrossing);
}

TEST(GiPolygonHoles, MergedOutlineKeepsTheNetArea) {
  std::vector<OdGePoint3d> outer = {{0, 0, 0}, {0, 20, 0}, {30, 20, 0}, {30, 0, 0}};  // clockwise on purpose
  std::vector<std::vector<OdGePoint3d>> holes = {
      {{2, 2, 0}, {6, 2, 0}, {6, 6, 0}, {2, 6, 0}},          // 16
      {{20, 10, 0}, {25, 10, 0}, {25, 18, 0}, {20, 18, 0}},  // 40
      {{10, 5, 0}, {15, 5, 0}, {12, 9, 0}},                  // 10
  };
  std::vector<OdGePoint3d> merged = gi::mergeHoles(outer, holes);
  EXPECT_EQ(merged.size(), 4u + 4u + 4u + 3u + 3u * 2u);
  // Holes run against the outline: their areas subtract.
  EXPECT_NEAR(std::fabs(areaOf(merged)), 600.0 - 16.0 - 40.0 - 10.0, 1e-9);
  // Plane of a face seen from below: the merge works in the face's own plane.
  OdGeVector3d down(0, 0, -1);
  std::vector<OdGePoint3d> tilted = gi::mergeHoles(outer, {holes[0]}, &down);
  EXPECT_NEAR(std::fabs(areaOf(tilted)), 600.0 - 16.0, 1e-9);
}

TEST(GiTextCodes, ControlCodesDecode) {
  struct Case {
    std::u32string in;
    bool raw;
    std::u32string out;
  } cases[] = {
      {U"%%c25", false, U"\u230025"},
      {U"%%C25", false, U"\u230025"},
      {U"90%%d", false, U"90\u00B0"},
      {U"%%p0.5", false, U"\u00B10.5"},
      {U"100%%%", false, U"100%"},
      {U"%%065BC", false, U"ABC"},
      {U"x%%06", false, U"x%%06"},
      {U"%%u%%oab", false, U"ab"},
      {U"\\U+00C4rger", false, U"\u00C4rger"},
      {U"\\U+00Z4", false, U"\\U+00Z4"},
      {U"\\M+18140x", false, U"?x"},
      {U"%%d", true, U"%%d"},
      {U"\\U+00B0", true, U"\u00B0"},
      {U"%", false, U"%"},
      {U"", false, U""},
  };
  for (const Case& c : cases) {
    std::u32string got;
    for (const gi::DecodedChar& d : gi::decodeTextCodes(c.in, c.raw)) got += d.ch;
    EXPECT_EQ(got, c.out);
  }
  auto under = gi::decodeTextCodes(U"a%%ub%%uc", false);
  ASSERT_EQ(under.size(), 3u);
  EXPECT_FALSE(under[0].underline);
  EXPECT_TRUE(under[1].underline);
  EXPECT_FALSE(under[2].underline);
}

TEST(GiTextCodes, Utf8DecodingSurvivesBrokenBytes) {
  EXPECT_EQ(gi::utf8ToU32("A\xC3\x84"), U"A\u00C4");
  EXPECT_EQ(gi::utf8ToU32("\xF0\x9F\x98\x80"), U"\U0001F600");
  EXPECT_EQ(gi::utf8ToU32("\xC3"), U"\uFFFD");
  EXPECT_EQ(gi::utf8ToU32("\xC3x"), U"\uFFFDx");
  EXPECT_EQ(gi::utf8ToU32("\xFFz"), U"\uFFFDz");
}

}  // namespace
