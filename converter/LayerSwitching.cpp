// Switching the layers of the LOFF and LON lists, or every layer, off or on in the drawing.
#include <string>
#include <vector>

#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

void SwitchListedLayers(const OdString& list, bool off) {
  if (!g_pDb) return;
  std::string utf8;
  std::vector<std::string> names;
  SplitAny(names, OdStringToUtf8(utf8, list), ";");
  for (const std::string& name : names) {
    if (name.empty()) continue;
    if (LayerRecord* layer = g_pDb->layers().find(name)) {
      layer->setIsOff(off);
    } else {
      TraceMessage("Unable to find Layer", name);
    }
  }
}

void SwitchEveryLayer(bool off) {
  if (!g_pDb) return;
  for (LayerRecord* layer : g_pDb->layers()) layer->setIsOff(off);
}

}  // namespace

int CDm2017::SetLayersOff() {
  TraceMessage("Set Layers Off");
  SwitchListedLayers(layersOff, true);
  return 0;
}

int CDm2017::SetLayersOn() {
  TraceMessage("Set Layers On");
  SwitchListedLayers(layersOn, false);
  return 0;
}

int CDm2017::SetAllLayersOff() {
  TraceMessage("Set All Layers Off");
  SwitchEveryLayer(true);
  return 0;
}

int CDm2017::SwitchAllLayersOn() {
  TraceMessage("Set All Layers On");
  SwitchEveryLayer(false);
  return 0;
}
