// AutoCAD as oracle: beside some corpus DWG files lies AutoCAD's own dump of their entities
// (ActiveX property values) and a DXF of the same drawing. The DXF reader's values must match
// what AutoCAD reported for the same handles. AutoCAD prints six significant digits, so values
// are compared within half a unit of the last printed digit.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "tests/kit/DxfTestSupport.h"

namespace {

// One "<DwgEntity" record of a dump: property name (without "(RO)") -> printed value.
using DumpRecord = std::map<std::string, std::string>;

std::vector<DumpRecord> readAutoCadDump(const std::string& path) {
  std::ifstream in(path);
  std::vector<DumpRecord> records;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind("<DwgEntity", 0) == 0) {
      records.emplace_back();
      continue;
    }
    if (records.empty() || line.rfind(";   ", 0) != 0) continue;
    size_t eq = line.find(" = ");
    if (eq == std::string::npos) continue;
    std::string name = line.substr(4, eq - 4);
    if (size_t ro = name.find(" (RO)"); ro != std::string::npos) name.erase(ro);
    records.back()[name] = line.substr(eq + 3);
  }
  return records;
}

// The numbers of "(1.5 2 0.0 ... )" or "1.5"; a trailing "..." means the list was cut.
std::vector<std::string> numberTexts(const std::string& value) {
  std::string s = value;
  for (char& c : s) {
    if (c == '(' || c == ')') c = ' ';
  }
  std::istringstream in(s);
  std::vector<std::string> out;
  std::string word;
  while (in >> word) {
    if (word == "...") break;
    out.push_back(word);
  }
  return out;
}

// Half a unit of the last of six significant digits.
double printedTolerance(double v) {
  if (v == 0.0) return 1e-9;
  return 0.5 * std::pow(10.0, std::floor(std::log10(std::fabs(v))) - 5) * 1.0001;
}

std::string unquote(const std::string& s) {
  if (s.size() >= 2 && s.front() == '"' && s.back() == '"') return s.substr(1, s.size() - 2);
  return s;
}

using Numbers = std::vector<double>;
using NumberExtractor = std::function<Numbers(const Entity&)>;
using TextExtractor = std::function<std::string(const Entity&)>;

Numbers xyz(const OdGePoint3d& p) { return {p.x, p.y, p.z}; }
Numbers xyz(const OdGeVector3d& p) { return {p.x, p.y, p.z}; }

template <class E>
const E& as(const Entity& e) {
  return static_cast<const E&>(e);
}

// What each ActiveX property of each object class is in the database.
struct Extractors {
  std::map<std::string, DbType> kinds = {
      {"AcDbLine", DbType::kLine}, {"AcDbArc", DbType::kArc}, {"AcDbCircle", DbType::kCircle},
      {"AcDbEllipse", DbType::kEllipse}, {"AcDbPolyline", DbType::kLwPolyline},
      {"AcDb3dPolyline", DbType::kPolyline}, {"AcDbPolygonMesh", DbType::kPolyline},
      {"AcDbXline", DbType::kXLine}, {"AcDbRay", DbType::kRay}, {"AcDbHelix", DbType::kHelix},
      {"AcDbText", DbType::kText}, {"AcDbMText", DbType::kMText}, {"AcDbHatch", DbType::kHatch},
      {"AcDbSpline", DbType::kSpline}, {"AcDbPoint", DbType::kPoint}, {"AcDbFace", DbType::kFace},
      {"AcDbTrace", DbType::kTrace}, {"AcDbLeader", DbType::kLeader}, {"AcDbMline", DbType::kMLine},
      {"AcDbBlockReference", DbType::kBlockReference}, {"AcDbAttributeDefinition", DbType::kAttributeDefinition},
      {"AcDbTable", DbType::kTable}, {"AcDbOle2Frame", DbType::kOle2Frame}, {"AcDbRegion", DbType::kModelerGeometry},
      {"AcDb3dSolid", DbType::kModelerGeometry}, {"AcDbAlignedDimension", DbType::kDimension},
      {"AcDbRotatedDimension", DbType::kDimension}, {"AcDbRadialDimension", DbType::kDimension},
      {"AcDbDiametricDimension", DbType::kDimension}, {"AcDbOrdinateDimension", DbType::kDimension},
      {"AcDb2LineAngularDimension", DbType::kDimension}, {"AcDb3PointAngularDimension", DbType::kDimension},
  };
  std::map<std::string, NumberExtractor> numbers;  // "Class.Property" or "*.Property"
  std::map<std::string, TextExtractor> texts;

