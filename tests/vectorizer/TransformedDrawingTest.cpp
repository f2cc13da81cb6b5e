// Drawings whose block references scale, mirror, nest and clip their curves, raster images
// turned, mirrored, clipped and hidden, and TrueType texts in each alignment: vectorized into the
// recording driver and read back in world coordinates. The drawings are written by
// tools/make_transform_test_dxf.py and tools/make_ttf_text_dxf.py, one case per layer.
#include <FreeImage.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

#include "RecordingDriver.h"
#include "kit/dxf/DxfReader.h"
#include "kit/gi/OdGiTextStyle.h"
#include "kit/gi/StrokeFont.h"
#include "kit/gs/OdGsLayoutHelper.h"
#include "vectorizer/ExGsSimpleDevice.h"

namespace vectest {
namespace {

std::filesystem::path Drawing(const char* name) {
  return std::filesystem::path(DM_SOURCE_DIR) / "tests" / "vectorizer" / "drawings" / name;
}

class TransformedDrawingTest : public VectorizerTest {
protected:
  // Vectorizes the model space with the world window (-300, -300) .. (400, 300).
  void Vectorize(const std::filesystem::path& file, bool strokeAllText = false) {
    driver_ = &UseDriver();
    driver_->strokeAllText = strokeAllText;
    driver_->SetInputFileName(OdString(file.string().c_str()));
    driver_->SetOutputFileName(OdString((Scratch() / "out.svg").string().c_str()));
    db_ = readDxfFile(file.string());
    ASSERT_TRUE(db_);
    db_->setCurrentLayout(OdString(L"Model"));
    context_ = OdGiContextForDbDatabase::createObject();
    context_->setDatabase(db_.get());
    device_ = ExGsSimpleDevice::createObject(1);
    device_->setUserGiContext(context_.get());
    OdGsLayoutHelperPtr helper = OdDbGsManager::setupActiveLayoutViews(device_.get(), context_.get());
    ASSERT_TRUE(helper);
    helper->onSize(OdGsDCRect(0, 3000, 0, 2000));
    helper->activeView()->zoomExtents({-300, -300, 0}, {400, 300, 0});
    helper->update();
    ASSERT_TRUE(helper->activeView()->worldToDeviceMatrix().invert(deviceToWorld_));
  }
  OdGePoint2d World(const OdGePoint2d& p) const {
    return deviceToWorld_.transform(OdGePoint3d(p.x, p.y, 0.0)).to2d();
  }
  std::vector<OdGePoint2d> PolylinePoints(const wchar_t* layer) const {
    std::vector<OdGePoint2d> points;
    for (const DrvPolyline& line : driver_->OnLayer(OdString(layer), &DrvColorGroup::polylines)) {
      for (const OdGePoint2d& p : line.points) points.push_back(World(p));
    }
    return points;
  }
  template <class T>
  std::vector<T> On(const wchar_t* layer, std::vector<T> DrvColorGroup::*list) const {
    return driver_->OnLayer(OdString(layer), list);
  }
  // The one arc of a layer: its end points and the point halfway along it, in world coordinates.
  struct ArcPoints {
    std::set<std::pair<long, long>> ends;  // rounded to thousandths
    OdGePoint2d middle;
  };
  ArcPoints OnlyArc(const wchar_t* layer) const {
    std::vector<DrvArc> arcs = On(layer, &DrvColorGroup::arcs);
    EXPECT_EQ(arcs.size(), 1u) << "layer " << OdAnsiString(OdString(layer)).c_str();
    ArcPoints result;
    if (arcs.empty()) return result;
    const DrvArc& arc = arcs[0];
    double end = arc.endAngle;
    while (end < arc.startAngle) end += 360.0;
    double middle = (arc.startAngle + end) / 2 * kPi / 180;
    result.middle = World({arc.center.x + arc.radius * std::cos(middle), arc.center.y + arc.radius * std::sin(middle)});
    for (const OdGePoint2d& p : {arc.start, arc.end}) {
      OdGePoint2d w = World(p);
      result.ends.insert({std::lround(w.x * 1000), std::lround(w.y * 1000)});
    }
    return result;
  }

