// The SVG document: slots, file naming and opening, per-file reset, the header values, the
// trailer and the loop over the views that OutputDrawing writes.
#include <cmath>
#include <cstdlib>
#include <exception>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgHeaderText.h"
#include "drivers/svg/SvgLineTypes.h"
#include "drivers/svg/SvgXmlText.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ProgramInfo.h"
#include "services/Trace.h"

namespace {

// Output leaves the buffer in pieces of about this size.
constexpr std::size_t kFlushSize = 1 << 20;
// Pages smaller than this (SVG units) get proportionally shorter dashes.
constexpr double kDashReferenceSize = 2500.0;
// Two coordinates of a file closer than this (SVG units) are one point.
constexpr double kFilePointTolerance = 0.001;

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

// The name up to its last "."; the whole name when the only "." is its first character or there
// is none.
OdString WithoutExtension(const OdString& name) {
  int dot = name.reverseFind(L'.');
  return dot > 0 ? name.left(dot) : name;
}

OdString WithoutDirectory(const OdString& name) {
  int separator = LastSeparator(name);
  return separator >= 0 ? name.mid(separator + 1) : name;
}

std::string RandomCharacters(int count) {
  static const char kCharacters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  std::string text;
  for (int i = 0; i < count; ++i) text += kCharacters[std::rand() % (sizeof kCharacters - 1)];
  return text;
}

OdString Wide(const std::string& ascii) { return OdString(ascii); }

std::string TwoDigits(int number) {
  std::string text = std::to_string(number);
  return text.size() < 2 ? "0" + text : text;
}

const char* EmptyViewLabel(const DrvView& view, std::string& own) {
  switch (view.kind) {
    case kViewLastSaved: return "LastSavedView.";
    case kViewModelSpace: return "ModelSpace";
    case kViewPaperSpace: return "PaperSpace";
    default: own = Utf8(view.name); return own.c_str();
  }
}

// Page names and file names in the metadata: "\U+" escapes written as "\u" (which the viewer's
// JSON reader decodes), then made safe for the file.
std::string PageText(const OdString& text) {
  return XmlText(ReplaceAll(text.str(), L"\\U+", L"\\u"), XmlEscapeMode::kAttribute);
}

}  // namespace

DRAWSVG::DRAWSVG() {
  m_hebrewFonts = {"SIVAN", "SIVAN_M", "HEBREW", "HEBTXT", "HEBTXTN", "MIRYM",
                   "MIRY",  "MICHAL_M", "MICHAL", "HTXT",  "SP90",    "RM90"};
  SetOutputVersion(2);
  m_solidLineTypes.insert(L"CONTINUOUS");
  m_solidLineTypes.insert(L"BYLAYER");
  m_solidLineTypes.insert(L"BYBLOCK");
  m_solidLineTypes.insert(L"");
  // Every file collects with the per-file point tolerance, the first included: the base's
  // construction value would merge or drop every segment shorter than 15 SVG units.
  m_pointTolerance = kFilePointTolerance;
}

DRAWSVG::~DRAWSVG() {
  if (m_fileOpen) CloseOutputFile();
}

int DRAWSVG::FixOutputName(OdString& outputName) {
  outputName += L".svg";
  return 1;
}

void DRAWSVG::ResetFile() {
  try {
    TraceMessage("In ResetFile SVG");
    TRANS_BASE2::ResetFile();
    m_pointTolerance = kFilePointTolerance;
    ResetCoordinateCounters();
    m_textCount = 0;
    m_imageCount = 0;
    m_currentLayerName = L"0";
    SetColor(7);
    m_backgroundColor = m_pageBackground;
    m_currentColor = -1;
    m_previousColor = -1;
    m_otherColorIndex = -1;
    m_perFileScale = 1.0;
    m_hyperlinkText.empty();
    m_hyperlinkName.empty();
    m_currentLink = nullptr;
    m_groupOpen = false;
    m_anchorOpen = false;
    m_nodeFlag = false;
    m_linksWrittenInFile = false;
    m_svgExtents.clear();
    m_pageExtents.clear();
  } catch (const std::exception&) {
    TraceMessage("Error in SVG ResetFile");
  }
}

bool DRAWSVG::OpenOutputFile(const std::string& path) {
  if (m_fileOpen) CloseOutputFile();
  m_fileStream.clear();
  m_fileStream.open(path, std::ios::out | std::ios::trunc | std::ios::binary);
  if (!m_fileStream.is_open()) {
    PrintMessage("Output File Open Error");
    PrintMessage("File May Be In Use By Another Program");
    return false;
  }
  m_fileOpen = true;
  m_writeFailed = false;
  m_out.clear();
  return true;
}

void DRAWSVG::FlushIfLarge() {
  if (m_out.size() < kFlushSize) return;
  if (m_fileOpen) m_fileStream.write(m_out.data(), static_cast<std::streamsize>(m_out.size()));
  if (!m_fileStream) m_writeFailed = true;
  m_out.clear();
}

