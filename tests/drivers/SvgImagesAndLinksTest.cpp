// Embedded images with their clip paths, block groups, the hyperlink layer and the HTML page.
#include <FreeImage.h>

#include "drivers/svg/SvgBase64.h"
#include "tests/drivers/SvgDriverFixture.h"

namespace {

using svgtest::CountOf;
using svgtest::SvgDriverTest;

class SvgImagesAndLinks : public SvgDriverTest {
protected:
  // A small red raster in the given format.
  std::string MakeRaster(const std::string& name, FREE_IMAGE_FORMAT format) {
    FIBITMAP* bitmap = FreeImage_Allocate(4, 3, 24);
    RGBQUAD red{0, 0, 255, 0};
    for (unsigned y = 0; y < 3; ++y) {
      for (unsigned x = 0; x < 4; ++x) FreeImage_SetPixelColor(bitmap, x, y, &red);
    }
    std::string path = Path(name).string();
    EXPECT_TRUE(FreeImage_Save(format, bitmap, path.c_str(), 0));
    FreeImage_Unload(bitmap);
    return path;
  }
  DrvImage Image(const std::string& path, std::vector<OdGePoint2d> clip = {}, double rotation = 0) {
    DrvImage image;
    image.fileName = OdString(path);
    image.minX = 10;
    image.minY = 20;
    image.maxX = 50;
    image.maxY = 50;
    image.clipPoints = std::move(clip);
    image.rotation = rotation;
    return image;
  }
  std::string Finish() {
    std::string text = WrappedPending();
    EXPECT_EQ(svgtest::XmlTextProblems(text, "dm_svg_images.svg"), "") << text.substr(0, 3000);
    return text;
  }
};

TEST_F(SvgImagesAndLinks, ImagesEmbeddedAsPngWithClipPaths) {
  std::string png = MakeRaster("red.png", FIF_PNG);
  std::string bmp = MakeRaster("red.bmp", FIF_BMP);
  StartDirectOutput();
  svg().WriteImages({Image(png, {{10, 20}, {30, 40}}), Image(png, {{10, 20}, {30, 20}, {20, 40}}),
                     Image(bmp, {}, 30), Image(Path("missing.png").string()), Image(png, {{10, 20}, {30, 40}}, 15)});
  std::string text = Finish();
  std::string bytes = svgtest::ReadFile(png);
  std::string data;
  AppendBase64(data, bytes);
  EXPECT_NE(text.find("<clipPath id=\"Clip_1\">\n   <path d=\"M10,80h20v-20h-20v20\" />\n</clipPath>\n"
                      "<image x=\"10\" y=\"50\" width=\"40\" height=\"30\" xlink:href=\"data:image/png;base64," +
                      data + "\" clip-path=\"url(#Clip_1)\" />"),
            std::string::npos)
      << text.substr(0, 600);
  EXPECT_NE(text.find("<clipPath id=\"Clip_2\">\n   <path d=\"M10,80L30,80L20,60\" />"), std::string::npos);
  // The BMP is converted.
  EXPECT_NE(text.find("transform=\"rotate(-30 10 80)\" xlink:href=\"data:image/png;base64,iVBORw0KGgo"), std::string::npos);
  EXPECT_EQ(CountOf(text, "<image "), 4) << "the missing file is left out";
  EXPECT_EQ(CountOf(text, "<clipPath"), 3);
}

TEST_F(SvgImagesAndLinks, TurnedAndMirroredImagesCarryTheirClipAlong) {
  std::string png = MakeRaster("red.png", FIF_PNG);
  StartDirectOutput();
  DrvImage mirrored = Image(png, {{10, 20}, {30, 20}, {20, 0}});
  mirrored.mirrored = true;
  DrvImage turnedAndMirrored = Image(png, {}, 90);
  turnedAndMirrored.mirrored = true;
  // A quarter turn about the corner (10, 20): the clip rectangle from (10, 20) to (30, 40) lies
  // from (10, 20) to (30, 0) in the image's own coordinates.
  svg().WriteImages({Image(png, {{10, 20}, {30, 40}}, 90), mirrored, turnedAndMirrored, Image(png, {}, 29.6)});
  std::string text = Finish();
  EXPECT_NE(text.find("<clipPath id=\"Clip_1\">\n   <path d=\"M10,80h20v20h-20v-20\" />"), std::string::npos)
      << text.substr(0, 600);
  EXPECT_NE(text.find("height=\"30\" transform=\"rotate(-90 10 80)\" xlink:href"), std::string::npos);
  // Mirrored across the bottom edge (page y 80): the outline below the edge comes back above it.
  EXPECT_NE(text.find("<clipPath id=\"Clip_2\">\n   <path d=\"M10,80L30,80L20,60\" />"), std::string::npos);
  EXPECT_NE(text.find("height=\"30\" transform=\"matrix(1 0 0 -1 0 160)\" xlink:href"), std::string::npos);
  EXPECT_NE(text.find("transform=\"rotate(-90 10 80) matrix(1 0 0 -1 0 160)\""), std::string::npos);
  EXPECT_NE(text.find("transform=\"rotate(-30 10 80)\""), std::string::npos) << "whole degrees, rounded";
}

TEST_F(SvgImagesAndLinks, OnlyStretchedPicturesGiveUpTheirProportions) {
  std::string png = MakeRaster("red.png", FIF_PNG);
  StartDirectOutput();
  DrvImage even = Image(png);  // 40 by 30 for 4 by 3 pixels
  even.pixelWidth = 4;
  even.pixelHeight = 3;
  DrvImage stretched = even;
  stretched.maxX = 90;
  svg().WriteImages({even, stretched});
  std::string text = Finish();
  EXPECT_EQ(CountOf(text, "preserveAspectRatio=\"none\""), 1);
  EXPECT_NE(text.find("width=\"80\" height=\"30\" preserveAspectRatio=\"none\" xlink:href"), std::string::npos);
}

TEST_F(SvgImagesAndLinks, ImagesWithoutSizeAreReported) {
  std::string png = MakeRaster("red.png", FIF_PNG);
  SetTraceEnabled(true);
  StartDirectOutput();
  DrvImage flat = Image(png);
  flat.maxY = flat.minY;
  DrvImage thin = Image(png);
  thin.maxX = thin.minX + 0.05;
  testing::internal::CaptureStdout();
  svg().WriteImages({flat, thin});
  std::string said = testing::internal::GetCapturedStdout();
  EXPECT_EQ(CountOf(said, "Check Boundary Size"), 2);
  EXPECT_EQ(CountOf(Finish(), "<image "), 1);
}

TEST_F(SvgImagesAndLinks, BlockGroupsAreNumberedPerName) {
  StartDirectOutput();
  svg().OpenNodeGroup(L"DOOR", L"", "");
  svg().CloseNodeGroup(L"DOOR", false);
  svg().OpenNodeGroup(L"DOOR", L"", "2B");
  svg().CloseNodeGroup(L"DOOR", false);
  svg().OpenNodeGroup(L"TEXTNODE_1", L"", "");
  svg().CloseNodeGroup(L"TEXTNODE_1", false);
  svg().OpenNodeGroup(L"NODE_7", L"http://x.test/?a=1&b=\\U+00E9", "");
  svg().CloseNodeGroup(L"NODE_7", true);
  svg().OpenNodeGroup(L"A\"<B", L"", "");
  svg().CloseNodeGroup(L"A\"<B", false);
  std::string text = Finish();
  EXPECT_NE(text.find("<g class=\"DOOR\" id=\"Block_DOOR_1\">\n</g>\n"
                      "<g class=\"DOOR vtrl_block\" vtrl:handle='2B' id=\"Block_DOOR_2\">\n</g>\n"
                      "<a xlink:href=\"http://x.test/?a=1&amp;b=\\u00E9\" target=\"_blank\">\n</a>\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("id=\"Block_A&quot;&lt;B_3\""), std::string::npos);
}

TEST_F(SvgImagesAndLinks, BlocksThroughTheDriver) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  for (int i = 0; i < 2; ++i) {
    svg().BeginGroup(L"DOOR");
    Layer(L"Doors", 2);
    Polyline({{1.0 + i * 10, 1}, {5.0 + i * 10, 5}});
    svg().EndGroup(L"DOOR");
  }
  Layer(L"Doors", 2);
  Polyline({{50, 50}, {60, 60}});
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("<g class=\"DOOR\" id=\"Block_DOOR_1\">"), std::string::npos) << file;
  EXPECT_NE(file.find("<g class=\"DOOR\" id=\"Block_DOOR_2\">"), std::string::npos);
  EXPECT_LT(file.find("id=\"layer_Doors\""), file.find("Block_DOOR_1"));
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgImagesAndLinks, HyperlinkEntriesAndTheirLayer) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Rooms", 2);
  svg().SetHyperlink(L"http://a.test/?x=1&y=2", L"roomA", false);
  Polyline({{0, 0}, {10, 0}, {10, 10}});
  svg().ClearHyperlink();
  svg().SetHyperlink(L"http://b.test/var_eq_eq_id", L"", false);
  Polyline({{20, 0}, {30, 10}});
  svg().SetHyperlink(L"http://a.test/?x=1&y=2", L"again", false);  // the same entry as the first
  Polyline({{40, 0}, {50, 10}});
  svg().ClearHyperlink();
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  EXPECT_EQ(CountOf(file, "<g id=\"layer_URLs\">"), 1);
  EXPECT_EQ(CountOf(file, "xlink:href=\"http://a.test/?x=1&amp;y=2\""), 1) << file;
  // Two outlines make the first entry a block; the var_eq_eq_id link is one too.
  EXPECT_NE(file.find("<a xlink:href=\"http://a.test/?x=1&amp;y=2\" class=\"hyperlink cv-block\" id=\"roomA\" "
                      "data-uri=\"..\" target=\"_blank\">"),
            std::string::npos)
      << file;
  EXPECT_NE(file.find("<a xlink:href=\"http://b.test/var_eq_eq_id\" class=\"hyperlink cv-block\" data-uri=\"..\" "
                      "target=\"_blank\">"),
            std::string::npos);
  EXPECT_EQ(svgtest::XmlProblems(Path("plan.svg")), "");
}

