#include "app/CrashHandler.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <execinfo.h>
#include <unistd.h>

namespace {

void ReportCrash(int signalNumber) {
  void* frames[10];
  const int count = backtrace(frames, 10);
  std::fprintf(stderr, "Error: signal %d:\n", signalNumber);
  backtrace_symbols_fd(frames, count, STDERR_FILENO);
  std::exit(1);
}

}  // namespace

void InstallCrashHandler() { std::signal(SIGSEGV, ReportCrash); }
