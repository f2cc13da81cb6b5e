// HEADER and CLASSES sections. Header variables go back as they were read, in their order, with
// $ACADVER and $HANDSEED set for this file; a variable the database holds as a typed field is
// written from that field when the field no longer says what the kept groups say (the drawing
// was changed after loading). Classes go back as read, plus the ones this file's objects need.
#include <set>
#include <variant>

#include "kit/dxf/DxfWriterSections.h"

namespace {

using Member = std::variant<std::string DatabaseHeader::*, int16_t DatabaseHeader::*, int32_t DatabaseHeader::*,
                            double DatabaseHeader::*, bool DatabaseHeader::*, OdGePoint3d DatabaseHeader::*,
                            OdGePoint2d DatabaseHeader::*, OdGeVector3d DatabaseHeader::*>;

struct TypedVariable {
  const char* name;
  Member member;
};

const TypedVariable kTypedVariables[] = {
    {"ACADMAINTVER", &DatabaseHeader::acadMaintVer}, {"LASTSAVEDBY", &DatabaseHeader::lastSavedBy},
    {"INSBASE", &DatabaseHeader::insBase},           {"EXTMIN", &DatabaseHeader::extMin},
    {"EXTMAX", &DatabaseHeader::extMax},             {"LIMMIN", &DatabaseHeader::limMin},
    {"LIMMAX", &DatabaseHeader::limMax},             {"PINSBASE", &DatabaseHeader::pinsBase},
    {"PEXTMIN", &DatabaseHeader::pextMin},           {"PEXTMAX", &DatabaseHeader::pextMax},
    {"PLIMMIN", &DatabaseHeader::plimMin},           {"PLIMMAX", &DatabaseHeader::plimMax},
    {"INSUNITS", &DatabaseHeader::insUnits},         {"MEASUREMENT", &DatabaseHeader::measurement},
    {"LUNITS", &DatabaseHeader::lunits},             {"LUPREC", &DatabaseHeader::luprec},
    {"AUNITS", &DatabaseHeader::aunits},             {"AUPREC", &DatabaseHeader::auprec},
    {"ANGDIR", &DatabaseHeader::angDir},             {"TILEMODE", &DatabaseHeader::tileMode},
    {"LTSCALE", &DatabaseHeader::ltScale},           {"CELTSCALE", &DatabaseHeader::celtScale},
    {"PSLTSCALE", &DatabaseHeader::psLtScale},       {"PSVPSCALE", &DatabaseHeader::psvpScale},
    {"TEXTSTYLE", &DatabaseHeader::textStyle},       {"DIMSTYLE", &DatabaseHeader::dimStyle},
    {"CLAYER", &DatabaseHeader::cLayer},             {"CELTYPE", &DatabaseHeader::celType},
    {"CELWEIGHT", &DatabaseHeader::celWeight},       {"CMLSTYLE", &DatabaseHeader::cmlStyle},
    {"CMLSCALE", &DatabaseHeader::cmlScale},         {"ELEVATION", &DatabaseHeader::elevation},
    {"THICKNESS", &DatabaseHeader::thickness},       {"UCSORG", &DatabaseHeader::ucsOrg},
    {"UCSXDIR", &DatabaseHeader::ucsXDir},           {"UCSYDIR", &DatabaseHeader::ucsYDir},
    {"PDMODE", &DatabaseHeader::pdMode},             {"PDSIZE", &DatabaseHeader::pdSize},
    {"FILLMODE", &DatabaseHeader::fillMode},         {"MIRRTEXT", &DatabaseHeader::mirrText},
    {"QTEXTMODE", &DatabaseHeader::qTextMode},       {"LWDISPLAY", &DatabaseHeader::lwDisplay},
    {"SPLINESEGS", &DatabaseHeader::splineSegs},     {"FACETRES", &DatabaseHeader::facetRes},
    {"DISPSILH", &DatabaseHeader::dispSilh},         {"XCLIPFRAME", &DatabaseHeader::xclipFrame},
    {"TEXTSIZE", &DatabaseHeader::textSize},         {"DIMSCALE", &DatabaseHeader::dimScale},
    {"DIMTXT", &DatabaseHeader::dimTxt},             {"DIMASZ", &DatabaseHeader::dimAsz},
    {"VIEWCTR", &DatabaseHeader::viewCtr},           {"VIEWSIZE", &DatabaseHeader::viewSize},
    {"VIEWDIR", &DatabaseHeader::viewDir},           {"HYPERLINKBASE", &DatabaseHeader::hyperlinkBase},
    {"PROJECTNAME", &DatabaseHeader::projectName},
};

const TypedVariable* typedVariable(std::string_view name) {
  for (const TypedVariable& t : kTypedVariables) {
    if (equalsIgnoringCase(t.name, name)) return &t;
  }
  return nullptr;
}

TaggedValue* firstOf(TaggedValues& values, bool numeric) {
  for (TaggedValue& v : values) {
    bool isNumber = isNumericKind(v.kind);
    if (isNumber == numeric) return &v;
  }
  return nullptr;
}

TaggedValue* withCode(TaggedValues& values, int code) {
  for (TaggedValue& v : values) {
    if (v.code == code) return &v;
  }
  return nullptr;
}

// Sets a kept number to `value`; true when that changed it.
bool setNumber(TaggedValue* v, double value) {
  if (!v) return false;
  if (v->kind == GroupValueKind::kReal) {
    if (v->real == value) return false;
    v->real = value;
    return true;
  }
  if (double(v->integer) == value) return false;
  v->integer = int64_t(value);
  return true;
}

bool setCoordinates(TaggedValues& values, std::initializer_list<double> coordinates) {
  bool changed = false;
  int code = 10;
  for (double d : coordinates) {
    changed = setNumber(withCode(values, code), d) || changed;
    code += 10;
  }
  return changed;
}

// The kept groups with the typed field's value put in; unchanged groups stay exactly as read.
TaggedValues currentValues(const DatabaseHeader& h, const HeaderVariable& variable) {
  TaggedValues values = variable.values;
  const TypedVariable* typed = typedVariable(variable.name);
  if (!typed) return values;
  std::visit(
      [&](auto member) {
        using T = std::remove_cvref_t<decltype(h.*member)>;
        const T& field = h.*member;
        if constexpr (std::is_same_v<T, std::string>) {
          TaggedValue* v = firstOf(values, false);
          if (v && v->text != field) v->text = field;
        } else if constexpr (std::is_same_v<T, bool>) {
          TaggedValue* v = firstOf(values, true);
          if (v && (v->asInteger() != 0) != field) setNumber(v, field ? 1 : 0);
        } else if constexpr (std::is_arithmetic_v<T>) {
          TaggedValue* v = firstOf(values, true);
          if (v && v->asReal() != double(field)) setNumber(v, double(field));
        } else if constexpr (std::is_same_v<T, OdGePoint2d>) {
          setCoordinates(values, {field.x, field.y});
        } else {
          setCoordinates(values, {field.x, field.y, field.z});
        }
      },
      typed->member);
  return values;
}

}  // namespace

