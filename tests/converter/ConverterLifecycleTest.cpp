// The converter's state machine and dispatch: what a run prints and returns at each step.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <iostream>
#include <sstream>

#include "converter/CDm2017.h"

namespace fs = std::filesystem;

namespace {

const OdString kSample(std::string(DM_SOURCE_DIR "/samples/office.dxf"));

// Captures standard output for the life of the object.
class CapturedOutput {
public:
  CapturedOutput() : saved_(std::cout.rdbuf(text_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(saved_); }
  std::string text() const { return text_.str(); }

private:
  std::ostringstream text_;
  std::streambuf* saved_;
};

TEST(ConverterDispatch, RefusesToStartUntilReadyAndLoaded) {
  CDm2017 converter;
  EXPECT_EQ(converter.StartConversion(), -666);
  converter.ready = true;
  CapturedOutput out;
  EXPECT_EQ(converter.StartConversion(), -667);
  EXPECT_NE(out.text().find("No valid Input File\n"), std::string::npos);
}

TEST(ConverterDispatch, FormatsWithoutARouteAreRejected) {
  // TIFF has a file extension but no route; JS passes the dispatch and fails in the vector path.
  for (int format : {2003, 2102, 1020, 4711}) {
    CDm2017 converter;
    converter.ready = true;
    converter.SetOutputFile(OdString(L"x.out"));
    converter.SetOutputFormat(format);
    ASSERT_EQ(converter.ReadInputFile(kSample), 0);
    CapturedOutput out;
    EXPECT_EQ(converter.StartConversion(), -1000) << format;
    EXPECT_NE(out.text().find("Unsupported Output Format\n"), std::string::npos) << format;
    converter.EndConversion();
  }
}

TEST(ConverterDispatch, DxfInputToDxfOutputIsRefused) {
  const fs::path target = fs::temp_directory_path() / ("dm_conv_" + std::to_string(getpid()) + ".dxf");
  CDm2017 converter;
  converter.ready = true;
  converter.SetOutputFile(OdString(target.string()));
  converter.SetOutputFormat(1014);
  ASSERT_EQ(converter.ReadInputFile(kSample), 0);
  CapturedOutput out;
  EXPECT_EQ(converter.StartConversion(), -1002);
  EXPECT_NE(out.text().find("Input and Output Formats must differ\n"), std::string::npos);
  EXPECT_FALSE(fs::exists(target));
  converter.EndConversion();
}

TEST(ConverterInput, KindsByExtension) {
  CDm2017 converter;
  CapturedOutput out;
  EXPECT_EQ(converter.ReadInputFile(OdString(L"plan.xyz")), -1001);
  EXPECT_EQ(converter.ReadInputFile(OdString(L"a.b")), -1001);  // too short for an extension
  EXPECT_EQ(out.text(), "");
}

TEST(ConverterInput, DamagedDrawingEndsWithKitErrorAndNoDatabase) {
  const fs::path junk = fs::temp_directory_path() / ("dm_conv_" + std::to_string(getpid()) + ".dwg");
  { std::ofstream(junk) << "not a drawing"; }
  CDm2017 converter;
  converter.ready = true;
  CapturedOutput out;
  EXPECT_EQ(converter.ReadInputFile(OdString(junk.string())), 0);
  EXPECT_NE(out.text().find("Teigha Error: "), std::string::npos);
  EXPECT_EQ(converter.StartConversion(), -667);
  fs::remove(junk);
}

TEST(ConverterInput, CollectsViewsAndUpperCaseLayoutNames) {
  CDm2017 converter;
  ASSERT_EQ(converter.ReadInputFile(kSample), 0);
  EXPECT_TRUE(converter.GetLayoutNames().count(OdString(L"MODEL")));
  EXPECT_TRUE(converter.GetLayoutNames().count(OdString(L"LAYOUT1")));
  converter.EndConversion();
}

TEST(ConverterSettings, UnitsAndLayerLists) {
  CDm2017 converter;
  const double factors[] = {1.0, 1.0, 1.0 / 12, 1.0 / 36, 1.0, 25.4, 2.54, 0.0254};
  for (int unit = 0; unit < 8; ++unit) {
    converter.SetUnits(unit);
    EXPECT_DOUBLE_EQ(converter.GetUnitFactor(), factors[unit]) << unit;
  }
  converter.SetUnits(42);  // unknown codes keep the factor
  EXPECT_DOUBLE_EQ(converter.GetUnitFactor(), 0.0254);
  converter.SetLayersOff(OdString(L"A"));
  converter.SetLayersOff(OdString(L"B"));
  converter.SetLayersOn(OdString(L"C"));
  converter.SetLayersOn(OdString(L"D"));
  EXPECT_EQ(std::wstring(converter.GetLayersOff().c_str()), L"A;B");
  EXPECT_EQ(std::wstring(converter.GetLayersOn().c_str()), L"D");
}

}  // namespace
