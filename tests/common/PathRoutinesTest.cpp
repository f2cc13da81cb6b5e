// Path splitting and separator routines on ordinary and odd paths.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "projects/common/CommonRoutines.h"

namespace {

TEST(SplitPath, DirectoryBaseNameAndExtension) {
  struct Case {
    std::string path, directory, baseName, extension;
  };
  const std::vector<Case> cases = {
      {"/srv/in/plan.dwg", "/srv/in/", "plan", "dwg"},
      {"C:\\Drawings\\Plan.DWG", "C:\\Drawings\\", "Plan", "DWG"},
      {"mixed/dir\\file.tar.gz", "mixed/dir\\", "file.tar", "gz"},
      {"plan", "", "plan", ""},
      {"dir.v2/plan", "dir.v2/", "plan", ""},
      {"dir/", "dir/", "", ""},
      {"", "", "", ""},
      {"dir/.hidden", "dir/", "", "hidden"},
      {"name.", "", "name", ""},
      {"fonts\\U+00E9.shx", "", "fonts\\U+00E9", "shx"},
  };
  for (const Case& c : cases) {
    std::string directory = "x", baseName = "x", extension = "x";
    SplitPath(c.path, directory, baseName, extension);
    EXPECT_EQ(directory, c.directory) << c.path;
    EXPECT_EQ(baseName, c.baseName) << c.path;
    EXPECT_EQ(extension, c.extension) << c.path;
  }
}

TEST(LastSeparator, LaterOfBothKindsButNeverAnEscapeBackslash) {
  struct Case {
    std::wstring path;
    int expected;
  };
  const std::vector<Case> cases = {
      {L"C:\\fonts\\U+00E9x", 2},
      {L"a/b\\c", 3},
      {L"a\\b/c", 3},
      {L"plain", -1},
      {L"", -1},
      {L"/", 0},
      {L"\\U+0041\\U+0042", -1},
      {L"dir\\\\U+0041", 3},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(LastSeparator(OdString(c.path)), c.expected);
    EXPECT_EQ(LastSeparator(std::string(c.path.begin(), c.path.end())), c.expected);
  }
}

TEST(PathSeparatorOf, KindOfTheLaterSeparator) {
  struct Case {
    std::wstring path;
    bool found;
    OdChar separator;
  };
  const std::vector<Case> cases = {
      {L"a/b\\c", true, L'\\'}, {L"a\\b/c", true, L'/'}, {L"plain", false, L'/'}, {L"\\", true, L'\\'},
  };
  for (const Case& c : cases) {
    OdChar separator = L'?';
    EXPECT_EQ(PathSeparatorOf(OdString(c.path), separator), c.found);
    EXPECT_EQ(separator, c.separator);
  }
}

TEST(FileNameParts, ExtensionAndBaseNameFollowTheShortExtensionRule) {
  struct Case {
    std::wstring path, extension, baseName;
  };
  const std::vector<Case> cases = {
      {L"/srv/in/plan.dwg", L"dwg", L"plan"},
      {L"C:\\in\\Plan.DWG\"", L"DWG", L"Plan"},
      {L"image.jpeg", L"jpeg", L"image"},
      {L"image.tiffx", L"", L"image.tiffx"},
      {L"archive.backup", L"", L"archive.backup"},
      {L"plan", L"", L"plan"},
      {L"", L"", L""},
      // The dot search does not stop at separators.
      {L"a.b/c", L"b/c", L"a"},
      {L"dir.d/plan", L"", L"plan"},
      // A separator at the very start is kept.
      {L"/plan.dwg", L"dwg", L"/plan"},
      {L"fonts\\U+00E9.shx", L"shx", L"fonts\\U+00E9"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetFileExtension(OdString(c.path)).str(), c.extension) << c.path.size();
    EXPECT_EQ(GetFileBaseName(OdString(c.path)).str(), c.baseName) << c.path.size();
  }
}

}  // namespace
