// Line work of one colour group as SVG elements: polylines (merged while their attributes agree),
// line segments, arcs, point markers, circles and ellipses, and filled areas; their classes for
// colour, width and dash pattern, and the viewer's handle, node and room attributes.
#include <array>
#include <cmath>
#include <exception>
#include <string_view>

#include "drivers/svg/DRAWSVG.h"
#include "drivers/svg/SvgLineTypes.h"
#include "drivers/svg/SvgNumberText.h"
#include "drivers/svg/SvgXmlText.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

// One entry per line weight (index 0..211, up to 2.11 mm). Widths are collected in hundredths of an
// output unit, line weights already plotted to the page's scale, so every entry turns hundredths
// into whole units: line weights keep their proportions and geometric widths their size.
constexpr int kLineWeightCount = 212;
constexpr double kLineWeightFactor = 0.01;
constexpr double kLargestLineWeightFactor = 0.1;
// Geometric widths are scaled by this factor when the page is smaller than the drawing.
constexpr double kAbsoluteWidthFactor = 2.0506;
// Line types drawn at one fixed width.
constexpr double kFixedWidth = 0.2;
// Longer polylines always get an element of their own.
constexpr std::size_t kMergeablePoints = 999;

double LineWeightTableEntry(int) { return kLineWeightFactor; }

std::string Attribute(const std::string& text) { return XmlText(text, XmlEscapeMode::kAttribute); }

bool HasTwoFinitePoints(const std::vector<OdGePoint2d>& points) {
  int finite = 0;
  for (const OdGePoint2d& p : points) {
    if (IsFinitePoint(p.x, p.y) && ++finite == 2) return true;
  }
  return false;
}

bool SameStroke(const DrvStroke& a, const DrvStroke& b) {
  return a.width == b.width && a.lineWeight == b.lineWeight && a.lineTypeName == b.lineTypeName &&
         a.lineTypeScale == b.lineTypeScale && a.absoluteWidth == b.absoluteWidth;
}

}  // namespace

void DRAWSVG::SelectColourGroup(int colorIndex) {
  m_colourClass = ColorName(colorIndex);
  m_namedColour = m_colourClass.find("rgb(") == std::string::npos;
  m_colourKey = m_namedColour ? m_colourClass : std::to_string(colorIndex);
}

double DRAWSVG::GetViewLineWeight() { return LineWeightTableEntry(0); }

double DRAWSVG::GetStrokeWidth(double width, int lineWeightIndex, bool absolute) {
  if (absolute && m_svgScale > 1.0) {
    double v = kAbsoluteWidthFactor * m_lineWidthScale * width / m_svgScale;
    return m_minLineWidth > v ? m_minLineWidth : v;
  }
  if (lineWeightIndex < 0 || lineWeightIndex >= kLineWeightCount) lineWeightIndex = 0;
  double t = std::min(LineWeightTableEntry(lineWeightIndex), kLargestLineWeightFactor);
  // The minimum is compared before the line width scale applies.
  return m_minLineWidth > t * width ? m_minLineWidth : t * width * m_lineWidthScale;
}

double DRAWSVG::RecordStrokeWidth(const DrvStroke& record) {
  if (m_fixedWidthLineTypes.count(record.lineTypeName) != 0) return kFixedWidth;
  return GetStrokeWidth(record.width, record.lineWeight, record.absoluteWidth);
}

std::string DRAWSVG::LineTypeClass(const OdString& lineTypeName) const {
  OdString upper = lineTypeName;
  upper.makeUpper();
  if (m_solidLineTypes.count(lineTypeName) != 0 || m_solidLineTypes.count(upper) != 0) return "";
  return "sLt_" + CleanSvgName(lineTypeName.str());
}

std::string DRAWSVG::DashArrayAttribute(const OdString& lineTypeName, double lineTypeScale) const {
  if (lineTypeScale == 1.0) return "";
  std::vector<double> dashes;
  if (!FindLineType(lineTypeName, dashes) || dashes.empty()) return "";
  double scale = lineTypeScale * m_dashScale * m_svgScale;
  return "stroke-dasharray=\"" + DashArrayText(dashes, scale, m_minLineWidth) + "\" ";
}

