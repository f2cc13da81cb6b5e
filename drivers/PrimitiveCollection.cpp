// Primitive intake: every Draw and Add operation validates, de-duplicates and stores its primitive in
// the current view's collections (per layer and colour, or per node group while a block is open).
// Nothing is written here; the writers read the collections in OutputDrawing.
#include <cmath>
#include <algorithm>
#include <exception>
#include <stdexcept>

#include "drivers/TRANS_BASE2.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

bool finite(double a, double b) { return std::isfinite(a) && std::isfinite(b); }

bool finite(double a, double b, double c, double d) { return finite(a, b) && finite(c, d); }

OdString upperCopy(const OdString& text) {
  OdString copy = text;
  copy.makeUpper();
  return copy;
}

double polygonArea(const std::vector<OdGePoint2d>& points) {
  double twice = 0.0;
  for (std::size_t i = 0, j = points.size() - 1; i < points.size(); j = i++)
    twice += points[j].x * points[i].y - points[i].x * points[j].y;
  return std::fabs(twice) / 2.0;
}

void fillStroke(DrvStroke& record, const OdString& lineTypeName, double width, int lineWeight, bool absolute,
                int colorIndex) {
  record.hasWidth = width > 0.0;
  record.lineTypeName = lineTypeName;
  record.lineTypeScale = 1.0;
  record.width = width;
  record.lineWeight = lineWeight;
  record.absoluteWidth = absolute;
  record.colorIndex = colorIndex;
}

}  // namespace

bool DrvColorGroup::isEmpty() const {
  return polylines.empty() && lines.empty() && arcs.empty() && points.empty() && fills.empty() &&
         circles.empty() && fontGroups.empty() && images.empty();
}

DrvColorGroup* DrvLayer::findColorGroup(int colorIndex) {
  for (auto& group : colorGroups)
    if (group.colorIndex == colorIndex) return &group;
  return nullptr;
}

DrvColorGroup& DrvLayer::colorGroup(int colorIndex) {
  if (DrvColorGroup* found = findColorGroup(colorIndex)) return *found;
  colorGroups.emplace_back();
  colorGroups.back().colorIndex = colorIndex;
  return colorGroups.back();
}

bool DrvLayer::isEmpty() const {
  for (const auto& group : colorGroups)
    if (!group.isEmpty()) return false;
  return true;
}

// ---- Layer and colour state ------------------------------------------------------------------------

void TRANS_BASE2::SetLayer(const OdString& layerName, int layerColor) {
  m_currentLayerName = layerName;
  m_currentLayerColor = layerColor;
  m_attributesDirty = true;
}

DrvLayerMap* TRANS_BASE2::CurrentLayerMap() {
  if (m_openGroup) return &m_openGroup->layers;
  return m_currentView ? &m_currentView->layers : nullptr;
}

// "NODE_12" gives the node id "12" while "NODE_1" keeps the whole name: node ids written into the
// files have always followed this boundary.
void TRANS_BASE2::SetAttributes() {
  try {
    if (m_currentLayerName.isEmpty()) m_currentLayerName = OdString(L"0");
    if (!m_attributesDirty && m_currentGroup && m_currentColor == m_attributeColor) {
      m_layerChanged = false;
      return;
    }
    m_attributesDirty = false;
    bool sameLayer = upperCopy(m_currentLayerName) == upperCopy(m_previousLayerName);
    if (sameLayer && m_currentColor == m_attributeColor && m_currentGroup) {
      m_layerChanged = false;
      return;
    }
    m_currentDashes.clear();
    if (m_currentColor == -1) m_currentColor = 7;
    std::string layerUtf8;
    OdStringToUtf8(layerUtf8, m_currentLayerName);
    if (layerUtf8.rfind("NODE_", 0) == 0 && layerUtf8.size() > 6) m_nodeId = layerUtf8.substr(5);
    else m_nodeId = layerUtf8;
    m_previousLayerName = m_currentLayerName;
    m_layerChanged = true;

    m_currentLayer = nullptr;
    m_currentGroup = nullptr;
    DrvLayerMap* layers = CurrentLayerMap();
    if (!layers) return;
    auto [it, added] = layers->try_emplace(m_currentLayerName);
    if (added) {
      it->second.name = m_currentLayerName;
      it->second.originalName = m_currentLayerName;
      it->second.color = m_currentLayerColor;
    }
    m_currentLayer = &it->second;
    m_currentGroup = &m_currentLayer->colorGroup(m_currentColor);
    m_attributeColor = m_currentColor;
  } catch (...) {
    TraceMessage("Error in SetAttributes");
  }
}

