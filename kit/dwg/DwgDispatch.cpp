// From an object's type number (or, for types of 500 and up, its class name) to its reader.
#include <unordered_map>

#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"
#include "kit/dwg/DwgObjectReaders.h"
#include "kit/dwg/DwgRecordReaders.h"

namespace {

// Objects that exist only inside DWG files (viewport entity headers, placeholders of old
// releases): read for their frame, kept nowhere.
void skipObject(DwgObjectContext& c) { c.role = DwgRole::kNone; }

constexpr DwgReaderEntry entity(DwgObjectReader r) { return {r, true}; }
constexpr DwgReaderEntry object(DwgObjectReader r) { return {r, false}; }

const std::unordered_map<uint16_t, DwgReaderEntry>& fixedTypes() {
  static const std::unordered_map<uint16_t, DwgReaderEntry> table = {
      {1, entity(readDwgText)},
      {2, entity(readDwgAttribute)},
      {3, entity(readDwgAttributeDefinition)},
      {4, entity(readDwgBlockBegin)},
      {5, entity(readDwgBlockEnd)},
      {6, entity(readDwgSequenceEnd)},
      {7, entity(readDwgInsert)},
      {8, entity(readDwgMInsert)},
      {10, entity(readDwgVertex2d)},
      {11, entity(readDwgVertex3d)},
      {12, entity(readDwgVertex3d)},
      {13, entity(readDwgVertex3d)},
      {14, entity(readDwgFaceRecord)},
      {15, entity(readDwgPolyline2d)},
      {16, entity(readDwgPolyline3d)},
      {17, entity(readDwgArc)},
      {18, entity(readDwgCircle)},
      {19, entity(readDwgLine)},
      {20, entity(readDwgDimensionOrdinate)},
      {21, entity(readDwgDimensionLinear)},
      {22, entity(readDwgDimensionAligned)},
      {23, entity(readDwgDimensionAngular3Point)},
      {24, entity(readDwgDimensionAngular2Line)},
      {25, entity(readDwgDimensionRadius)},
      {26, entity(readDwgDimensionDiameter)},
      {27, entity(readDwgPoint)},
      {28, entity(readDwgFace)},
      {29, entity(readDwgPolyfaceMesh)},
      {30, entity(readDwgPolygonMesh)},
      {31, entity(readDwgSolid)},
      {32, entity(readDwgTrace)},
      {33, entity(readDwgShape)},
      {34, entity(readDwgViewport)},
      {35, entity(readDwgEllipse)},
      {37, entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "REGION"); })},
      {38, entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "3DSOLID"); })},
      {39, entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "BODY"); })},
      {36, entity(readDwgSpline)},
      {40, entity(readDwgRay)},
      {41, entity(readDwgXLine)},
      {42, object(readDwgDictionary)},
      {44, entity(readDwgMText)},
      {45, entity(readDwgLeader)},
      {46, entity(readDwgTolerance)},
      {47, entity(readDwgMLine)},
      {48, object(readDwgControlObject)},
      {49, object(readDwgBlockHeader)},
      {50, object(readDwgControlObject)},
      {51, object(readDwgLayer)},
      {52, object(readDwgControlObject)},
      {53, object(readDwgTextStyle)},
      {56, object(readDwgControlObject)},
      {57, object(readDwgLinetype)},
      {60, object(readDwgControlObject)},
      {61, object(readDwgView)},
      {62, object(readDwgControlObject)},
      {63, object(readDwgUcs)},
      {64, object(readDwgControlObject)},
      {65, object(readDwgViewportRecord)},
      {66, object(readDwgControlObject)},
      {67, object(readDwgAppId)},
      {68, object(readDwgControlObject)},
      {69, object(readDwgDimStyle)},
      {70, object(readDwgControlObject)},
      {71, object(skipObject)},
      {72, object(readDwgGroup)},
      {73, object(readDwgMLineStyle)},
      {75, object(skipObject)},
      {76, object(skipObject)},
      {74, entity(readDwgOle2Frame)},
      {77, entity(readDwgLwPolyline)},
      {78, entity(readDwgHatch)},
      {79, object(readDwgXRecord)},
      {82, object(readDwgLayout)},
  };
  return table;
}

