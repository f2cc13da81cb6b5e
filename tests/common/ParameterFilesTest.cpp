// The workspace file and the JSON parameter file, written to a temporary folder: what they add,
// their messages where they have one, silence where they have none, and no crash on bad input.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/common/ParameterTestSupport.h"

using parameter_test::ParseCapturing;
using parameter_test::Utf8;

namespace {

class ParameterFiles : public testing::Test {
protected:
  void SetUp() override {
    char pattern[] = "/tmp/dm_params_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    dir_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Write(const std::string& name, const std::string& content) {
    std::string path = dir_ + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  // Reads the workspace file as the entry does after parsing; returns what was printed.
  std::string ReadWorkspace(CParseCommandLine& p) {
    ResetPrintedMessages();
    testing::internal::CaptureStdout();
    p.ReadWorkspaceFile();
    return testing::internal::GetCapturedStdout();
  }

  std::string dir_;
};

const std::string kPlaceholder = "MS_RFDIR > (your server path)\\";

// ---- Workspace file ------------------------------------------------------------------------------

TEST_F(ParameterFiles, WorkspaceLinesAddServerDirectoriesToTheXrefPath) {
  std::string file = Write("site.txt", "# server folders\n" + kPlaceholder + "xrefs/site\n\n  " + kPlaceholder +
                                           "common\r\nlocal/only\n");
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-SPATH=/srv/cad/", "-XPATH=/x", "-WKSP=" + file});
  EXPECT_EQ(ReadWorkspace(p), "Add to XREF Path: /srv/cad/xrefs/site\nAdd to XREF Path: /srv/cad/common\n");
  EXPECT_EQ(Utf8(p.GetXrefPath()), "/x/;/srv/cad/xrefs/site;/srv/cad/common");
}

TEST_F(ParameterFiles, WorkspacePlaceholderIsReplacedWhereverItStands) {
  // The server path from a JSON file gets no separator on reading; the workspace reader adds one.
  std::string file = Write("site.txt", "pre " + kPlaceholder + "a " + kPlaceholder + "b\n");
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-JSON={\"General\":{\"ServerPath\":\"/srv\"}}", "-WKSP=" + file});
  ReadWorkspace(p);
  EXPECT_EQ(Utf8(p.GetXrefPath()), ";pre " + kPlaceholder + "a /srv/b");
}

TEST_F(ParameterFiles, WorkspaceAddsNothingWithoutServerPathOrWithOnlyComments) {
  std::string comments = Write("comments.txt", "# one\n   # two\n\n");
  std::string lines = Write("lines.txt", kPlaceholder + "xrefs\n");
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-SPATH=/srv", "-WKSP=" + comments});
  EXPECT_EQ(ReadWorkspace(p), "");
  EXPECT_TRUE(p.IsXrefPathEmpty());

  CParseCommandLine q;
  ParseCapturing(q, {"a.dwg", "-WKSP=" + lines});
  EXPECT_EQ(ReadWorkspace(q), "");
  EXPECT_TRUE(q.IsXrefPathEmpty());

  CParseCommandLine r;  // no workspace file named
  EXPECT_EQ(ReadWorkspace(r), "");
}

TEST_F(ParameterFiles, UnreadableWorkspaceFilesAreReportedAndTheRunGoesOn) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-SPATH=/srv", "-WKSP=" + dir_ + "/missing.txt"});
  EXPECT_EQ(ReadWorkspace(p), "Error Opening Workspace File: " + dir_ + "/missing.txt\n");

  CParseCommandLine q;  // a folder opens but cannot be read
  ParseCapturing(q, {"a.dwg", "-SPATH=/srv", "-WKSP=" + dir_});
  std::string out = ReadWorkspace(q);
  EXPECT_TRUE(out == "Error Opening Workspace File: " + dir_ + "\n" ||
              out == "Error while reading workspace file: " + dir_ + "\n")
      << out;
  EXPECT_TRUE(q.IsXrefPathEmpty());
}

// ---- JSON parameter file ---------------------------------------------------------------------------

TEST_F(ParameterFiles, JsonTextOnTheCommandLine) {
  CParseCommandLine p;
  ParseCapturing(p, {"-JSON={\"General\":{\"InputFile\":\"j.dwg\",\"View\":\"Plan\",\"format\":\"PDF\"}}"});
  EXPECT_EQ(Utf8(p.GetInputFile()), "j.dwg");
  EXPECT_EQ(Utf8(p.GetViewName()), "*Plan*");
  EXPECT_EQ(p.GetOutputFormat(), 1007);
  EXPECT_EQ(Utf8(p.GetOutputFile()), "j.pdf");  // derived after the parameters
  EXPECT_EQ(p.GetJSONFile(), "{\"General\":{\"InputFile\":\"j.dwg\",\"View\":\"Plan\",\"format\":\"PDF\"}}");
}