  RecordingDriver* driver_ = nullptr;

private:
  OdDbDatabasePtr db_;
  OdGiContextForDbDatabasePtr context_;
  OdSmartPtr<OdGsDevice> device_;
  OdGeMatrix3d deviceToWorld_;
};

std::set<std::pair<long, long>> Thousandths(std::initializer_list<OdGePoint2d> points) {
  std::set<std::pair<long, long>> result;
  for (const OdGePoint2d& p : points) result.insert({std::lround(p.x * 1000), std::lround(p.y * 1000)});
  return result;
}

void ExpectNear(const OdGePoint2d& actual, const OdGePoint2d& expected) {
  EXPECT_NEAR(actual.x, expected.x, 1e-6);
  EXPECT_NEAR(actual.y, expected.y, 1e-6);
}

// How far a point lies off the ellipse centred at c with these semi-axes along x and y.
double OffEllipse(const OdGePoint2d& p, const OdGePoint2d& c, double a, double b) {
  return std::fabs(std::hypot((p.x - c.x) / a, (p.y - c.y) / b) - 1.0);
}

TEST_F(TransformedDrawingTest, CirclesUnderNonUniformScalesBecomeEllipses) {
  Vectorize(Drawing("transformed_curves.dxf"));
  struct Case {
    const wchar_t* layer;
    OdGePoint2d center;
    double a, b;  // semi-axes along x and y
  };
  // The circle of radius 5 in a reference scaled (2, 1); and in a reference scaled (2, 1)
  // inside one scaled (1, 3) and turned a quarter.
  for (const Case& c : {Case{L"SCALED", {0, 0}, 10, 5}, Case{L"NESTED", {0, 100}, 15, 10}}) {
    SCOPED_TRACE(OdAnsiString(OdString(c.layer)).c_str());
    EXPECT_TRUE(On(c.layer, &DrvColorGroup::circles).empty()) << "not one round circle";
    std::vector<OdGePoint2d> points = PolylinePoints(c.layer);
    ASSERT_GE(points.size(), 16u);
    double minX = HUGE_VAL, maxX = -HUGE_VAL, minY = HUGE_VAL, maxY = -HUGE_VAL;
    for (const OdGePoint2d& p : points) {
      EXPECT_LT(OffEllipse(p, c.center, c.a, c.b), 1e-6) << p.x << ", " << p.y;
      minX = std::min(minX, p.x), maxX = std::max(maxX, p.x), minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
    }
    EXPECT_NEAR(maxX - minX, 2 * c.a, 0.02 * c.a);
    EXPECT_NEAR(maxY - minY, 2 * c.b, 0.02 * c.b);
  }
}

TEST_F(TransformedDrawingTest, MirroredAndExtrudedArcsKeepTheirEndsAndSide) {
  Vectorize(Drawing("transformed_curves.dxf"));
  const double d = 5 / std::sqrt(2.0);
  struct Case {
    const wchar_t* layer;
    OdGePoint2d start, end, middle;
  };
  const Case cases[] = {
      {L"PLAIN", {305, 0}, {300, 5}, {300 + d, d}},
      // The quarter from 0 to 90 degrees in a reference mirrored in x at (100, 0).
      {L"MIRRORED", {95, 0}, {100, 5}, {100 - d, d}},
      // The same quarter about (-200, 0) of a plane seen from below: x runs the other way.
      {L"EXTRUDED", {195, 0}, {200, 5}, {200 - d, d}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(OdAnsiString(OdString(c.layer)).c_str());
    ArcPoints arc = OnlyArc(c.layer);
    EXPECT_EQ(arc.ends, Thousandths({c.start, c.end}));
    EXPECT_NEAR(arc.middle.x, c.middle.x, 1e-6);
    EXPECT_NEAR(arc.middle.y, c.middle.y, 1e-6);
  }
}

TEST_F(TransformedDrawingTest, ClipBoundaryCutsTheCirclesOfAReference) {
  Vectorize(Drawing("transformed_curves.dxf"));
  // The scaled circle (an ellipse 10 by 5 about (0, -100)) inside (-6, -108) .. (8, -92).
  EXPECT_TRUE(On(L"CLIPPED", &DrvColorGroup::circles).empty());
  EXPECT_TRUE(On(L"CLIPPED", &DrvColorGroup::arcs).empty());
  std::vector<OdGePoint2d> points = PolylinePoints(L"CLIPPED");
  ASSERT_FALSE(points.empty());
  int onLeftEdge = 0, onRightEdge = 0;
  for (const OdGePoint2d& p : points) {
    EXPECT_GE(p.x, -6 - 1e-6);
    EXPECT_LE(p.x, 8 + 1e-6);
    EXPECT_LT(OffEllipse(p, {0, -100}, 10, 5), 0.02) << p.x << ", " << p.y;
    onLeftEdge += std::fabs(p.x + 6) < 1e-6;
    onRightEdge += std::fabs(p.x - 8) < 1e-6;
  }
  EXPECT_EQ(onLeftEdge, 2);
  EXPECT_EQ(onRightEdge, 2);
  // A clip switched off leaves its reference whole: the circle stays one.
  std::vector<DrvCircle> whole = On(L"CLIPOFF", &DrvColorGroup::circles);
  ASSERT_EQ(whole.size(), 1u);
  ExpectNear(World(whole[0].center), {100, -100});
}

// ---- Raster images ------------------------------------------------------------------------------

class RasterDrawingTest : public TransformedDrawingTest {
protected:
  void SetUp() override {
    std::filesystem::copy_file(Drawing("raster_images.dxf"), Scratch() / "raster_images.dxf");
    FIBITMAP* bitmap = FreeImage_Allocate(40, 20, 24);
    ASSERT_TRUE(FreeImage_Save(FIF_PNG, bitmap, (Scratch() / "pic.png").string().c_str(), 0));
    FreeImage_Unload(bitmap);
    Vectorize(Scratch() / "raster_images.dxf");
  }
  // The world point at (s, t) of the placed image's own width and height, as the writer turns
  // and mirrors it.
  OdGePoint2d Corner(const DrvImage& image, double s, double t) const {
    double w = (image.maxX - image.minX) * s, h = (image.maxY - image.minY) * t * (image.mirrored ? -1 : 1);
    double a = image.rotation * kPi / 180;
    return World({image.minX + w * std::cos(a) - h * std::sin(a), image.minY + w * std::sin(a) + h * std::cos(a)});
  }
  DrvImage OnlyImage(const wchar_t* layer) const {
    std::vector<DrvImage> images = On(layer, &DrvColorGroup::images);
    EXPECT_EQ(images.size(), 1u);
    return images.empty() ? DrvImage() : images[0];
  }
};

TEST_F(RasterDrawingTest, TurnedAndMirroredImagesPutTheirCornersWhereTheirVectorsSay) {
  struct Case {
    const wchar_t* layer;
    OdGePoint2d origin;
    OdGeVector2d across, up;  // the picture's bottom edge and left edge
    bool mirrored;
  };
  const double c = std::cos(kPi / 6), s = std::sin(kPi / 6);
  const Case cases[] = {
      {L"IMG_ROTATED", {0, 0}, {20 * c, 20 * s}, {-10 * s, 10 * c}, false},
      {L"IMG_MIRRORED", {100, 0}, {20, 0}, {0, -10}, true},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(OdAnsiString(OdString(k.layer)).c_str());
    DrvImage image = OnlyImage(k.layer);
    EXPECT_EQ(image.mirrored, k.mirrored);
    EXPECT_TRUE(image.clipPoints.empty());
    ExpectNear(Corner(image, 0, 0), k.origin);
    ExpectNear(Corner(image, 1, 0), k.origin + k.across);
    ExpectNear(Corner(image, 0, 1), k.origin + k.up);
  }
}

TEST_F(RasterDrawingTest, ClipOutlinesCutThePictureInItsFullFrame) {
  struct Case {
    const wchar_t* layer;
    OdGePoint2d origin;
    std::vector<OdGePoint2d> clip;  // world; two corners for a rectangle
  };
  const Case cases[] = {
      {L"IMG_POLYCLIP", {0, 100}, {{0, 110}, {20, 110}, {10, 100}}},
      {L"IMG_RECTCLIP", {100, 100}, {{105, 107.5}, {115, 102.5}}},
      {L"IMG_TURNEDCLIP", {200, 100}, {{190, 100}, {190, 120}, {200, 110}}},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(OdAnsiString(OdString(k.layer)).c_str());
    DrvImage image = OnlyImage(k.layer);
    ExpectNear(Corner(image, 0, 0), k.origin);
    // The picture keeps its whole frame (20 by 10), whatever part the clip leaves.
    EXPECT_NEAR(Corner(image, 1, 1).distanceTo(k.origin), std::hypot(20.0, 10.0), 1e-6);
    ASSERT_EQ(image.clipPoints.size(), k.clip.size());
    for (size_t i = 0; i < k.clip.size(); ++i) ExpectNear(World(image.clipPoints[i]), k.clip[i]);
  }
}

TEST_F(RasterDrawingTest, HiddenImageDrawsNothing) {
  EXPECT_TRUE(On(L"IMG_HIDDEN", &DrvColorGroup::images).empty());
  EXPECT_TRUE(On(L"IMG_HIDDEN", &DrvColorGroup::polylines).empty());
  EXPECT_EQ(driver_->Images().size(), 5u);
  EXPECT_TRUE(driver_->Polylines().empty()) << "shown pictures have no frame line";
}

// Written as text, each record starts where the run placed with Arial's widths starts; stroked,
// the glyph outlines end on the alignment point.
TEST_F(TransformedDrawingTest, TrueTypeTextsStartWhereArialsWidthsPlaceThem) {
  OdGiTextStyle arial;
  arial.setFileName(OdString(L"arial.ttf"));
  const double width = gi::measureText(arial, U"HAVE") * 10.0;
  ASSERT_GT(width, 30.0) << "Arial's HAVE is over three heights wide; the stroke font's is not";
  struct Case {
    const wchar_t* layer;
    OdGePoint2d start;   // of the run, where the record goes
    double inkRight;     // where the stroked glyphs end
  };
  const Case cases[] = {
      {L"LEFT", {0, 0}, width},
      {L"RIGHT", {100 - width, 50}, 100},
      {L"CENTER", {100 - width / 2, 100}, 100 + width / 2},
      {L"MIDDLE", {100 - width / 2, 195}, 100 + width / 2},
      {L"FIT", {0, 150}, 100},
      {L"TOP_RIGHT", {100 - width, 290}, 100},
  };
  Vectorize(Drawing("truetype_texts.dxf"));
  for (const Case& c : cases) {
    SCOPED_TRACE(OdAnsiString(OdString(c.layer)).c_str());
    std::vector<DrvText> texts;
    for (const DrvText& t : driver_->Texts()) {
      if (t.layerName == OdString(c.layer)) texts.push_back(t);
    }
    ASSERT_EQ(texts.size(), 1u);
    OdGePoint2d start = World(texts[0].position);
    EXPECT_NEAR(start.x, c.start.x, 1e-6);
    EXPECT_NEAR(start.y, c.start.y, 1e-6);
  }
  Vectorize(Drawing("truetype_texts.dxf"), true);
  EXPECT_TRUE(driver_->Texts().empty());
  for (const Case& c : cases) {
    SCOPED_TRACE(OdAnsiString(OdString(c.layer)).c_str());
    std::vector<OdGePoint2d> points = PolylinePoints(c.layer);
    ASSERT_FALSE(points.empty());
    double right = -HUGE_VAL, top = -HUGE_VAL, bottom = HUGE_VAL;
    for (const OdGePoint2d& p : points) {
      right = std::max(right, p.x);
      top = std::max(top, p.y);
      bottom = std::min(bottom, p.y);
    }
    EXPECT_NEAR(right, c.inkRight, 1e-6);
    EXPECT_NEAR(top - bottom, 10.0, 1e-6) << "cap height";
  }
}

}  // namespace
}  // namespace vectest
