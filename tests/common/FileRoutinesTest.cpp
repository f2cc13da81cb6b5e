// File tests, copying and moving, whole-file reading and the case-insensitive lookups, each in a
// fresh temporary directory.
#include <FreeImage.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace fs = std::filesystem;

namespace {

class TempDirectory : public testing::Test {
protected:
  void SetUp() override {
    char pattern[] = "/tmp/dm_files_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    root_ = pattern;
  }
  void TearDown() override {
    if (!savedCwd_.empty()) fs::current_path(savedCwd_);
    std::error_code ignored;
    fs::remove_all(root_, ignored);
    SetTraceEnabled(false);
  }
  std::string path(const std::string& name) const { return (root_ / name).string(); }
  void write(const std::string& name, const std::string& content) const {
    fs::create_directories((root_ / name).parent_path());
    std::ofstream(root_ / name, std::ios::binary) << content;
  }
  std::string read(const std::string& name) const {
    std::string content;
    ReadWholeFile(path(name), content);
    return content;
  }
  void enterRoot() {
    savedCwd_ = fs::current_path();
    fs::current_path(root_);
  }

  fs::path root_;
  fs::path savedCwd_;
};

using FileTests = TempDirectory;
using LookupTests = TempDirectory;

TEST_F(FileTests, ExistenceTestsTellFilesFromDirectories) {
  write("file.txt", "x");
  fs::create_directory(root_ / "dir");
  struct Case {
    std::string name;
    bool exists, directory, regular;
  };
  const std::vector<Case> cases = {
      {"file.txt", true, false, true}, {"dir", true, true, false}, {"missing", false, false, false},
      {"file.txt/below", false, false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(fileExists(path(c.name)), c.exists) << c.name;
    EXPECT_EQ(directoryExists(path(c.name)), c.directory) << c.name;
    EXPECT_EQ(IsDirectory(path(c.name)), c.directory) << c.name;
    EXPECT_EQ(IsRegularFile(path(c.name)), c.regular) << c.name;
  }
  EXPECT_FALSE(fileExists(std::string()));
}

TEST_F(FileTests, OdStringPathsReachTheFileSystemAsUtf8) {
  write("Z\xC3\xBCrich \xE2\x82\xAC.dwg", "x");
  EXPECT_TRUE(fileExists(OdString((root_.wstring() + L"/Z\xFCrich \x20AC.dwg").c_str())));
  std::string content;
  EXPECT_EQ(ReadWholeFile(OdString((root_.wstring() + L"/Z\xFCrich \x20AC.dwg").c_str()), content), 1u);
}

TEST_F(FileTests, CopyFileCopiesEveryByte) {
  const std::string binary("a\0b\xFF\r\n", 6);
  write("src.bin", binary);
  write("empty", "");
  fs::create_directory(root_ / "dir");
  EXPECT_TRUE(copyFile(path("src.bin"), path("dst.bin")));
  EXPECT_EQ(read("dst.bin"), binary);
  write("old.bin", "longer old content");
  EXPECT_TRUE(copyFile(path("src.bin"), path("old.bin")));
  EXPECT_EQ(read("old.bin"), binary);
  EXPECT_TRUE(copyFile(path("empty"), path("empty.copy")));
  EXPECT_EQ(fs::file_size(root_ / "empty.copy"), 0u);
  EXPECT_FALSE(copyFile(path("src.bin"), path("no/such/dir/dst.bin")));
  // Copying a file onto itself keeps it.
  EXPECT_TRUE(copyFile(path("src.bin"), path("dir/../src.bin")));
  EXPECT_EQ(read("src.bin"), binary);
}

TEST_F(FileTests, CopyFileFromAMissingSourceStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(copyFile(path("missing"), path("dst")), "fileExists\\(fileNameFrom\\)");
}

TEST_F(FileTests, MoveFileRemovesTheSourceAndTracesIt) {
  write("a.txt", "moved");
  SetTraceEnabled(true);
  testing::internal::CaptureStdout();
  EXPECT_TRUE(MoveFile(OdString(path("a.txt")), OdString(path("b.txt"))));
  std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(printed, "Delete From file: " + path("a.txt") + "\n");
  EXPECT_FALSE(fs::exists(root_ / "a.txt"));
  EXPECT_EQ(read("b.txt"), "moved");

  // The source goes even when the copy fails.
  write("c.txt", "lost");
  EXPECT_FALSE(MoveFile(OdString(path("c.txt")), OdString(path("no/dir/c.txt"))));
  EXPECT_FALSE(fs::exists(root_ / "c.txt"));

  EXPECT_FALSE(MoveFile(OdString(path("missing")), OdString(path("d.txt"))));
  EXPECT_FALSE(fs::exists(root_ / "d.txt"));
  EXPECT_TRUE(MoveFile(OdString(path("b.txt")), OdString(path("./b.txt"))));
  EXPECT_EQ(read("b.txt"), "moved");
}

TEST_F(FileTests, ReadWholeFileReturnsTheLengthOrZero) {
  const std::string binary("\0\x01{json}\xFE", 9);
  write("data", binary);
  fs::create_directory(root_ / "dir");
  std::string content = "untouched";
  EXPECT_EQ(ReadWholeFile(path("data"), content), 9u);
  EXPECT_EQ(content, binary);
  content = "untouched";
  EXPECT_EQ(ReadWholeFile(path("missing"), content), 0u);
  EXPECT_EQ(ReadWholeFile(path("dir"), content), 0u);
  EXPECT_EQ(content, "untouched");
}

TEST(ExtractJsonObject, CutsTheFirstBalancedObject) {
  struct Case {
    std::string text;
    bool found;
    std::string object;
  };
  const std::vector<Case> cases = {
      {"junk {\"a\": {\"b\": 1}} tail {}", true, "{\"a\": {\"b\": 1}}"},
      {"{}", true, "{}"},
      {"no braces", false, ""},
      {"{ \"open\": {", false, ""},
      {"} {x}", true, "{x}"},
      // Braces inside strings are counted like any other.
      {"{\"s\": \"}\"}", true, "{\"s\": \"}"},
  };
  for (const Case& c : cases) {
    std::string object;
    EXPECT_EQ(ExtractJsonObject(c.text, object), c.found) << c.text;
    EXPECT_EQ(object, c.object) << c.text;
  }
}

TEST_F(LookupTests, FindFileNoCaseInTheCurrentDirectory) {
  write("plan.dwg", "x");
  write("README", "x");
  enterRoot();
  struct Case {
    std::string path;
    bool found;
    std::string result;
  };
  const std::vector<Case> cases = {
      {"Plan.DWG", true, "./plan.dwg"},
      {"plan.dwg", true, "plan.dwg"},
      {"readme", true, "./README"},
      {"plan", false, ""},
      {"plan.dwgx", false, ""},
  };
  for (const Case& c : cases) {
    std::string result;
    EXPECT_EQ(FindFileNoCase(c.path, result), c.found) << c.path;
    EXPECT_EQ(result, c.result) << c.path;
  }
}

TEST_F(LookupTests, FindFileNoCaseInAGivenDirectory) {
  write("Sub/Raster.PNG", "x");
  std::string result;
  EXPECT_TRUE(FindFileNoCase(path("Sub/raster.png"), result));
  EXPECT_EQ(result, path("Sub/Raster.PNG"));
  // Only the file name is matched without case; the directory must be written as it is.
  testing::internal::CaptureStdout();
  EXPECT_FALSE(FindFileNoCase(path("sub/raster.png"), result));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Unable to open directory: " + path("sub/") + "\n");
}

TEST_F(LookupTests, FindFileNoCaseRefusesAmbiguousNames) {
  write("A.TXT", "1");
  write("a.txt", "2");
  std::string result = "untouched";
  testing::internal::CaptureStdout();
  EXPECT_FALSE(FindFileNoCase(path("a.TXT"), result));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Multiple matching files found: " + path("a.TXT") + "\n");
  EXPECT_EQ(result, "untouched");
}

TEST_F(LookupTests, FindDirectoryNoCaseMatchesOnlyDirectories) {
  fs::create_directories(root_ / "Fonts");
  write("fonts.txt", "x");
  write("Data", "a file, not a directory");
  std::string result;
  EXPECT_TRUE(FindDirectoryNoCase(root_.string(), "FONTS", result));
  EXPECT_EQ(result, path("Fonts"));
  EXPECT_TRUE(FindDirectoryNoCase(root_.string() + "/", "fonts", result));
  EXPECT_EQ(result, path("Fonts"));
  EXPECT_FALSE(FindDirectoryNoCase(root_.string(), "data", result));
  EXPECT_TRUE(FindDirectoryNoCase("", "TMP", result));
  EXPECT_EQ(result, "/tmp");

  fs::create_directories(root_ / "fonts");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(FindDirectoryNoCase(root_.string(), "FONTS", result));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Multiple matching files found: " + path("FONTS") + "\n");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(FindDirectoryNoCase(path("gone"), "x", result));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Unable to open directory: " + path("gone") + "\n");
}

TEST_F(FileTests, ConvertToPngReportsAMissingInput) {
  SetTraceEnabled(true);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(ConvertToPNG(path("missing.tif"), path("out.png"), 50));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "ConvertToPNG: " + path("missing.tif") + "\nInput Raster File Not Found: " + path("missing.tif") + "\n");
  EXPECT_FALSE(fs::exists(root_ / "out.png"));
}

