#include "tests/app/RunProgram.h"

#include <sys/wait.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

std::string ReadWholeFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

ProgramRun RunDm2020(const std::string& arguments, const fs::path& directory) {
  const fs::path outFile = directory / ".run.out";
  const fs::path errFile = directory / ".run.err";
  const std::string command = "cd '" + directory.string() + "' && '" DM2020_EXE "' " + arguments +
                              " >'" + outFile.string() + "' 2>'" + errFile.string() + "'";
  ProgramRun run;
  const int raw = std::system(command.c_str());
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = ReadWholeFile(outFile);
  run.err = ReadWholeFile(errFile);
  fs::remove(outFile);
  fs::remove(errFile);
  return run;
}

ScratchDirectory::ScratchDirectory() {
  static std::atomic<int> counter{0};
  path_ = fs::temp_directory_path() /
          ("dm2020-test-" + std::to_string(getpid()) + "-" + std::to_string(counter++));
  fs::remove_all(path_);
  fs::create_directories(path_);
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}
