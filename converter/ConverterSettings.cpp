// Setters that do more than store a value.
#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

OdString FromUtf8(const char* text) {
  OdString out;
  return Utf8ToOdString(out, OdAnsiString(text ? text : ""));
}

OdAnsiString ToNarrow(const OdString& text) {
  std::string narrow;
  return OdAnsiString(OdStringToNarrow(narrow, text));
}

}  // namespace

int CDm2017::SetTrace(int on) {
  SetTraceEnabled(on != 0);
  return 0;
}

int CDm2017::SetInputFile(const OdString& v) {
  TraceMessage("Input File Name", v);
  inputFile = v;
  return 0;
}

int CDm2017::SetInputFile(const char* v) { return SetInputFile(FromUtf8(v)); }

int CDm2017::SetOutputFile(const OdString& v) {
  TraceMessage("Output Name", v);
  outputName = v;
  return 0;
}

int CDm2017::SetOutputFile(const char* v) { return SetOutputFile(FromUtf8(v)); }

int CDm2017::SetCSVFileName(const char* v) { return SetCSVFileName(FromUtf8(v)); }

// Inches to the unit. The mile keeps 1.0: output sizes in miles were never scaled, and files made
// with that setting must not change.
int CDm2017::SetUnits(int v) {
  static const double kFactors[] = {1.0, 1.0, 1.0 / 12, 1.0 / 36, 1.0, 25.4, 2.54, 0.0254};
  units = v;
  if (v >= 0 && v <= 7) unitFactor = kFactors[v];
  return 0;
}

// Layers switched off accumulate over calls; layers switched on are one list, the last given.
int CDm2017::SetLayersOff(const OdString& v) {
  layersOff = layersOff.isEmpty() ? v : layersOff + L";" + v;
  return 0;
}

int CDm2017::SetDefaultFont(const OdString& v) {
  defaultFont = ToNarrow(v);
  return 0;
}

int CDm2017::SetDefaultItalicFont(const OdString& v) {
  defaultItalicFont = ToNarrow(v);
  return 0;
}

int CDm2017::SetDoTooltips() {
  TraceMessage("CDm2017::SetDoTooltips");
  doTooltips = true;
  return 0;
}
