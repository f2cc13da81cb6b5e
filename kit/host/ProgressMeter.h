// The progress meter the kit drives while it reads and imports drawings: it announces the start of
// a task, sets how many steps it will report, reports each step, and announces the end. The host
// application decides what, if anything, is shown.
#pragma once

#include "kit/base/OdString.h"

class OdDbHostAppProgressMeter {
public:
  virtual ~OdDbHostAppProgressMeter() = default;

  virtual void start(const OdString& displayString = OdString::kEmpty) = 0;
  virtual void stop() = 0;
  virtual void meterProgress() = 0;
  virtual void setLimit(int max) = 0;
};