const std::unordered_map<std::string_view, DwgReaderEntry>& classNames() {
  static const std::unordered_map<std::string_view, DwgReaderEntry> table = {
      {"LWPOLYLINE", entity(readDwgLwPolyline)},
      {"ARC_DIMENSION", entity(readDwgArcDimension)},
      {"LARGE_RADIAL_DIMENSION", entity(readDwgLargeRadialDimension)},
      {"HATCH", entity(readDwgHatch)},
      {"MPOLYGON", entity(readDwgMPolygon)},
      {"IMAGE", entity(readDwgImage)},
      {"HELIX", entity(readDwgHelix)},
      {"MESH", entity(readDwgMesh)},
      // Surfaces start as solids do, with their ACIS data; what follows (how they were made) is
      // not kept.
      {"EXTRUDEDSURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "EXTRUDEDSURFACE"); })},
      {"LOFTEDSURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "LOFTEDSURFACE"); })},
      {"REVOLVEDSURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "REVOLVEDSURFACE"); })},
      {"SWEPTSURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "SWEPTSURFACE"); })},
      {"PLANESURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "PLANESURFACE"); })},
      {"NURBSURFACE", entity([](DwgObjectContext& c) { readDwgModelerGeometry(c, "NURBSURFACE"); })},
      {"PDFUNDERLAY", entity([](DwgObjectContext& c) { readDwgUnderlay(c, UnderlayEntity::Format::kPdf); })},
      {"DWFUNDERLAY", entity([](DwgObjectContext& c) { readDwgUnderlay(c, UnderlayEntity::Format::kDwf); })},
      {"DGNUNDERLAY", entity([](DwgObjectContext& c) { readDwgUnderlay(c, UnderlayEntity::Format::kDgn); })},
      {"ACAD_TABLE", entity(readDwgTable)},
      {"MULTILEADER", entity(readDwgMLeader)},
      {"WIPEOUT", entity(readDwgWipeout)},
      {"DICTIONARYWDFLT", object(readDwgDictionaryWithDefault)},
      {"ACDBDICTIONARYWDFLT", object(readDwgDictionaryWithDefault)},
      {"DICTIONARYVAR", object(readDwgDictionaryVariable)},
      {"LAYOUT", object(readDwgLayout)},
      {"PLOTSETTINGS", object(readDwgPlotSettingsObject)},
      {"IMAGEDEF", object(readDwgImageDefinition)},
      {"GROUP", object(readDwgGroup)},
      {"MLINESTYLE", object(readDwgMLineStyle)},
      {"SORTENTSTABLE", object(readDwgSortEntsTable)},
      {"SPATIAL_FILTER", object(readDwgSpatialFilter)},
      {"XRECORD", object(readDwgXRecord)},
      {"DBCOLOR", object(readDwgBookColour)},
      {"PDFDEFINITION", object([](DwgObjectContext& c) { readDwgUnderlayDefinition(c, UnderlayDefinitionObject::Format::kPdf); })},
      {"DWFDEFINITION", object([](DwgObjectContext& c) { readDwgUnderlayDefinition(c, UnderlayDefinitionObject::Format::kDwf); })},
      {"DGNDEFINITION", object([](DwgObjectContext& c) { readDwgUnderlayDefinition(c, UnderlayDefinitionObject::Format::kDgn); })},
  };
  return table;
}

}  // namespace

const DwgReaderEntry* dwgReaderForType(uint16_t type) {
  auto it = fixedTypes().find(type);
  return it == fixedTypes().end() ? nullptr : &it->second;
}

const DwgReaderEntry* dwgReaderForClass(std::string_view dxfName) {
  auto it = classNames().find(dxfName);
  return it == classNames().end() ? nullptr : &it->second;
}

const char* dwgFixedTypeName(uint16_t type) {
  switch (type) {
    case 20: case 21: case 22: case 23: case 24: case 25: case 26: return "DIMENSION";
    case 33: return "SHAPE";
    case 34: return "VIEWPORT";
    case 37: return "REGION";
    case 38: return "3DSOLID";
    case 39: return "BODY";
    case 43: return "OLEFRAME";
    case 45: return "LEADER";
    case 46: return "TOLERANCE";
    case 47: return "MLINE";
    case 74: return "OLE2FRAME";
    case 78: return "HATCH";
    case 80: return "ACDBPLACEHOLDER";
    case 81: return "VBA_PROJECT";
    case 0x1F2: return "ACAD_PROXY_ENTITY";
    case 0x1F3: return "ACAD_PROXY_OBJECT";
    default: return nullptr;
  }
}

bool dwgFixedTypeIsEntity(uint16_t type) {
  return (type >= 1 && type <= 41) || type == 43 || (type >= 44 && type <= 47) || type == 74 || type == 77 ||
         type == 78 || type == 0x1F2;
}
