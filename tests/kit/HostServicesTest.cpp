// The kit's host side: which reader a file reaches, how the services read, recover and find
// files, and the writers' dispatch.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfReader.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/OdDbHostAppServices.h"
#include "kit/host/ProgressMeter.h"

namespace fs = std::filesystem;

namespace {

const std::string kCorpusDxf = std::string(DM_CORPUS_DIR) + "/dxf/VP4.dxf";
const std::string kBinaryDxf = std::string(DM_CORPUS_DIR) + "/dxf/integration/bin_dxf_r2000.dxf";

class HostFiles : public ::testing::Test {
protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("dm_host_" + std::to_string(getpid()));
    fs::remove_all(root_);
    fs::create_directories(root_);
  }
  void TearDown() override { fs::remove_all(root_); }

  std::string Write(const std::string& name, const std::string& bytes) {
    const fs::path path = root_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }
  std::string Copy(const std::string& from, const std::string& name) {
    fs::copy_file(from, root_ / name);
    return (root_ / name).string();
  }
  static std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  static OdResult ReadError(const std::string& path, OdString* description = nullptr) {
    try {
      readDrawingFile(path, false);
    } catch (const OdError& error) {
      if (description) *description = error.description();
      return error.code();
    }
    return eOk;
  }

  fs::path root_;
};

TEST_F(HostFiles, ContentDecidesTheReaderNotTheName) {
  // A DXF file under a DWG name still loads, binary DXF included.
  EXPECT_NE(readDrawingFile(Copy(kCorpusDxf, "plan.dwg"), false), nullptr);
  EXPECT_NE(readDrawingFile(Copy(kBinaryDxf, "binary.dwg"), false), nullptr);

  // Every DWG release mark reaches the DWG reader, whatever the name says.
  for (const char* mark : {"AC1015", "AC1032", "AC1.50", "AC2.10"}) {
    OdString description;
    const OdResult code = ReadError(Write("real.dxf", std::string(mark) + std::string(200, '\0')), &description);
    EXPECT_NE(code, eOk) << mark;
    EXPECT_NE(code, eNotDrawingFile) << mark;
    EXPECT_NE(std::wstring(description.c_str()).find(L"real.dxf"), std::wstring::npos);
  }
  for (const char* notAMark : {"AC101", "ACAD15 and more", "ac1015 and more"}) {
    EXPECT_EQ(ReadError(Write("other.dwg", notAMark)), eNotDrawingFile) << notAMark;
  }

  EXPECT_EQ(ReadError(Write("junk.dwg", "not a drawing at all")), eNotDrawingFile);
  EXPECT_EQ(ReadError(Write("empty.dxf", "")), eNotDrawingFile);
  EXPECT_EQ(ReadError((root_ / "missing.dxf").string()), eFileNotFound);
  EXPECT_EQ(ReadError(root_.string()), eCantOpenFile);
}

TEST_F(HostFiles, RecoveryKeepsWhatADamagedFileHolds) {
  const std::string whole = Slurp(kCorpusDxf);
  const std::string cut = Write("cut.dxf", whole.substr(0, whole.size() * 2 / 3));
  OdDbHostAppServices services;
  EXPECT_THROW(services.readFile(toOdString(cut)), OdError);

  OdDbAuditInfo audit;
  audit.fixErrors = true;
  const OdDbDatabasePtr recovered = services.recoverFile(toOdString(cut), &audit);
  ASSERT_NE(recovered, nullptr);
  EXPECT_NE(recovered->layerZero(), nullptr);
  EXPECT_GT(audit.numErrors, 0u);
  EXPECT_EQ(audit.numFixes, audit.numErrors);

  OdDbAuditInfo untouched;
  services.recoverFile(toOdString(kCorpusDxf), &untouched);
  EXPECT_EQ(untouched.numErrors, 0u);
  // Nothing of a drawing: recovery still fails.
  EXPECT_THROW(services.recoverFile(toOdString(Write("noise.dxf", "\x01\x02\x03"))), OdError);
}

TEST_F(HostFiles, KitSearchFallsBackToTheOneNameDifferingInCase) {
  Write("Romans.SHX", "x");
  Write("twin.shx", "x");
  Write("TWIN.shx", "x");
  fs::create_directories(root_ / "folder.shx");
  OdDbHostAppServices services;
  auto find = [&](const std::string& name) {
    const OdString found = services.findFile(toOdString((root_ / name).string()));
    return found.isEmpty() ? std::string() : fs::path(found.str()).filename().string();
  };
  EXPECT_EQ(find("Romans.SHX"), "Romans.SHX");
  EXPECT_EQ(find("romans.shx"), "Romans.SHX");
  EXPECT_EQ(find("twin.shx"), "twin.shx");  // the exact name wins over the other spelling
  EXPECT_EQ(find("Twin.SHX"), "");          // two candidates: neither is taken
  EXPECT_EQ(find("FOLDER.SHX"), "");        // directories are not files
  EXPECT_EQ(find("nothing.shx"), "");
  EXPECT_TRUE(services.findFile(OdString()).isEmpty());
}

TEST_F(HostFiles, LoadsReportToTheServicesMeter) {
  struct CountingMeter : OdDbHostAppProgressMeter {
    void start(const OdString&) override { ++starts; }
    void stop() override { ++stops; }
    void meterProgress() override {}
    void setLimit(int) override {}
    int starts = 0, stops = 0;
  };
  struct MeteredServices : OdDbHostAppServices {
    OdDbHostAppProgressMeter* progressMeter() override { return &meter; }
    CountingMeter meter;
  } services;
  services.readFile(toOdString(kCorpusDxf));
  EXPECT_THROW(services.readFile(toOdString(Write("junk.dxf", "junk"))), OdError);
  EXPECT_EQ(services.meter.starts, 2);
  EXPECT_EQ(services.meter.stops, 2);  // stopped also when the read fails
}

TEST_F(HostFiles, WritersByTypeAndVersion) {
  const OdDbDatabasePtr db = readDxfFile(kCorpusDxf);
  const std::string target = (root_ / "out.dxf").string();

  writeDrawingFile(*db, target, kSaveDxf, kDwgVersionAC1024);
  EXPECT_EQ(readDxfFile(target)->originalFileVersion(), "AC1024");
  writeDrawingFile(*db, target, kSaveDxf, 0);
  EXPECT_EQ(readDxfFile(target)->originalFileVersion(), db->originalFileVersion());

  const std::string dwg = (root_ / "out.dwg").string();
  try {
    writeDrawingFile(*db, dwg, kSaveDwg, kDwgVersionAC1024);
    ADD_FAILURE() << "DWG writing is not expected to succeed";
  } catch (const OdError& error) {
    EXPECT_EQ(error.code(), eNotImplemented);
  }
  EXPECT_FALSE(fs::exists(dwg));
  EXPECT_THROW(writeDrawingFile(*db, target, kSaveDxf, 28), OdError);
}

TEST_F(HostFiles, NewDatabasesHoldTheStandardRecords) {
  OdDbHostAppServices services;
  const OdDbDatabasePtr db = services.createDatabase();
  ASSERT_NE(db, nullptr);
  EXPECT_NE(db->layerZero(), nullptr);
  EXPECT_NE(db->modelSpace(), nullptr);
  EXPECT_NE(db->linetypeContinuous(), nullptr);
  EXPECT_NE(services.createDatabase(), db);
}

}  // namespace