TEST_F(ParameterFiles, JsonGeneralSettingsFromAFileWithLeadingText) {
  std::string file = Write("p.json",
                           "settings follow\n{ \"GENERAL\": { \"OutputFile\": \"o.svg\", \"WorkspaceFile\": \"w.txt\",\n"
                           "  \"Format\": \"svg\", \"Fontpath\": \"C:\\fonts\", \"XrefPath\": \"x\",\n"
                           "  \"Layout\": \"Sheet\", \"View\": \"*ALL*\", \"Unknown\": \"?\" } } trailing");
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-JSON=" + file});
  EXPECT_EQ(Utf8(p.GetOutputFile()), "o.svg");
  EXPECT_EQ(Utf8(p.GetWorkspaceFile()), "w.txt");
  EXPECT_EQ(p.GetOutputFormat(), 1016);
  EXPECT_DOUBLE_EQ(p.GetMinLineWidth(), 0.6);
  EXPECT_EQ(Utf8(p.GetFontPath()), "C:\\fonts");  // single backslashes survive, no separator added
  EXPECT_EQ(Utf8(p.GetXrefPath()), "x");
  EXPECT_EQ(Utf8(p.GetLayoutName()), "Sheet");
  EXPECT_EQ(Utf8(p.GetViewName()), "*ALL*");
}

TEST_F(ParameterFiles, JsonBlocksAreRecordedAndTheirAttributesListed) {
  std::string file = Write("b.json", R"({"Blocks": [
      {"Blockname": "Door", "Handle": "1F3", "Attributes": [{"tag": "NO", "value": "101"}, {"Tag": "W"}]},
      {"blockname": "Winé", "Handle": "\u0041"}]})");
  CParseCommandLine p;
  std::string out = ParseCapturing(p, {"a.dwg", "-JSON=" + file});
  EXPECT_EQ(out, "tag : NO\nvalue : 101\nTag : W\n");
  ASSERT_TRUE(p.HasWorkspaceBlocks());
  const auto& blocks = p.GetWorkspaceBlocks();
  ASSERT_EQ(blocks.size(), 2u);
  EXPECT_EQ(blocks[0].blockName, "Door");
  EXPECT_EQ(blocks[0].handle, "1F3");
  ASSERT_EQ(blocks[0].attributes.size(), 2u);
  EXPECT_EQ(blocks[0].attributes[0], std::make_pair(std::string("NO"), std::string("101")));
  EXPECT_EQ(blocks[0].attributes[1], std::make_pair(std::string("W"), std::string()));
  EXPECT_EQ(blocks[1].blockName, "Win\xC3\xA9");
  // Backslashes are doubled before parsing (for Windows paths), so escapes stay as written.
  EXPECT_EQ(blocks[1].handle, "\\u0041");
  EXPECT_TRUE(blocks[1].attributes.empty());
}

TEST_F(ParameterFiles, JsonLayerStatesJoinTheLayerLists) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-RL=R0", "-JSON=" + Write("l.json", R"({"Layers": {"Walls": "Off", "Doors": "off",
      "Grid": "On", "Rooms": "RL", "Labels": "tl", "Other": "maybe"}})")});
  EXPECT_EQ(Utf8(p.GetLayersOff()), "Walls;Doors");
  EXPECT_EQ(Utf8(p.GetLayersOn()), "Grid");
  EXPECT_EQ(Utf8(p.GetRLayers()), "R0;Rooms");
  EXPECT_EQ(Utf8(p.GetTLayers()), "Labels");

  CParseCommandLine q;  // whole lists at once
  ParseCapturing(q, {"a.dwg", "-LAYERS_OFF=X", "-JSON=" + Write("w.json", R"({"Layers": {"Off": "A;B", "On": ["C", "D"]}})")});
  EXPECT_EQ(Utf8(q.GetLayersOff()), "A;B");
  EXPECT_EQ(Utf8(q.GetLayersOn()), "C;D");

  CParseCommandLine r;  // an array of named states
  ParseCapturing(r, {"a.dwg", "-JSON=" + Write("a.json", R"({"Layers": [{"Name": "A", "State": "Off"}, {"B": "On"}, 7]})")});
  EXPECT_EQ(Utf8(r.GetLayersOff()), "A");
  EXPECT_EQ(Utf8(r.GetLayersOn()), "B");
}