bool DRAWSVG::CloseOutputFile() {
  if (!m_fileOpen) return false;
  m_fileStream.write(m_out.data(), static_cast<std::streamsize>(m_out.size()));
  m_out.clear();
  m_fileStream.flush();
  bool ok = !m_writeFailed && static_cast<bool>(m_fileStream);
  m_fileStream.clear();
  m_fileStream.close();
  m_fileOpen = false;
  if (!ok) PrintMessage("Output File Write Error");
  return ok;
}

void DRAWSVG::AppendElementId(const char* element) {
  m_out += '<';
  m_out += element;
  m_out += " id=\"cv_";
  m_out += m_idPostfix;
  m_out += std::to_string(++m_pathId);
  m_out += "\" ";
}

SvgCoordinates DRAWSVG::PageCoordinates() const {
  return SvgCoordinates(m_pageExtents.minX, m_pageExtents.maxY, m_precision, m_pointTolerance);
}

void DRAWSVG::PrepareFile() {
  m_currentDashes.push_back(m_minLineWidth);
  m_currentDashes.push_back(m_minLineWidth / 10);
  if (m_pageCounter <= 1 && m_pages.empty()) {
    TraceMessage("Page Name", WithoutExtension(WithoutDirectory(m_outputFileName)));
  }
  m_perFileScale = 0.1;
  int start = m_paletteLoaded ? 7 : m_paletteBlack;
  m_currentColor = start;
  m_previousColor = start;
}

int DRAWSVG::CurrentPageNumber() const {
  const std::vector<DrvPage>& pages = GetPages();
  auto position = [&](const OdString& wanted) {
    OdString name = WithoutExtension(WithoutDirectory(wanted));
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (WithoutExtension(pages[i].fileName) == name) return static_cast<int>(i) + 1;
    }
    return 0;
  };
  int page = position(m_outputFileName);
  if (page == 0) page = position(m_baseDrawingName);
  return page == 0 ? 1 : page;
}

void DRAWSVG::WriteHeader(const DrvView& view) {
  const DrvBox& e1 = m_svgExtents;
  const DrvBox& e2 = m_pageExtents;
  SvgHeaderValues v;
  v.programVersion = g_VersionText;
  v.generator = m_generatorName;
  v.pageWidth = std::fabs(e2.maxX - e2.minX);
  v.pageHeight = std::fabs(e2.maxY - e2.minY);
  v.viewWidth = std::fabs(e1.maxX - e1.minX);
  v.viewHeight = std::fabs(e1.maxY - e1.minY);

  m_idPostfix.clear();
  if (m_postfix) m_idPostfix = RandomCharacters(3);
  v.postfix = m_idPostfix;

  double svgToWorld = 1.0;
  if (view.hasWorldExtents) {
    double rx = v.viewWidth / (view.worldURx - view.worldLLx);
    double ry = v.viewHeight / (view.worldURy - view.worldLLy);
    svgToWorld = ry > rx ? rx : ry;
    // A degenerate extent would put infinities into every later number of the file.
    if (!std::isfinite(svgToWorld) || svgToWorld <= 0) svgToWorld = 1.0;
  }
  double larger = std::max(v.pageWidth, v.pageHeight);
  if (larger < kDashReferenceSize && larger > 0) m_dashScale *= larger / kDashReferenceSize;
  m_svgScale = 1.0 / svgToWorld;

  v.outputVersion = m_outputVersion;
  v.backgroundColour = ColorName(m_backgroundColor);
  v.minLineWidth = m_minLineWidth;
  std::map<int, int> used = GetUsedColors();
  for (const auto& [key, layer] : view.layers) {
    for (const DrvColorGroup& group : layer.colorGroups) used.emplace(group.colorIndex, 0);
  }
  for (const auto& entry : used) {
    if (entry.first > 7 || m_paletteLoaded) v.colourRules.push_back({entry.first, ColorName(entry.first)});
  }
  for (const auto& [name, dashes] : GetLineTypes()) {
    if (dashes.empty()) continue;
    v.lineTypeRules.push_back(
        {CleanSvgName(name.str()), DashArrayText(dashes, m_dashScale * m_svgScale, m_minLineWidth)});
  }
  v.hasWorldExtents = view.hasWorldExtents;
  v.worldMinX = view.worldLLx;
  v.worldMinY = view.worldLLy;
  v.worldMaxX = view.worldURx;
  v.worldMaxY = view.worldURy;
  v.hasExplicitOrigin = m_explicitOrigin;
  v.originX = m_globalOriginX;
  v.originY = m_globalOriginY;
  v.units = m_unitsName;
  v.svgToWorldUnits = svgToWorld;
  v.svgMinX = e1.minX;
  v.svgMinY = e1.minY;
  v.svgMaxX = e1.maxX;
  v.svgMaxY = e1.maxY;
  v.drawingHeight = m_drawingHeight;
  v.building = m_buildingName;
  v.floor = m_floorName;
  for (const DrvPage& page : GetPages()) v.pages.push_back({PageText(page.fileName), PageText(page.pageName)});
  v.currentPage = CurrentPageNumber();
  AppendSvgHeader(m_out, v);
  if (m_postfix) m_idPostfix += '_';
}

