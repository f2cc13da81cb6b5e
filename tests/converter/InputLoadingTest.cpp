// Loading DWG and DXF inputs: what is read, repaired or refused, the lines each route prints, and
// what is collected for the later steps.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "converter/CDm2017.h"
#include "kit/base/OdError.h"
#include "kit/dxf/DxfReader.h"
#include "kit/dxf/DxfWriter.h"
#include "kit/host/OdKit.h"
#include "services/MyServices.h"
#include "services/Trace.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

std::set<std::wstring> Names(const std::set<OdString>& names) {
  std::set<std::wstring> out;
  for (const OdString& name : names) out.insert(name.str());
  return out;
}

// Positions of the lines in the text, in the order given; -1 for a missing line.
std::vector<long> Positions(const std::string& text, const std::vector<std::string>& lines) {
  std::vector<long> positions;
  size_t from = 0;
  for (const std::string& line : lines) {
    const size_t at = text.find(line, from);
    positions.push_back(at == std::string::npos ? -1 : static_cast<long>(at));
    if (at != std::string::npos) from = at + line.size();
  }
  return positions;
}

class Tracing {
public:
  Tracing() { SetTraceEnabled(true); }
  ~Tracing() { SetTraceEnabled(false); }
};

TEST(InputLoading, SampleLoadsAndItsTablesAreCollected) {
  Scratch scratch;
  CDm2017 converter;
  converter.SetOutputFile(Wide(scratch.file("out.svg")));
  {
    CapturedOutput out;
    ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
    EXPECT_EQ(out.text(), "Input File Name: " + kSampleDxf + "\n");
  }
  ASSERT_NE(g_pDb, nullptr);
  EXPECT_EQ(converter.GetInputKind(), 1014);
  EXPECT_EQ(converter.GetInputFile().str(), Wide(kSampleDxf).str());
  EXPECT_EQ(converter.GetBaseOutputName().str(), Wide(scratch.file("out")).str());
  EXPECT_EQ(converter.GetLayerVisibility().size(), 12u);
  EXPECT_TRUE(converter.GetLayerVisibility().at(OdString(L"ROOMS")));
  EXPECT_EQ(Names(converter.GetViewNames()), (std::set<std::wstring>{L"MEETING_ROOM"}));
  EXPECT_EQ(Names(converter.GetLayoutNames()), (std::set<std::wstring>{L"MODEL", L"LAYOUT1"}));
}

TEST(InputLoading, TracedStepsOfADxfLoad) {
  CDm2017 converter;
  Tracing tracing;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
  const auto positions = Positions(out.text(), {"REPO Mode: 0\n", "Input file: " + kSampleDxf + "\n",
                                                "Read input DWG/DXF file\n", "AutoCAD file succesfully opened\n",
                                                "Input File Name: " + kSampleDxf + "\nInput File Name: ",
                                                "Get Layer Table\n", "Get View Table\n", "Get Layout Table\n"});
  for (size_t i = 0; i < positions.size(); ++i) EXPECT_GE(positions[i], 0) << i << "\n" << out.text();
}

TEST(InputLoading, CorpusDrawingsOfEveryKindLoad) {
  struct Case {
    const char* file;
    std::set<std::wstring> layouts;
  };
  const Case cases[] = {
      {"dxf/VP4.dxf", {L"MODEL", L"LAYOUT1", L"LAYOUT2"}},
      {"dxf/integration/bin_dxf_r2000.dxf", {L"MODEL", L"LAYOUT1"}},
      {"dxf/integration/ASCII_R12.dxf", {L"MODEL", L"LAYOUT1"}},
      {"dxf/integration/R12_with_trash_beyond_EOF.dxf", {L"MODEL", L"LAYOUT1"}},
      {"dxf/integration/POLI-ALL210_12.DXF", {L"MODEL", L"LAYOUT1"}},
  };
  for (const Case& c : cases) {
    CDm2017 converter;
    converter.ready = true;
    CapturedOutput out;
    ASSERT_EQ(converter.ReadInputFile(Wide(CorpusPath(c.file))), 0) << c.file;
    EXPECT_NE(g_pDb, nullptr) << c.file;
    EXPECT_FALSE(out.has("Teigha Error")) << c.file;
    EXPECT_EQ(Names(converter.GetLayoutNames()), c.layouts) << c.file;
    EXPECT_FALSE(converter.GetLayerVisibility().empty()) << c.file;
  }
}

