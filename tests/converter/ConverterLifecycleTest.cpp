// The converter's life and dispatch: the kit around it, what a run prints and returns at each step,
// and the setters that do more than store.
#include <gtest/gtest.h>

#include <string>

#include "converter/CDm2017.h"
#include "kit/dxf/DxfReader.h"
#include "kit/host/OdKit.h"
#include "services/MyServices.h"
#include "services/Trace.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

TEST(ConverterLifecycle, OwnsTheKitFromConstructionToDestruction) {
  {
    CDm2017 converter;
    EXPECT_TRUE(odIsInitialized());
    EXPECT_TRUE(odgsIsInitialized());
    EXPECT_EQ(odHostAppServices(), &TheServices());
    EXPECT_TRUE(TheServices().GetProgressMeter().disableOutput());
    for (const char* module : {"AECIIB", "TD_Dwf7Import", "TD_DgnImport", "TD_PdfImport", "OdOleSsItemHandler"}) {
      EXPECT_TRUE(odIsModuleRegistered(module)) << module;
    }
    EXPECT_EQ(std::string(converter.GetDefaultFont().c_str()), "ARIAL");
    EXPECT_EQ(std::string(converter.GetDefaultItalicFont().c_str()), "ARIALI");

    SetTraceEnabled(true);
    CapturedOutput out;
    ODA_ASSERT(1 + 1 == 3);
    EXPECT_EQ(out.text().substr(0, out.text().find("\nfile: ")), "\nAssertion Failed: 1 + 1 == 3");
    EXPECT_NE(out.text().find("ConverterLifecycleTest.cpp\nline: "), std::string::npos);
    out.clear();
    {
      CDm2017 inner;
    }
    SetTraceEnabled(false);
    EXPECT_EQ(out.text(), "Release Database Pointer\nClose GS Library\nClose TG Library\n");
  }
  EXPECT_FALSE(odIsInitialized());
  EXPECT_FALSE(odgsIsInitialized());
}

TEST(ConverterDispatch, RefusesToStartUntilReadyAndLoaded) {
  CDm2017 converter;
  CapturedOutput out;
  EXPECT_EQ(converter.StartConversion(), -666);
  EXPECT_EQ(out.text(), "");
  converter.ready = true;
  EXPECT_EQ(converter.StartConversion(), -667);
  EXPECT_EQ(out.text(), "No valid Input File\n");
  EXPECT_EQ(converter.EndConversion(), 0);  // also without a conversion
  EXPECT_EQ(converter.EndConversion(), 0);
}

TEST(ConverterDispatch, EachFormatReachesItsRoute) {
  struct Case {
    int format;
    int result;
    const char* message;
  };
  const Case cases[] = {
      {2000, -1000, "Raster output is not available in this build\n"},
      {2001, -1000, "Raster output is not available in this build\n"},
      {2002, -1000, "Raster output is not available in this build\n"},
      {1007, -1000, "PDF output is not available in this build\n"},
      // JS passes the dispatch and is refused by the vector route; TIFF has no route at all.
      {1020, -1000, "Unsupported Output Format\n"},
      {2003, -1000, "Unsupported Output Format\n"},
      {2102, -1000, "Unsupported Output Format\n"},
      {1000, -1000, "Unsupported Output Format\n"},
      {0, -1000, "Unsupported Output Format\n"},
      {1014, -1002, "Input and Output Formats must differ\n"},
      {1013, -1, "Error  : DWG files cannot be written yet: "},
  };
  Scratch scratch;
  for (const Case& c : cases) {
    CDm2017 converter;
    converter.ready = true;
    converter.SetOutputFile(Wide(scratch.file("out.svg")));
    converter.SetOutputFormat(c.format);
    ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
    ResetPrintedMessages();
    CapturedOutput out;
    EXPECT_EQ(converter.StartConversion(), c.result) << c.format;
    EXPECT_NE(out.text().find(c.message), std::string::npos) << c.format << "\n" << out.text();
    converter.EndConversion();
  }
  EXPECT_TRUE(std::filesystem::is_empty(scratch.path()));
}

