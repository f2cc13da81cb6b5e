// Helpers shared by the converter tests: captured standard output, a scratch directory per test,
// and the drawings the tests load.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "kit/base/OdString.h"

namespace converter_test {

namespace fs = std::filesystem;

inline const std::string kSampleDxf = DM_SOURCE_DIR "/samples/office.dxf";
inline std::string CorpusPath(const std::string& relative) { return std::string(DM_CORPUS_DIR) + "/" + relative; }
inline OdString Wide(const std::string& utf8) { return toOdString(utf8); }

// Captures standard output for the life of the object.
class CapturedOutput {
public:
  CapturedOutput() : saved_(std::cout.rdbuf(text_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(saved_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;
  std::string text() const { return text_.str(); }
  bool has(const std::string& what) const { return text().find(what) != std::string::npos; }
  void clear() { text_.str(""); }

private:
  std::ostringstream text_;
  std::streambuf* saved_;
};

// A fresh, empty directory, removed with the object.
class Scratch {
public:
  Scratch() {
    static std::atomic<int> counter{0};
    path_ = fs::temp_directory_path() /
            ("dm_converter_" + std::to_string(getpid()) + "_" + std::to_string(counter++));
    fs::remove_all(path_);
    fs::create_directories(path_);
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const fs::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return file(name);
  }
  std::string copy(const std::string& from, const std::string& name) const {
    fs::copy_file(from, path_ / name, fs::copy_options::overwrite_existing);
    return file(name);
  }

private:
  fs::path path_;
};

inline std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Runs with another working directory for the life of the object.
class WorkingDirectory {
public:
  explicit WorkingDirectory(const fs::path& directory) : saved_(fs::current_path()) { fs::current_path(directory); }
  ~WorkingDirectory() { fs::current_path(saved_); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
  fs::path saved_;
};

}  // namespace converter_test