void TRANS_BASE2::SetAttributes(bool, bool) { SetAttributes(); }

void TRANS_BASE2::SetPathAttributes(bool) {
  try {
    SetAttributes();
  } catch (...) {
    TraceMessage("Error in SetPathAttributes");
  }
}

DrvColorGroup* TRANS_BASE2::CurrentGroupForDrawing() {
  SetAttributes();
  return m_currentGroup;
}

// ---- Add operations --------------------------------------------------------------------------------

void TRANS_BASE2::AppendToLink(const DrvPolyline& record) {
  if (m_currentLink) m_currentLink->polylines.push_back(record);
}

void TRANS_BASE2::AddLine(DrvLine& record, const OdString& lineTypeName, double width, int lineWeight,
                          bool absolute) {
  try {
    DrvColorGroup* group = CurrentGroupForDrawing();
    if (!group) {
      TraceMessage("NULL Path in AddLine");
      return;
    }
    fillStroke(record, lineTypeName, width, lineWeight, absolute, m_currentColor);
    record.handle = m_currentHandle;
    group->lines.push_back(record);
    if (m_currentLink) m_currentLink->lines.push_back(record);
  } catch (...) {
    PrintMessage("Problem in AddLine");
  }
}

void TRANS_BASE2::AddArc(DrvArc& record, const OdString& lineTypeName, double width, int lineWeight,
                         bool absolute) {
  try {
    DrvColorGroup* group = CurrentGroupForDrawing();
    if (!group) {
      TraceMessage("NULL Path in AddArc");
      return;
    }
    fillStroke(record, lineTypeName, width, lineWeight, absolute, m_currentColor);
    record.handle = m_currentHandle;
    group->arcs.push_back(record);
    if (m_currentLink) m_currentLink->arcs.push_back(record);
  } catch (...) {
    PrintMessage("Problem in AddArc");
  }
}

void TRANS_BASE2::AddPolyline(DrvPolyline& record, const OdString& lineTypeName, double width, int lineWeight,
                              bool absolute) {
  try {
    DrvColorGroup* group = CurrentGroupForDrawing();
    if (!group) {
      TraceMessage("NULL Path in AddPolyline");
      return;
    }
    fillStroke(record, lineTypeName, width, lineWeight, absolute, m_currentColor);
    record.handle = m_currentHandle;
    record.hasHandle = m_currentLayer && m_handleLayers.count(m_currentLayer->originalName) > 0;
    group->polylines.push_back(record);
    AppendToLink(record);
  } catch (...) {
    PrintMessage("Problem in AddPolyline");
  }
}

void TRANS_BASE2::AddEntity(DrvCircle& record, const OdString& lineTypeName, double width, int lineWeight,
                            bool absolute) {
  DrvColorGroup* group = CurrentGroupForDrawing();
  if (!group) {
    TraceMessage("NULL Path in AddEntity");
    return;
  }
  fillStroke(record, lineTypeName, width, lineWeight, absolute, m_currentColor);
  record.handle = m_currentHandle;
  group->circles.push_back(record);
  if (m_currentLink) m_currentLink->circles.push_back(record);
}

// ---- Draw operations -------------------------------------------------------------------------------

