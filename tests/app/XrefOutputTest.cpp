// External references end to end: the program draws referenced drawings into the SVG under
// "block|layer" layers, leaves out what the host froze and what overlays do not carry, tells the
// viewer the state of every such layer, says once that a reference is missing, and converts
// drawings whose references loop.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "tests/app/RunProgram.h"

namespace fs = std::filesystem;

namespace {

const char* const kPython = "/usr/bin/python3";

size_t Count(const std::string& text, const std::string& what) {
  size_t count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++count;
  return count;
}

// The layer attribute of a "block|layer" layer: the output escapes the "|" as it does in every
// layer name.
std::string LayerAttribute(const std::string& block, const std::string& layer) {
  return "vtrl:layerName=\"" + block + "_and_#x7c;" + layer + "\"";
}

bool WriteDrawings(const fs::path& directory) {
  const std::string probe = std::string(kPython) + " -c 'import ezdxf' >/dev/null 2>&1";
  if (std::system(probe.c_str()) != 0) return false;
  const fs::path script = fs::path(DM_TESTS_DIR) / "kit" / "xref_drawings.py";
  const std::string command = std::string(kPython) + " '" + script.string() + "' '" + directory.string() + "'";
  return std::system(command.c_str()) == 0;
}

TEST(XrefOutput, ReferencesAreDrawnOnTheirDependentLayersAndAMissingOneIsTracedOnce) {
  ScratchDirectory dir;
  if (!WriteDrawings(dir.path())) GTEST_SKIP() << "python3-ezdxf is needed to write the test drawings";
  const ProgramRun run = RunDm2020("host.dxf host.svg -SVG -B=-1 -TRACE", dir.path());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Count(run.out, "Warning: External reference"), 1u) << run.out;
  EXPECT_EQ(Count(run.out, "Warning: External reference \"GONE\" not found: missing/absent.dxf\n"), 1u);
  const std::string svg = ReadWholeFile(dir.path() / "host.svg");
  ASSERT_FALSE(svg.empty());
  EXPECT_EQ(Count(svg, "vtrl:layerName=\"HOST\""), 1u);
  for (const auto& [block, layer] : {std::pair{"ROOM", "FURNITURE"}, {"CHAIR", "SEAT"}, {"NOTESOV", "NOTE"},
                                     {"ROOMCOPY", "DOORS"}}) {
    EXPECT_EQ(Count(svg, LayerAttribute(block, layer)), 1u) << block << "|" << layer;
  }
  // Frozen by the host, frozen in the reference, not carried: no group at all.
  for (const auto& [block, layer] : {std::pair{"ROOM", "DOORS"}, {"ROOM", "FROZEN"}, {"NOTES", "NOTE"}}) {
    EXPECT_EQ(Count(svg, LayerAttribute(block, layer)), 0u) << block << "|" << layer;
  }
  // What is drawn where is the kit's tests' concern; here the texts show that it reaches the file.
  EXPECT_EQ(Count(svg, "HOSTTEXT"), 1u);
  EXPECT_EQ(Count(svg, "CHAIRTEXT"), 2u);
  EXPECT_EQ(Count(svg, "FROZENTEXT"), 0u);
}

TEST(XrefOutput, WithAllLayersTheViewerLearnsEachDependentLayersState) {
  ScratchDirectory dir;
  if (!WriteDrawings(dir.path())) GTEST_SKIP() << "python3-ezdxf is needed to write the test drawings";
  const ProgramRun run = RunDm2020("host.dxf host.svg -SVG -B=-1 -ALLLAYERS", dir.path());
  EXPECT_EQ(run.status, 0);
  const std::string svg = ReadWholeFile(dir.path() / "host.svg");
  struct Case {
    const char* block;
    const char* layer;
    const char* status;
  };
  // ROOM|DOORS is frozen by the host's own record; the rest as the room drawing has them.
  const Case cases[] = {
      {"ROOM", "DOORS", "FROZEN"}, {"ROOMCOPY", "DOORS", "ON"}, {"ROOM", "FROZEN", "FROZEN"},
      {"ROOM", "OFF", "OFF"},      {"ROOM", "FURNITURE", "ON"}, {"CHAIR", "SEAT", "ON"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Count(svg, LayerAttribute(c.block, c.layer) + " vtrl:status=\"" + c.status + "\""), 1u)
        << c.block << "|" << c.layer;
  }
  EXPECT_EQ(Count(svg, "FROZENTEXT"), 2u);  // drawn, for the viewer to show on demand
}

TEST(XrefOutput, ReferencesThatLoopAreFollowedOnce) {
  ScratchDirectory dir;
  if (!WriteDrawings(dir.path())) GTEST_SKIP() << "python3-ezdxf is needed to write the test drawings";
  const ProgramRun run = RunDm2020("loop_a.dxf loop.svg -SVG -B=-1", dir.path());
  EXPECT_EQ(run.status, 0);
  const std::string svg = ReadWholeFile(dir.path() / "loop.svg");
  EXPECT_EQ(Count(svg, "ATEXT"), 1u);
  EXPECT_EQ(Count(svg, "BTEXT"), 1u);
  EXPECT_EQ(Count(svg, LayerAttribute("LOOPB", "B")), 1u);
}

}  // namespace