void writeHeaderSection(DxfWriterContext& c) {
  const DatabaseHeader& h = c.db.header();
  c.out.raw(0, "SECTION");
  c.out.raw(2, "HEADER");
  std::string version = "AC" + std::to_string(c.version);
  c.out.raw(9, "$ACADVER");
  c.out.raw(1, version);
  if (!h.find("HANDSEED")) {
    c.out.raw(9, "$HANDSEED");
    c.out.handle(5, c.handles.seed());
  }
  for (const HeaderVariable& v : h.variables) {
    if (equalsIgnoringCase(v.name, "ACADVER")) continue;
    c.out.text(9, "$" + v.name);
    if (equalsIgnoringCase(v.name, "HANDSEED")) {
      c.out.handle(5, c.handles.seed());
      continue;
    }
    for (const TaggedValue& value : currentValues(h, v)) c.out.tagged(value);
  }
  c.out.raw(0, "ENDSEC");
}

namespace {

struct KnownClass {
  const char* dxfName;
  const char* cppName;
  const char* appName;
  int32_t proxyFlags;
  bool isEntity;
};

// Classes a file must declare for the object and entity kinds this kit writes.
const KnownClass kKnownClasses[] = {
    {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", "ObjectDBX Classes", 0, false},
    {"LAYOUT", "AcDbLayout", "ObjectDBX Classes", 0, false},
    {"IMAGEDEF", "AcDbRasterImageDef", "ISM", 0, false},
    {"SORTENTSTABLE", "AcDbSortentsTable", "ObjectDBX Classes", 0, false},
    {"SPATIAL_FILTER", "AcDbSpatialFilter", "ObjectDBX Classes", 0, false},
    {"PDFDEFINITION", "AcDbPdfDefinition", "ObjectDBX Classes", 1153, false},
    {"DWFDEFINITION", "AcDbDwfDefinition", "ObjectDBX Classes", 1153, false},
    {"DGNDEFINITION", "AcDbDgnDefinition", "ObjectDBX Classes", 1153, false},
    {"IMAGE", "AcDbRasterImage", "ISM", 127, true},
    {"WIPEOUT", "AcDbWipeout", "WipeOut", 127, true},
    {"ACAD_TABLE", "AcDbTable", "ObjectDBX Classes", 1025, true},
    {"MULTILEADER", "AcDbMLeader", "ACDB_MLEADER_CLASS", 1025, true},
    {"ARC_DIMENSION", "AcDbArcDimension", "ObjectDBX Classes", 1025, true},
    {"LARGE_RADIAL_DIMENSION", "AcDbRadialDimensionLarge", "ObjectDBX Classes", 1025, true},
    {"HELIX", "AcDbHelix", "ObjectDBX Classes", 4095, true},
    {"MESH", "AcDbSubDMesh", "ObjectDBX Classes", 4095, true},
    {"MPOLYGON", "AcDbMPolygon", "AcMPolygonObj15", 1025, true},
    {"PDFUNDERLAY", "AcDbPdfReference", "ObjectDBX Classes", 4095, true},
    {"DWFUNDERLAY", "AcDbDwfReference", "ObjectDBX Classes", 4095, true},
    {"DGNUNDERLAY", "AcDbDgnReference", "ObjectDBX Classes", 4095, true},
};

const char* entityClassName(const Entity& e) {
  switch (e.type) {
    case DbType::kRasterImage: return "IMAGE";
    case DbType::kWipeout: return "WIPEOUT";
    case DbType::kTable: return "ACAD_TABLE";
    case DbType::kMLeader: return "MULTILEADER";
    case DbType::kHelix: return "HELIX";
    case DbType::kMesh: return "MESH";
    case DbType::kMPolygon: return "MPOLYGON";
    case DbType::kDimension: {
      auto kind = static_cast<const DimensionEntity&>(e).kind;
      if (kind == DimensionEntity::Kind::kArcLength) return "ARC_DIMENSION";
      if (kind == DimensionEntity::Kind::kRadialLarge) return "LARGE_RADIAL_DIMENSION";
      return nullptr;
    }
    case DbType::kUnderlay:
      switch (static_cast<const UnderlayEntity&>(e).format) {
        case UnderlayEntity::Format::kPdf: return "PDFUNDERLAY";
        case UnderlayEntity::Format::kDwf: return "DWFUNDERLAY";
        case UnderlayEntity::Format::kDgn: return "DGNUNDERLAY";
      }
      return nullptr;
    default: return nullptr;
  }
}

const char* objectClassName(const DbObject& o) {
  switch (o.type) {
    case DbType::kDictionary:
      return static_cast<const Dictionary&>(o).withDefault ? "ACDBDICTIONARYWDFLT" : nullptr;
    case DbType::kLayout: return "LAYOUT";
    case DbType::kRasterImageDef: return "IMAGEDEF";
    case DbType::kSortEntsTable: return "SORTENTSTABLE";
    case DbType::kSpatialFilter: return "SPATIAL_FILTER";
    case DbType::kUnderlayDefinition:
      switch (static_cast<const UnderlayDefinitionObject&>(o).format) {
        case UnderlayDefinitionObject::Format::kPdf: return "PDFDEFINITION";
        case UnderlayDefinitionObject::Format::kDwf: return "DWFDEFINITION";
        case UnderlayDefinitionObject::Format::kDgn: return "DGNDEFINITION";
      }
      return nullptr;
    default: return nullptr;
  }
}

// Names of the classes the drawing uses but does not declare, in the known table's order.
std::vector<const KnownClass*> missingClasses(const OdDbDatabase& db) {
  std::set<std::string> used;
  for (const BlockRecord* block : db.blocks()) {
    for (const Entity* e : block->entities) {
      if (const char* name = entityClassName(*e)) used.insert(name);
    }
  }
  for (const DbObject* o : db.objects()) {
    if (const char* name = objectClassName(*o)) used.insert(name);
  }
  for (const DatabaseClass& declared : db.classes()) used.erase(toUpperAscii(declared.dxfName));
  std::vector<const KnownClass*> missing;
  for (const KnownClass& k : kKnownClasses) {
    if (used.count(k.dxfName)) missing.push_back(&k);
  }
  return missing;
}

void writeClass(DxfWriterContext& c, const DatabaseClass& k) {
  c.out.raw(0, "CLASS");
  c.out.text(1, k.dxfName);
  c.out.text(2, k.cppName);
  c.out.text(3, k.appName);
  c.out.integer(90, k.proxyFlags);
  if (c.atLeast(1018)) c.out.integer(91, k.instanceCount);
  c.out.boolean(280, k.wasProxy);
  c.out.boolean(281, k.isEntity);
}

}  // namespace

void writeClassesSection(DxfWriterContext& c) {
  c.out.raw(0, "SECTION");
  c.out.raw(2, "CLASSES");
  for (const DatabaseClass& k : c.db.classes()) writeClass(c, k);
  for (const KnownClass* k : missingClasses(c.db)) {
    DatabaseClass added{k->dxfName, k->cppName, k->appName, k->proxyFlags, 0, false, k->isEntity};
    writeClass(c, added);
  }
  c.out.raw(0, "ENDSEC");
}
