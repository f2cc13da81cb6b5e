// DWF, PDF and DGN inputs: the routes through the kit's importers, with stand-in importers that
// record what they were given and fail where a test asks them to.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "converter/CDm2017.h"
#include "kit/host/OdImportModules.h"
#include "services/MyServices.h"
#include "services/Trace.h"
#include "tests/converter/ConverterTestSupport.h"

namespace {

using namespace converter_test;

// Registers a stand-in importer for the life of the object.
template <class Importer>
class RegisteredImporter {
public:
  explicit RegisteredImporter(const char* module) : module_(module) {
    odRegisterImportModule(module_, [] { return std::make_unique<Importer>(); });
  }
  ~RegisteredImporter() { odUnregisterImportModule(module_); }
  RegisteredImporter(const RegisteredImporter&) = delete;
  RegisteredImporter& operator=(const RegisteredImporter&) = delete;

private:
  std::string module_;
};

OdDbDatabasePtr TargetDatabase(const OdDbImporter& importer) {
  const OdDbDatabasePtr* database = importer.properties().getAs<OdDbDatabasePtr>("Database");
  return database ? *database : nullptr;
}

struct FakePdfImporter : OdDbImporter {
  static inline int pages = 3;
  static inline int failingPage = 0;
  static inline int openResult = kImportOk;
  static inline std::vector<std::string> seen;  // property names at the first import

  int open() override { return openResult; }
  int pageCount() const override { return pages; }
  int import() override {
    if (seen.empty()) {
      for (const auto& entry : properties().entries()) seen.push_back(entry.first);
    }
    const int page = *properties().getAs<int>("PageNumber");
    if (page == failingPage) return kImportFailed;
    std::string layer = std::to_string(page);
    layer.insert(0, "PAGE");
    TargetDatabase(*this)->layerNamed(layer);
    return kImportOk;
  }
};

struct FakeDgnImporter : OdDbImporter {
  static inline int result = kImportOk;
  static inline bool giveDatabase = true;
  static inline OdImportProperties given;

  int import() override {
    given = properties();
    if (result != kImportOk) return result;
    if (giveDatabase) {
      auto database = TheServices().createDatabase();
      database->layerNamed("DGN_LEVEL");
      properties().putAt("Database", database);
    }
    return kImportOk;
  }
};

struct FakeDwfImporter : OdDbImporter {
  static inline std::string sourceText;
  static inline std::wstring source;

  int import() override {
    source = properties().getAs<OdString>("DwfPath")->str();
    sourceText = Slurp(std::filesystem::path(source).string());
    TargetDatabase(*this)->layerNamed("DWF_LAYER");
    return kImportOk;
  }
};

TEST(DrawingImport, MissingImportersAreReported) {
  struct Case {
    const char* name;
    int result;
    const char* message;
  };
  const Case cases[] = {
      {"plan.dwf", 0, "Could not create dwf importer\nInput File Name: "},
      {"scan.pdf", 0, "Could not create PDF importer\nInput File Name: "},
      {"model.dgn", -1, "Could not create DGN Importer\n"},
  };
  Scratch scratch;
  for (const Case& c : cases) {
    CDm2017 converter;
    converter.ready = true;
    converter.SetOutputFile(Wide(scratch.file("out.svg")));
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(scratch.write(c.name, "x"))), c.result) << c.name;
    EXPECT_EQ(out.text().rfind(c.message, 0), 0u) << out.text();
    EXPECT_EQ(g_pDb, nullptr);
    if (c.result == 0) {
      EXPECT_EQ(converter.StartConversion(), -667);
    }
  }
}

TEST(DrawingImport, PdfPagesUntilOneFails) {
  RegisteredImporter<FakePdfImporter> module("TD_PdfImport");
  Scratch scratch;
  struct Case {
    int pages;
    int failingPage;
    int openResult;
    std::vector<std::wstring> layers;  // imported pages
    const char* lines;
    const char* error;
  };
  const Case cases[] = {
      {3, 2, kImportOk, {L"PAGE1"},
       "Importing Page #1 of ..3\nImporting Page #2 of ..3\n*** PDF Import Failed: 5\n",
       "Teigha Error: Import failed (result 5)\n\n"},
      {2, 0, kImportOk, {L"PAGE1", L"PAGE2"},
       "Importing Page #1 of ..2\nImporting Page #2 of ..2\n",
       "Teigha Error: DWG files cannot be written yet: "},
      {4, 0, kImportCantOpenFile, {}, "", "Teigha Error: Can't open file\n\n"},
  };
  for (const Case& c : cases) {
    FakePdfImporter::pages = c.pages;
    FakePdfImporter::failingPage = c.failingPage;
    FakePdfImporter::openResult = c.openResult;
    CDm2017 converter;
    converter.ready = true;
    converter.SetOutputFile(Wide(scratch.file("scan.svg")));
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(scratch.write("scan.pdf", "%PDF"))), 0);
    EXPECT_EQ(out.text().rfind(c.lines, 0), 0u) << out.text();
    EXPECT_NE(out.text().find(c.error), std::string::npos) << out.text();
    EXPECT_FALSE(out.has("Importing Page #" + std::to_string(c.pages + 1) + " "));
    if (c.failingPage == 0 && c.openResult == kImportOk) {
      // The side drawing is named after the output without its extension.
      EXPECT_TRUE(out.has("cannot be written yet: " + scratch.file("scan.dwg") + "\n"));
    }
    // Whatever was imported stays the run's drawing.
    ASSERT_NE(g_pDb, nullptr);
    for (const std::wstring& layer : c.layers) {
      EXPECT_TRUE(converter.GetLayerVisibility().count(OdString(layer))) << out.text();
    }
    EXPECT_EQ(converter.GetLayerVisibility().count(OdString(L"PAGE3")), 0u);
  }
  EXPECT_EQ(FakePdfImporter::seen.front(), "Database");
  EXPECT_EQ(FakePdfImporter::seen[1], "PdfPath");
  EXPECT_EQ(FakePdfImporter::seen.back(), "PageNumber");
}

