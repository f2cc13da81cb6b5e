#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

bool statPath(const std::string& path, struct stat& info) { return stat(path.c_str(), &info) == 0; }

// Copying from a file that is not there is a caller's fault: stop as a failed assertion would, also
// in builds where assert() is compiled out.
[[noreturn]] void failMissingSource() {
  std::fprintf(stderr, "projects/common/CommonRoutines: copyFile: Assertion `fileExists(fileNameFrom)' failed.\n");
  std::fflush(stderr);
  std::abort();
}

bool sameFile(const std::string& a, const std::string& b) {
  struct stat first {}, second {};
  return statPath(a, first) && statPath(b, second) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace

bool fileExists(const std::string& path) {
  struct stat info {};
  return statPath(path, info);
}

bool fileExists(const OdString& path) {
  std::string utf8;
  return fileExists(OdStringToUtf8(utf8, path));
}

bool directoryExists(const std::string& path) {
  struct stat info {};
  return statPath(path, info) && S_ISDIR(info.st_mode);
}

bool IsDirectory(const std::string& path) { return directoryExists(path); }

bool IsRegularFile(const std::string& path) {
  struct stat info {};
  return statPath(path, info) && !S_ISDIR(info.st_mode);
}

bool copyFile(std::string fileNameFrom, std::string fileNameTo) {
  if (!fileExists(fileNameFrom)) failMissingSource();
  // Opening the destination would empty the source.
  if (sameFile(fileNameFrom, fileNameTo)) return true;
  {
    std::ifstream in(fileNameFrom, std::ios::binary);
    std::ofstream out(fileNameTo, std::ios::binary | std::ios::trunc);
    if (in && out && in.peek() != std::ifstream::traits_type::eof()) out << in.rdbuf();
  }
  return fileExists(fileNameTo);
}

bool MoveFile(const OdString& from, const OdString& to) {
  std::string source, destination;
  OdStringToUtf8(source, from);
  OdStringToUtf8(destination, to);
  // A missing source is reported as a failed move here rather than stopping the process in copyFile.
  if (!fileExists(source)) return false;
  if (sameFile(source, destination)) return true;
  bool copied = copyFile(source, destination);
  TraceMessage("Delete From file", source);
  std::remove(source.c_str());
  return copied;
}
