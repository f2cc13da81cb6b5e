// The driver's slots, its state with setters, the view list and the coordinate texts.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <algorithm>
#include <exception>
#include <string>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

void DrvBox::extend(double x, double y) {
  if (empty) {
    minX = maxX = x;
    minY = maxY = y;
    empty = false;
    return;
  }
  minX = std::min(minX, x);
  maxX = std::max(maxX, x);
  minY = std::min(minY, y);
  maxY = std::max(maxY, y);
}

// A view holds geometry once anything extended its box: a lone point or a single level line is
// a drawing too.
bool DrvView::isEmpty() const { return pageExtents.empty; }

// A box without width or height (one point, a level or upright line) gets a frame around it, so
// that the file has a page to show it on: a fortieth of the other side, and at least ten units.
void DrvBox::widenIfFlat() {
  if (empty) return;
  const double pad = std::max(std::max(width(), height()) / 40.0, 5.0);
  if (!(width() > 0.0)) minX -= pad, maxX += pad;
  if (!(height() > 0.0)) minY -= pad, maxY += pad;
}

void DrvView::clearCollections() {
  layers.clear();
  nodeGroups.clear();
  roomLabels.clear();
}

TRANS_BASE2::TRANS_BASE2() {
  TraceMessage("Define Generic Defaults");
  m_solidLineTypes.insert(OdString(L"CONTINUOUS"));
  SetColor(7);
  TraceMessage("Define Color Table");
  FillDefaultColorTable();
  ReadFontMap();
  ReadUnmappedFonts();
}

TRANS_BASE2::~TRANS_BASE2() { WriteUnmappedFonts(); }

// ---- Virtual slots: the answers of a driver that writes nothing ----------------------------------

int TRANS_BASE2::BeginConversion() { return 1; }
int TRANS_BASE2::EndConversion() { return 1; }
int TRANS_BASE2::OutputDrawing(bool) { return 1; }
int TRANS_BASE2::HasFinalOutput() { return 0; }
int TRANS_BASE2::FixOutputName(OdString&) { return 1; }
void TRANS_BASE2::WriteWrapperPage() {}
int TRANS_BASE2::StartPageFile() { return 0; }

void TRANS_BASE2::SetHyperlink(const OdString& linkText, const OdString& linkName, bool) {
  m_hyperlinkText = linkText;
  m_hyperlinkName = linkName;
}

void TRANS_BASE2::ClearHyperlink() {
  m_hyperlinkText.empty();
  m_hyperlinkName.empty();
  m_currentLink = nullptr;
}

double TRANS_BASE2::GetViewLineWeight() { return 1.0; }
double TRANS_BASE2::GetStrokeWidth(double, int, bool) { return 1.0; }
int TRANS_BASE2::QueryCapability11() { return 0; }
int TRANS_BASE2::QueryCapability12() { return 0; }
int TRANS_BASE2::AcceptsTrueColors() { return 0; }
int TRANS_BASE2::GetFormatCode() { return 0; }
int TRANS_BASE2::QueryCapability15() { return 1; }

// ---- Setters ---------------------------------------------------------------------------------------

void TRANS_BASE2::SetDoTooltips() {
  TraceMessage("TRANS_BASE2::SetDoTooltips");
  m_doTooltips = true;
}

void TRANS_BASE2::SetInputFileName(const OdString& name) {
  try {
    m_inputFileName = name;
  } catch (...) {
    TraceMessage("Error setting Input File Name");
  }
}

void TRANS_BASE2::SetOutputFileName(const OdString& name) {
  try {
    m_outputFileName = name;
    if (m_outputStem.isEmpty()) {
      int dot = name.reverseFind(L'.');
      m_outputStem = dot < 0 ? name : name.left(dot);
    }
  } catch (...) {
    TraceMessage("Error setting Output File Name");
  }
}

// The message names 0.01 while 0.1 is stored; both are kept as the program has them. A value that
// is not a number is treated as out of bounds too.
void TRANS_BASE2::SetLineWidthScale(double scale) {
  if (scale < 0.01 || !std::isfinite(scale)) {
    m_lineWidthScale = 0.1;
    TraceMessage("LineWidthScale out of bounds. Limitted to 0.01. Was", scale);
    return;
  }
  m_lineWidthScale = scale;
}