int TRANS_BASE2::DrawLine(const OdString& lineTypeName, bool, int widthIsGeometric, double x1, double y1,
                          double x2, double y2, double, double lineWidth) {
  try {
    if (!finite(x1, y1, x2, y2)) return 0;
    const double tolerance = m_pointTolerance;
    if (std::fabs(x1 - x2) < tolerance && std::fabs(y1 - y2) < tolerance) return 0;
    if (std::fabs((x2 - x1) * m_unitScale) < tolerance && std::fabs((y2 - y1) * m_unitScale) < tolerance) return 0;
    if (!CurrentGroupForDrawing()) {
      TraceMessage("NULL Path in AddLine");
      return 0;
    }

    // The kit often hands the same segment again (shared edges, repeated dashes): the last five
    // segments are remembered and a repeat of one of them is dropped.
    for (int i = 0; i < m_ringCount; ++i) {
      const double* s = m_ring[i];
      if (std::fabs(s[0] - x1) < tolerance && std::fabs(s[1] - y1) < tolerance && std::fabs(s[2] - x2) < tolerance &&
          std::fabs(s[3] - y2) < tolerance)
        return 0;
    }
    if (m_ringCount == 5) {
      for (int i = 1; i < 5; ++i)
        for (int k = 0; k < 4; ++k) m_ring[i - 1][k] = m_ring[i][k];
      --m_ringCount;
    }
    double* slot = m_ring[m_ringCount++];
    slot[0] = x1;
    slot[1] = y1;
    slot[2] = x2;
    slot[3] = y2;

    DrvLine record;
    record.start = {x1 * m_unitScale, y1 * m_unitScale};
    record.end = {x2 * m_unitScale, y2 * m_unitScale};
    ExtendExtents(record.start.x, record.start.y);
    ExtendExtents(record.end.x, record.end.y);
    StrokeWidth w = CollectedStrokeWidth(widthIsGeometric, lineWidth);
    AddLine(record, lineTypeName, w.width, w.lineWeight, w.absolute);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawLine");
    return 0;
  }
}

// Filled outlines (hatches, solids) go to the fill list; every other point list is a polyline.
int TRANS_BASE2::DrawPolyline(const std::vector<OdGePoint2d>& points, bool filled, int pathStyle,
                              const OdString& lineTypeName, bool, int widthIsGeometric, double,
                              double lineWidth) {
  try {
    if (points.size() <= 1) return 0;
    for (const auto& p : points)
      if (!finite(p.x, p.y)) return 0;
    SetPathAttributes(filled);
    if (!m_currentGroup) {
      TraceMessage("NULL Path in AddPolyline");
      return 0;
    }

    DrvPolyline record;
    record.points.reserve(points.size());
    record.points.push_back({points[0].x * m_unitScale, points[0].y * m_unitScale});
    ExtendExtents(record.points[0].x, record.points[0].y);
    bool heldBack = false;
    for (std::size_t i = 1; i < points.size(); ++i) {
      OdGePoint2d p{points[i].x * m_unitScale, points[i].y * m_unitScale};
      ExtendExtents(p.x, p.y);
      const OdGePoint2d& last = record.points.back();
      heldBack = std::fabs(p.x - last.x) < 0.0001 && std::fabs(p.y - last.y) < 0.0001;
      if (!heldBack) record.points.push_back(p);
    }
    // A polyline always ends at its true end point.
    if (heldBack) record.points.push_back({points.back().x * m_unitScale, points.back().y * m_unitScale});

    bool closed = points.front() == points.back() && points.size() > 3;
    if (filled) {
      m_currentGroup->fills.push_back({std::move(record.points), m_currentHandle, m_currentColor});
      return 1;
    }
    record.closedKind = closed ? 1 : 0;
    record.area = closed ? polygonArea(record.points) : 0.0;
    record.pathStyle = pathStyle;
    StrokeWidth w = CollectedStrokeWidth(widthIsGeometric, lineWidth);
    AddPolyline(record, lineTypeName, w.width, w.lineWeight, w.absolute);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawPolyline");
    return 0;
  }
}

