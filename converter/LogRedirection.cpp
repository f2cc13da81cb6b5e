// LOG: a log file replaces standard output from the moment it is named until EndConversion, so
// that every line of the run, traces included, lands in the file and nothing on the terminal.
#include <fstream>
#include <iostream>

#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// One log per process: a second name given later writes into the file opened first.
std::ofstream& LogStream() {
  static std::ofstream stream;
  return stream;
}

}  // namespace

int CDm2017::SetLogFileName(const OdString& name) {
  TraceMessage("Log File Name", name);
  logFileName = name;
  std::ofstream& log = LogStream();
  if (!log.is_open()) {
    std::string path;
    log.open(OdStringToUtf8(path, name), std::ios::out | std::ios::trunc);
  }
  // A log that cannot be opened leaves standard output as it is rather than losing every line.
  if (!log.is_open()) return 0;
  std::cout.flush();
  if (!savedStdoutBuffer) savedStdoutBuffer = std::cout.rdbuf();
  std::cout.rdbuf(log.rdbuf());
  return 0;
}

void CDm2017::RestoreStandardOutput() {
  if (!savedStdoutBuffer) return;
  std::cout.flush();
  std::cout.rdbuf(savedStdoutBuffer);
  savedStdoutBuffer = nullptr;
}