TEST_F(ParameterFiles, JsonVariablesAreKeptInOrder) {
  CParseCommandLine p;
  ParseCapturing(p, {"a.dwg", "-JSON=" + Write("v.json", R"({"Variables": [{"prefix": "$A", "value": "1"},
      {"Prefix": "$B", "Value": "two"}, {"prefix": "$C"}, "x"]})")});
  const auto& variables = p.GetVariables();
  ASSERT_EQ(variables.size(), 2u);
  EXPECT_EQ(variables[0].prefix, "$A");
  EXPECT_EQ(variables[0].value, "1");
  EXPECT_EQ(variables[1].prefix, "$B");
  EXPECT_EQ(variables[1].value, "two");
}

TEST_F(ParameterFiles, UnreadableJsonIsIgnoredSilently) {
  const std::string deep = std::string(200000, '[') + std::string(200000, ']');
  const std::vector<std::string> values = {
      dir_ + "/missing.json",
      dir_,  // a folder
      Write("empty.json", ""),
      Write("broken.json", "{\"General\": {\"View\": \"Plan\""),
      Write("notjson.json", "{General: View}"),
      Write("deep.json", deep),
      "[1, 2, 3]",
  };
  for (const std::string& value : values) {
    CParseCommandLine p;
    std::string out = ParseCapturing(p, {"a.dwg", "-JSON=" + value});
    EXPECT_EQ(out, "") << value;
    EXPECT_TRUE(p.IsViewNameEmpty()) << value;
    EXPECT_EQ(Utf8(p.GetInputFile()), "a.dwg") << value;
  }
}

// Each entry of the wrong type costs one line naming it; everything else in the file still counts.
TEST_F(ParameterFiles, JsonEntriesOfTheWrongTypeAreNamedAndLeftOut) {
  struct Case {
    std::string json, printed;
  };
  const std::vector<Case> cases = {
      {R"({"General": [1], "Blocks": {"a": 1}, "Layers": 5, "Variables": {"x": 1}})",
       "JSON Parameter Ignored: General is not an object\nJSON Parameter Ignored: Blocks is not an array\n"
       "JSON Parameter Ignored: Layers is not an object or an array\n"
       "JSON Parameter Ignored: Variables is not an array\n"},
      {R"({"General": {"View": 5, "InputFile": null, "Format": ["SVG"]}})",
       "JSON Parameter Ignored: General.View is not a text\nJSON Parameter Ignored: General.InputFile is not a text\n"
       "JSON Parameter Ignored: General.Format is not a text\n"},
      {R"({"Layers": [7, {"Walls": 1}], "Variables": [{"prefix": 2, "value": "v"}]})",
       "JSON Parameter Ignored: Layers[0] is not an object\nJSON Parameter Ignored: Layers[1].Walls is not a text\n"
       "JSON Parameter Ignored: Variables[0].prefix is not a text\n"},
      {R"({"Layers": {"Off": ["A", 3, "B"], "On": {"C": 1}}})",
       "JSON Parameter Ignored: Layers.Off[1] is not a text\nJSON Parameter Ignored: Layers.On is not a text\n"},
  };
  for (const Case& c : cases) {
    CParseCommandLine p;
    EXPECT_EQ(ParseCapturing(p, {"a.dwg", "-JSON=" + Write("t.json", c.json)}), c.printed) << c.json;
    EXPECT_TRUE(p.IsViewNameEmpty()) << c.json;
    EXPECT_EQ(Utf8(p.GetInputFile()), "a.dwg") << c.json;
    EXPECT_EQ(p.GetOutputFormat(), 1016) << c.json;
  }
}

TEST_F(ParameterFiles, JsonBlockThatIsNotAnObjectIsLeftOutAndTheOthersKept) {
  std::string file = Write("bad.json", R"({"Blocks": ["Door", {"Blockname": "Win", "Handle": 4,
      "Attributes": [3, {"tag": "NO", "value": 7}]}], "General": {"View": "Plan"}})");
  CParseCommandLine p;
  std::string out = ParseCapturing(p, {"a.dwg", "-JSON=" + file});
  EXPECT_EQ(out,
            "JSON Parameter Ignored: Blocks[0] is not an object\n"
            "JSON Parameter Ignored: Blocks[1].Handle is not a text\n"
            "JSON Parameter Ignored: Blocks[1].Attributes[0] is not an object\n"
            "tag : NO\n"
            "JSON Parameter Ignored: Blocks[1].Attributes[1].value is not a text\n");
  ASSERT_EQ(p.GetWorkspaceBlocks().size(), 1u);
  EXPECT_EQ(p.GetWorkspaceBlocks()[0].blockName, "Win");
  ASSERT_EQ(p.GetWorkspaceBlocks()[0].attributes.size(), 1u);
  EXPECT_EQ(p.GetWorkspaceBlocks()[0].attributes[0].first, "NO");
  EXPECT_EQ(Utf8(p.GetViewName()), "*Plan*");
}

}  // namespace
