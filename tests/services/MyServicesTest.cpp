// File lookup along the search lists, as the kit's callbacks use it: which file is found, in which
// order places are tried, and the trace lines a lookup leaves.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "services/MyDgnServices.h"
#include "services/MyServices.h"
#include "services/Trace.h"

namespace fs = std::filesystem;

namespace {

size_t Count(const std::string& text, const std::string& what) {
  size_t count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

class Lookup : public ::testing::Test {
protected:
  void SetUp() override {
    root_ = fs::temp_directory_path() / ("dm_lookup_" + std::to_string(getpid()));
    fs::remove_all(root_);
    for (const char* dir : {"fonts", "more", "xrefs", "old"}) fs::create_directories(root_ / dir);
    saved_ = std::cout.rdbuf(out_.rdbuf());
    SetTraceEnabled(true);
  }
  void TearDown() override {
    SetTraceEnabled(false);
    std::cout.rdbuf(saved_);
    fs::remove_all(root_);
  }
  void Touch(const std::string& file) { std::ofstream(root_ / file) << "x"; }
  OdString Dir(const char* name) const { return toOdString((root_ / name).string()); }
  // The file found, relative to the test's root; empty when none.
  std::string Relative(const OdString& found) const {
    return found.isEmpty() ? std::string() : fs::path(found.str()).lexically_relative(root_).string();
  }
  std::string Out() const { return out_.str(); }

  fs::path root_;
  std::ostringstream out_;
  std::streambuf* saved_ = nullptr;
};

TEST_F(Lookup, SearchListsEndInSeparatorsAndSkipDuplicatesAndEmptyPieces) {
  MyServices services;
  services.SetFontPaths(OdString(L"/a;/b/;/a;;C:\\fonts\\"));
  std::vector<std::wstring> fonts;
  for (const OdString& path : services.GetFontPaths()) fonts.push_back(path.str());
  EXPECT_EQ(fonts, (std::vector<std::wstring>{L"/a/", L"/b/", L"C:\\fonts\\"}));
  EXPECT_EQ(Count(Out(), "Add to fontPath: "), 3u);

  services.SetFontPaths(OdString(L"/c"));  // a new list replaces the old one
  ASSERT_EQ(services.GetFontPaths().size(), 1u);
  EXPECT_EQ(services.GetFontPaths()[0].str(), L"/c/");

  services.AddStandardDirectories(OdString(L"/work/dir/"), OdString(L"C:\\in\\plan.dwg"), OdString(L"dm2020"));
  services.AddStandardDirectories(OdString(L"/work/dir/"), OdString(L"/work/dir/x.dxf"), OdString(L"bin/dm2020"));
  std::vector<std::wstring> xrefs;
  for (const OdString& path : services.GetXrefPaths()) xrefs.push_back(path.str());
  EXPECT_EQ(xrefs, (std::vector<std::wstring>{L"/work/dir/", L"C:\\in\\", L"bin/"}));
  EXPECT_EQ(Count(Out(), "Add to XPath: "), 3u);
}

TEST_F(Lookup, FontsByHintAndExtension) {
  Touch("fonts/romans.shx");
  Touch("more/romans.shx");
  Touch("more/arial.ttf");
  Touch("more/simplex.ttf");
  Touch("more/ISO3098.SHX");
  Touch("more/a.b.c");
  struct Case {
    const char* name;
    int hint;
    const char* found;
    const char* trace;
  };
  const Case cases[] = {
      {"romans", OdDbHostAppServices::kCompiledShapeFile, "fonts/romans.shx", "Found Font: "},
      {"C:\\acad\\fonts\\romans.shx", OdDbHostAppServices::kDefault, "fonts/romans.shx", "Found Font: "},
      {"arial", OdDbHostAppServices::kTrueTypeFontFile, "more/arial.ttf", "Found Font: "},
      // Without extension or hint both kinds are tried, shapes first.
      {"simplex", OdDbHostAppServices::kDefault, "more/simplex.ttf", "Found TTF Font: "},
      {"romans", OdDbHostAppServices::kDefault, "fonts/romans.shx", "Found Font: "},
      {"iso3098.shx", OdDbHostAppServices::kDefault, "more/ISO3098.SHX", "Found Font: "},
      // "a.b.c" has an extension (a dot fourth from the end): nothing is appended.
      {"a.b.c", OdDbHostAppServices::kCompiledShapeFile, "more/a.b.c", "*** No extension found"},
      {"arial", OdDbHostAppServices::kCompiledShapeFile, "", "File Not Found"},
      {"gothic.ttf", OdDbHostAppServices::kDefault, "", "File Not Found"},
  };
  MyServices services;
  services.AddToFontPath(Dir("fonts"));
  services.AddToFontPath(Dir("more"));
  for (const Case& c : cases) {
    out_.str("");
    EXPECT_EQ(Relative(services.findFile(toOdString(c.name), nullptr, c.hint)), c.found) << c.name;
    EXPECT_NE(Out().find(c.trace), std::string::npos) << c.name << "\n" << Out();
  }
}

TEST_F(Lookup, FontSearchTracesEachDirectoryItTries) {
  MyServices services;
  services.AddToFontPath(Dir("fonts"));
  services.AddToFontPath(Dir("more"));
  out_.str("");
  EXPECT_TRUE(services.findFile(OdString(L"txt"), nullptr, OdDbHostAppServices::kCompiledShapeFile).isEmpty());
  const std::string expected = "-------------------------------------\n"
                               "Checking File: txt.shx\n"
                               "File Not Found: txt.shx\n"
                               "Font Path Count: 2\n"
                               "Check Font Path Item #: 0\n"
                               "   Path: " + (root_ / "fonts").string() + "/\n"
                               "Checking: " + (root_ / "fonts").string() + "/txt.shx\n"
                               "Check Font Path Item #: 1\n"
                               "   Path: " + (root_ / "more").string() + "/\n"
                               "Checking: " + (root_ / "more").string() + "/txt.shx\n"
                               "File Not Found\n";
  EXPECT_EQ(Out(), expected);
}

TEST_F(Lookup, FontsBesideTheDrawingComeAfterTheFontPath) {
  Touch("xrefs/iso3098.shx");
  Touch("xrefs/romans.shx");
  Touch("fonts/romans.shx");
  MyServices services;
  services.AddToFontPath(Dir("fonts"));
  services.SetInputDirectory(toOdString((root_ / "xrefs").string() + "/"));
  EXPECT_EQ(Relative(services.findFile(OdString(L"iso3098.shx"))), "xrefs/iso3098.shx");
  EXPECT_EQ(Relative(services.findFile(OdString(L"iso3098"), nullptr, OdDbHostAppServices::kCompiledShapeFile)),
            "xrefs/iso3098.shx");
  EXPECT_EQ(Relative(services.findFile(OdString(L"romans.shx"))), "fonts/romans.shx");
  EXPECT_TRUE(services.findFile(OdString(L"gothic.shx")).isEmpty());
}

TEST_F(Lookup, ReferencesTryEachDrawingKindPerDirectoryInListOrder) {
  Touch("old/plan.dgn");
  Touch("xrefs/plan.dwg");
  Touch("xrefs/plan.dxf");
  Touch("xrefs/site.dxf");
  Touch("xrefs/Tower.DWG");
  struct Case {
    const char* name;
    const char* found;
  };
  const Case cases[] = {
      {"plan", "old/plan.dgn"},  // the first directory wins over a preferred extension
      {"C:\\old\\place\\site", "xrefs/site.dxf"},
      {"site.dxf", "xrefs/site.dxf"},
      {"site.dwg", ""},  // a name with a drawing extension is not tried with others
      {"tower.dwg", "xrefs/Tower.DWG"},
  };
  MyServices services;
  services.SetXrefPaths(toOdString((root_ / "fonts").string() + ";" + (root_ / "old").string() + ";" +
                                   (root_ / "xrefs").string()));
  for (const Case& c : cases) {
    EXPECT_EQ(Relative(services.findFile(toOdString(c.name))), c.found) << c.name;
  }
  out_.str("");
  services.findFile(OdString(L"plan"));
  const std::string out = Out();
  EXPECT_NE(out.find("*** No extension found"), std::string::npos);
  EXPECT_EQ(Count(out, "Checking newPath: "), 2u);  // fonts/, then old/ where it is found
  EXPECT_NE(out.find("Checking nPath as UTF8: " + (root_ / "fonts").string() + "/plan\n"), std::string::npos);
  EXPECT_NE(out.find("Checking nPath as Unicode: "), std::string::npos);
  EXPECT_NE(out.find("Found XRef: " + (root_ / "old/plan.dgn").string() + "\nFile Found\n"), std::string::npos);
  EXPECT_EQ(g_LastFoundFile.str(), (root_ / "old/plan.dgn").wstring());
}

TEST_F(Lookup, NameAsGivenWinsSilentlyAndEmptyNamesAreReturned) {
  Touch("xrefs/here.dwg");
  MyServices services;
  services.AddToFontPath(Dir("fonts"));
  out_.str("");
  const OdString direct = toOdString((root_ / "xrefs/here.dwg").string());
  EXPECT_EQ(services.findFile(direct).str(), direct.str());
  EXPECT_EQ(services.findFile(toOdString((root_ / "xrefs").string() + "\\here.dwg")).str(), direct.str());
  EXPECT_TRUE(services.findFile(OdString()).isEmpty());
  EXPECT_EQ(Out(), "");
}

TEST_F(Lookup, ReferencesOfADrawingAreLookedForBesideItBeforeTheSearchList) {
  Touch("more/chair.dxf");
  fs::create_directories(root_ / "more/parts");
  Touch("more/parts/lamp.dxf");
  Touch("xrefs/chair.dxf");
  MyServices services;
  services.SetXrefPaths(Dir("xrefs"));
  OdDbDatabase referencing;
  referencing.setFileName((root_ / "more/room.dxf").string());
  struct Case {
    const char* saved;
    const char* found;
  };
  const Case cases[] = {
      {"chair.dxf", "more/chair.dxf"},
      {"parts\\lamp.dxf", "more/parts/lamp.dxf"},
      {"C:\\office\\xrefs\\chair.dxf", "more/chair.dxf"},  // saved elsewhere, copied beside it
      {"..\\old\\gone.dxf", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Relative(services.findFile(toOdString(c.saved), &referencing)), c.found) << c.saved;
  }
  // Without the drawing, the search list decides.
  EXPECT_EQ(Relative(services.findFile(OdString(L"C:\\office\\xrefs\\chair.dxf"))), "xrefs/chair.dxf");
}

TEST_F(Lookup, ReferencesThatCannotBeDrawnAreTracedAsWarnings) {
  MyServices services;
  out_.str("");
  services.warning(OdString(L"External reference \"A\" not found: a.dwg"));
  SetTraceEnabled(false);
  services.warning(OdString(L"silent"));
  EXPECT_EQ(Out(), "Warning: External reference \"A\" not found: a.dwg\n");
}

TEST_F(Lookup, TracesOnlyWhileTracing) {
  SetTraceEnabled(false);
  MyServices services;
  services.AddToFontPath(Dir("fonts"));
  EXPECT_TRUE(services.findFile(OdString(L"missing"), nullptr, OdDbHostAppServices::kCompiledShapeFile).isEmpty());
  EXPECT_EQ(Out(), "");
}

TEST_F(Lookup, EnvironmentFontPaths) {
  const std::string acad = (root_ / "fonts").string() + ";" + (root_ / "more").string();
  setenv("ACAD", acad.c_str(), 1);
  unsetenv("ACADFONT");
  Touch("more/kanji.shx");
  MyServices services;
  services.AddEnvironmentPaths();
  unsetenv("ACAD");
  EXPECT_EQ(services.GetFontPaths().size(), 2u);
  EXPECT_NE(Out().find("ACAD path: " + acad + "\n"), std::string::npos);
  EXPECT_NE(Out().find("ACADFONT path: \n"), std::string::npos);
  EXPECT_EQ(Relative(services.findFile(OdString(L"kanji"), nullptr, OdDbHostAppServices::kCompiledShapeFile)),
            "more/kanji.shx");
}

TEST_F(Lookup, DgnReferencesAndResources) {
  Touch("xrefs/base.dgn");
  Touch("xrefs/cell.rsc");
  MyDgnServices services;
  services.AddToXPath(Dir("old"));
  services.AddToXPath(Dir("xrefs"));
  out_.str("");
  EXPECT_EQ(Relative(services.findFile(OdString(L"C:\\proj\\base"))), "xrefs/base.dgn");
  EXPECT_NE(Out().find("Found XRef: "), std::string::npos);
  EXPECT_NE(Out().find("File Found\n"), std::string::npos);

  // Resources come from the importer's own search, not from the reference list.
  out_.str("");
  EXPECT_TRUE(services.findFile(OdString(L"cell.rsc")).isEmpty());
  EXPECT_EQ(Out(), "");
  EXPECT_EQ(Relative(services.findFile(toOdString((root_ / "xrefs/cell.rsc").string()))), "xrefs/cell.rsc");

  out_.str("");
  EXPECT_TRUE(services.findFile(OdString(L"base.dwg")).isEmpty());
  EXPECT_NE(Out().find("File Not Found\n"), std::string::npos);
}

}  // namespace