namespace {

void AppendStrokeWidth(std::string& out, double width) {
  out += "stroke-width=\"";
  AppendDouble(out, width);
  out += "\" ";
}

}  // namespace

void DRAWSVG::OpenPolylineElement(const DrvPolyline& record, bool withHandles, std::string& opener) {
  bool scaled = record.lineTypeScale != 1.0;
  std::string lineTypeClass = scaled ? std::string() : LineTypeClass(record.lineTypeName);
  const char* zeroWidth = record.width == 0 ? " ZW" : "";
  opener.clear();
  if (!record.roomId.empty()) {
    opener += "class=\"sClr_" + m_colourKey + " " + lineTypeClass + zeroWidth + " vtrl_nodes\" vtrl:node='NODE_" +
              m_idPostfix + std::to_string(++m_nodeCounter) + "' vtrl:roomId='" + Attribute(record.roomId) +
              "' fill=\"transparent\" ";
  } else {
    opener += "fill=\"none\" class=\"sClr_" + m_colourKey + (record.hasHandle ? " sHB" : "") + zeroWidth;
    if (!scaled) opener += " " + lineTypeClass;
    if (withHandles) {
      opener += " vtrl_handles\" vtrl:node='NODE_" + m_idPostfix + std::to_string(++m_nodeCounter) +
                "'  vtrl:handle='" + Attribute(record.handle) + "' ";
    } else {
      opener += "\" ";
    }
  }
  opener += DashArrayAttribute(record.lineTypeName, record.lineTypeScale);
  if (m_listArea && record.area > 0 && (withHandles || !record.roomId.empty())) {
    opener += "vtrl:area=\"";
    AppendDouble10(opener, record.area);
    opener += "\" ";
  }
  if (record.width != 0) AppendStrokeWidth(opener, RecordStrokeWidth(record));
  opener += "d=\"";
}

void DRAWSVG::WritePolylines(const std::vector<DrvPolyline>& records, bool withHandles) {
  SvgCoordinates page = PageCoordinates();
  const DrvPolyline* previous = nullptr;
  bool previousDashed = false;
  std::string opener;
  int inElement = 0;
  auto continueElement = [&] {
    m_out += "\" />\n";
    AppendElementId("path");
    m_out += opener;
  };
  for (const DrvPolyline& record : records) {
    if (!(record.width >= 0) || !HasTwoFinitePoints(record.points)) continue;
    bool separate = previous == nullptr || withHandles || record.hasHandle || !SameStroke(record, *previous) ||
                    !record.roomId.empty() || previousDashed || record.area > 0 || record.closedKind == 1 ||
                    record.points.size() > kMergeablePoints;
    if (separate) {
      if (previous != nullptr) m_out += "\" />\n";
      OpenPolylineElement(record, withHandles, opener);
      AppendElementId("path");
      m_out += opener;
      inElement = 0;
      previousDashed = opener.find("stroke-dasharray") != std::string::npos;
    }
    AppendPointRun(m_out, page, record.points, inElement, continueElement);
    previous = &record;
    FlushIfLarge();
  }
  if (previous != nullptr) m_out += "\" />\n";
}

void DRAWSVG::WriteLines(const std::vector<DrvLine>& records) {
  SvgCoordinates page = PageCoordinates();
  const DrvLine* previous = nullptr;
  std::string opener;
  int inElement = 0;
  auto continueElement = [&] {
    m_out += "\" />\n";
    AppendElementId("path");
    m_out += opener;
  };
  for (const DrvLine& line : records) {
    if (!IsFinitePoint(line.start.x, line.start.y) || !IsFinitePoint(line.end.x, line.end.y)) continue;
    if (!(line.width >= 0)) continue;
    if (previous == nullptr || !SameStroke(line, *previous)) {
      if (previous != nullptr) m_out += "\" />\n";
      bool scaled = line.lineTypeScale != 1.0;
      opener = "class=\"sClr_" + m_colourKey + " " + (scaled ? std::string() : LineTypeClass(line.lineTypeName)) +
               (line.width == 0 ? " ZW" : "") + "\" " + DashArrayAttribute(line.lineTypeName, line.lineTypeScale);
      if (line.width != 0) AppendStrokeWidth(opener, RecordStrokeWidth(line));
      opener += "d=\"";
      AppendElementId("path");
      m_out += opener;
      inElement = 0;
    }
    const std::array<OdGePoint2d, 2> ends = {line.start, line.end};
    AppendPointRun(m_out, page, ends, inElement, continueElement);
    previous = &line;
    FlushIfLarge();
  }
  if (previous != nullptr) m_out += "\" />\n";
}

