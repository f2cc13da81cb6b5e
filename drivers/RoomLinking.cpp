// Room outlines on the room layers are linked to the label or text that lies inside them; the outline
// takes that text as its room id, and a ".rl" report lists what was linked and what was left over.
// Labels and texts are found through a uniform grid, so a drawing with many rooms and texts links in
// near-linear time.
#include <algorithm>
#include <cmath>
#include <deque>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <unordered_map>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// Points in a uniform grid of about one point per cell; query answers the lowest-numbered point that
// lies inside an outline, so the result is the one a front-to-back scan would find.
class PointGrid {
public:
  explicit PointGrid(const std::vector<OdGePoint2d>& points) : points_(points) {
    if (points.empty()) return;
    DrvBox box;
    for (const auto& p : points) box.extend(p.x, p.y);
    minX_ = box.minX;
    minY_ = box.minY;
    double width = std::max(box.width(), 1e-9), height = std::max(box.height(), 1e-9);
    double cells = static_cast<double>(points.size());
    double side = std::sqrt(width * height / cells);
    if (!(side > 0.0) || !std::isfinite(side)) side = std::max(width, height);
    columns_ = static_cast<int>(std::clamp(std::ceil(width / side), 1.0, 4096.0));
    rows_ = static_cast<int>(std::clamp(std::ceil(height / side), 1.0, 4096.0));
    cellWidth_ = width / columns_;
    cellHeight_ = height / rows_;
    // Counting sort by cell keeps the points of one cell in ascending order.
    cellStart_.assign(static_cast<std::size_t>(columns_) * rows_ + 1, 0);
    std::vector<int> cellOf(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
      cellOf[i] = cellIndex(column(points[i].x), row(points[i].y));
      ++cellStart_[static_cast<std::size_t>(cellOf[i]) + 1];
    }
    for (std::size_t c = 1; c < cellStart_.size(); ++c) cellStart_[c] += cellStart_[c - 1];
    entries_.resize(points.size());
    std::vector<int> fill(cellStart_.begin(), cellStart_.end() - 1);
    for (std::size_t i = 0; i < points.size(); ++i) entries_[static_cast<std::size_t>(fill[cellOf[i]]++)] = static_cast<int>(i);
  }

  // Index of the first point inside the outline, or -1.
  int firstInside(const std::vector<OdGePoint2d>& outline) const {
    if (points_.empty() || outline.size() < 3) return -1;
    DrvBox box;
    for (const auto& p : outline) box.extend(p.x, p.y);
    candidates_.clear();
    for (int r = row(box.minY); r <= row(box.maxY); ++r) {
      for (int c = column(box.minX); c <= column(box.maxX); ++c) {
        int cell = cellIndex(c, r);
        for (int k = cellStart_[cell]; k < cellStart_[cell + 1]; ++k) {
          const OdGePoint2d& p = points_[static_cast<std::size_t>(entries_[static_cast<std::size_t>(k)])];
          if (p.x >= box.minX && p.x <= box.maxX && p.y >= box.minY && p.y <= box.maxY)
            candidates_.push_back(entries_[static_cast<std::size_t>(k)]);
        }
      }
    }
    std::sort(candidates_.begin(), candidates_.end());
    for (int index : candidates_) {
      const OdGePoint2d& p = points_[static_cast<std::size_t>(index)];
      if (PointInPolygon(outline, p.x, p.y)) return index;
    }
    return -1;
  }

private:
  int column(double x) const { return std::clamp(static_cast<int>((x - minX_) / cellWidth_), 0, columns_ - 1); }
  int row(double y) const { return std::clamp(static_cast<int>((y - minY_) / cellHeight_), 0, rows_ - 1); }
  int cellIndex(int c, int r) const { return r * columns_ + c; }

  const std::vector<OdGePoint2d>& points_;
  double minX_ = 0.0, minY_ = 0.0, cellWidth_ = 1.0, cellHeight_ = 1.0;
  int columns_ = 1, rows_ = 1;
  std::vector<int> cellStart_;
  std::vector<int> entries_;
  mutable std::vector<int> candidates_;
};

// Texts of the text layers, in collection order; each may be linked once from the unlinked list.
class UnlinkedTexts {
public:
  void add(const std::string& text) {
    positionsOf_[text].push_back(texts_.size());
    texts_.push_back(text);
    linked_.push_back(false);
  }
  // Removes the first occurrence that is still listed.
  void removeFirst(const std::string& text) {
    auto found = positionsOf_.find(text);
    if (found == positionsOf_.end() || found->second.empty()) return;
    linked_[found->second.front()] = true;
    found->second.pop_front();
  }
  template <typename Visit>
  void forEachLeft(Visit visit) const {
    for (std::size_t i = 0; i < texts_.size(); ++i)
      if (!linked_[i]) visit(texts_[i]);
  }

private:
  std::vector<std::string> texts_;
  std::vector<bool> linked_;
  std::unordered_map<std::string, std::deque<std::size_t>> positionsOf_;
};

std::string utf8(const OdString& text) {
  std::string out;
  OdStringToUtf8(out, text);
  return out;
}

