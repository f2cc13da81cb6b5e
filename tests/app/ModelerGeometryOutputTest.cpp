// Solids end to end: a drawing whose model space holds nothing but a 3D solid (its ACIS data in
// the data storage section) converts to an SVG with the solid's edges in it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

TEST(ModelerGeometryOutput, SolidOnlyDrawingWritesItsEdges) {
  const fs::path drawing = fs::path(DM_CORPUS_DIR) / "real" / "netdxf" / "sampleOneSolid3D.dxf";
  if (!fs::exists(drawing)) GTEST_SKIP() << "no corpus at " << drawing;
  ScratchDirectory dir;
  fs::copy_file(drawing, dir.path() / "solid.dxf");
  const ProgramRun run = RunDm2020("solid.dxf solid.svg -SVG -B=-1", dir.path());
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  ASSERT_TRUE(fs::exists(dir.path() / "solid.svg")) << run.out;
  const std::string svg = ReadWholeFile(dir.path() / "solid.svg");
  // The box's twelve edges, whatever the elements that carry them.
  size_t ink = 0;
  for (const char* element : {"<path", "<line", "<polyline"}) {
    for (size_t at = svg.find(element); at != std::string::npos; at = svg.find(element, at + 1)) ++ink;
  }
  EXPECT_GE(ink, 1u) << svg.substr(0, 2000);
}