TEST(ConverterDispatch, DxfOutputOfADwgInputReadsBack) {
  // The sample under a DWG name: loaded by its content, counted as a DWG input.
  Scratch scratch;
  const std::string input = scratch.copy(kSampleDxf, "office.dwg");
  for (const char* outputName : {"out.svg", "plain"}) {
    CDm2017 converter;
    converter.ready = true;
    converter.SetOutputFile(Wide(scratch.file(outputName)));
    converter.SetOutputFormat(1014);
    ASSERT_EQ(converter.ReadInputFile(Wide(input)), 0);
    EXPECT_EQ(converter.GetInputKind(), 1013);
    EXPECT_EQ(converter.StartConversion(), 0) << outputName;
    converter.EndConversion();
    const std::string written = scratch.file(std::string(outputName) == "plain" ? "plain.dxf" : "out.dxf");
    ASSERT_TRUE(std::filesystem::exists(written)) << outputName;
    const OdDbDatabasePtr reread = readDxfFile(written);
    EXPECT_NE(reread->layers().find("ROOMS"), nullptr);
    EXPECT_EQ(reread->originalFileVersion(), "AC1015");  // the version the drawing was read in
    std::filesystem::remove(written);
  }
}

TEST(ConverterDispatch, EndConversionReleasesTheDrawing) {
  CDm2017 converter;
  converter.ready = true;
  ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
  EXPECT_NE(g_pDb, nullptr);
  SetTraceEnabled(true);
  CapturedOutput out;
  converter.EndConversion();
  SetTraceEnabled(false);
  EXPECT_EQ(g_pDb, nullptr);
  EXPECT_EQ(out.text(), "Release Database Pointer\n");
  EXPECT_EQ(converter.StartConversion(), -667);
}

TEST(ConverterSettings, UnitsFactorsKeepTheMileAndIgnoreUnknownCodes) {
  CDm2017 converter;
  const double factors[] = {1.0, 1.0, 1.0 / 12, 1.0 / 36, 1.0, 25.4, 2.54, 0.0254};
  for (int unit = 0; unit < 8; ++unit) {
    converter.SetUnits(unit);
    EXPECT_DOUBLE_EQ(converter.GetUnitFactor(), factors[unit]) << unit;
  }
  converter.SetUnits(6);
  converter.SetUnits(8);
  converter.SetUnits(-1);
  EXPECT_DOUBLE_EQ(converter.GetUnitFactor(), 2.54);
  EXPECT_EQ(converter.GetUnits(), -1);
}

TEST(ConverterSettings, LayerListsSizesAndTexts) {
  CDm2017 converter;
  converter.SetLayersOff(OdString(L"A"));
  converter.SetLayersOff(OdString(L"B;C"));
  converter.SetLayersOn(OdString(L"D"));
  converter.SetLayersOn(OdString(L"E"));
  EXPECT_EQ(converter.GetLayersOff().str(), L"A;B;C");
  EXPECT_EQ(converter.GetLayersOn().str(), L"E");

  converter.SetHeight(600);
  converter.SetWidth(800);
  EXPECT_EQ(converter.GetHeight(), 600);
  EXPECT_EQ(converter.GetGivenHeight(), 600);
  EXPECT_EQ(converter.GetWidth(), 800);
  EXPECT_EQ(converter.GetGivenWidth(), 800);

  // Narrow texts arrive as UTF-8.
  converter.SetInputFile("pl\xC3\xA4n.dwg");
  converter.SetOutputFile("\xE2\x82\xAC.svg");
  EXPECT_EQ(converter.GetInputFile().str(), L"pl\u00E4n.dwg");
  EXPECT_EQ(converter.GetOutputFile().str(), L"\u20AC.svg");
}

}  // namespace
