// Drawings saved in a 3D view come out as AutoCAD shows them: the corpus's 3D polyline in its
// isometric view, a wire cube in the active viewport's view, in named views (one cut by front and
// back clipping planes), and in a layout's tilted and clipped viewports.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

struct Point {
  double x, y;
};

// The point lists of the SVG's paths, one per move (absolute M, L, H and V commands).
std::vector<std::vector<Point>> PathPoints(const std::string& svg) {
  std::vector<std::vector<Point>> paths;
  for (size_t at = svg.find(" d=\""); at != std::string::npos; at = svg.find(" d=\"", at + 1)) {
    const size_t end = svg.find('"', at + 4);
    const std::string d = svg.substr(at + 4, end - at - 4);
    Point pen{0, 0};
    const char* p = d.c_str();
    char command = 'M';
    while (*p) {
      if (std::isalpha(static_cast<unsigned char>(*p))) command = *p++;
      if (command == 'M' || paths.empty()) paths.emplace_back();
      std::vector<Point>& points = paths.back();
      if (command == 'M') command = 'L';  // further pairs after a move draw lines
      char* next = nullptr;
      const double a = std::strtod(p, &next);
      if (next == p) break;
      p = next;
      if (command == 'H') {
        pen.x = a;
      } else if (command == 'V') {
        pen.y = a;
      } else {
        if (*p == ',') ++p;
        pen = {a, std::strtod(p, &next)};
        p = next;
      }
      points.push_back(pen);
    }
  }
  return paths;
}

// Isometric screen coordinates of a world point, seen from `direction` (no twist).
Point Project(const double direction[3], const double p[3]) {
  const double n = std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] + direction[2] * direction[2]);
  const double d[3] = {direction[0] / n, direction[1] / n, direction[2] / n};
  const double h = std::hypot(d[0], d[1]);
  const double x[3] = {-d[1] / h, d[0] / h, 0.0};  // world z × d
  const double y[3] = {d[1] * x[2] - d[2] * x[1], d[2] * x[0] - d[0] * x[2], d[0] * x[1] - d[1] * x[0]};
  return {p[0] * x[0] + p[1] * x[1] + p[2] * x[2], p[0] * y[0] + p[1] * y[1] + p[2] * y[2]};
}

// Points scaled to the width of their box, from its upper left corner; `flipY` turns a y that
// grows upward into the SVG's downward y.
std::vector<Point> Normalised(std::vector<Point> points, bool flipY) {
  double x0 = HUGE_VAL, x1 = -HUGE_VAL, y0 = HUGE_VAL, y1 = -HUGE_VAL;
  for (Point& p : points) {
    if (flipY) p.y = -p.y;
    x0 = std::min(x0, p.x), x1 = std::max(x1, p.x), y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
  }
  for (Point& p : points) p = {(p.x - x0) / (x1 - x0), (p.y - y0) / (x1 - x0)};
  return points;
}

fs::path Corpus(const std::string& relative) { return fs::path(DM_CORPUS_DIR) / relative; }
fs::path Drawings() { return fs::path(DM_SOURCE_DIR) / "tests" / "app" / "views"; }

std::string Convert(const fs::path& drawing, const std::string& options = "") {
  ScratchDirectory dir;
  fs::copy_file(drawing, dir.path() / drawing.filename());
  const std::string name = drawing.filename().string();
  const ProgramRun run = RunDm2020("'" + name + "' out.svg -SVG -B=-1 -Q " + options, dir.path());
  EXPECT_EQ(run.status, 0) << run.out;
  return fs::exists(dir.path() / "out.svg") ? ReadWholeFile(dir.path() / "out.svg") : std::string();
}

TEST(SavedViewOutput, CorpusPolylineComesOutInItsIsometricView) {
  // The polyline's vertices (its AutoCAD dump) and the direction of the saved view.
  const double vertices[6][3] = {{21.44093186298981, 14.6497577034202, 0}, {20.89622451010681, 5.653777530303565, 0},
                                 {29.83259799769592, 5.778660022470961, 0}, {33.66805024552166, 9.614112270296694, 0},
                                 {23.99712842510754, 9.614112270296694, 0}, {23.99712842510754, 15.21392686108845, 0}};
  const double southWest[3] = {-1, -1, 1};
  std::vector<Point> expected;
  for (const auto& v : vertices) expected.push_back(Project(southWest, v));
  expected = Normalised(expected, true);
  for (const char* file : {"dwg/2000/PolyLine3D.dwg", "dwg/2018/PolyLine3D.dwg"}) {
    SCOPED_TRACE(file);
    if (!fs::exists(Corpus(file))) GTEST_SKIP() << "no corpus";
    std::vector<std::vector<Point>> paths = PathPoints(Convert(Corpus(file)));
    ASSERT_EQ(paths.size(), 1u);
    ASSERT_EQ(paths[0].size(), expected.size());
    std::vector<Point> drawn = Normalised(paths[0], false);
    for (size_t i = 0; i < drawn.size(); ++i) {
      EXPECT_NEAR(drawn[i].x, expected[i].x, 1e-4) << i;
      EXPECT_NEAR(drawn[i].y, expected[i].y, 1e-4) << i;
    }
  }
}

// The SVG's width over its height, from its view box.
double PageAspect(const std::string& svg) {
  const size_t box = svg.find("viewBox=\"0 0 ");
  if (box == std::string::npos) return 0.0;
  char* next = nullptr;
  const double width = std::strtod(svg.c_str() + box + 13, &next);
  return width / std::strtod(next, nullptr);
}

