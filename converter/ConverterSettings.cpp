// Setters that do more than store a value.
#include <iostream>

#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

OdAnsiString ToNarrow(const OdString& text) {
  std::string narrow;
  return OdAnsiString(OdStringToNarrow(narrow, text));
}

}  // namespace

// The log replaces standard output for the whole run; EndConversion gives it back.
int CDm2017::SetLogFileName(const OdString& name) {
  TraceMessage("Log File Name", name);
  logFileName = name;
  static std::ofstream logStream;
  if (!logStream.is_open()) {
    std::string path;
    logStream.open(OdStringToUtf8(path, name), std::ios::out | std::ios::trunc);
  }
  if (!logStream.is_open()) return 0;
  std::cout.flush();
  if (!savedStdoutBuffer) savedStdoutBuffer = std::cout.rdbuf();
  std::cout.rdbuf(logStream.rdbuf());
  return 0;
}

void CDm2017::RestoreStandardOutput() {
  if (!savedStdoutBuffer) return;
  std::cout.flush();
  std::cout.rdbuf(savedStdoutBuffer);
  savedStdoutBuffer = nullptr;
}

int CDm2017::SetInputFile(const OdString& v) {
  TraceMessage("Input File Name", v);
  inputFile = v;
  return 0;
}

int CDm2017::SetOutputFile(const OdString& v) {
  TraceMessage("Output Name", v);
  outputName = v;
  return 0;
}

// Inches to the unit; the mile keeps 1.0 as the program always had it.
int CDm2017::SetUnits(int v) {
  static const double kFactors[] = {1.0, 1.0, 1.0 / 12, 1.0 / 36, 1.0, 25.4, 2.54, 0.0254};
  units = v;
  if (v >= 0 && v <= 7) unitFactor = kFactors[v];
  return 0;
}

int CDm2017::SetLayersOff(const OdString& v) {
  layersOff = layersOff.isEmpty() ? v : OdString(std::wstring(layersOff.c_str()) + L";" + v.c_str());
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
