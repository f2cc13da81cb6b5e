// External references: loading the drawings they name (nested, overlays, cycles, missing and
// unreadable files, each file once), the host's "block|layer" records, and drawing the referenced
// model space through the insert, its clip and the host's layer states. The drawings are written
// by tests/kit/xref_drawings.py (python3-ezdxf).
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "kit/db/ExternalReference.h"
#include "kit/gi/GiClipStage.h"
#include "kit/gi/regen/GiRegenContext.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/ExternalReferenceLoading.h"
#include "kit/host/OdDbHostAppServices.h"
#include "tests/kit/GsTestSupport.h"

namespace fs = std::filesystem;

namespace {

const char* const kPython = "/usr/bin/python3";
const std::string kDwgReference = std::string(DM_CORPUS_DIR) + "/dwg/example_2000.dwg";

class RecordingServices : public OdDbHostAppServices {
public:
  std::vector<std::string> warnings;
  void warning(const OdString& message) override { warnings.push_back(odEncodeUtf8(message.str())); }
};

class TraitsOf : public OdGiConveyorContext {
public:
  explicit TraitsOf(const GiRegenContext& ctx) : ctx_(ctx) {}
  const OdGiSubEntityTraitsData& effectiveTraits() const override { return ctx_.effectiveTraits(); }

private:
  const GiRegenContext& ctx_;
};

std::string narrow(const std::wstring& text) { return odEncodeUtf8(text); }

class XrefTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    const std::string probe = std::string(kPython) + " -c 'import ezdxf' >/dev/null 2>&1";
    if (std::system(probe.c_str()) != 0) return;
    directory_ = fs::temp_directory_path() / ("xref_test_" + std::to_string(::getpid()));
    fs::create_directories(directory_);
    const fs::path script = fs::path(DM_TESTS_DIR) / "kit" / "xref_drawings.py";
    const std::string command = std::string(kPython) + " '" + script.string() + "' '" + directory_.string() +
                                "' '" + kDwgReference + "'";
    if (std::system(command.c_str()) != 0) directory_.clear();
  }
  static void TearDownTestSuite() {
    if (!directory_.empty()) fs::remove_all(directory_);
  }
  void SetUp() override {
    if (directory_.empty()) GTEST_SKIP() << "python3-ezdxf is needed to write the test drawings";
  }

  OdDbDatabasePtr load(const std::string& name) { return services.readFile(toOdString((directory_ / name).string())); }

  // Every entity of model space, as a view draws them, each primitive with its traits.
  RecordingSink draw(const OdDbDatabase& db) {
    RecordingSink sink;
    GiRegenContext ctx(db, sink);
    TraitsOf traits(ctx);
    sink.setDrawContext(&traits);
    for (const Entity* entity : db.modelSpace()->entities) {
      if (entity) regenEntity(ctx, *entity);
    }
    sink.setDrawContext(nullptr);
    return sink;
  }

  static std::vector<std::string> texts(const RecordingSink& sink) {
    std::vector<std::string> result;
    for (const RecordedCall& call : sink.ofKind("text")) result.push_back(narrow(call.text));
    return result;
  }
  static size_t countOf(const std::vector<std::string>& list, const std::string& item) {
    return size_t(std::count(list.begin(), list.end(), item));
  }
  static const ExternalReference* xrefOf(const OdDbDatabase& db, const std::string& block) {
    return db.externalReference(db.blocks().find(block));
  }

  static fs::path directory_;
  RecordingServices services;
};

fs::path XrefTest::directory_;

const RecordedCall* circleWithRadius(const RecordingSink& sink, double radius) {
  for (const RecordedCall& call : sink.calls) {
    if (call.kind == "circle" && std::fabs(call.radius - radius) < 1e-9) return &call;
  }
  return nullptr;
}

std::string layerName(const RecordedCall& call) {
  return call.traits.layer ? call.traits.layer->name : std::string("(none)");
}

TEST_F(XrefTest, ReferencedModelSpaceIsDrawnThroughTheInsertWithNestedReferences) {
  OdDbDatabasePtr db = load("host.dxf");
  RecordingSink sink = draw(*db);
  // Room circle (20,0) r 3, base point 10,0, insert at 100,50 scaled 2 and turned 90 degrees.
  const RecordedCall* room = circleWithRadius(sink, 6.0);
  ASSERT_TRUE(room);
  EXPECT_NEAR(room->center.x, 100.0, 1e-9);
  EXPECT_NEAR(room->center.y, 70.0, 1e-9);
  EXPECT_EQ(layerName(*room), "ROOM|FURNITURE");
  EXPECT_EQ(room->traits.trueColor.colorIndex(), 1);
  ASSERT_TRUE(room->traits.lineType);
  EXPECT_EQ(room->traits.lineType->name, "ROOM|DASHED");
  EXPECT_EQ(room->traits.lineType->dashes.size(), 2u);
  // The chair, inserted in the room at 0,-10, lands at 120,30 with radius 2 on its own layer.
  const RecordedCall* chair = circleWithRadius(sink, 2.0);
  ASSERT_TRUE(chair);
  EXPECT_NEAR(chair->center.x, 120.0, 1e-9);
  EXPECT_NEAR(chair->center.y, 30.0, 1e-9);
  EXPECT_EQ(layerName(*chair), "CHAIR|SEAT");
  EXPECT_EQ(chair->traits.trueColor.colorIndex(), 3);
  // The room's layer-0 line takes the insert's layer, as a block's would.
  bool lineOnHostLayer = false;
  for (const RecordedCall& call : sink.ofKind("polyline")) {
    if (call.points.size() == 2 && nearXY(call.points[0], 100, 50) && nearXY(call.points[1], 100, 90)) {
      lineOnHostLayer = layerName(call) == "HOST" && call.traits.trueColor.colorIndex() == 5;
    }
  }
  EXPECT_TRUE(lineOnHostLayer);
}

