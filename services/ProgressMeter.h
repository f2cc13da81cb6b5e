// The two progress meters the kit drives: one for the host services of DWG, DXF, DWF and PDF work,
// one for DGN imports. Both print the same lines to standard output; the host services' meter is
// silenced by the converter (disableOutput) so that drawing loads print nothing by default.
#pragma once

#include <cstdint>
#include <string>

#include "kit/base/OdString.h"
#include "kit/host/ProgressMeter.h"

class ConsoleProgressMeter : public OdDbHostAppProgressMeter {
public:
  // "<prefix>------- Started <displayString>"
  void start(const OdString& displayString = OdString::kEmpty) override;
  // "<prefix>------- Stopped"
  void stop() override;
  // Counts one step; prints "<prefix>Progress: <percent>%" once the percentage has grown by a
  // whole point since the last line.
  void meterProgress() override;
  // Restarts the count; "<prefix>Meter Limit: <max>"
  void setLimit(int max) override;

  void setPrefix(const OdString& prefix) { prefix_ = prefix; }
  const OdString& prefix() const { return prefix_; }
  void setDisableOutput(bool disable) { disableOutput_ = disable; }
  bool disableOutput() const { return disableOutput_; }
  std::int64_t limit() const { return limit_; }
  std::int64_t current() const { return current_; }
  std::int64_t lastReported() const { return lastReported_; }

protected:
  // One finished line, with its line end.
  virtual void writeLine(const std::string& line);

private:
  std::string prefixUtf8() const;

  OdString prefix_;
  std::int64_t limit_ = 0;
  std::int64_t current_ = 0;
  std::int64_t lastReported_ = 0;
  bool disableOutput_ = false;
};

// The meter of the host services (MyServices).
class HostAppProgressMeter : public ConsoleProgressMeter {};

// The meter of DGN imports; it writes with the C library's stdio rather than the stream.
class OdExDgnHostAppProgressMeter : public ConsoleProgressMeter {
protected:
  void writeLine(const std::string& line) override;
};
