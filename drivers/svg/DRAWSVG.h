// DRAWSVG: the SVG output driver. It writes the primitives TRANS_BASE2 collected for each view as
// one SVG file for the Vistrel viewer (or one file per layer with break-by-layer), and the HTML
// page around it.
//
// Source files by concern:
//   SvgDocument.cpp     slots, file naming, ResetFile, OutputDrawing, header values, trailer
//   SvgLayerGroups.cpp  layer groups with their status, the three content passes, break-by-layer
//   SvgPaths.cpp        polylines, line segments, arcs, points, circles and ellipses, fills
//   SvgText.cpp         font groups and text elements
//   SvgImages.cpp       embedded images and their clip paths
//   SvgHyperlinks.cpp   SetHyperlink, ClearHyperlink and the hyperlink layer
//   SvgNodeGroups.cpp   block groups (node groups) opened around their content
//   SvgWrapperPage.cpp  the HTML page
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "drivers/TRANS_BASE2.h"
#include "drivers/svg/SvgPathData.h"

class DRAWSVG : public TRANS_BASE2 {
public:
  DRAWSVG();
  ~DRAWSVG() override;

  // Slots of TRANS_BASE2.
  int OutputDrawing(bool keepFirstName) override;
  int EndConversion() override;
  int HasFinalOutput() override { return 1; }
  int FixOutputName(OdString& outputName) override;
  void WriteWrapperPage() override;
  int StartPageFile() override;
  void SetHyperlink(const OdString& linkText, const OdString& linkName, bool inGroup) override;
  void ClearHyperlink() override;
  double GetViewLineWeight() override;
  double GetStrokeWidth(double width, int lineWeightIndex, bool absolute) override;
  int QueryCapability11() override { return 1; }
  int QueryCapability12() override { return 0; }
  int AcceptsTrueColors() override { return 1; }
  int GetFormatCode() override { return 1016; }
  int QueryCapability15() override { return 0; }

  // Clears the per-file state; runs after every file.
  void ResetFile();

  // Values shared by the writers of one file.
  double GetSvgScale() const { return m_svgScale; }
  double GetPageRatio() const { return m_pageRatio; }
  const std::string& GetIdPostfix() const { return m_idPostfix; }
  std::int64_t GetPathIdCounter() const { return m_pathId; }
  const OdString& GetBaseDrawingName() const { return m_baseDrawingName; }
  void SetBaseDrawingName(const OdString& name) { m_baseDrawingName = name; }
  // Layer ids (without "layer_" and postfix) of the groups written in this run, in order.
  const std::vector<std::wstring>& GetWrittenLayerIds() const { return m_writtenLayerIds; }

  // Writers of one colour group's content, public so that a test can drive them directly. They
  // write into the open file, with the colour set by SelectColourGroup.
  void SelectColourGroup(int colorIndex);
  void WritePolylines(const std::vector<DrvPolyline>& records, bool withHandles);
  void WriteLines(const std::vector<DrvLine>& records);
  void WriteArcs(const std::vector<DrvArc>& records);
  void WritePoints(const std::vector<OdGePoint2d>& points);
  void WriteCircles(const std::vector<DrvCircle>& records);
  void WriteFills(const std::vector<DrvFill>& records);
  void WriteFontGroups(std::deque<DrvFontGroup>& groups);
  void WriteImages(const std::vector<DrvImage>& images);
  void WriteHyperlinkLayer();
  void OpenNodeGroup(const OdString& name, const OdString& linkText, const std::string& handle);
  void CloseNodeGroup(const OdString& name, bool anchor);

  // The open file's buffered text (tests read it before it is flushed).
  const std::string& PendingOutput() const { return m_out; }
  // Opens a file for the writers (truncating); false with the two open-error messages.
  bool OpenOutputFile(const std::string& path);
  // Flushes and closes the open file; false when anything could not be written.
  bool CloseOutputFile();

protected:
  // ---- SvgDocument.cpp ----
  void PrepareFile();
  void WriteHeader(const DrvView& view);
  void WriteTrailer();
  OdString NextFileStem(const DrvView& view, bool keepFirstName, bool& handledEntry);
  SvgCoordinates PageCoordinates() const;
  void FlushIfLarge();
  void AppendElementId(const char* element);
  int CurrentPageNumber() const;

  // ---- SvgLayerGroups.cpp ----
  // Returns false when a break-by-layer file could not be opened (the view's writing stops).
  bool WriteLayers(DrvView& view, const OdString& stem);
  bool IsLayerSkipped(const DrvLayer& layer) const;
  std::string LayerStatus(const DrvLayer& layer) const;
  void WriteLayerGroupOpener(const std::wstring& id, const DrvLayer& layer, const char* idSuffix);
  void WriteColourGroupContent(DrvColorGroup& group);
  void WriteNodeGroupsOfLayer(DrvView& view, const OdString& layerKey);
  void WriteBlockLayers(DrvView& view, const std::set<std::string>& writtenNames);

  // ---- SvgPaths.cpp ----
  std::string LineTypeClass(const OdString& lineTypeName) const;
  // ' stroke-dasharray="..." ' for a record whose line-type scale is not 1.0; empty otherwise.
  std::string DashArrayAttribute(const OdString& lineTypeName, double lineTypeScale) const;
  double RecordStrokeWidth(const DrvStroke& record);
  void OpenPolylineElement(const DrvPolyline& record, bool withHandles, std::string& opener);

  // ---- SvgText.cpp ----
  std::string FontFamily(const std::string& fontName) const;
  void WriteTexts(const std::vector<DrvText>& texts);

  // ---- SvgImages.cpp ----
  bool AppendImageData(const DrvImage& image);

  // Output of the open file: text gathered in m_out and written to m_fileStream in large pieces.
  std::string m_out;
  bool m_fileOpen = false;
  bool m_writeFailed = false;

  std::string m_idPostfix;          // three characters and "_" while the postfix flag is set
  std::int64_t m_pathId = 0;        // cv_N ids: counted over the whole run
  double m_perFileScale = 1.0;
  int m_textCount = 0;
  int m_imageCount = 0;
  int m_otherColorIndex = -1;
  bool m_groupOpen = false;
  bool m_anchorOpen = false;
  bool m_nodeFlag = false;
  OdString m_baseDrawingName;
  int m_layoutCounter = 0;
  // Files written so far in this conversion: every view after the first gets a suffix, so that the
  // views of one run never overwrite each other.
  int m_filesWritten = 0;
  OdString m_firstFileStem;  // the file the HTML page shows: the run's first, under the output name
  int m_viewCounter = 0;
  int m_pageCounter = 0;
  // The file stems of this run in the order written, with their view's name (not with
  // break-by-layer).
  std::vector<std::pair<OdString, OdString>> m_writtenFiles;
  std::string m_colourClass;        // "red", "rgb(12,34,56)"
  std::string m_colourKey;          // "red" or the decimal index
  bool m_namedColour = true;
  std::vector<std::string> m_hebrewFonts;
  bool m_handles = false;
  bool m_linksWrittenInFile = false;

  double m_svgScale = 1.0;          // world units per SVG unit
  double m_pageRatio = 1.0;
  int m_nodeCounter = 0;
  int m_clipCounter = 0;
  int m_blockCounter = 0;
  OdString m_currentGroupName;
  std::vector<std::wstring> m_writtenLayerIds;
  int m_perPageValue = 0;
};
