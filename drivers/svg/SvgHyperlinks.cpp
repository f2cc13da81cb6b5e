// Hyperlinks: the link entries that collect what is drawn while a link is set, and the layer of
// clickable areas written from them.
#include <exception>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgXmlText.h"
#include "services/Trace.h"

namespace {

bool Holds(const OdString& text, const wchar_t* part) { return text.find(part) >= 0; }

std::string Attribute(const OdString& text) { return XmlText(text.str(), XmlEscapeMode::kAttribute); }

// A link drawn as one outline is an area of its own (kind 1); links set inside blocks, links to
// element ids and links with several outlines are blocks (kind 2).
int AreaKind(const DrvLink& link) {
  bool block = Holds(link.linkText, L"var_eq_eq_id") || link.kind == 1 || link.polylines.size() > 1;
  return block ? 2 : 1;
}

std::vector<DrvFill> AsFills(const std::vector<DrvPolyline>& polylines) {
  std::vector<DrvFill> fills;
  for (const DrvPolyline& p : polylines) {
    DrvFill fill;
    fill.points = p.points;
    fill.colorIndex = p.colorIndex;
    fills.push_back(std::move(fill));
  }
  return fills;
}

}  // namespace

void DRAWSVG::SetHyperlink(const OdString& linkText, const OdString& linkName, bool inGroup) {
  try {
    m_hyperlinkText = linkText;
    m_hyperlinkName = linkName;
    for (DrvLink& link : m_links) {
      if (link.linkText == linkText) {
        m_currentLink = &link;
        return;
      }
    }
    DrvLink link;
    link.linkText = linkText;
    link.linkName = linkName;
    link.kind = inGroup || m_inGroup || m_groupOpen ? 1 : 2;
    m_links.push_back(std::move(link));
    m_currentLink = &m_links.back();
  } catch (const std::exception&) {
    TraceMessage("Error in SetHyperlink");
  }
}

void DRAWSVG::ClearHyperlink() {
  m_hyperlinkText.empty();
  m_hyperlinkName.empty();
  m_currentLink = nullptr;
  m_anchorOpen = false;
}

void DRAWSVG::WriteHyperlinkLayer() {
  if (m_links.empty()) return;
  m_out += "<g id=\"layer_" + m_idPostfix + "URLs\">\n";
  bool savedHandles = m_handles;
  m_handles = false;
  auto writeRecords = [&](const DrvLink& link) {
    if (!link.lines.empty()) WriteLines(link.lines);
    if (!link.arcs.empty()) WriteArcs(link.arcs);
    if (!link.circles.empty()) WriteCircles(link.circles);
  };
  auto openAnchor = [&](const DrvLink& link, const char* classes) {
    m_out += "<a xlink:href=\"" + Attribute(link.linkText) + "\"" + classes;
    if (!link.linkName.isEmpty()) m_out += " id=\"" + Attribute(link.linkName) + "\"";
    m_out += " data-uri=\"..\" target=\"_blank\">\n";
  };
  for (const DrvLink& link : m_links) {
    if (AreaKind(link) != 1) continue;
    if (!link.polylines.empty()) WritePolylines(link.polylines, false);
    writeRecords(link);
    bool area = Holds(link.linkText, L"var_rm_rm_id") || link.kind == 2;
    openAnchor(link, area ? " class=\"hyperlink cv-area\"" : " class=\"hyperlink\"");
    if (!link.polylines.empty()) WriteFills(AsFills(link.polylines));
    writeRecords(link);
    m_out += "</a>\n";
  }
  for (const DrvLink& link : m_links) {
    if (AreaKind(link) != 2) continue;
    openAnchor(link, " class=\"hyperlink cv-block\"");
    if (!link.polylines.empty()) WritePolylines(link.polylines, false);
    writeRecords(link);
    m_out += "</a>\n";
  }
  m_handles = savedHandles;
  m_out += "</g>\n";
}