void DRAWSVG::WriteArcs(const std::vector<DrvArc>& records) {
  SvgCoordinates page = PageCoordinates();
  const DrvArc* previous = nullptr;
  for (const DrvArc& arc : records) {
    double sx = 0, sy = 0, ex = 0, ey = 0;
    PolarPoint(arc.center.x, arc.center.y, arc.startAngle, arc.radius, sx, sy);
    PolarPoint(arc.center.x, arc.center.y, arc.endAngle, arc.radius, ex, ey);
    if (!IsFinitePoint(sx, sy) || !IsFinitePoint(ex, ey) || !std::isfinite(arc.radius) || !(arc.width >= 0)) continue;
    if (previous == nullptr || !SameStroke(arc, *previous)) {
      if (previous != nullptr) m_out += "\" />\n";
      bool scaled = arc.lineTypeScale != 1.0;
      AppendElementId("path");
      m_out += "class=\"sClr_" + m_colourKey + " " + (scaled ? std::string() : LineTypeClass(arc.lineTypeName)) +
               (arc.width == 0 ? " ZW" : "") + "\" " + DashArrayAttribute(arc.lineTypeName, arc.lineTypeScale);
      if (arc.width != 0) AppendStrokeWidth(m_out, RecordStrokeWidth(arc));
      m_out += "d=\"";
    }
    page.MoveTo(m_out, sx, sy);
    m_out += "A ";
    AppendDouble(m_out, arc.radius);
    m_out += ' ';
    AppendDouble(m_out, arc.radius);
    m_out += arc.endAngle - arc.startAngle > 180 ? " 0 1 0 " : " 0 0 0 ";
    page.AppendX(m_out, ex);
    m_out += ' ';
    page.AppendY(m_out, ey);
    previous = &arc;
  }
  if (previous != nullptr) m_out += "\" />\n";
}

void DRAWSVG::WritePoints(const std::vector<OdGePoint2d>& points) {
  SvgCoordinates page = PageCoordinates();
  double mark = m_minLineWidth;
  if (m_pointCircle != 0) {
    for (const OdGePoint2d& p : points) {
      if (!IsFinitePoint(p.x, p.y)) continue;
      AppendElementId("circle");
      m_out += "class=\"qwsPoints fClr_" + m_colourKey + "\" cx=\"";
      page.AppendX(m_out, p.x);
      m_out += "\" cy=\"";
      page.AppendY(m_out, p.y);
      m_out += "\" />\n";
    }
    return;
  }
  bool started = false;
  double penX = 0, penY = 0;  // where the last mark ended
  for (const OdGePoint2d& p : points) {
    if (!IsFinitePoint(p.x, p.y)) continue;
    double x = p.x - mark / 2;
    if (!started) {
      AppendElementId("path");
      m_out += "class=\"qwsPoints sClr_" + m_colourKey + "\" stroke=\"" + m_colourClass + "\" d=\"";
      page.MoveTo(m_out, x, p.y);
      started = true;
    } else {
      m_out += 'm';
      page.AppendDx(m_out, x - penX);
      m_out += ',';
      page.AppendDy(m_out, p.y - penY);
    }
    m_out += 'h';
    AppendDouble(m_out, mark);
    penX = x + mark;
    penY = p.y;
  }
  if (started) m_out += "\" />\n";
}