int TRANS_BASE2::DrawArc(const OdString& lineTypeName, bool, int widthIsGeometric, double centerX, double centerY,
                         double radius, double startAngle, double endAngle, double, double lineWidth) {
  try {
    if (!finite(centerX, centerY, radius, startAngle) || !std::isfinite(endAngle) || !(radius > 0.0)) return 0;
    if (!CurrentGroupForDrawing()) {
      TraceMessage("NULL Path in AddArc");
      return 0;
    }
    DrvArc record;
    record.center = {centerX * m_unitScale, centerY * m_unitScale};
    record.radius = radius * m_unitScale;
    record.startAngle = startAngle;
    record.endAngle = endAngle;
    PolarPoint(record.center.x, record.center.y, startAngle, record.radius, record.start.x, record.start.y);
    PolarPoint(record.center.x, record.center.y, endAngle, record.radius, record.end.x, record.end.y);
    ExtendExtents(record.center.x - record.radius, record.center.y - record.radius);
    ExtendExtents(record.center.x + record.radius, record.center.y + record.radius);
    StrokeWidth w = CollectedStrokeWidth(widthIsGeometric, lineWidth);
    AddArc(record, lineTypeName, w.width, w.lineWeight, w.absolute);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawArc");
    return 0;
  }
}

int TRANS_BASE2::DrawCircle(bool filled, const OdString& lineTypeName, bool, int widthIsGeometric, double centerX,
                            double centerY, double radius, double, double lineWidth) {
  try {
    if (!finite(centerX, centerY) || !std::isfinite(radius) || !(radius > 0.0)) return 0;
    if (!CurrentGroupForDrawing()) {
      TraceMessage("NULL Path in AddEntity");
      return 0;
    }
    DrvCircle record;
    record.center = {centerX * m_unitScale, centerY * m_unitScale};
    record.radiusX = record.radiusY = radius * m_unitScale;
    record.filled = filled;
    ExtendExtents(record.center.x - record.radiusX, record.center.y - record.radiusY);
    ExtendExtents(record.center.x + record.radiusX, record.center.y + record.radiusY);
    StrokeWidth w = CollectedStrokeWidth(widthIsGeometric, lineWidth);
    AddEntity(record, lineTypeName, w.width, w.lineWeight, w.absolute);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawCircle");
    return 0;
  }
}

int TRANS_BASE2::DrawEllipse(bool filled, const OdString& lineTypeName, bool, int widthIsGeometric, double centerX,
                             double centerY, double radiusX, double radiusY, double rotation, double,
                             double lineWidth) {
  try {
    if (!finite(centerX, centerY, radiusX, radiusY) || !std::isfinite(rotation) || !(radiusX > 0.0) ||
        !(radiusY > 0.0))
      return 0;
    if (!CurrentGroupForDrawing()) {
      TraceMessage("NULL Path in AddEntity");
      return 0;
    }
    DrvCircle record;
    record.center = {centerX * m_unitScale, centerY * m_unitScale};
    record.radiusX = radiusX * m_unitScale;
    record.radiusY = radiusY * m_unitScale;
    record.rotation = rotation;
    record.isEllipse = true;
    record.filled = filled;
    double reach = std::max(record.radiusX, record.radiusY);
    ExtendExtents(record.center.x - reach, record.center.y - reach);
    ExtendExtents(record.center.x + reach, record.center.y + reach);
    StrokeWidth w = CollectedStrokeWidth(widthIsGeometric, lineWidth);
    AddEntity(record, lineTypeName, w.width, w.lineWeight, w.absolute);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawEllipse");
    return 0;
  }
}

int TRANS_BASE2::DrawDot(double x, double y) {
  try {
    if (!finite(x, y)) return 0;
    DrvColorGroup* group = CurrentGroupForDrawing();
    if (!group) return 0;
    OdGePoint2d p{x * m_unitScale, y * m_unitScale};
    group->points.push_back(p);
    ExtendExtents(p.x, p.y);
    return 1;
  } catch (...) {
    PrintMessage("Problem in DrawDot");
    return 0;
  }
}