TEST_F(FileTests, ConvertToPngReportsAnUnreadableResult) {
  // Whatever the converter command does with a text file, no image comes back to load.
  write("it's not an image.bmp", "plain text");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(ConvertToPNG(path("it's not an image.bmp"), path("out.png"), 50));
  std::string printed = testing::internal::GetCapturedStdout();
  EXPECT_NE(printed.find("Error loading or converter raster file\n"), std::string::npos) << printed;
}

// A stand-in for the external converter that checks its arguments' shape ("input[0]" and a target)
// and copies the input, so the rest of the conversion can be watched without ImageMagick.
class FakeConverter : public TempDirectory {
protected:
  void SetUp() override {
    TempDirectory::SetUp();
    write("bin/convert",
          "#!/bin/sh\n"
          "[ $# -eq 2 ] || exit 2\n"
          "case \"$1\" in *'[0]') ;; *) exit 3 ;; esac\n"
          "cp \"${1%???}\" \"$2\"\n");
    chmod(path("bin/convert").c_str(), 0755);
    const char* old = getenv("PATH");
    savedPath_ = old ? old : "";
    setenv("PATH", (path("bin") + ":" + savedPath_).c_str(), 1);
  }
  void TearDown() override {
    setenv("PATH", savedPath_.c_str(), 1);
    TempDirectory::TearDown();
  }
  // A one-pixel grey PNG.
  void writeGreyPixel(const std::string& name, BYTE level) {
    FIBITMAP* image = FreeImage_Allocate(1, 1, 24);
    RGBQUAD colour{level, level, level, 0};
    FreeImage_SetPixelColor(image, 0, 0, &colour);
    FreeImage_Save(FIF_PNG, image, path(name).c_str(), 0);
    FreeImage_Unload(image);
  }
  int greyLevelOf(const std::string& name) {
    FIBITMAP* image = FreeImage_Load(FIF_PNG, path(name).c_str(), 0);
    if (!image) return -1;
    RGBQUAD colour{};
    FreeImage_GetPixelColor(image, 0, 0, &colour);
    FreeImage_Unload(image);
    return colour.rgbGreen;
  }