void DRAWSVG::WriteTrailer() {
  m_out += "</svg>\n";
  TraceMessage("  Close File");
  CloseOutputFile();
  TraceMessage("Done With SVG Trailer");
}

OdString DRAWSVG::NextFileStem(const DrvView& view, bool keepFirstName, bool& handledEntry) {
  OdString stem = m_baseDrawingName;
  bool first = m_filesWritten == 0 && !handledEntry;
  bool renamed = !keepFirstName || handledEntry;
  bool separate = m_filesWritten > 0 || view.kind == kViewLayout || view.kind == kViewNamed;
  handledEntry = true;
  if (first || !renamed || !separate) return stem;
  return stem + ViewFileSuffix(view.kind, m_layoutCounter, m_viewCounter);
}

int DRAWSVG::OutputDrawing(bool keepFirstName) {
  try {
    TraceMessage("OutputDrawing");
    StandardizeLayerNames();
    TraceMessage("Process RoomLayer/TextLayer");
    if (!m_roomLayers.empty() && !m_textLayers.empty()) {
      LinkRoomsAndTexts();
    } else if (!m_roomLayers.empty() && m_roomLabels) {
      LinkRoomLabels();
    }
    TraceMessage("Set Base Drawing Name");
    if (m_baseDrawingName.isEmpty()) m_baseDrawingName = WithoutExtension(m_outputFileName);

    bool handledEntry = false;
    for (DrvView& view : m_views) {
      m_currentView = &view;
      SelectView(view);
      if (view.isEmpty()) {
        std::string own;
        TraceMessage("Empty View", EmptyViewLabel(view, own));
        continue;
      }
      OdString stem = NextFileStem(view, keepFirstName, handledEntry);
      if (!m_breakByLayer) {
        TraceMessage("Open Output File", stem);
        m_outputFileName = stem;
        if (!OpenOutputFile(Utf8(stem) + ".svg")) return 0;
        if (m_filesWritten++ == 0) m_firstFileStem = stem;
        m_writtenFiles.emplace_back(stem, view.name);
        PrepareFile();
        WriteHeader(view);
      }
      double pageSide = std::max(m_pageExtents.width(), m_pageExtents.height());
      double viewSide = std::max(view.pageExtents.width(), view.pageExtents.height());
      m_pageRatio = viewSide > 0 ? pageSide / viewSide : 1.0;
      bool layersWritten = WriteLayers(view, stem);
      if (!m_breakByLayer) WriteTrailer();
      ResetFile();
      if (!layersWritten) return 0;
    }
    return 1;
  } catch (const std::exception&) {
    TraceMessage("Error in OutputDrawing");
    if (m_fileOpen) CloseOutputFile();
    return 0;
  }
}

// The page list was laid out before any view was drawn; a view that drew nothing has no file, and
// the files after it took other numbers, so the files written then list what was really written.
int DRAWSVG::EndConversion() {
  if (m_pages.empty() || m_writtenFiles.empty()) return 1;
  std::vector<SvgPageEntry> written;
  bool same = m_writtenFiles.size() == m_pages.size();
  for (std::size_t i = 0; i < m_writtenFiles.size(); ++i) {
    const OdString fileName = WithoutDirectory(m_writtenFiles[i].first) + L".svg";
    const OdString& pageName = m_writtenFiles[i].second;
    same = same && m_pages[i].fileName == fileName && m_pages[i].pageName == pageName;
    written.push_back({PageText(fileName), PageText(pageName)});
  }
  if (same) return 1;
  for (std::size_t i = 0; i < m_writtenFiles.size(); ++i) {
    const std::string path = Utf8(m_writtenFiles[i].first) + ".svg";
    if (!ReplacePageList(path, written, static_cast<int>(i) + 1)) {
      TraceMessage("Page List Not Rewritten", path);
    }
  }
  return 1;
}

int DRAWSVG::StartPageFile() {
  try {
    if (m_baseDrawingName.isEmpty()) m_baseDrawingName = WithoutExtension(m_outputFileName);
    TraceMessage("OriginalBasePath", m_baseDrawingName);
    ++m_pageCounter;
    OdString viewName = m_currentView != nullptr ? m_currentView->name : OdString();
    OdString base = m_baseDrawingName + L"__";
    if (viewName == OdString(L"Layout__")) {
      base += L"Layout" + Wide(TwoDigits(++m_layoutCounter));
    } else if (viewName == OdString(L"View__")) {
      base += L"View" + Wide(TwoDigits(++m_viewCounter));
    } else {
      base += viewName;
    }
    TraceMessage("BasePath", base);
    m_outputFileName = base + L".svg";
    m_outputStem = WithoutDirectory(base);
    std::string output = Utf8(m_outputFileName);
    TraceMessage("OutputFile", output);
    TraceMessage("BaseFileName", m_outputStem);
    if (!OpenOutputFile(output)) return 0;
    PrintMessage(("Page #" + std::to_string(m_pageCounter) + "  File: " + output).c_str());
    ResetFile();
    m_perPageValue = 35;
    return 1;
  } catch (const std::exception&) {
    TraceMessage("Error in StartPageFile");
    return 0;
  }
}