void TRANS_BASE2::SetPageSize(double, double, double c, double d, double e, double f, double g) {
  TraceMessage("Write Page Size");
  m_explicitOrigin = true;
  m_globalOriginX = d;
  m_globalOriginY = e;
  m_paperValues[0] = f;
  m_paperValues[1] = g;
  m_paperValues[2] = c;
}

void TRANS_BASE2::SetWorldExtents(double llx, double lly, double urx, double ury) {
  m_worldLLx = llx;
  m_worldLLy = lly;
  m_worldURx = urx;
  m_worldURy = ury;
  m_worldExtentsSet = true;
}

bool TRANS_BASE2::GetWorldExtents(double& llx, double& lly, double& urx, double& ury) const {
  llx = m_worldLLx;
  lly = m_worldLLy;
  urx = m_worldURx;
  ury = m_worldURy;
  return m_worldExtentsSet;
}

bool TRANS_BASE2::BackgroundIsBlack() const { return m_backgroundColor == 0; }

void TRANS_BASE2::SetDrawingWidth(std::int64_t width) {
  m_drawingWidth = width;
  m_drawingSizeSet = true;
}

void TRANS_BASE2::SetDrawingHeight(std::int64_t height) {
  m_drawingHeight = height;
  m_drawingSizeSet = true;
}

namespace {

std::vector<std::string> splitLayerList(const std::string& list) {
  std::vector<std::string> pieces;
  SplitAny(pieces, list, ";");
  std::vector<std::string> names;
  for (auto& piece : pieces)
    if (!piece.empty()) names.push_back(std::move(piece));
  return names;
}

}  // namespace

void TRANS_BASE2::SetRoomLayers(const std::string& list) { m_roomLayers = splitLayerList(list); }
void TRANS_BASE2::SetTextLayers(const std::string& list) { m_textLayers = splitLayerList(list); }
void TRANS_BASE2::SetLayersOff(const std::string& list) { m_layersOff = splitLayerList(list); }
void TRANS_BASE2::SetLayersOn(const std::string& list) { m_layersOn = splitLayerList(list); }
void TRANS_BASE2::SetBlockNames(const std::string& list) { m_blockNames = splitLayerList(list); }
void TRANS_BASE2::SetBlockLayers(const std::string& list) { m_blockLayers = splitLayerList(list); }

OdString ViewFileSuffix(int kind, int& layoutCounter, int& viewCounter) {
  auto twoDigits = [](int number) {
    std::string text = std::to_string(number);
    return OdString(text.size() < 2 ? "0" + text : text);
  };
  switch (kind) {
    case kViewLastSaved: return OdString(L"__LastSavedView");
    case kViewModelSpace: return OdString(L"__ModelSpace");
    case kViewPaperSpace: return OdString(L"__PaperSpace");
    case kViewLayout: return L"__Layout" + twoDigits(++layoutCounter);
    default: return L"__View" + twoDigits(++viewCounter);
  }
}

void TRANS_BASE2::AddPage(const OdString& pageName, const OdString& filePath) {
  int separator = LastSeparator(filePath);
  m_pages.push_back({pageName, separator < 0 ? filePath : filePath.mid(separator + 1)});
}

void TRANS_BASE2::AddOutputNameMapping(const OdString& spaceName, const OdString& outputName) {
  m_outputNameMap[spaceName] = outputName;
}

void TRANS_BASE2::DefineLineType(const OdString& name, const std::vector<double>& dashes) {
  m_lineTypes[name] = dashes;
}

bool TRANS_BASE2::FindLineType(const OdString& name, std::vector<double>& dashes) const {
  auto exact = m_lineTypes.find(name);
  if (exact != m_lineTypes.end()) {
    dashes = exact->second;
    return true;
  }
  for (const auto& [known, pattern] : m_lineTypes) {
    if (known.iCompare(name.c_str()) == 0) {
      dashes = pattern;
      return true;
    }
  }
  return false;
}

// ---- Views -----------------------------------------------------------------------------------------

