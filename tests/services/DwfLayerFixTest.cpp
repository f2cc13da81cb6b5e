// The repair of nameless layers in ASCII DWF files before their import.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "services/DwfLayerFix.h"

namespace fs = std::filesystem;

namespace {

class DwfLayerFix : public ::testing::Test {
protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("dm_dwffix_" + std::to_string(getpid()));
    fs::remove_all(root_);
    fs::create_directories(root_);
    saved_ = std::cout.rdbuf(out_.rdbuf());
  }
  void TearDown() override {
    std::cout.rdbuf(saved_);
    fs::remove_all(root_);
  }
  std::string Input(const std::string& text) {
    std::ofstream(root_ / "in.dwf", std::ios::binary) << text;
    return (root_ / "in.dwf").string();
  }
  std::string Output() const { return (root_ / "out.dwf").string(); }
  std::string Written() const {
    std::ifstream in(Output(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  fs::path root_;
  std::ostringstream out_;
  std::streambuf* saved_ = nullptr;
};

TEST_F(DwfLayerFix, RenamesNamelessLayersWhereverTheirRecordOccurs) {
  struct Case {
    const char* input;
    const char* output;  // empty: no repair, nothing written
  };
  const Case cases[] = {
      {"(DWF V00.55)(Layer 3 '')L 0,0 1,1(Layer 4 'Walls')(Layer 3 '')E",
       "(DWF V00.55)(Layer 3 'Layer_3')L 0,0 1,1(Layer 4 'Walls')(Layer 3 'Layer_3')E"},
      {"(DWF V00.55)\n(Layer  7   \"\" )\n", "(DWF V00.55)\n(Layer 7 'Layer_7')\n"},
      {"(DWF V00.55)(Layer 2 '')(Layer 5 \"\")", "(DWF V00.55)(Layer 2 'Layer_2')(Layer 5 'Layer_5')"},
      {"(DWF V00.55)(Layer 4 'Walls')(Layer 4)", ""},
      {"(DWF V00.55)(Layer 4 '' extra)", ""},   // not a three-field record
      {"(DWF V00.55)(Layer 4 ''", ""},          // no closing parenthesis
      {"(DWF V06.00)(Layer 3 '')", ""},         // only the ASCII format is handled
      {"", ""},
  };
  for (const Case& c : cases) {
    fs::remove(Output());
    const bool fixed = FixDwfLayers(Input(c.input), Output(), true, false);
    EXPECT_EQ(fixed, *c.output != '\0') << c.input;
    EXPECT_EQ(fs::exists(Output()), fixed) << c.input;
    if (fixed) {
      EXPECT_EQ(Written(), c.output) << c.input;
    }
  }
  EXPECT_EQ(out_.str(), "");  // quiet
}

TEST_F(DwfLayerFix, SaysWhatItReplacesUnlessQuiet) {
  ASSERT_TRUE(FixDwfLayers(Input("(DWF V00.55)(Layer 3 '')(Layer 3 '')"), Output(), false, false));
  EXPECT_EQ(out_.str(), "Replacing \"(Layer 3 '')\" with \"(Layer 3 'Layer_3')\"\n");
}

TEST_F(DwfLayerFix, RefusesMissingInputAndExistingOutput) {
  EXPECT_FALSE(FixDwfLayers((root_ / "none.dwf").string(), Output(), true, false));
  EXPECT_NE(out_.str().find("Could not open input DWF file: "), std::string::npos);

  const std::string input = Input("(DWF V00.55)(Layer 3 '')");
  std::ofstream(Output()) << "keep";
  out_.str("");
  EXPECT_FALSE(FixDwfLayers(input, Output(), true, false));
  EXPECT_EQ(out_.str(), "Output File Exists but -over[write] parameter was not defined\nProgram terminating\n");
  EXPECT_EQ(Written(), "keep");
  EXPECT_TRUE(FixDwfLayers(input, Output(), true, true));
  EXPECT_EQ(Written(), "(DWF V00.55)(Layer 3 'Layer_3')");

  out_.str("");
  EXPECT_FALSE(FixDwfLayers(input, (root_ / "no/such/dir/out.dwf").string(), true, true));
  EXPECT_NE(out_.str().find("Could not open output DWF file: "), std::string::npos);
}

}  // namespace
