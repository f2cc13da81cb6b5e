// A map outline made of thousands of short connected LINE segments, converted at the default size:
// every segment must reach the SVG where the drawing puts it, however short it is on the page.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

struct Segment {
  double x1, y1, x2, y2;
};

// A random walk: steps of 0.2 to 1.2 units turning a little each time, like a digitised coast.
std::vector<Segment> RandomWalk(int count) {
  std::vector<Segment> segments;
  uint64_t state = 12345;
  auto next = [&state] {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state >> 11) / static_cast<double>(1ULL << 53);
  };
  double x = 0, y = 0, heading = 0;
  for (int i = 0; i < count; ++i) {
    heading += (next() - 0.5) * 0.5;
    const double length = 0.2 + next();
    const double nx = x + length * std::cos(heading), ny = y + length * std::sin(heading);
    segments.push_back({x, y, nx, ny});
    x = nx;
    y = ny;
  }
  return segments;
}

std::string LinesDxf(const std::vector<Segment>& segments) {
  std::string dxf = "0\nSECTION\n2\nENTITIES\n";
  char line[256];
  for (const Segment& s : segments) {
    std::snprintf(line, sizeof line, "0\nLINE\n8\nCOAST\n10\n%.9g\n20\n%.9g\n30\n0\n11\n%.9g\n21\n%.9g\n31\n0\n", s.x1,
                  s.y1, s.x2, s.y2);
    dxf += line;
  }
  return dxf + "0\nENDSEC\n0\nEOF\n";
}

// The straight steps of every path's data, in SVG units (y down).
std::vector<Segment> PathSteps(const std::string& svg) {
  std::vector<Segment> steps;
  static const std::regex data(" d=\"([^\"]*)\"");
  static const std::regex token("([MLlHhVv])|(-?[0-9.]+(?:e[-+]?[0-9]+)?)");
  for (auto d = std::sregex_iterator(svg.begin(), svg.end(), data); d != std::sregex_iterator(); ++d) {
    const std::string path = (*d)[1];
    char command = 0;
    std::vector<double> numbers;
    double px = 0, py = 0;
    auto apply = [&] {
      const size_t need = (command == 'M' || command == 'L' || command == 'l') ? 2 : 1;
      if (numbers.size() < need) return;
      double x = px, y = py;
      switch (command) {
        case 'M': px = numbers[0]; py = numbers[1]; numbers.clear(); return;
        case 'L': x = numbers[0]; y = numbers[1]; break;
        case 'l': x += numbers[0]; y += numbers[1]; break;
        case 'H': x = numbers[0]; break;
        case 'h': x += numbers[0]; break;
        case 'V': y = numbers[0]; break;
        case 'v': y += numbers[0]; break;
      }
      steps.push_back({px, py, x, y});
      px = x;
      py = y;
      numbers.clear();
    };
    for (auto t = std::sregex_iterator(path.begin(), path.end(), token); t != std::sregex_iterator(); ++t) {
      if ((*t)[1].matched) {
        command = (*t)[1].str()[0];
      } else {
        numbers.push_back(std::stod((*t)[2].str()));
        apply();
      }
    }
  }
  return steps;
}

struct Box {
  double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
  void add(double x, double y) {
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
  }
};

TEST(ShortSegments, EveryLineOfAMapReachesTheSvgAtTheDefaultSize) {
  constexpr int kCount = 12000;
  const std::vector<Segment> world = RandomWalk(kCount);
  ScratchDirectory dir;
  std::ofstream(dir.path() / "map.dxf", std::ios::binary) << LinesDxf(world);
  const ProgramRun run = RunDm2020("map.dxf map.svg -Q", dir.path());
  ASSERT_EQ(run.status, 0) << run.out;
  const std::vector<Segment> svg = PathSteps(ReadWholeFile(dir.path() / "map.svg"));
  ASSERT_FALSE(svg.empty());

  // The view maps the drawing's box onto the box of what was written, with y turned down.
  Box worldBox, svgBox;
  for (const Segment& s : world) worldBox.add(s.x1, s.y1), worldBox.add(s.x2, s.y2);
  for (const Segment& s : svg) svgBox.add(s.x1, s.y1), svgBox.add(s.x2, s.y2);
  const double scale = (svgBox.maxX - svgBox.minX) / (worldBox.maxX - worldBox.minX);
  ASSERT_NEAR(scale, (svgBox.maxY - svgBox.minY) / (worldBox.maxY - worldBox.minY), scale * 1e-3);
  auto toSvg = [&](double x, double y) {
    return std::pair{svgBox.minX + (x - worldBox.minX) * scale, svgBox.maxY - (y - worldBox.minY) * scale};
  };

  // Written steps keyed by their start point on a coarse grid; a segment is found when a step
  // starting near its start ends near its end.
  const double tolerance = 0.02 + 2e-5 * (svgBox.maxX - svgBox.minX);
  const double cell = 4 * tolerance;
  std::multimap<std::pair<long, long>, const Segment*> byStart;
  for (const Segment& s : svg) byStart.emplace(std::pair{std::lround(s.x1 / cell), std::lround(s.y1 / cell)}, &s);
  int found = 0, shortOnes = 0;
  for (const Segment& s : world) {
    const auto [ax, ay] = toSvg(s.x1, s.y1);
    const auto [bx, by] = toSvg(s.x2, s.y2);
    if (std::hypot(bx - ax, by - ay) < 15.0) ++shortOnes;
    bool hit = false;
    for (long gx = std::lround(ax / cell) - 1; gx <= std::lround(ax / cell) + 1 && !hit; ++gx) {
      for (long gy = std::lround(ay / cell) - 1; gy <= std::lround(ay / cell) + 1 && !hit; ++gy) {
        auto [first, last] = byStart.equal_range({gx, gy});
        for (auto it = first; it != last && !hit; ++it) {
          const Segment& w = *it->second;
          hit = std::hypot(w.x1 - ax, w.y1 - ay) < tolerance && std::hypot(w.x2 - bx, w.y2 - by) < tolerance;
        }
      }
    }
    found += hit;
  }
  // The map must really be made of segments that are short on the page.
  EXPECT_GT(shortOnes, kCount / 2);
  EXPECT_EQ(found, kCount) << "segments written where the drawing puts them";
}

}  // namespace
