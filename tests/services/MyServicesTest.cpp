// File lookup along the search lists, as the kit's callbacks use it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include "services/MyServices.h"
#include "services/Trace.h"

namespace fs = std::filesystem;

namespace {

class Lookup : public ::testing::Test {
protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("dm_lookup_" + std::to_string(getpid()));
    fs::remove_all(root_);
    fs::create_directories(root_ / "fonts");
    fs::create_directories(root_ / "xrefs");
    saved_ = std::cout.rdbuf(out_.rdbuf());
    SetTraceEnabled(true);
  }
  void TearDown() override {
    SetTraceEnabled(false);
    std::cout.rdbuf(saved_);
    fs::remove_all(root_);
  }
  void Touch(const fs::path& file) { std::ofstream(root_ / file) << "x"; }
  OdString Dir(const char* name) const { return OdString((root_ / name).string()); }
  std::string Out() const { return out_.str(); }

  fs::path root_;
  std::ostringstream out_;
  std::streambuf* saved_ = nullptr;
};

TEST_F(Lookup, PathListsGetSeparatorsAndSkipDuplicates) {
  MyServices services;
  services.SetFontPaths(OdString(L"/a;/b/;/a"));
  ASSERT_EQ(services.GetFontPaths().size(), 2u);
  EXPECT_EQ(std::wstring(services.GetFontPaths()[0].c_str()), L"/a/");
  EXPECT_EQ(std::wstring(services.GetFontPaths()[1].c_str()), L"/b/");
  const std::string out = Out();
  size_t count = 0;
  for (size_t at = out.find("Add to fontPath"); at != std::string::npos; at = out.find("Add to fontPath", at + 1)) ++count;
  EXPECT_EQ(count, 2u);
}

TEST_F(Lookup, ShapeFontWithoutExtensionIsFoundInTheFontDirectories) {
  Touch("fonts/romans.shx");
  MyServices services;
  services.AddToFontPath(Dir("xrefs"));
  services.AddToFontPath(Dir("fonts"));
  const OdString found = services.findFile(OdString(L"romans"), nullptr, OdDbHostAppServices::kCompiledShapeFile);
  EXPECT_EQ(fs::path(std::wstring(found.c_str())), root_ / "fonts/romans.shx");
  EXPECT_NE(Out().find("Found Font"), std::string::npos);
}

TEST_F(Lookup, ReferenceWithoutExtensionTriesEachDrawingKind) {
  Touch("xrefs/plan.dxf");
  MyServices services;
  services.SetXrefPaths(OdString((root_ / "fonts").string() + ";" + (root_ / "xrefs").string()));
  const OdString found = services.findFile(OdString(L"C:\\old\\place\\plan"));
  EXPECT_EQ(fs::path(std::wstring(found.c_str())), root_ / "xrefs/plan.dxf");
  EXPECT_NE(Out().find("*** No extension found"), std::string::npos);
  EXPECT_NE(Out().find("Found XRef"), std::string::npos);
}

TEST_F(Lookup, MissesReturnEmptyAndSayFileNotFound) {
  MyServices services;
  services.AddToXPath(Dir("xrefs"));
  EXPECT_TRUE(services.findFile(OdString(L"nowhere.dwg")).isEmpty());
  EXPECT_TRUE(services.findFile(OdString()).isEmpty());
  EXPECT_NE(Out().find("File Not Found"), std::string::npos);
}

}  // namespace
