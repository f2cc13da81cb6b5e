#include "services/ProgressMeter.h"

#include <cmath>
#include <cstdio>
#include <iostream>

#include "projects/common/CommonRoutines.h"

namespace {

std::string utf8Of(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

}  // namespace

std::string ConsoleProgressMeter::prefixUtf8() const { return utf8Of(prefix_); }

void ConsoleProgressMeter::writeLine(const std::string& line) {
  std::cout << line;
  std::cout.flush();
}

void ConsoleProgressMeter::start(const OdString& displayString) {
  if (!disableOutput_) writeLine(prefixUtf8() + "------- Started " + utf8Of(displayString) + "\n");
}

void ConsoleProgressMeter::stop() {
  if (!disableOutput_) writeLine(prefixUtf8() + "------- Stopped\n");
}

void ConsoleProgressMeter::setLimit(int max) {
  limit_ = max;
  current_ = 0;
  lastReported_ = 0;
  if (!disableOutput_) writeLine(prefixUtf8() + "Meter Limit: " + std::to_string(max) + "\n");
}

void ConsoleProgressMeter::meterProgress() {
  ++current_;
  if (disableOutput_) return;
  const double limit = static_cast<double>(limit_);
  const double percent = 100.0 * static_cast<double>(current_) / limit;
  // Truncated before the comparison, so a line needs a whole point of growth. A zero limit gives
  // NaN here, which compares false: no line.
  const double step = std::trunc(percent - 100.0 * static_cast<double>(lastReported_) / limit);
  if (!(step > 0.7)) return;
  char text[64];
  std::snprintf(text, sizeof text, "Progress: %2.2f%%\n", percent);
  writeLine(prefixUtf8() + text);
  lastReported_ = current_;
}

void OdExDgnHostAppProgressMeter::writeLine(const std::string& line) {
  std::fputs(line.c_str(), stdout);
  std::fflush(stdout);
}