TEST(InputLoading, RoomAndTextLayersAreForcedOnAndThawed) {
  Scratch scratch;
  {
    const OdDbDatabasePtr db = readDxfFile(kSampleDxf);
    for (const char* name : {"ROOMS", "ROOM_NUMBERS", "GRID"}) {
      LayerRecord* layer = db->layers().find(name);
      layer->setIsOff(true);
      layer->setIsFrozen(true);
    }
    writeDxfFile(*db, scratch.file("hidden.dxf"));
  }
  struct Case {
    const wchar_t* roomLayers;
    const wchar_t* textLayers;
    bool roomsVisible;
    bool numbersVisible;
    const char* printed;
  };
  const Case cases[] = {
      {L"rooms", L"Room_Numbers", true, true, "Room Layer: rooms\nText Layer: Room_Numbers\n"},
      {L"ROOMS", L"", true, false, "Room Layer: ROOMS\n"},
      {L"", L"ROOM_NUMBERS", false, true, "Text Layer: ROOM_NUMBERS\n"},
      // A list is compared whole: no layer is named "ROOMS;WALLS".
      {L"ROOMS;WALLS", L"", false, false, "Room Layer: ROOMS;WALLS\n"},
      {L"", L"", false, false, ""},
  };
  for (const Case& c : cases) {
    CDm2017 converter;
    converter.SetRLayers(OdString(c.roomLayers));
    converter.SetTLayers(OdString(c.textLayers));
    CapturedOutput out;
    ASSERT_EQ(converter.ReadInputFile(Wide(scratch.file("hidden.dxf"))), 0);
    EXPECT_EQ(out.text().substr(0, out.text().find("Input File Name")), "") << c.printed;
    EXPECT_NE(out.text().find(c.printed), std::string::npos) << out.text();
    const auto& visible = converter.GetLayerVisibility();
    EXPECT_EQ(visible.at(OdString(L"ROOMS")), c.roomsVisible) << c.printed;
    EXPECT_EQ(visible.at(OdString(L"ROOM_NUMBERS")), c.numbersVisible) << c.printed;
    EXPECT_FALSE(visible.at(OdString(L"GRID")));
    EXPECT_EQ(g_pDb->layers().find("ROOMS")->isFrozen(), !c.roomsVisible);
  }
}

TEST(InputLoading, DamagedDrawingIsRecovered) {
  Scratch scratch;
  const std::string whole = Slurp(kSampleDxf);
  const std::string cut = scratch.write("cut.dxf", whole.substr(0, whole.size() / 2));
  CDm2017 converter;
  converter.ready = true;
  Tracing tracing;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(cut)), 0);
  EXPECT_NE(g_pDb, nullptr);
  EXPECT_TRUE(g_pDb->loadReport().recovered);
  EXPECT_FALSE(out.has("AutoCAD file succesfully opened"));
  const auto positions = Positions(out.text(), {"Recovering DWG file: " + cut + "\n",
                                                "AutoCAD file succesfully recovered and open\n",
                                                "Input File Name: " + cut + "\n", "Get Layout Table\n"});
  for (size_t i = 0; i < positions.size(); ++i) EXPECT_GE(positions[i], 0) << i << "\n" << out.text();
}