// The paths drawn in red (the cube's space diagonal).
std::vector<std::vector<Point>> RedPaths(const std::string& svg) {
  std::vector<std::vector<Point>> paths;
  for (size_t at = svg.find("class=\"sClr_red"); at != std::string::npos; at = svg.find("class=\"sClr_red", at + 1)) {
    for (auto& path : PathPoints(svg.substr(at, svg.find("/>", at) - at))) paths.push_back(std::move(path));
  }
  return paths;
}

TEST(SavedViewOutput, CubeFillsThePageAsTheActiveViewSeesIt) {
  const std::string svg = Convert(Drawings() / "iso_box.dxf");
  // From the south-east the cube is a hexagon √2 · 10 wide and (4 / √6) · 10 high.
  EXPECT_NEAR(PageAspect(svg), (std::sqrt(2.0) * 10) / (40 / std::sqrt(6.0)), 0.01);
  // Its space diagonal runs up to the right at 30 degrees.
  std::vector<std::vector<Point>> diagonal = RedPaths(svg);
  ASSERT_FALSE(diagonal.empty());
  ASSERT_EQ(diagonal[0].size(), 2u);
  const Point a = diagonal[0][0], b = diagonal[0][1];
  EXPECT_NEAR(std::atan2(a.y - b.y, b.x - a.x) * 180 / M_PI, 30.0, 0.01);
}

TEST(SavedViewOutput, NamedViewsKeepTheirDirectionTwistAndClipping) {
  const fs::path drawing = Drawings() / "iso_box.dxf";
  // From the front the cube is a square, its diagonal one of the square's.
  const std::string front = Convert(drawing, "-VIEW=FRONT");
  EXPECT_NEAR(PageAspect(front), 1.0, 1e-6);
  std::vector<std::vector<Point>> frontPaths = RedPaths(front);
  ASSERT_FALSE(frontPaths.empty());
  EXPECT_GT(frontPaths[0][1].x, frontPaths[0][0].x);  // drawn from lower left to upper right
  EXPECT_LT(frontPaths[0][1].y, frontPaths[0][0].y);
  // Twisted a quarter turn, the plan's diagonal runs from lower right to upper left.
  const std::string twisted = Convert(drawing, "-VIEW=TWISTED");
  std::vector<std::vector<Point>> twistedPaths = RedPaths(twisted);
  ASSERT_FALSE(twistedPaths.empty());
  EXPECT_LT(twistedPaths[0][1].x, twistedPaths[0][0].x);
  EXPECT_LT(twistedPaths[0][1].y, twistedPaths[0][0].y);
  // Between the planes 3 in front of and behind the target, the front and back faces are cut
  // away and the diagonal keeps its middle 60%; the edges running along the sight are points.
  const std::string slice = Convert(drawing, "-VIEW=SLICE");
  EXPECT_EQ(slice.find("class=\"sClr_black"), std::string::npos);
  std::vector<std::vector<Point>> slicePaths = PathPoints(slice);
  ASSERT_EQ(slicePaths.size(), 1u);
  const std::vector<Point> cut = slicePaths[0];
  ASSERT_EQ(cut.size(), 2u);
  // Both views have the same field, so the same scale.
  const double wholeWidth = std::fabs(frontPaths[0][1].x - frontPaths[0][0].x);
  EXPECT_NEAR(std::fabs(cut[1].x - cut[0].x) / wholeWidth, 0.6, 1e-6);
  EXPECT_NEAR(std::fabs(cut[1].y - cut[0].y) / wholeWidth, 0.6, 1e-6);
}

TEST(SavedViewOutput, PerspectiveViewShrinksTheFarFace) {
  // A camera 30 from the cube's centre: the near face (25 away) and the far one (35 away) are
  // drawn in the ratio 35 : 25. Both are squares centred on the page.
  const std::string svg = Convert(Drawings() / "iso_box.dxf", "-VIEW=CAMERA");
  std::vector<double> widths;
  for (const auto& line : PathPoints(svg)) {
    if (line.size() == 2 && line[0].y == line[1].y) widths.push_back(std::fabs(line[1].x - line[0].x));
  }
  ASSERT_FALSE(widths.empty());
  const auto [narrow, wide] = std::minmax_element(widths.begin(), widths.end());
  EXPECT_NEAR(*wide / *narrow, 35.0 / 25.0, 1e-6);
}

TEST(SavedViewOutput, LayoutViewportsShowTheirOwnViews) {
  const std::string svg = Convert(Drawings() / "iso_layout.dxf", "-LAYOUT=Layout1");
  std::vector<std::vector<Point>> paths = PathPoints(svg);
  ASSERT_FALSE(paths.empty());
  // The isometric viewport's diagonal is at 30 degrees; the plan's and the degenerate one's at 45.
  size_t at30 = 0, at45 = 0;
  for (const auto& line : RedPaths(svg)) {
    if (line.size() != 2) continue;
    const double angle = std::fabs(std::atan2(line[0].y - line[1].y, line[1].x - line[0].x) * 180 / M_PI);
    if (std::fabs(angle - 30) < 0.01 || std::fabs(angle - 150) < 0.01) ++at30;
    if (std::fabs(angle - 45) < 0.01 || std::fabs(angle - 135) < 0.01) ++at45;
  }
  EXPECT_EQ(at30, 1u);
  EXPECT_EQ(at45, 2u);
}

}  // namespace