bool listHolds(const std::vector<std::string>& names, const DrvLayer& layer) {
  const std::string original = utf8(layer.originalName), current = utf8(layer.name);
  for (const auto& name : names)
    if (EqualsNoCase(name, original) || EqualsNoCase(name, current)) return true;
  return false;
}

bool listHolds(const std::vector<std::string>& names, const OdString& layerName) {
  const std::string name8 = utf8(layerName);
  for (const auto& name : names)
    if (EqualsNoCase(name, name8)) return true;
  return false;
}

// The labels and texts one outline may be linked to, with their spatial indexes.
struct LinkSources {
  std::vector<OdGePoint2d> labelPoints;
  std::vector<std::string> labelTexts;
  std::vector<OdGePoint2d> textPoints;
  std::vector<std::string> textTexts;
};

void collectTexts(const DrvLayerMap& layers, const std::vector<std::string>& textLayers, LinkSources& sources) {
  for (const auto& [key, layer] : layers) {
    if (!listHolds(textLayers, layer)) continue;
    for (const auto& group : layer.colorGroups)
      for (const auto& fontGroup : group.fontGroups)
        for (const auto& text : fontGroup.texts) {
          sources.textPoints.push_back(text.position);
          sources.textTexts.push_back(utf8(text.text));
        }
  }
}

struct Linker {
  const LinkSources& sources;
  const PointGrid& labels;
  const PointGrid& texts;
  const std::vector<std::string>& roomLayers;
  UnlinkedTexts* unlinked;
  std::ostream* report;
  int linkedLines = 0;

  bool findLabel(const DrvPolyline& outline, std::string& text) const {
    int label = labels.firstInside(outline.points);
    if (label >= 0) {
      text = sources.labelTexts[static_cast<std::size_t>(label)];
      return true;
    }
    int found = texts.firstInside(outline.points);
    if (found < 0) return false;
    text = sources.textTexts[static_cast<std::size_t>(found)];
    return true;
  }

  void linkLayers(DrvLayerMap& layers) {
    for (auto& [key, layer] : layers) {
      if (!listHolds(roomLayers, layer)) continue;
      layer.roomLayer = true;
      for (auto& group : layer.colorGroups)
        for (auto& outline : group.polylines) linkOutline(outline);
    }
  }

  void linkOutline(DrvPolyline& outline) {
    std::string text;
    if (!findLabel(outline, text)) return;
    outline.roomId = text;
    if (report) {
      *report << text << "," << outline.handle << "," << outline.area << "\n";
      ++linkedLines;
    }
    if (unlinked) unlinked->removeFirst(text);
  }
};

}  // namespace

bool TRANS_BASE2::IsRoomLayer(const OdString& layerName) const { return listHolds(m_roomLayers, layerName); }
bool TRANS_BASE2::IsTextLayer(const OdString& layerName) const { return listHolds(m_textLayers, layerName); }

void TRANS_BASE2::LinkRoomsAndTexts() {
  if (m_roomLayers.empty() || m_textLayers.empty() || !m_currentView) return;
  DrvView& view = *m_currentView;

  LinkSources sources;
  for (const auto& label : view.roomLabels) {
    sources.labelPoints.push_back(label.position);
    sources.labelTexts.push_back(label.text);
  }
  collectTexts(view.layers, m_textLayers, sources);
  for (const auto& group : view.nodeGroups) collectTexts(group.layers, m_textLayers, sources);
  UnlinkedTexts unlinked;
  for (const auto& text : sources.textTexts) unlinked.add(text);

  std::string reportName = utf8(m_outputFileName);
  std::size_t dot = reportName.rfind('.');
  if (dot != std::string::npos) reportName.erase(dot);
  reportName += ".rl";
  std::ofstream file(reportName, std::ios::binary | std::ios::trunc);
  std::ostringstream report;
  report << utf8(m_outputFileName) << "\n[LINKED]\n";

  PointGrid labelGrid(sources.labelPoints), textGrid(sources.textPoints);
  Linker linker{sources, labelGrid, textGrid, m_roomLayers, &unlinked, &report};
  linker.linkLayers(view.layers);
  for (auto& group : view.nodeGroups) linker.linkLayers(group.layers);
  if (linker.linkedLines == 0) report << "** empty **\n";

  report << "[UNLINKED]\n";
  bool anyLeft = false;
  unlinked.forEachLeft([&report, &anyLeft](const std::string& text) {
    report << text << "\n";
    anyLeft = true;
  });
  if (!anyLeft) report << "** empty **\n";
  if (file) file << report.str();
}

void TRANS_BASE2::LinkRoomLabels() {
  if (m_roomLayers.empty() || !m_currentView) return;
  DrvView& view = *m_currentView;
  LinkSources sources;
  for (const auto& label : view.roomLabels) {
    sources.labelPoints.push_back(label.position);
    sources.labelTexts.push_back(label.text);
  }
  PointGrid labelGrid(sources.labelPoints), textGrid(sources.textPoints);
  Linker linker{sources, labelGrid, textGrid, m_roomLayers, nullptr, nullptr};
  linker.linkLayers(view.layers);
  for (auto& group : view.nodeGroups) linker.linkLayers(group.layers);
}
