// Helpers shared by the output driver base tests: a scratch program directory (the font map files
// live there and the driver writes one back when it is deleted) and captured trace lines.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/ProgramInfo.h"
#include "services/Trace.h"

namespace drvtest {

// Points the program directory at a fresh folder for the lifetime of the object.
class ScratchProgramDirectory {
public:
  explicit ScratchProgramDirectory(const std::string& name) {
    path_ = std::filesystem::temp_directory_path() / ("dm_drvbase_" + name);
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
    saved_ = g_ProgramDirectory;
    g_ProgramDirectory = path_.string() + "/";
  }
  ~ScratchProgramDirectory() {
    g_ProgramDirectory = saved_;
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path file(const std::string& name) const { return path_ / name; }

private:
  std::filesystem::path path_;
  std::string saved_;
};

inline void WriteText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

inline std::string ReadText(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// A driver that takes new true colours, as the SVG and PDF writers do.
class TrueColorDriver : public TRANS_BASE2 {
public:
  int AcceptsTrueColors() override { return 1; }
};

// Every test file's drivers share one scratch directory, so no test writes beside the test program.
class DriverTest : public ::testing::Test {
protected:
  DriverTest() : scratch_(::testing::UnitTest::GetInstance()->current_test_info()->name()) {}
  ScratchProgramDirectory scratch_;
};

inline OdString W(const char* text) { return OdString(text); }

}  // namespace drvtest
