#include "app/ParameterTransfer.h"

#include "converter/CDm2017.h"
#include "converter/ColorQuantization.h"
#include "projects/common/ParseCommandLine.h"
#include "services/Trace.h"

namespace {

constexpr int kSizeModeAnsi = 0;
constexpr int kSizeModeDin = 1;

bool IsMetricUnit(int units) { return units >= 5 && units <= 7; }
bool IsImperialUnit(int units) { return units >= 1 && units <= 4; }

void TransferOutputSettings(CParseCommandLine& p, CDm2017& c) {
  if (!p.IsLogFileNameEmpty()) c.SetLogFileName(p.GetLogFileName());
  if (!p.IsCTBFileNameEmpty()) c.SetCTBFileName(p.GetCTBFileName());
  c.SetTreatAs(p.GetTreatAs());
  c.SetOutputFile(p.GetOutputFile());
  c.SetOutputFormat(p.GetOutputFormat());
  c.SetOrientation(p.GetOrientation());
  c.SetWidth(p.GetWidth());
  c.SetHeight(p.GetHeight());
  c.SetMinLineWidth(p.GetMinLineWidth());
  c.SetLineWidthScale(p.GetLineWidthScale());
  c.SetLineTypeScale(p.GetLineTypeScale());
  c.SetDashScale(p.GetDashScale());
  g_ColorQuantization = p.GetColorQuantization();
  AdjustDrawingSizeMode(p);
  c.SetDrawingSize(p.GetDrawingSize());
  c.SetDrawingSizeMode(p.GetDrawingSizeMode());
  c.SetBackground(p.GetBackground());
  if (p.GetColorMode() == 1) c.SetMonochrome(true);
  if (p.GetColorMode() == 2) c.SetGreyscale(true);
}

void TransferViewSettings(CParseCommandLine& p, CDm2017& c) {
  if (!p.IsLayoutNameEmpty()) c.SetLayoutName(p.GetLayoutName());
  if (!p.IsViewNameEmpty()) c.SetViewName(p.GetViewName());
  c.SetViewMode(p.GetViewMode());
  c.SetUnits(p.GetUnits());
  c.SetAutoTrim(p.GetAutoTrim());
  c.SetNoTextScale(p.GetNoTextScale());
  c.SetFontScale(p.GetFontScale());
  c.SetFlag259(p.GetFlag259());
  c.SetListArea(p.GetListArea());
  c.SetMargin(p.GetMargin());
  if (p.GetCSVOutput()) {
    c.SetCSVOutput();
    if (!p.IsCSVFileNameEmpty()) c.SetCSVFileName(p.GetCSVFileName());
  }
  if (p.GetAllLayers()) c.SetAllLayersOn();
  if (p.GetVersion() > 0) c.SetVersion(p.GetVersion());
  c.SetPrecision(p.GetPrecision());
  if (p.GetPostfix()) c.SetPostfix();
  if (p.GetRepository()) c.SetRepository();
  c.SetBreakByLayer(p.GetBreakByLayer());
  if (p.GetJSUnicode()) c.SetJSUnicode();
}

void TransferPathsAndLayers(CParseCommandLine& p, CDm2017& c) {
  if (!p.IsXrefPathEmpty()) {
    PrintMessageOnce("XREF Path", p.GetXrefPath().c_str());
    c.SetXrefPath(p.GetXrefPath());
  }
  if (!p.IsFontPathEmpty()) c.SetFontPath(p.GetFontPath());
  if (p.GetDPISet()) c.SetDPI(p.GetDPI());
  if (!p.GetProcessBlocks()) c.SetIgnoreBlocks();
  if ((!p.IsRLayersEmpty() && !p.IsTLayersEmpty()) || p.GetZoomExtents()) c.SetZoomExtents();
  if (!p.IsRLayersEmpty()) c.SetRLayers(p.GetRLayers());
  if (!p.IsLayersOffEmpty()) c.SetLayersOff(p.GetLayersOff());
  if (!p.IsLayersOnEmpty()) c.SetLayersOn(p.GetLayersOn());
  if (!p.IsBlockNameEmpty()) c.SetBlockName(p.GetBlockName());
  if (!p.IsTLayersEmpty()) c.SetTLayers(p.GetTLayers());
  if (!p.IsContentHyperlinkEmpty()) c.SetContentHyperlink(p.GetContentHyperlink());
  if (!p.GetRegex().empty()) c.SetRegex(p.GetRegex());
  if (!p.IsBlankAttributeTextEmpty()) c.SetBlankAttributeText(p.GetBlankAttributeText());
}

void TransferRenderingOptions(CParseCommandLine& p, CDm2017& c) {
  c.SetNoUninit(p.GetNoUninit());
  if (p.GetListViews()) c.SetListViews();
  if (p.GetToleranceSet()) c.SetTolerance(p.GetTolerance());
  if (p.GetNetwork()) c.SetNetwork();
  if (!p.IsDefaultFontEmpty()) c.SetDefaultFont(p.GetDefaultFont());
  if (!p.IsDefaultItalicFontEmpty()) c.SetDefaultItalicFont(p.GetDefaultItalicFont());
  if (p.GetStrokeText()) c.SetStrokeText();
  if (p.GetBrightnessSet()) c.SetBrightness(p.GetBrightness());
  if (p.GetSL()) c.SetSL();
  if (p.HasWorkspaceBlocks()) c.SetWorkspaceBlocks(p.GetWorkspaceBlocks());
  c.SetJSONFile(p.GetJSONFile());
  if (p.GetDoTooltips()) c.SetDoTooltips();
  c.SetPointCircle(p.GetPointCircle());
  c.SetFlag318(p.GetFlag318());
}

void TransferWatermark(CParseCommandLine& p, CDm2017& c) {
  if (p.IsWatermarkContentEmpty()) return;
  c.SetWatermarkContent(p.GetWatermarkContent());
  c.SetWatermarkHeight(p.GetWatermarkHeight());
  c.SetWatermarkX(p.GetWatermarkX());
  c.SetWatermarkY(p.GetWatermarkY());
  c.SetWatermarkAngle(p.GetWatermarkAngle());
  c.SetWatermarkFont(p.GetWatermarkFont());
  c.SetWatermarkAnchor(p.GetWatermarkAnchor());
  c.SetWatermarkLayer(p.GetWatermarkLayer());
  c.SetWatermarkColor(p.GetWatermarkColor());
  c.SetWatermarkRGB(p.GetWatermarkRGB());
}

}  // namespace

void AdjustDrawingSizeMode(CParseCommandLine& p) {
  const int units = p.GetUnits();
  if (p.GetDrawingSizeMode() == kSizeModeAnsi && IsMetricUnit(units)) {
    p.SetDrawingSizeMode(kSizeModeDin);
  } else if (p.GetDrawingSizeMode() == kSizeModeDin && IsImperialUnit(units)) {
    p.SetDrawingSizeMode(kSizeModeAnsi);
  }
}

void TransferParameters(CParseCommandLine& parameters, CDm2017& converter) {
  TransferOutputSettings(parameters, converter);
  TransferViewSettings(parameters, converter);
  TransferPathsAndLayers(parameters, converter);
  TransferRenderingOptions(parameters, converter);
  TransferWatermark(parameters, converter);
}