TEST(DrawingImport, DgnResultsAndProperties) {
  RegisteredImporter<FakeDgnImporter> module("TD_DgnImport");
  Scratch scratch;
  struct Case {
    int result;
    bool giveDatabase;
    int returned;
    const char* message;
  };
  const Case cases[] = {
      {kImportBadPassword, true, -1, "Invalid password.\n"},
      {kImportCantOpenFile, true, -1, "Cannot open file.\n"},
      {kImportInvalidFile, true, -1, "Invalid file.\n"},
      {kImportDecryptionError, true, -1, "Decryption error.\n"},
      {kImportFailed, true, -1, "Unknown error.\n"},
      {kImportOk, false, -1, "File Not Successfully Imported\n"},
  };
  const std::string input = scratch.write("model.dgn", "dgn");
  for (const Case& c : cases) {
    FakeDgnImporter::result = c.result;
    FakeDgnImporter::giveDatabase = c.giveDatabase;
    CDm2017 converter;
    CapturedOutput out;
    EXPECT_EQ(converter.ReadInputFile(Wide(input)), c.returned) << c.message;
    EXPECT_EQ(out.text(), c.message);
    EXPECT_EQ(g_pDb, nullptr);
  }

  FakeDgnImporter::result = kImportOk;
  FakeDgnImporter::giveDatabase = true;
  CDm2017 converter;
  converter.SetOutputFile(Wide(scratch.file("model.svg")));
  CapturedOutput out;
  EXPECT_EQ(converter.ReadInputFile(Wide(input)), 0);
  ASSERT_NE(g_pDb, nullptr);
  EXPECT_TRUE(converter.GetLayerVisibility().count(OdString(L"DGN_LEVEL")));
  EXPECT_TRUE(out.has("Teigha Error: DWG files cannot be written yet: " + scratch.file("model.dwg")));

  const OdImportProperties& given = FakeDgnImporter::given;
  EXPECT_EQ(given.getAs<OdString>("DgnPath")->str(), Wide(input).str());
  EXPECT_EQ(*given.getAs<std::uint8_t>("ImportViewIndex"), 255);
  EXPECT_EQ(*given.getAs<std::uint8_t>("XRefImportMode"), 1);
  // Set twice; the later value holds and the two-dimensional counterpart stays unset.
  EXPECT_EQ(*given.getAs<std::uint8_t>("3dClosedBSplineCurveImportMode"), 0);
  EXPECT_EQ(given.getAt("2dClosedBSplineCurveImportMode"), nullptr);
  EXPECT_EQ(given.entries().front().first, "Services");
  EXPECT_EQ(given.entries().back().first, "BreakDimensionAssociation");
  EXPECT_EQ(*given.getAs<OdDbHostAppServices*>("Services"), &TheServices());
  EXPECT_NE(*given.getAs<OdDbHostAppServices*>("DgnServices"), &TheServices());
}

TEST(DrawingImport, DwfImportsTheRepairedCopyAndRemovesIt) {
  RegisteredImporter<FakeDwfImporter> module("TD_Dwf7Import");
  Scratch scratch;
  struct Case {
    const char* content;
    bool repaired;
  };
  const Case cases[] = {
      {"(DWF V00.55)(Layer 1 '')(Layer 1 '')", true},
      {"(DWF V00.55)(Layer 1 'Walls')", false},
      {"binary DWF", false},
  };
  for (const Case& c : cases) {
    const std::string input = scratch.write("plan.dwf", c.content);
    CDm2017 converter;
    converter.ready = true;
    CapturedOutput out;
    g_DwfImported = false;
    EXPECT_EQ(converter.ReadInputFile(Wide(input)), 0);
    ASSERT_NE(g_pDb, nullptr);
    EXPECT_EQ(converter.GetInputKind(), 1000);
    EXPECT_TRUE(g_DwfImported);
    EXPECT_TRUE(converter.GetLayerVisibility().count(OdString(L"DWF_LAYER")));
    EXPECT_EQ(out.has("DWF Layer Fix\n"), c.repaired) << c.content;
    if (c.repaired) {
      EXPECT_NE(FakeDwfImporter::source, Wide(input).str());
      EXPECT_EQ(FakeDwfImporter::sourceText, "(DWF V00.55)(Layer 1 'Layer_1')(Layer 1 'Layer_1')");
      EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(FakeDwfImporter::source)));
    } else {
      EXPECT_EQ(FakeDwfImporter::source, Wide(input).str());
    }
    EXPECT_EQ(Slurp(input), c.content);  // the input itself is never changed
  }
  // A later DWG or DXF input clears the flag.
  CDm2017 converter;
  CapturedOutput out;
  ASSERT_EQ(converter.ReadInputFile(Wide(kSampleDxf)), 0);
  EXPECT_FALSE(g_DwfImported);
}

}  // namespace