  Extractors() {
    numbers["AcDbLine.StartPoint"] = [](const Entity& e) { return xyz(as<LineEntity>(e).start); };
    numbers["AcDbLine.EndPoint"] = [](const Entity& e) { return xyz(as<LineEntity>(e).end); };
    numbers["AcDbLine.Thickness"] = [](const Entity& e) { return Numbers{as<LineEntity>(e).thickness}; };
    numbers["AcDbCircle.Center"] = [](const Entity& e) { return xyz(as<CircleEntity>(e).center); };
    numbers["AcDbCircle.Radius"] = [](const Entity& e) { return Numbers{as<CircleEntity>(e).radius}; };
    numbers["AcDbArc.Center"] = [](const Entity& e) { return xyz(as<ArcEntity>(e).center); };
    numbers["AcDbArc.Radius"] = [](const Entity& e) { return Numbers{as<ArcEntity>(e).radius}; };
    numbers["AcDbArc.StartAngle"] = [](const Entity& e) { return Numbers{as<ArcEntity>(e).startAngle}; };
    numbers["AcDbArc.EndAngle"] = [](const Entity& e) { return Numbers{as<ArcEntity>(e).endAngle}; };
    numbers["AcDbEllipse.Center"] = [](const Entity& e) { return xyz(as<EllipseEntity>(e).center); };
    numbers["AcDbEllipse.MajorAxis"] = [](const Entity& e) { return xyz(as<EllipseEntity>(e).majorAxis); };
    numbers["AcDbEllipse.RadiusRatio"] = [](const Entity& e) { return Numbers{as<EllipseEntity>(e).radiusRatio}; };
    numbers["AcDbEllipse.StartParameter"] = [](const Entity& e) { return Numbers{as<EllipseEntity>(e).startParam}; };
    numbers["AcDbEllipse.EndParameter"] = [](const Entity& e) { return Numbers{as<EllipseEntity>(e).endParam}; };
    numbers["AcDbPolyline.Coordinates"] = [](const Entity& e) {
      Numbers n;
      for (const OdGePoint2d& p : as<LwPolylineEntity>(e).points) n.insert(n.end(), {p.x, p.y});
      return n;
    };
    numbers["AcDbPolyline.ConstantWidth"] = [](const Entity& e) { return Numbers{as<LwPolylineEntity>(e).constantWidth}; };
    numbers["AcDbPolyline.Elevation"] = [](const Entity& e) { return Numbers{as<LwPolylineEntity>(e).elevation}; };
    numbers["AcDbPolyline.Closed"] = [](const Entity& e) { return Numbers{as<LwPolylineEntity>(e).isClosed() ? -1.0 : 0.0}; };
    auto polylineCoordinates = [](const Entity& e) {
      Numbers n;
      for (const PolylineVertex& v : as<PolylineEntity>(e).vertices) n.insert(n.end(), {v.position.x, v.position.y, v.position.z});
      return n;
    };
    numbers["AcDb3dPolyline.Coordinates"] = polylineCoordinates;
    numbers["AcDbPolygonMesh.Coordinates"] = polylineCoordinates;
    numbers["AcDbPolygonMesh.MVertexCount"] = [](const Entity& e) { return Numbers{double(as<PolylineEntity>(e).meshM)}; };
    numbers["AcDbPolygonMesh.NVertexCount"] = [](const Entity& e) { return Numbers{double(as<PolylineEntity>(e).meshN)}; };
    auto basePoint = [](const Entity& e) {
      return e.type == DbType::kRay ? xyz(as<RayEntity>(e).basePoint) : xyz(as<XLineEntity>(e).basePoint);
    };
    auto secondPoint = [](const Entity& e) {
      return e.type == DbType::kRay ? xyz(as<RayEntity>(e).basePoint + as<RayEntity>(e).direction)
                                    : xyz(as<XLineEntity>(e).basePoint + as<XLineEntity>(e).direction);
    };
    auto direction = [](const Entity& e) {
      return e.type == DbType::kRay ? xyz(as<RayEntity>(e).direction) : xyz(as<XLineEntity>(e).direction);
    };
    for (const char* cls : {"AcDbRay", "AcDbXline"}) {
      numbers[std::string(cls) + ".BasePoint"] = basePoint;
      numbers[std::string(cls) + ".SecondPoint"] = secondPoint;
      numbers[std::string(cls) + ".DirectionVector"] = direction;
    }
    numbers["AcDbHelix.Position"] = [](const Entity& e) { return xyz(as<HelixEntity>(e).axisBasePoint); };
    numbers["AcDbHelix.TopRadius"] = [](const Entity& e) { return Numbers{as<HelixEntity>(e).radius}; };
    numbers["AcDbHelix.Turns"] = [](const Entity& e) { return Numbers{as<HelixEntity>(e).turns}; };
    numbers["AcDbHelix.TurnHeight"] = [](const Entity& e) { return Numbers{as<HelixEntity>(e).turnHeight}; };
    numbers["AcDbHelix.BaseRadius"] = [](const Entity& e) {
      const HelixEntity& h = as<HelixEntity>(e);
      return Numbers{h.startPoint.distanceTo(h.axisBasePoint)};
    };
    numbers["AcDbText.InsertionPoint"] = [](const Entity& e) { return xyz(as<TextEntity>(e).position); };
    numbers["AcDbText.Height"] = [](const Entity& e) { return Numbers{as<TextEntity>(e).height}; };
    numbers["AcDbText.Rotation"] = [](const Entity& e) { return Numbers{as<TextEntity>(e).rotation}; };
    numbers["AcDbText.ObliqueAngle"] = [](const Entity& e) { return Numbers{as<TextEntity>(e).oblique}; };
    numbers["AcDbText.ScaleFactor"] = [](const Entity& e) { return Numbers{as<TextEntity>(e).widthFactor}; };
    numbers["AcDbMText.InsertionPoint"] = [](const Entity& e) { return xyz(as<MTextEntity>(e).position); };
    numbers["AcDbMText.Height"] = [](const Entity& e) { return Numbers{as<MTextEntity>(e).height}; };
    numbers["AcDbMText.Width"] = [](const Entity& e) { return Numbers{as<MTextEntity>(e).referenceWidth}; };
    numbers["AcDbMText.AttachmentPoint"] = [](const Entity& e) { return Numbers{double(as<MTextEntity>(e).attachment)}; };
    numbers["AcDbAttributeDefinition.InsertionPoint"] = [](const Entity& e) {
      return xyz(as<AttributeDefinitionEntity>(e).position);
    };
    numbers["AcDbAttributeDefinition.Height"] = [](const Entity& e) { return Numbers{as<AttributeDefinitionEntity>(e).height}; };
    numbers["AcDbBlockReference.InsertionPoint"] = [](const Entity& e) { return xyz(as<BlockReferenceEntity>(e).position); };
    numbers["AcDbBlockReference.Rotation"] = [](const Entity& e) { return Numbers{as<BlockReferenceEntity>(e).rotation}; };
    numbers["AcDbBlockReference.XScaleFactor"] = [](const Entity& e) { return Numbers{as<BlockReferenceEntity>(e).scale.x}; };
    numbers["AcDbBlockReference.YScaleFactor"] = [](const Entity& e) { return Numbers{as<BlockReferenceEntity>(e).scale.y}; };
    numbers["AcDbTable.InsertionPoint"] = [](const Entity& e) { return xyz(as<TableEntity>(e).position); };
    numbers["AcDbHatch.PatternScale"] = [](const Entity& e) { return Numbers{as<HatchEntity>(e).patternScale}; };
    numbers["AcDbHatch.PatternAngle"] = [](const Entity& e) { return Numbers{as<HatchEntity>(e).patternAngle}; };
    numbers["AcDbHatch.NumberOfLoops"] = [](const Entity& e) { return Numbers{double(as<HatchEntity>(e).loops.size())}; };
    numbers["AcDbSpline.Degree"] = [](const Entity& e) { return Numbers{double(as<SplineEntity>(e).degree)}; };
    numbers["AcDbSpline.NumberOfControlPoints"] = [](const Entity& e) {
      return Numbers{double(as<SplineEntity>(e).controlPoints.size())};
    };
    numbers["AcDbSpline.ControlPoints"] = [](const Entity& e) {
      Numbers n;
      for (const OdGePoint3d& p : as<SplineEntity>(e).controlPoints) n.insert(n.end(), {p.x, p.y, p.z});
      return n;
    };
    numbers["AcDbPoint.Coordinates"] = [](const Entity& e) { return xyz(as<PointEntity>(e).position); };
    auto corners = [](const OdGePoint3d* c) {
      Numbers n;
      for (int i = 0; i < 4; ++i) n.insert(n.end(), {c[i].x, c[i].y, c[i].z});
      return n;
    };
    numbers["AcDbFace.Coordinates"] = [corners](const Entity& e) { return corners(as<FaceEntity>(e).corners); };
    numbers["AcDbTrace.Coordinates"] = [corners](const Entity& e) { return corners(as<TraceEntity>(e).corners); };
    numbers["AcDbLeader.Coordinates"] = [](const Entity& e) {
      Numbers n;
      for (const OdGePoint3d& p : as<LeaderEntity>(e).vertices) n.insert(n.end(), {p.x, p.y, p.z});
      return n;
    };
    numbers["AcDbMline.Coordinates"] = [](const Entity& e) {
      Numbers n;
      for (const MLineVertex& v : as<MLineEntity>(e).vertices) n.insert(n.end(), {v.position.x, v.position.y, v.position.z});
      return n;
    };
    numbers["AcDbMline.MLineScale"] = [](const Entity& e) { return Numbers{as<MLineEntity>(e).scale}; };
    for (const char* cls : {"AcDbAlignedDimension", "AcDbRotatedDimension", "AcDbRadialDimension", "AcDbDiametricDimension",
                            "AcDbOrdinateDimension", "AcDb2LineAngularDimension", "AcDb3PointAngularDimension"}) {
      numbers[std::string(cls) + ".TextPosition"] = [](const Entity& e) { return xyz(as<DimensionEntity>(e).textMidpoint); };
      numbers[std::string(cls) + ".TextRotation"] = [](const Entity& e) { return Numbers{as<DimensionEntity>(e).textRotation}; };
      texts[std::string(cls) + ".TextOverride"] = [](const Entity& e) { return as<DimensionEntity>(e).text; };
    }
    numbers["*.LinetypeScale"] = [](const Entity& e) { return Numbers{e.linetypeScale}; };
    numbers["*.Lineweight"] = [](const Entity& e) { return Numbers{double(e.lineweight)}; };
    numbers["*.Visible"] = [](const Entity& e) { return Numbers{e.isVisible() ? -1.0 : 0.0}; };
    texts["*.Layer"] = [](const Entity& e) { return e.layer->name; };
    texts["*.Linetype"] = [](const Entity& e) { return e.linetype->name; };
    texts["AcDbText.TextString"] = [](const Entity& e) { return as<TextEntity>(e).text; };
    texts["AcDbText.StyleName"] = [](const Entity& e) { return as<TextEntity>(e).style->name; };
    texts["AcDbMText.TextString"] = [](const Entity& e) { return as<MTextEntity>(e).text; };
    texts["AcDbMText.StyleName"] = [](const Entity& e) { return as<MTextEntity>(e).style->name; };
    texts["AcDbAttributeDefinition.TagString"] = [](const Entity& e) { return as<AttributeDefinitionEntity>(e).tag; };
    texts["AcDbAttributeDefinition.PromptString"] = [](const Entity& e) { return as<AttributeDefinitionEntity>(e).prompt; };
    texts["AcDbAttributeDefinition.TextString"] = [](const Entity& e) { return as<AttributeDefinitionEntity>(e).text; };
    texts["AcDbBlockReference.Name"] = [](const Entity& e) { return as<BlockReferenceEntity>(e).block->name; };
    texts["AcDbHatch.PatternName"] = [](const Entity& e) { return as<HatchEntity>(e).patternName; };
    texts["AcDbMline.StyleName"] = [](const Entity& e) { return as<MLineEntity>(e).styleName; };
  }
};