TEST_F(XrefTest, HostLayerStatesOverlaysAndTheMissingReference) {
  OdDbDatabasePtr db = load("host.dxf");
  const std::vector<std::string> drawn = texts(draw(*db));
  EXPECT_EQ(countOf(drawn, "HOSTTEXT"), 1u);
  EXPECT_EQ(countOf(drawn, "ROOMTEXT"), 2u);   // ROOM and ROOMCOPY
  EXPECT_EQ(countOf(drawn, "CHAIRTEXT"), 2u);
  EXPECT_EQ(countOf(drawn, "NOTETEXT"), 1u);   // the host's own overlay; the room's is not carried
  EXPECT_EQ(countOf(drawn, "DOORTEXT"), 1u);   // the host saved ROOM|DOORS frozen, not ROOMCOPY|DOORS
  EXPECT_EQ(countOf(drawn, "FROZENTEXT"), 0u);
  EXPECT_EQ(countOf(drawn, "OFFTEXT"), 0u);

  const LayerRecord* doors = db->layers().find("ROOM|DOORS");
  ASSERT_TRUE(doors);
  EXPECT_TRUE(doors->isFrozen());
  EXPECT_EQ(doors->color.colorIndex(), 6);
  const LayerRecord* furniture = db->layers().find("ROOM|FURNITURE");
  ASSERT_TRUE(furniture);
  EXPECT_TRUE(furniture->isXrefDependent());
  EXPECT_EQ(furniture->color.colorIndex(), 1);
  ASSERT_TRUE(furniture->linetype);
  EXPECT_EQ(furniture->linetype->name, "ROOM|DASHED");
  EXPECT_NE(db->find(furniture->handle), nullptr);
  // A linetype's text names the host's record of the referenced drawing's style.
  const LinetypeRecord* gas = db->linetypes().find("ROOM|GAS");
  ASSERT_TRUE(gas && gas->dashes.size() == 3u);
  const LinetypeDash& text = gas->dashes[1];
  ASSERT_TRUE(text.style);
  EXPECT_EQ(text.style->name, "ROOM|Standard");
  EXPECT_EQ(db->find(text.styleHandle), text.style);
  EXPECT_TRUE(db->layers().find("ROOM|FROZEN")->isFrozen());
  EXPECT_TRUE(db->layers().find("ROOM|OFF")->isOff());
  EXPECT_TRUE(db->layers().find("ROOMCOPY|FURNITURE"));
  EXPECT_TRUE(db->layers().find("CHAIR|SEAT"));
  EXPECT_TRUE(db->layers().find("NOTESOV|NOTE"));
  EXPECT_FALSE(db->layers().find("NOTES|NOTE"));
  EXPECT_FALSE(db->layers().find("ROOM|0"));

  EXPECT_EQ(xrefOf(*db, "GONE")->status, XrefStatus::kFileNotFound);
  const ExternalReference* room = xrefOf(*db, "ROOM");
  ASSERT_TRUE(room && room->isResolved());
  EXPECT_EQ(xrefOf(*room->drawing, "NOTES")->status, XrefStatus::kNestedOverlay);
  // One file, one load, however it is spelled.
  EXPECT_EQ(xrefOf(*db, "ROOMCOPY")->drawing, room->drawing);
  ASSERT_EQ(services.warnings.size(), 1u);
  EXPECT_NE(services.warnings[0].find("\"GONE\" not found: missing/absent.dxf"), std::string::npos) << services.warnings[0];
}

TEST_F(XrefTest, HostWrittenOutKeepsItsDependentRecordsConsistent) {
  OdDbDatabasePtr db = load("host.dxf");
  const std::string written = (directory_ / "host_written.dxf").string();
  writeDrawingFile(*db, written, kSaveDxf, 0);
  OdDbDatabasePtr back = readDrawingFile(written, false);
  const LayerRecord* pipes = back->layers().find("ROOM|PIPES");
  ASSERT_TRUE(pipes && pipes->linetype);
  EXPECT_EQ(pipes->linetype->name, "ROOM|GAS");
  ASSERT_EQ(pipes->linetype->dashes.size(), 3u);
  const auto* style = back->findAs<TextStyleRecord>(pipes->linetype->dashes[1].styleHandle);
  ASSERT_TRUE(style);
  EXPECT_EQ(style->name, "ROOM|Standard");
  EXPECT_TRUE(back->loadReport().messages.empty());
}