TEST_F(SvgImagesAndLinks, OneOutlineLinkIsAnArea) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  Layer(L"Rooms", 2);
  svg().SetHyperlink(L"http://c.test/var_rm_rm_id", L"", false);
  Polyline({{0, 0}, {10, 0}, {10, 10}, {0, 0}});
  svg().ClearHyperlink();
  ASSERT_EQ(OutputView(), 1);
  std::string file = Written("plan.svg");
  std::size_t layer = file.find("<g id=\"layer_URLs\">");
  ASSERT_NE(layer, std::string::npos);
  std::string links = file.substr(layer);
  EXPECT_NE(links.find("<a xlink:href=\"http://c.test/var_rm_rm_id\" class=\"hyperlink cv-area\" data-uri=\"..\" "
                       "target=\"_blank\">\n<path id=\"cv_"),
            std::string::npos)
      << links;
  EXPECT_NE(links.find("opacity=\"1.\" d=\"M0,100h10v-10l-10,10 Z \"/>\n</a>"), std::string::npos) << links;
}

TEST_F(SvgImagesAndLinks, WrapperPageNamesTheWrittenLayers) {
  BeginView(L"Model", kViewModelSpace, 0, 0, 100, 100);
  for (const wchar_t* layer : {L"Walls", L"A B"}) {
    Layer(layer);
    Polyline({{1, 1}, {20, 9}});
  }
  ASSERT_EQ(OutputView(), 1);
  svg().WriteWrapperPage();
  std::string page = Written("plan.htm");
  // The page lies beside the SVG file and names it without its directory.
  EXPECT_NE(page.find("<title>plan</title>"), std::string::npos) << page;
  EXPECT_NE(page.find("\"layer_A_and_#x20;B\",\n\"layer_Walls\",\n\"All Off\","), std::string::npos) << page;
  EXPECT_NE(page.find("data=\"plan.svg\"/>"), std::string::npos) << page;
  std::string file = Written("plan.svg");
  EXPECT_NE(file.find("<g id=\"layer_A_and_#x20;B\""), std::string::npos);
}

}  // namespace
