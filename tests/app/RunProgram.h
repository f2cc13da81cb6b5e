// Runs the built dm2020 in a scratch directory and returns what the shell sees: the exit status and
// everything the program printed.
#pragma once

#include <filesystem>
#include <string>

struct ProgramRun {
  int status = -1;
  std::string out;  // standard output
  std::string err;  // standard error
};

// `arguments` is a shell fragment (quote what needs quoting); runs with `directory` as the working
// directory.
ProgramRun RunDm2020(const std::string& arguments, const std::filesystem::path& directory);

// A fresh, empty directory for one test, removed with the object.
class ScratchDirectory {
public:
  ScratchDirectory();
  ~ScratchDirectory();
  const std::filesystem::path& path() const { return path_; }

private:
  std::filesystem::path path_;
};

std::string ReadWholeFile(const std::filesystem::path& file);