TEST(InputLoading, UnreadableDrawingsReportTheKitErrorAndLoadNothing) {
  struct Case {
    const char* name;
    std::string bytes;
    const char* error;
  };
  const Case cases[] = {
      {"junk.dwg", "not a drawing", "Teigha Error: "},
      {"empty.dxf", "", "Teigha Error: "},
      {"real.dwg", std::string("AC1032") + std::string(100, '\0'), "Teigha Error: "},
  };
  Scratch scratch;
  for (const Case& c : cases) {
    const std::string path = scratch.write(c.name, c.bytes);
    CDm2017 converter;
    converter.ready = true;
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(path)), 0) << c.name;
    EXPECT_EQ(out.text().rfind(c.error, 0), 0u) << out.text();
    EXPECT_NE(out.text().find("\n\nInput File Name: " + path + "\n"), std::string::npos) << out.text();
    EXPECT_EQ(g_pDb, nullptr);
    EXPECT_EQ(converter.StartConversion(), -667) << c.name;
  }
  CDm2017 converter;
  CapturedOutput out;
  EXPECT_EQ(converter.ReadInputFile(Wide(scratch.file("missing.dxf"))), 0);
  EXPECT_TRUE(out.has("Teigha Error: "));
}

TEST(InputLoading, UnknownExtensionsEndSilently) {
  for (const wchar_t* name : {L"plan.xyz", L"photo.jpeg", L"plan.dwg.bak", L"a.b"}) {
    CDm2017 converter;
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(OdString(name)), -1001);
    EXPECT_EQ(out.text(), "");
    EXPECT_EQ(g_pDb, nullptr);
  }
}

TEST(InputLoading, RasterInputsTakeTheirOwnRoute) {
  Scratch scratch;
  const std::string photo = scratch.write("photo.jpg", "not really a picture");
  struct Case {
    int format;
    const char* message;
  };
  const Case cases[] = {{1016, "Raster input is not available in this build\n"},
                        {2001, "Output Format Not Supported for Direct Raster Conversion\n"}};
  for (const Case& c : cases) {
    CDm2017 converter;
    converter.SetOutputFormat(c.format);
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(photo)), 1) << c.format;
    EXPECT_EQ(out.text(), c.message);
  }
}

TEST(InputLoading, SettingsFillTheSearchLists) {
  Scratch scratch;
  std::filesystem::create_directories(scratch.path() / "sub");
  const std::string input = scratch.copy(kSampleDxf, "sub/plan.dxf");
  CDm2017 converter;
  converter.SetXrefPath(Wide(scratch.file("refs") + ";" + scratch.file("more/")));
  converter.SetFontPath(Wide(scratch.file("fonts")));
  converter.SetRepository();
  Tracing tracing;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(input)), 0);
  std::vector<std::wstring> xrefs;
  for (const OdString& path : TheServices().GetXrefPaths()) xrefs.push_back(path.str());
  const std::wstring sub = Wide(scratch.file("sub/")).str();
  ASSERT_GE(xrefs.size(), 4u);
  EXPECT_EQ(xrefs[0], Wide(scratch.file("refs/")).str());
  EXPECT_EQ(xrefs[1], Wide(scratch.file("more/")).str());
  EXPECT_EQ(xrefs[2], Wide(std::filesystem::current_path().string() + "/").str());
  EXPECT_EQ(xrefs[3], sub);
  EXPECT_EQ(TheServices().GetFontPaths().front().str(), Wide(scratch.file("fonts/")).str());
  EXPECT_EQ(TheServices().GetInputDirectory().str(), sub);
  EXPECT_TRUE(g_RepoMode);
  EXPECT_TRUE(out.has("REPO Mode: 1\n"));
  TheServices().SetRepoMode(false);
}

TEST(InputLoading, UsedFontsReportWhenListing) {
  Scratch scratch;
  std::filesystem::create_directories(scratch.path() / "fonts");
  const std::string r12 = CorpusPath("dxf/integration/ASCII_R12.dxf");
  const std::string report = "Used Font Files\n===============\nFont Name:        txt\nFilename :        ";
  {
    CDm2017 converter;
    converter.SetListViews();
    converter.SetFontPath(Wide(scratch.file("fonts")));
    CapturedOutput out;
    ASSERT_EQ(converter.ReadInputFile(Wide(r12)), 0);
    EXPECT_TRUE(out.has(report + "   *** MISSING ***   \nFont Name:        txt\n")) << out.text();
  }
  scratch.write("fonts/TXT.SHX", "shapes");
  {
    CDm2017 converter;
    converter.SetListViews();
    converter.SetFontPath(Wide(scratch.file("fonts")));
    CapturedOutput out;
    ASSERT_EQ(converter.ReadInputFile(Wide(r12)), 0);
    EXPECT_TRUE(out.has(report + scratch.file("fonts/TXT.SHX") + "\n")) << out.text();
  }
  CDm2017 quiet;
  CapturedOutput out;
  ASSERT_EQ(quiet.ReadInputFile(Wide(r12)), 0);
  EXPECT_FALSE(out.has("Used Font Files"));
}