const Entity* entityWithHandle(const OdDbDatabase& db, const std::string& hex) {
  const DbObject* o = db.find(OdDbHandle::fromHex(hex));
  return o && o->isEntity() ? static_cast<const Entity*>(o) : nullptr;
}

struct OracleCounts {
  size_t entities = 0;
  size_t values = 0;
};

OracleCounts compareWithDump(const std::string& base) {
  static const Extractors extractors;
  OracleCounts counts;
  OdDbDatabasePtr db = readDxfFile(corpusPath(base + ".dxf"));
  for (const DumpRecord& record : readAutoCadDump(corpusPath(base + ".txt"))) {
    std::string handle = unquote(record.count("Handle") ? record.at("Handle") : "");
    std::string cls = unquote(record.count("ObjectName") ? record.at("ObjectName") : "");
    SCOPED_TRACE(base + " " + cls + " " + handle);
    const Entity* e = entityWithHandle(*db, handle);
    EXPECT_TRUE(e) << "no entity with handle " << handle;
    if (!e) continue;
    ++counts.entities;
    auto kind = extractors.kinds.find(cls);
    EXPECT_NE(kind, extractors.kinds.end()) << "unexpected class " << cls;
    if (kind == extractors.kinds.end()) continue;
    EXPECT_EQ(e->type, kind->second);
    if (e->type != kind->second) continue;
    for (const auto& [property, printed] : record) {
      auto n = extractors.numbers.find(cls + "." + property);
      if (n == extractors.numbers.end()) n = extractors.numbers.find("*." + property);
      if (n != extractors.numbers.end()) {
        Numbers actual = n->second(*e);
        std::vector<std::string> expected = numberTexts(printed);
        EXPECT_LE(expected.size(), actual.size()) << property << " = " << printed;
        for (size_t i = 0; i < expected.size() && i < actual.size(); ++i) {
          double want = std::stod(expected[i]);
          EXPECT_NEAR(actual[i], want, printedTolerance(want)) << property << "[" << i << "] = " << printed;
          ++counts.values;
        }
        continue;
      }
      auto t = extractors.texts.find(cls + "." + property);
      if (t == extractors.texts.end()) t = extractors.texts.find("*." + property);
      if (t != extractors.texts.end()) {
        EXPECT_TRUE(equalsIgnoringCase(t->second(*e), unquote(printed))) << property << " = " << printed;
        ++counts.values;
      }
    }
  }
  return counts;
}

}  // namespace

TEST(DxfOracle, ValuesMatchAutoCadDumpsOfTheSameDrawings) {
  // Every pair of an AutoCAD dump and a DXF of the same drawing in the corpus.
  const char* pairs[] = {"dwg/2000/PolyLine3D", "dwg/2000/TS1", "dwg/2007/Arc", "dwg/2007/ConstructionLine",
                         "dwg/2007/Donut", "dwg/2007/Ellipse", "dwg/2007/Helix", "dwg/2007/Line", "dwg/2007/Polygon",
                         "dwg/2007/Polyline", "dwg/2007/RAY", "dwg/2007/Text", "dwg/2007/circle"};
  OracleCounts total;
  for (const char* base : pairs) {
    OracleCounts c = compareWithDump(base);
    EXPECT_GT(c.entities, 0u) << base;
    total.entities += c.entities;
    total.values += c.values;
  }
  // The comparison must have covered the dumps, not skipped them.
  EXPECT_GE(total.entities, 40u);
  EXPECT_GE(total.values, 400u);
  std::printf("compared %zu entities, %zu values\n", total.entities, total.values);
}