// Pointers into the collections of the view that was current are no longer valid targets.
void TRANS_BASE2::ResetViewState() {
  m_pathCounter = 0;
  m_groupCounter = 0;
  m_previousColor = -1;
  m_attributeColor = -1;
  m_ringCount = 0;
  m_svgExtents.clear();
  m_pageExtents.clear();
  m_currentDashes.clear();
  m_currentLayer = nullptr;
  m_currentGroup = nullptr;
  m_currentFontGroup = nullptr;
  m_fontGroupOwner = nullptr;
  m_openGroup = nullptr;
  m_savedLayer = nullptr;
  m_savedGroup = nullptr;
  m_groupStack.clear();
  m_inGroup = false;
  m_previousLayerName.empty();
  m_attributesDirty = true;
}

int TRANS_BASE2::DefineView(const OdString& name, int kind, const void* viewObject) {
  TraceMessage("DefineView", name);
  if (m_currentView && m_currentView->name == name) return 0;
  for (auto& view : m_views) {
    if (view.name == name) {
      m_currentView = &view;
      ResetViewState();
      return 0;
    }
  }
  DrvView view;
  view.name = name;
  view.kind = kind;
  view.viewObject = viewObject;
  m_views.push_back(std::move(view));
  m_currentView = &m_views.back();
  ResetViewState();
  return 0;
}

void TRANS_BASE2::StoreViewExtents() {
  if (!m_currentView) return;
  if (m_worldExtentsSet) {
    m_currentView->worldLLx = m_worldLLx;
    m_currentView->worldLLy = m_worldLLy;
    m_currentView->worldURx = m_worldURx;
    m_currentView->worldURy = m_worldURy;
    m_currentView->hasWorldExtents = true;
  }
  m_pageExtents.widenIfFlat();
  m_svgExtents.widenIfFlat();
  m_currentView->pageExtents = m_pageExtents;
  m_currentView->svgExtents = m_svgExtents;
}

void TRANS_BASE2::SelectView(const DrvView& view) {
  m_pageExtents = view.pageExtents;
  m_svgExtents = view.svgExtents;
}

int TRANS_BASE2::OutputView(bool keepFirstName) {
  StoreViewExtents();
  return OutputDrawing(keepFirstName);
}

void TRANS_BASE2::ClearViewState() {
  if (m_currentView) {
    m_currentView->clearCollections();
    m_currentView->pageExtents.clear();
    m_currentView->svgExtents.clear();
  }
  m_links.clear();
  m_currentLink = nullptr;
  ResetViewState();
}

void TRANS_BASE2::ResetFile() {
  m_pointTolerance = 0.001;
  ResetCoordinateCounters();
  m_currentLayerName = OdString(L"0");
  SetColor(7);
  m_backgroundColor = m_pageBackground;
  m_previousColor = -1;
  m_attributeColor = -1;
  m_hyperlinkText.empty();
  m_hyperlinkName.empty();
  m_currentLink = nullptr;
  m_ringCount = 0;
  m_svgExtents.clear();
  m_pageExtents.clear();
  m_attributesDirty = true;
}

void TRANS_BASE2::ExtendExtents(double x, double y) {
  m_svgExtents.extend(x, y);
  m_pageExtents.extend(x, y);
}

// ---- Coordinate text -------------------------------------------------------------------------------

// The cut rule looks for ".00" anywhere and always removes three characters, so 12.005 at three
// decimals becomes "12"; the viewer's files have always been written so.
const char* TRANS_BASE2::FormatCoordinate(double value, long& counter, const char* errorText) {
  try {
    ++counter;
    std::snprintf(m_coordBuffer, sizeof m_coordBuffer, "%.*f", m_precision, value);
    std::size_t length = std::strlen(m_coordBuffer);
    if (std::strstr(m_coordBuffer, ".00") != nullptr) {
      length = length >= 3 ? length - 3 : 0;
    } else if (length > 0 && m_coordBuffer[length - 1] == '0') {
      --length;
    }
    if (length > 0 && m_coordBuffer[length - 1] == '.') --length;
    m_coordBuffer[length] = '\0';
  } catch (...) {
    TraceMessage(errorText);
  }
  return m_coordBuffer;
}

const char* TRANS_BASE2::p2x(double x) { return FormatCoordinate(x, m_p2xCount, "Error in p2x"); }
const char* TRANS_BASE2::p2y(double y) { return FormatCoordinate(y, m_p2yCount, "Error in p2y"); }
