// Vector output: the output driver for the format, the settings handed to it, and one output file
// per view chosen by Convert.
#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include "converter/CDm2017.h"
#include "converter/DrawingUnits.h"
#include "converter/OutputNaming.h"
#include "drivers/TRANS_BASE2.h"
#include "drivers/svg/DRAWSVG.h"
#include "kit/base/OdError.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"
#include "vectorizer/OutputDriverPointer.h"
#include "vectorizer/ViewportExtents.h"

std::vector<double> g_ViewScaleFactors;
double g_UnitScale = 1.0;

namespace {

constexpr int kFormatPdf = 1007;
constexpr int kFormatSvg = 1016;
constexpr int kLunitsArchitectural = 4;

}  // namespace

int CDm2017::ConvertToVector(int format) {
  TraceMessage("Convert to Vector");
  if (format == kFormatPdf) {
    PrintMessage("PDF output is not available in this build");
    return -1000;
  }
  if (format != kFormatSvg) {
    PrintMessage("Unsupported Output Format");
    return -1000;
  }
  // An HTML name asks for the page; the drawing itself goes to the SVG file beside it.
  const OdString pageName = outputName;
  const OdString svgName = SvgNameForPage(pageName);
  if (!svgName.isEmpty()) SetOutputFile(svgName);
  UseOutputDriver(new DRAWSVG());
  if (!fontPath.isEmpty()) outputDriver->SetFontPath(fontPath);
  TraceMessage("Set Output Format Pointer");
  g_pOutputDriver = outputDriver;
  TraceMessage("Fix Output Name", outputName);
  OdString fixedName = baseOutputName;
  outputDriver->FixOutputName(fixedName);
  HandOverSettings(format);

  if (StartVectorization() == 0) {
    outputDriver->BeginConversion();
    RunConvert();
    if (!svgName.isEmpty()) {
      outputDriver->SetWrapperPageName(pageName);
      outputDriver->WriteWrapperPage();
    }
    outputDriver->EndConversion();
  }
  EndConversion();
  EndVectorization();
  return 0;
}

// A kit failure outside a view's own set-up ends the run; the files written so far stay.
void CDm2017::RunConvert() {
  try {
    Convert();
  } catch (const OdError& error) {
    std::string text;
    std::cout << "Teigha Error: " << OdStringToUtf8(text, error.description()) << "\n\n" << std::flush;
  } catch (const std::exception& error) {
    PrintMessage("ERROR", error.what());
  }
}

int CDm2017::ConvertView(const OdString& name, int kind, bool first) {
  const int insUnits = g_pDb->header().insUnits;
  double factor = MillimetreFactor(insUnits);
  TraceMessage("Process Customer Watermark");
  TraceMessage("Define View", name);
  int result = outputDriver->DefineView(name, kind);
  if (result < 0) {
    PrintMessageOnce("Error converting view", result);
    return result;
  }
  TraceMessage("*****Convert To Vector By View");
  g_ViewportExtents.Clear();
  result = ConvertToVectorByView(name);
  if (result < 0) {
    PrintMessageOnce("Error converting view", result);
    return result;
  }
  // The sink measured what was drawn in device units; the viewer wants it in drawing units.
  OdGeExtents3d worldBox;
  if (g_ViewportExtents.WorldBox(0, worldBox)) {
    outputDriver->SetWorldExtents(worldBox.minPoint.x, worldBox.minPoint.y, worldBox.maxPoint.x, worldBox.maxPoint.y);
  }
  TraceMessage("Save View Settings");
  outputDriver->StoreViewExtents();

  TraceMessage("Output Drawing");
  for (size_t i = 0; i < g_ViewportExtents.Count(); ++i) {
    const OdGeExtents3d& box = g_ViewportExtents.boxes[i];
    const double sx = static_cast<double>(width) / (box.maxPoint.x - box.minPoint.x);
    const double sy = static_cast<double>(height) / (box.maxPoint.y - box.minPoint.y);
    const double s = std::min(sx, sy);
    g_UnitScale = 1.0;
    if (insUnits == 0 && g_pDb->header().lunits == kLunitsArchitectural) {
      factor = 1.0 / 25.4;
      g_UnitScale = 25.4;
    }
    if (i < g_ViewScaleFactors.size()) {
      g_ViewScaleFactors[i] = std::min(g_ViewScaleFactors[i], s) * factor;
    } else {
      g_ViewScaleFactors.push_back(s * factor);
    }
  }
  if (outputDriver->OutputView(first) == 0) result = -2020;
  TraceMessage("Garbage Collection");
  outputDriver->ClearViewState();
  return result;
}
