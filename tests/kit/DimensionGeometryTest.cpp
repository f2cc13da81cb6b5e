// Dimensions drawn from their definition points: extension lines end DIMEXO from the origins and
// DIMEXE past the dimension line, arrow tips sit on the dimension line's ends, and every kind
// measures what it should.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "kit/db/OdDbDatabase.h"
#include "kit/gi/regen/DimensionGeometry.h"

namespace {

using gi::DimensionGraphics;
using Kind = DimensionEntity::Kind;

bool near(const OdGePoint3d& p, double x, double y) { return std::fabs(p.x - x) < 1e-9 && std::fabs(p.y - y) < 1e-9; }

struct Rig {
  OdDbDatabase db;
  DimensionEntity* e = db.newObject<DimensionEntity>();
  gi::DimensionGeometryStyle style;
  Rig() {
    style.arrowSize = 1.0;
    style.extensionOffset = 0.5;
    style.extensionBeyond = 1.0;
  }
  DimensionGraphics layout() { return gi::layoutDimension(*e, style); }
};

// The length of the dimension line drawn, extension lines left out.
double dimensionLineLength(const DimensionGraphics& g) {
  double drawn = 0.0;
  for (auto& s : g.segments) {
    if (!s.extension) drawn += (s.end - s.start).length();
  }
  return drawn;
}

TEST(DimensionGeometry, RotatedLinearExtensionLinesAndArrowTips) {
  Rig r;
  r.e->kind = Kind::kRotated;
  r.e->defPoint2 = {0, 0, 0};
  r.e->defPoint3 = {10, 3, 0};
  r.e->definitionPoint = {10, 8, 0};
  r.e->textMidpoint = {5, 8, 0};
  DimensionGraphics g = r.layout();
  EXPECT_DOUBLE_EQ(g.measurement, 10.0);
  ASSERT_EQ(g.arrows.size(), 2u);
  EXPECT_TRUE(near(g.arrows[0].tip, 0, 8));
  EXPECT_TRUE(near(g.arrows[1].tip, 10, 8));
  EXPECT_NEAR(g.arrows[0].back.x, 1.0, 1e-12);  // pointing outwards, body inside
  std::vector<DimensionGraphics::Segment> extensions;
  for (auto& s : g.segments) {
    if (s.extension) extensions.push_back(s);
  }
  ASSERT_EQ(extensions.size(), 2u);
  EXPECT_TRUE(near(extensions[0].start, 0, 0.5));
  EXPECT_TRUE(near(extensions[0].end, 0, 9));
  EXPECT_TRUE(near(extensions[1].start, 10, 3.5));
  EXPECT_TRUE(near(extensions[1].end, 10, 9));

  r.e->textMidpoint = {0, 0, 0};  // left out by the writer: above the middle of the line
  g = r.layout();
  EXPECT_NEAR(g.textPosition.x, 5.0, 1e-12);
  EXPECT_GT(g.textPosition.y, 8.0);

  r.style.suppressExtension1 = true;
  r.style.suppressLine2 = true;
  g = r.layout();
  int extensionCount = 0;
  for (auto& s : g.segments) extensionCount += s.extension;
  EXPECT_EQ(extensionCount, 1);
  ASSERT_EQ(g.arrows.size(), 1u);
  EXPECT_TRUE(near(g.arrows[0].tip, 0, 8));
  for (auto& s : g.segments) {
    if (!s.extension) {
      EXPECT_LE(std::max(s.start.x, s.end.x), 5.0 + 1e-9);  // second half gone
    }
  }
}

TEST(DimensionGeometry, CentredTextBreaksTheLineAndTicksExtendIt) {
  Rig r;
  r.e->kind = Kind::kAligned;
  r.e->defPoint2 = {0, 0, 0};
  r.e->defPoint3 = {20, 0, 0};
  r.e->definitionPoint = {20, -5, 0};
  r.e->textMidpoint = {10, -5, 0};
  r.style.textWidth = 4.0;
  r.style.textGap = 0.5;
  DimensionGraphics g = r.layout();
  EXPECT_NEAR(dimensionLineLength(g), 20.0 - 5.0, 1e-9);
  r.style.textAbove = true;
  r.style.tickSize = 0.5;
  r.style.lineBeyond = 1.0;
  g = r.layout();
  EXPECT_NEAR(dimensionLineLength(g), 22.0, 1e-9);
  EXPECT_EQ(g.arrows[0].kind, gi::DimensionArrow::kOblique);
}

TEST(DimensionGeometry, AngularKindsSpanTheSectorHoldingTheirArcPoint) {
  Rig r;
  r.e->kind = Kind::kAngular3Point;
  r.e->defPoint4 = {0, 0, 0};
  r.e->defPoint2 = {5, 0, 0};
  r.e->defPoint3 = {0, 5, 0};
  r.e->definitionPoint = {7, 7, 0};
  DimensionGraphics g = r.layout();
  EXPECT_TRUE(g.angular);
  EXPECT_NEAR(g.measurement, std::numbers::pi / 2, 1e-12);
  ASSERT_EQ(g.arcs.size(), 1u);
  EXPECT_NEAR(g.arcs[0].radius, std::sqrt(98.0), 1e-12);
  ASSERT_EQ(g.arrows.size(), 2u);
  EXPECT_NEAR(g.arrows[0].tip.x, std::sqrt(98.0), 1e-9);
  r.e->definitionPoint = {-7, -7, 0};  // the reflex side
  EXPECT_NEAR(r.layout().measurement, 3 * std::numbers::pi / 2, 1e-12);

  r.e->kind = Kind::kAngular2Line;
  r.e->defPoint2 = {1, 0, 0};
  r.e->defPoint3 = {5, 0, 0};
  r.e->defPoint4 = {0, 1, 0};
  r.e->definitionPoint = {0, 5, 0};
  r.e->arcPoint = {-6, 6, 0};
  g = r.layout();
  EXPECT_NEAR(g.measurement, std::numbers::pi / 2, 1e-12);
  EXPECT_NEAR(g.arcs[0].startVector.y, 1.0, 1e-12);  // from the upper ray round to the left one
  // Both lines stop short of the arc: each gets an extension line out to it.
  int extensions = 0;
  for (auto& s : g.segments) extensions += s.extension;
  EXPECT_EQ(extensions, 2);

  r.e->kind = Kind::kArcLength;
  r.e->defPoint4 = {0, 0, 0};
  r.e->defPoint2 = {4, 0, 0};
  r.e->defPoint3 = {0, 4, 0};
  r.e->definitionPoint = {5, 5, 0};
  g = r.layout();
  EXPECT_FALSE(g.angular);
  EXPECT_NEAR(g.measurement, 4 * std::numbers::pi / 2, 1e-12);
  EXPECT_EQ(g.arcs.size(), 2u);  // the dimension arc and the arc length sign
  r.style.arcSymbol = 2;
  EXPECT_EQ(r.layout().arcs.size(), 1u);
}

TEST(DimensionGeometry, RadialKindsPointAtTheCircle) {
  Rig r;
  r.e->kind = Kind::kRadius;
  r.e->definitionPoint = {0, 0, 0};
  r.e->defPoint4 = {3, 4, 0};
  r.e->textMidpoint = {6, 8, 0};
  DimensionGraphics g = r.layout();
  EXPECT_DOUBLE_EQ(g.measurement, 5.0);
  ASSERT_FALSE(g.arrows.empty());
  EXPECT_TRUE(near(g.arrows[0].tip, 3, 4));
  EXPECT_GT(g.arrows[0].back.x, 0.0);  // text outside: the arrow comes from outside

  // Horizontal text: a leader with a landing one arrow long, ending DIMGAP short of the text.
  r.style.textWidth = 2.0;
  r.style.textGap = 0.5;
  g = r.layout();
  ASSERT_EQ(g.arrows.size(), 1u);
  EXPECT_TRUE(near(g.segments[0].start, 4.5, 8));
  EXPECT_TRUE(near(g.segments[0].end, 3.5, 8));

  r.e->kind = Kind::kDiameter;
  r.e->definitionPoint = {-3, -4, 0};
  r.e->textMidpoint = {1, 0, 0};
  r.style.lineInside = true;  // DIMTOFL: across the circle, an arrow at each end
  g = r.layout();
  EXPECT_DOUBLE_EQ(g.measurement, 10.0);
  ASSERT_EQ(g.arrows.size(), 2u);
  EXPECT_TRUE(near(g.arrows[1].tip, -3, -4));

  r.e->kind = Kind::kRadialLarge;
  r.e->definitionPoint = {0, 0, 0};
  r.e->defPoint2 = {100, 0, 0};  // chord point
  r.e->defPoint3 = {80, 10, 0};  // centre shown
  r.e->defPoint4 = {90, 5, 0};   // jog
  g = r.layout();
  EXPECT_DOUBLE_EQ(g.measurement, 100.0);
  EXPECT_TRUE(near(g.arrows[0].tip, 100, 0));
  EXPECT_TRUE(near(g.segments.back().end, 80, 10));
}

TEST(DimensionGeometry, OrdinateMeasuresFromTheOriginAlongItsDatum) {
  Rig r;
  r.e->kind = Kind::kOrdinate;
  r.e->definitionPoint = {1, 1, 0};
  r.e->defPoint2 = {11, 4, 0};
  r.e->defPoint3 = {13, 20, 0};
  r.e->dimensionFlags = DimensionEntity::kOrdinateX;
  DimensionGraphics g = r.layout();
  EXPECT_DOUBLE_EQ(g.measurement, 10.0);
  EXPECT_TRUE(near(g.segments.front().start, 11, 4.5));
  EXPECT_TRUE(near(g.segments.back().end, 13, 20));
  r.e->dimensionFlags = 0;
  EXPECT_DOUBLE_EQ(r.layout().measurement, 3.0);
}

TEST(DimensionGeometry, DegenerateInputsGiveFiniteOrNoGeometry) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (int kind = 0; kind <= 8; ++kind) {
    for (double bad : {0.0, nan, 1e300, -1e300}) {
      Rig r;
      r.e->kind = Kind(kind);
      r.e->definitionPoint = {bad, bad, 0};
      r.e->defPoint2 = {bad, 0, 0};
      r.e->defPoint3 = {0, bad, 0};
      r.e->defPoint4 = {bad, bad, bad};
      r.e->rotation = bad;
      r.e->obliqueAngle = bad;
      r.style.arrowSize = bad;
      DimensionGraphics g = r.layout();  // must return; values may be non-finite, never endless
      EXPECT_LE(g.segments.size() + g.arrows.size() + g.arcs.size(), 12u) << kind;
    }
  }
}

}  // namespace