  std::string savedPath_;
};

TEST_F(FakeConverter, ConvertsQuotedNamesAndAdjustsBrightnessOnlyAwayFromFifty) {
  writeGreyPixel("it's grey.png", 100);
  testing::internal::CaptureStdout();
  EXPECT_TRUE(ConvertToPNG(path("IT'S GREY.png"), path("same.png"), 50));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(greyLevelOf("same.png"), 100);

  testing::internal::CaptureStdout();
  EXPECT_TRUE(ConvertToPNG(path("it's grey.png"), path("brighter.png"), 75));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Adjusting brightness: 75\n");
  EXPECT_GT(greyLevelOf("brighter.png"), 100);

  testing::internal::CaptureStdout();
  EXPECT_TRUE(ConvertToPNG(path("it's grey.png"), path("darker.png"), 0));
  testing::internal::GetCapturedStdout();
  EXPECT_LT(greyLevelOf("darker.png"), 100);
}

TEST_F(FileTests, ConvertToPngWithTheInstalledConverter) {
  if (std::system("convert -version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no convert command here";
  FIBITMAP* image = FreeImage_Allocate(3, 2, 24);
  ASSERT_TRUE(FreeImage_Save(FIF_TIFF, image, path("scan.tif").c_str(), 0));
  FreeImage_Unload(image);
  EXPECT_TRUE(ConvertToPNG(path("scan.tif"), path("scan.png"), 50));
  FIBITMAP* png = FreeImage_Load(FIF_PNG, path("scan.png").c_str(), 0);
  ASSERT_NE(png, nullptr);
  EXPECT_EQ(FreeImage_GetWidth(png), 3u);
  EXPECT_EQ(FreeImage_GetHeight(png), 2u);
  FreeImage_Unload(png);
}

}  // namespace
