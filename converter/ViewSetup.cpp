// Setting up the kit for one view: the layout helper for model space or a layout, the background
// and palette, the device size, and the vectorization itself.
#include "converter/CDm2017.h"
#include "drivers/TRANS_BASE2.h"
#include "services/Trace.h"

int CDm2017::StartVectorization() { return 0; }

void CDm2017::EndVectorization() {}

void CDm2017::RefreshLayerLists() {
  for (LayerRecord* layer : g_pDb->layers()) layerVisibility[layer->getName()] = !layer->isOff();
}

int CDm2017::SetView() {
  RefreshLayerLists();
  return 0;
}

void CDm2017::ProcessModelSpace(const OdString&) {}

void CDm2017::ProcessPaperSpace(const OdString&) {}

int CDm2017::SetViewForLayout() { return 0; }

int CDm2017::ConvertToVectorByView(const OdString& name) {
  TraceMessage("Set View");
  SetView();
  ProcessWatermark(name, g_pDb.get());
  return 0;
}
