// Handing the converter's settings to a new output driver, and the layer states the driver must
// know when every layer is converted.
#include <string>

#include "converter/CDm2017.h"
#include "converter/DrawingUnits.h"
#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

double g_Brightness = 0.0;

namespace {

constexpr int kFormatPdf = 1007;
constexpr int kInputDwf = 1000;

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

}  // namespace

// With every layer converted, the driver still learns which layers the drawing had off or frozen,
// so that the viewer can start with them hidden.
void CDm2017::ReportLayerStates() {
  for (LayerRecord* layer : g_pDb->layers()) {
    if (layer->isOff()) {
      outputDriver->AddOffLayer(layer->name);
      layer->setIsOff(false);
    } else if (layer->isFrozen()) {
      outputDriver->AddFrozenLayer(layer->name);
      layer->setIsFrozen(false);
    }
  }
}

void CDm2017::HandOverSettings(int format) {
  TRANS_BASE2& driver = *outputDriver;
  driver.SetInputFileName(inputFile);
  driver.SetOutputFileName(outputName);
  driver.SetDefaultFontName(defaultFont.str());
  driver.SetDefaultItalicFontName(defaultItalicFont.str());
  driver.SetMargin(margin);
  driver.SetBrightness(brightness);
  g_Brightness = brightness;
  if (doTooltips) driver.SetDoTooltips();
  if (strokeText) driver.strokeAllText = true;
  driver.SetOrientation(orientation);
  driver.SetJSONFile(jsonFile);
  driver.SetPointCircle(pointCircle);
  if (precision >= 0) driver.SetPrecision(precision);
  if (version > 0) driver.SetOutputVersion(version);
  // Black, grey or white page; an unset background (-1) leaves the page white.
  if (background >= 0 && background <= 255) driver.SetPageBackground(background);

  // The list records the layer states of the drawing, before every layer is switched on.
  if (format == 1016 && csvOutput) WriteCSVLayerList(csvFileName.isEmpty() ? outputName : csvFileName);
  if (format == 1016 && g_AllLayersOn) ReportLayerStates();

  driver.SetInputKind(inputKind);
  if (!processBlocks) driver.SetNoBlocks(true);
  if (monochrome) {
    driver.SetColorMode(1);
  } else if (greyscale) {
    driver.SetColorMode(2);
  }
  if (!roomLayers.isEmpty()) driver.SetRoomLayers(Utf8(roomLayers));
  if (!layersOff.isEmpty()) driver.SetLayersOff(Utf8(layersOff));
  if (!layersOn.isEmpty()) driver.SetLayersOn(Utf8(layersOn));
  if (!blockName.isEmpty()) driver.SetBlockNames(Utf8(blockName));
  if (!textLayers.isEmpty()) driver.SetTextLayers(Utf8(textLayers));
  if (!regex.empty()) driver.SetRegex(regex);
  driver.SetPostfix(postfix);
  driver.SetRepository(repository);
  driver.SetBreakByLayer(breakByLayer);
  driver.SetJSUnicode(jsUnicode);
  driver.SetCsvOutput(csvOutput);
  if (!contentHyperlink.isEmpty()) driver.SetContentHyperlink(contentHyperlink);
  driver.SetDashScale(dashScale);
  // DWF line widths arrive five times too wide.
  driver.SetLineWidthScale(inputKind == kInputDwf ? 0.2 * lineWidthScale : lineWidthScale);
  driver.SetLineTypeScale(lineTypeScale);
  if (toleranceSet) {
    driver.SetTolerance(tolerance);
  } else if (format == kFormatPdf) {
    driver.SetTolerance(0.01);
  }
  if (!blankAttributeText.isEmpty()) driver.SetBlankAttributeText(blankAttributeText);
  driver.SetMinLineWidth(minLineWidth);
  driver.SetFontScale(fontScale);
  driver.SetNoTextScale(noTextScale);
  driver.SetFlag259(flag259);
  driver.SetListArea(listArea);

  const DatabaseHeader& header = g_pDb->header();
  driver.SetUnitsName(DrawingUnitsName(header.insUnits, header.measurement));
}
