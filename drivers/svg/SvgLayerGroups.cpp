// Layer groups: one "g" element per layer with the viewer's status attributes, holding the
// layer's content in three passes (images, line work, texts), the block groups drawn on it and the
// hyperlinks; with break-by-layer each layer goes to a file of its own.
#include <set>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgXmlText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

bool ListHolds(const std::vector<std::string>& list, const std::string& name) {
  for (const std::string& entry : list) {
    if (EqualsNoCase(entry, name)) return true;
  }
  return false;
}

// Ids and classes: the standardized name with its escapes as "_u".
std::wstring LayerIdOf(const OdString& name) {
  std::wstring id = ReplaceAll(name.str(), L"\\U+", L"_u");
  return ReplaceAll(id, L"\\u", L"_u");
}

std::string DisplayNameOf(const OdString& name) {
  return XmlText(ReplaceAll(name.str(), L"\\U+", L"\\u"), XmlEscapeMode::kAttribute);
}

// A layer id as part of a file name: no path separators.
OdString FileNamePart(std::wstring id) {
  for (wchar_t& c : id) {
    if (c == L'/' || c == L'\\') c = L'_';
  }
  return OdString(id);
}

}  // namespace

bool DRAWSVG::IsLayerSkipped(const DrvLayer& layer) const {
  std::string original = Utf8(layer.originalName);
  std::string name = Utf8(layer.name);
  if (ListHolds(m_layersOff, original) || ListHolds(m_layersOff, name)) return true;
  return !m_layersOn.empty() && !ListHolds(m_layersOn, original) && !ListHolds(m_layersOn, name);
}

std::string DRAWSVG::LayerStatus(const DrvLayer& layer) const {
  std::string original = Utf8(layer.originalName);
  if (m_offLayerSet.count(original) != 0) return "OFF";
  if (m_frozenLayerSet.count(original) != 0) return "FROZEN";
  return "ON";
}

void DRAWSVG::WriteLayerGroupOpener(const std::wstring& id, const DrvLayer& layer, const char* idSuffix) {
  std::string status = LayerStatus(layer);
  std::string full = "layer_" + m_idPostfix + XmlText(id, XmlEscapeMode::kAttribute) + idSuffix;
  m_out += "<g id=\"" + full + "\" class=\"" + full + "\"  vtrl:layerName=\"" + DisplayNameOf(layer.name) +
           "\" vtrl:status=\"" + status + "\" visibility=\"" + (status == "ON" ? "visible" : "hidden") + "\">\n";
}

void DRAWSVG::WriteColourGroupContent(DrvColorGroup& group) {
  SelectColourGroup(group.colorIndex);
  if (!group.images.empty()) WriteImages(group.images);
  if (!group.fills.empty()) WriteFills(group.fills);
  if (!group.polylines.empty()) WritePolylines(group.polylines, false);
  if (!group.lines.empty()) WriteLines(group.lines);
  if (!group.arcs.empty()) WriteArcs(group.arcs);
  if (!group.circles.empty()) WriteCircles(group.circles);
  if (!group.fontGroups.empty()) WriteFontGroups(group.fontGroups);
}

void DRAWSVG::WriteNodeGroupsOfLayer(DrvView& view, const OdString& layerKey) {
  for (DrvNodeGroup& node : view.nodeGroups) {
    auto found = node.layers.find(layerKey);
    if (found == node.layers.end() || found->second.isEmpty()) continue;
    OpenNodeGroup(node.name, node.linkText, node.handle);
    for (DrvColorGroup& group : found->second.colorGroups) WriteColourGroupContent(group);
    CloseNodeGroup(node.name, !node.linkText.isEmpty());
    FlushIfLarge();
  }
}

bool DRAWSVG::WriteLayers(DrvView& view, const OdString& stem) {
  std::set<std::string> writtenNames;
  for (auto& [key, layer] : view.layers) {
    if (IsLayerSkipped(layer)) continue;
    m_handles = m_handleLayers.count(layer.name) != 0 || m_handleLayers.count(layer.originalName) != 0;
    if (m_handles) TraceMessage("Handle Layer", layer.name);
    std::wstring id = LayerIdOf(layer.name);
    if (m_breakByLayer) {
      OdString fileName = stem + L"__" + FileNamePart(id) + L".svg";
      TraceMessage("Open Output File", fileName);
      if (!OpenOutputFile(Utf8(fileName))) return false;
      m_linksWrittenInFile = false;
      PrepareFile();
      WriteHeader(view);
    }
    WriteLayerGroupOpener(id, layer, "");
    for (DrvColorGroup& group : layer.colorGroups) {
      SelectColourGroup(group.colorIndex);
      if (!group.images.empty()) WriteImages(group.images);
    }
    for (DrvColorGroup& group : layer.colorGroups) {
      SelectColourGroup(group.colorIndex);
      if (!group.fills.empty()) WriteFills(group.fills);
      if (!group.polylines.empty()) WritePolylines(group.polylines, m_handles);
      if (!group.lines.empty()) WriteLines(group.lines);
      if (!group.points.empty()) WritePoints(group.points);
      if (!group.arcs.empty()) WriteArcs(group.arcs);
      if (!group.circles.empty()) WriteCircles(group.circles);
      FlushIfLarge();
    }
    for (DrvColorGroup& group : layer.colorGroups) {
      SelectColourGroup(group.colorIndex);
      if (!group.fontGroups.empty()) WriteFontGroups(group.fontGroups);
    }
    WriteNodeGroupsOfLayer(view, key);
    // Links are kept for the whole view, not per layer: written once per file.
    if (!m_linksWrittenInFile) {
      WriteHyperlinkLayer();
      m_linksWrittenInFile = true;
    }
    m_out += "</g>\n";
    if (m_breakByLayer) CloseOutputFile();
    writtenNames.insert(Utf8(layer.name));
    writtenNames.insert(Utf8(layer.originalName));
    bool known = false;
    for (const std::wstring& written : m_writtenLayerIds) known = known || written == id;
    if (!known) m_writtenLayerIds.push_back(id);
    FlushIfLarge();
  }
  if (!m_breakByLayer) WriteBlockLayers(view, writtenNames);
  return true;
}

void DRAWSVG::WriteBlockLayers(DrvView& view, const std::set<std::string>& writtenNames) {
  std::set<std::string> done;
  for (const std::string& name : m_blockLayers) {
    if (name.empty() || writtenNames.count(name) != 0 || !done.insert(name).second) continue;
    OdString wide;
    Utf8ToOdString(wide, OdAnsiString(name));
    DrvLayer blockLayer;
    blockLayer.name = wide;
    blockLayer.originalName = wide;
    if (IsLayerSkipped(blockLayer)) continue;
    WriteLayerGroupOpener(LayerIdOf(wide), blockLayer, "_block");
    for (DrvNodeGroup& node : view.nodeGroups) {
      for (auto& [key, layer] : node.layers) {
        if (key != wide && layer.name != wide) continue;
        for (DrvColorGroup& group : layer.colorGroups) {
          SelectColourGroup(group.colorIndex);
          if (!group.fills.empty()) WriteFills(group.fills);
          if (!group.fontGroups.empty()) WriteFontGroups(group.fontGroups);
          if (!group.polylines.empty()) WritePolylines(group.polylines, false);
          if (!group.lines.empty()) WriteLines(group.lines);
          if (!group.arcs.empty()) WriteArcs(group.arcs);
          if (!group.circles.empty()) WriteCircles(group.circles);
        }
      }
    }
    m_out += "</g>\n";
  }
}