int TRANS_BASE2::AddRoomLabel(const std::string& labelText, double x, double y) {
  if (!m_currentView || !finite(x, y)) return 0;
  m_currentView->roomLabels.push_back({labelText, {x * m_unitScale, y * m_unitScale}});
  return 1;
}

int TRANS_BASE2::DrawEmbeddedImage(const OdString& fileName, std::int64_t pixelWidth, std::int64_t pixelHeight,
                                   const std::vector<OdGePoint2d>& clipPoints, int mode, double minX, double minY,
                                   double maxX, double maxY, double rotation, bool mirrored) {
  try {
    if (!finite(minX, minY, maxX, maxY) || !std::isfinite(rotation)) return 0;
    for (const auto& p : clipPoints)
      if (!finite(p.x, p.y)) return 0;
    DrvColorGroup* group = CurrentGroupForDrawing();
    if (!group) return 0;
    DrvImage image;
    image.fileName = fileName;
    image.pixelWidth = pixelWidth;
    image.pixelHeight = pixelHeight;
    for (const auto& p : clipPoints) image.clipPoints.push_back({p.x * m_unitScale, p.y * m_unitScale});
    image.mode = mode;
    image.minX = minX * m_unitScale;
    image.minY = minY * m_unitScale;
    image.maxX = maxX * m_unitScale;
    image.maxY = maxY * m_unitScale;
    image.rotation = rotation;
    image.mirrored = mirrored;
    image.colorIndex = m_currentColor;
    ExtendExtents(image.minX, image.minY);
    ExtendExtents(image.maxX, image.maxY);
    group->images.push_back(std::move(image));
    return 1;
  } catch (const std::exception& error) {
    TraceMessage("qwsDrawEmbeddedImage: ", error.what());
    return 0;
  }
}

// ---- Node groups -----------------------------------------------------------------------------------

void TRANS_BASE2::BeginGroup(const OdString& name) {
  try {
    if (!m_currentView) throw std::runtime_error("no view");
    m_inGroup = true;
    DrvNodeGroup group;
    group.name = name;
    group.handle = m_currentHandle;
    group.linkText = m_hyperlinkText;
    group.linkTarget = m_hyperlinkName;
    m_currentView->nodeGroups.push_back(std::move(group));
    m_groupStack.push_back({m_currentLayer, m_currentGroup, m_openGroup});
    m_savedLayer = m_currentLayer;
    m_savedGroup = m_currentGroup;
    m_openGroup = &m_currentView->nodeGroups.back();
    m_currentLayer = nullptr;
    m_currentGroup = nullptr;
    m_currentLayerName.empty();
    m_previousColor = -1;
    m_attributeColor = -1;
    m_attributesDirty = true;
  } catch (...) {
    TraceMessage("Error in BeginGroup", name);
  }
}

void TRANS_BASE2::EndGroup(const OdString& name) {
  try {
    if (m_groupStack.empty()) return;
    GroupFrame frame = m_groupStack.back();
    m_groupStack.pop_back();
    m_currentLayer = frame.savedLayer;
    m_currentGroup = frame.savedGroup;
    m_openGroup = frame.group;
    m_savedLayer = m_groupStack.empty() ? nullptr : m_groupStack.back().savedLayer;
    m_savedGroup = m_groupStack.empty() ? nullptr : m_groupStack.back().savedGroup;
    m_inGroup = !m_groupStack.empty();
    m_currentLayerName.empty();
    m_previousColor = -1;
    m_attributeColor = -1;
    m_attributesDirty = true;
    if (m_currentLayer) {
      m_currentLayerName = m_currentLayer->originalName;
      m_currentLayerColor = m_currentLayer->color;
      m_currentColor = m_currentLayer->color;
      m_previousColor = m_currentLayer->color;
    }
  } catch (...) {
    TraceMessage("Error in EndGroup", name);
  }
}