TEST_F(XrefTest, CircularAndTooDeepReferencesStop) {
  OdDbDatabasePtr loop = load("loop_a.dxf");
  std::vector<std::string> drawn = texts(draw(*loop));
  EXPECT_EQ(countOf(drawn, "ATEXT"), 1u);
  EXPECT_EQ(countOf(drawn, "BTEXT"), 1u);
  EXPECT_EQ(xrefOf(*xrefOf(*loop, "LOOPB")->drawing, "LOOPA")->status, XrefStatus::kCircular);
  ASSERT_EQ(services.warnings.size(), 1u);
  EXPECT_NE(services.warnings[0].find("\"LOOPA\" refers back"), std::string::npos) << services.warnings[0];

  services.warnings.clear();
  OdDbDatabasePtr self = load("self.dxf");
  EXPECT_EQ(countOf(texts(draw(*self)), "SELFTEXT"), 1u);
  EXPECT_EQ(xrefOf(*self, "SELF")->status, XrefStatus::kCircular);
  EXPECT_EQ(services.warnings.size(), 1u);

  services.warnings.clear();
  OdDbDatabasePtr deep = load("deep0.dxf");
  drawn = texts(draw(*deep));
  // deep0 and the 16 drawings nested in it.
  static_assert(kMaxXrefNesting == 16);
  EXPECT_EQ(countOf(drawn, "D16"), 1u);
  EXPECT_EQ(countOf(drawn, "D17"), 0u);
  ASSERT_EQ(services.warnings.size(), 1u);
  EXPECT_NE(services.warnings[0].find("nested too deep"), std::string::npos) << services.warnings[0];
}

TEST_F(XrefTest, UnreadableFileIsReportedOnceAndTheRestIsDrawn) {
  OdDbDatabasePtr db = load("badref.dxf");
  EXPECT_EQ(countOf(texts(draw(*db)), "BADREFTEXT"), 1u);
  EXPECT_EQ(xrefOf(*db, "BROKEN")->status, XrefStatus::kUnreadable);
  ASSERT_EQ(services.warnings.size(), 1u);
  EXPECT_NE(services.warnings[0].find("\"BROKEN\" could not be read"), std::string::npos) << services.warnings[0];
}

TEST_F(XrefTest, ClipOfTheInsertCutsTheReferencedDrawing) {
  OdDbDatabasePtr db = load("host.dxf");
  auto* insert = dbCast<BlockReferenceEntity>(db->modelSpace()->entities.at(2));
  ASSERT_TRUE(insert && insert->block && insert->block->name == "ROOM");
  // ACAD_XDICTIONARY -> ACAD_FILTER -> SPATIAL: a box around the room's circle, in the room's
  // own coordinates (the texts above it are outside).
  auto addObject = [&](DbObject* object) {
    object->handle = db->allocateHandle();
    db->addObject(object);
  };
  auto* filter = db->newObject<SpatialFilterObject>();
  filter->boundary = {{5, -5}, {25, 4}};
  filter->displayBoundary = true;  // the clip is on
  addObject(filter);
  auto* filters = db->newObject<Dictionary>();
  filters->entries.push_back({"SPATIAL", filter->handle});
  addObject(filters);
  auto* xdict = db->newObject<Dictionary>();
  xdict->entries.push_back({"ACAD_FILTER", filters->handle});
  addObject(xdict);
  db->extrasOf(*insert).extensionDictionary = xdict->handle;

  RecordingSink sink;
  {
    GiClipStage clip(&sink);
    GiRegenContext ctx(*db, clip);
    ctx.setClipStage(&clip);
    regenEntity(ctx, *insert);
  }
  const std::vector<std::string> drawn = texts(sink);
  EXPECT_EQ(countOf(drawn, "ROOMTEXT"), 0u);
  EXPECT_EQ(countOf(drawn, "CHAIRTEXT"), 0u);
  bool circleDrawn = false;
  for (const RecordedCall& call : sink.calls) {
    for (const OdGePoint3d& p : call.points) circleDrawn = circleDrawn || nearXY(p, 100, 76, 0.1);
    if (call.kind == "circle") circleDrawn = true;
  }
  EXPECT_TRUE(circleDrawn);
}

TEST_F(XrefTest, DwgDrawingReferencedFromDxf) {
  if (!fs::exists(kDwgReference)) GTEST_SKIP() << "corpus DWG missing";
  OdDbDatabasePtr db = load("dwghost.dxf");
  const ExternalReference* plant = xrefOf(*db, "PLANT");
  ASSERT_TRUE(plant && plant->isResolved());
  EXPECT_EQ(plant->drawing->originalFileVersion(), "AC1015");
  size_t dependentLayers = 0;
  for (const LayerRecord* layer : db->layers()) dependentLayers += layer->name.rfind("PLANT|", 0) == 0;
  EXPECT_GT(dependentLayers, 0u);
  EXPECT_GT(draw(*db).calls.size(), 10u);
  EXPECT_TRUE(services.warnings.empty());
}

}  // namespace