// Host services that cannot open any name but the temporary one.
struct NameTroubleServices : OdDbHostAppServices {
  OdDbDatabasePtr readFile(const OdString& path, bool partialLoad) override {
    names.push_back(path.str());
    if (path.str() != L"temp.dwg") throw OdError(eCantOpenFile, L"cannot open " + path);
    return OdDbHostAppServices::readFile(path, partialLoad);
  }
  std::vector<std::wstring> names;
};

TEST(InputLoading, NamesTheKitCannotOpenAreReadUnderATemporaryName) {
  Scratch scratch;
  Scratch elsewhere;
  const std::string input = scratch.copy(kSampleDxf, "Pl\xC3\xA4n 1.dxf");
  WorkingDirectory cwd(elsewhere.path());
  CDm2017 converter;
  converter.ready = true;
  NameTroubleServices services;
  odInitialize(&services);
  Tracing tracing;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(input)), 0);
  ASSERT_NE(g_pDb, nullptr);
  EXPECT_EQ(g_pDb->fileName(), input);
  EXPECT_EQ(services.names, (std::vector<std::wstring>{Wide(input).str(), L"temp.dwg"}));
  EXPECT_TRUE(std::filesystem::exists(input));
  EXPECT_FALSE(std::filesystem::exists(elsewhere.file("temp.dwg")));
  const auto positions = Positions(out.text(), {"Renaming DWG file: " + input + "\n",
                                                "AutoCAD file succesfully recovered and open\n",
                                                "Input File Name: "});
  for (size_t i = 0; i < positions.size(); ++i) EXPECT_GE(positions[i], 0) << i << "\n" << out.text();
  EXPECT_EQ(Names(converter.GetLayoutNames()), (std::set<std::wstring>{L"MODEL", L"LAYOUT1"}));
}

TEST(InputLoading, TemporaryNameNeverReplacesAFileOrKeepsTheInput) {
  Scratch scratch;
  Scratch elsewhere;
  WorkingDirectory cwd(elsewhere.path());
  {
    // Someone's temp.dwg is in the way: it stays, and so does the input.
    const std::string input = scratch.copy(kSampleDxf, "plan.dxf");
    elsewhere.write("temp.dwg", "someone's drawing");
    CDm2017 converter;
    NameTroubleServices services;
    odInitialize(&services);
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(input)), 0);
    EXPECT_EQ(g_pDb, nullptr);
    EXPECT_TRUE(out.has("Teigha Error: Cannot rename "));
    EXPECT_EQ(Slurp(elsewhere.file("temp.dwg")), "someone's drawing");
    EXPECT_EQ(Slurp(input), Slurp(kSampleDxf));
    std::filesystem::remove(elsewhere.file("temp.dwg"));
  }
  {
    // The read under the temporary name fails: the input gets its name back.
    const std::string input = scratch.write("broken.dxf", "not a drawing");
    CDm2017 converter;
    NameTroubleServices services;
    odInitialize(&services);
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(input)), 0);
    EXPECT_EQ(g_pDb, nullptr);
    EXPECT_TRUE(out.has("Teigha Error: "));
    EXPECT_EQ(Slurp(input), "not a drawing");
    EXPECT_FALSE(std::filesystem::exists(elsewhere.file("temp.dwg")));
  }
}

TEST(InputLoading, ALoadedDrawingIsNotReadAgain) {
  CDm2017 converter;
  ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
  const OdDbDatabase* first = g_pDb.get();
  Tracing tracing;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(CorpusPath("dxf/VP4.dxf"))), 0);
  EXPECT_EQ(g_pDb.get(), first);
  EXPECT_FALSE(out.has("AutoCAD file succesfully opened"));
}

}  // namespace