void DRAWSVG::WriteCircles(const std::vector<DrvCircle>& records) {
  SvgCoordinates page = PageCoordinates();
  bool groupOpen = false;
  bool groupFilled = false;
  double groupOpacity = 1.0;
  for (const DrvCircle& shape : records) {
    if (!IsFinitePoint(shape.center.x, shape.center.y) || !std::isfinite(shape.radiusX) ||
        !std::isfinite(shape.radiusY) || !(shape.width >= 0)) {
      continue;
    }
    if (!groupOpen || shape.filled != groupFilled || (shape.filled && shape.opacity != groupOpacity)) {
      if (groupOpen) m_out += "</g>\n";
      if (shape.filled) {
        m_out += "<g opacity=\"";
        AppendDouble(m_out, shape.opacity);
        m_out += "\" class=\"fClr_" + m_colourKey + "\" >\n";
      } else {
        m_out += "<g class=\"sClr_" + m_colourKey + "\" >\n";
      }
      groupOpen = true;
      groupFilled = shape.filled;
      groupOpacity = shape.opacity;
    }
    AppendElementId(shape.isEllipse ? "ellipse" : "circle");
    bool scaled = shape.lineTypeScale != 1.0;
    std::string classes;
    auto addClass = [&](const std::string& name) {
      if (name.empty()) return;
      if (!classes.empty()) classes += ' ';
      classes += name;
    };
    if (m_handles) addClass("vtrl_handles");
    if (!scaled) addClass(LineTypeClass(shape.lineTypeName));
    if (shape.width == 0) addClass("ZW");
    if (!classes.empty()) m_out += "class=\"" + classes + "\" ";
    if (m_handles) m_out += "vtrl:handle='" + Attribute(shape.handle) + "' ";
    m_out += DashArrayAttribute(shape.lineTypeName, shape.lineTypeScale);
    if (shape.filled) m_out += "fill=\"" + m_colourClass + "\" ";
    if (shape.width != 0) AppendStrokeWidth(m_out, RecordStrokeWidth(shape));
    m_out += "cx=\"";
    page.AppendX(m_out, shape.center.x);
    m_out += "\" cy=\"";
    page.AppendY(m_out, shape.center.y);
    if (!shape.isEllipse) {
      m_out += "\" r=\"";
      AppendDouble(m_out, shape.radiusX);
      m_out += "\" />\n";
      continue;
    }
    m_out += "\" rx=\"";
    AppendDouble(m_out, shape.radiusX);
    m_out += "\" ry=\"";
    AppendDouble(m_out, shape.radiusY);
    double rotation = 360 - shape.rotation;
    m_out += "\" transform=\"rotate(" +
             std::to_string(std::isfinite(rotation) && std::fabs(rotation) < 1e9 ? static_cast<long>(rotation) : 0) +
             " " + page.XText(shape.center.x) + " " + page.YText(shape.center.y) + ")\" />\n";
  }
  if (groupOpen) m_out += "</g>\n";
}

void DRAWSVG::WriteFills(const std::vector<DrvFill>& records) {
  try {
    SvgCoordinates page = PageCoordinates();
    for (const DrvFill& fill : records) {
      if (!HasTwoFinitePoints(fill.points)) continue;
      std::string data;
      double px = 0, py = 0;
      bool started = false;
      for (const OdGePoint2d& p : fill.points) {
        if (!started) {
          if (!IsFinitePoint(p.x, p.y)) continue;
          page.MoveTo(data, p.x, p.y);
          started = true;
          px = p.x;
          py = p.y;
        } else {
          page.StepTo(data, px, py, p.x, p.y);
        }
      }
      if (!started) continue;
      AppendElementId("path");
      m_out += "class=\"fClr_" + m_colourKey;
      if (!fill.handle.empty()) {
        m_out += " vtrl_handles\" vtrl:handle='" + Attribute(fill.handle) + "' ";
      } else {
        m_out += "\" ";
      }
      m_out += "opacity=\"1.\" d=\"" + data + " Z \"/>\n";
      FlushIfLarge();
    }
  } catch (const std::exception&) {
    TraceMessage("Error in OutputFill");
  }
}
