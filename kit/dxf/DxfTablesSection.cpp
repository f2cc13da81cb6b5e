// TABLES section: "0 TABLE 2 <KIND>" with the table's own groups, then one "0 <KIND>" record after
// another up to "0 ENDTAB". A record is read into a fresh value first and then stored: when an
// entity or header already referred to its name, the placeholder made then takes its values, so
// that pointers to it stay valid.
#include "kit/base/OdError.h"
#include "kit/dxf/DxfLoader.h"

namespace {

template <class Record>
Record* storeRecord(OdDbDatabase& db, SymbolTable<Record>& table, Record& parsed) {
  Record* target = table.find(parsed.name);
  if (target && target->implicitlyCreated) {
    if constexpr (std::is_same_v<Record, BlockRecord>) {
      parsed.entities.swap(target->entities);
      parsed.hasDefinition = parsed.hasDefinition || target->hasDefinition;
      parsed.basePoint = target->hasDefinition ? target->basePoint : parsed.basePoint;
    }
    parsed.implicitlyCreated = false;
    *target = std::move(parsed);
  } else {
    target = db.newObject<Record>();
    *target = std::move(parsed);
    table.add(target);
  }
  db.adoptHandle(target);
  return target;
}

}  // namespace

// Reads one record's groups; `specific` takes the record's own codes and returns whether it did.
template <class Record, class Specific>
static void readRecordGroups(DxfLoader& in, Record& record, Specific&& specific) {
  bool ownerSeen = false;
  while (in.next()) {
    const int code = in.tag.code;
    if (code == 0) {
      in.pushBack();
      return;
    }
    if (specific(code)) continue;
    switch (code) {
      case 5:
      case 105:
        record.handle = in.handle();
        break;
      case 330:
        if (!ownerSeen) record.ownerHandle = in.handle();
        ownerSeen = true;
        break;
      case 2:
        record.name = in.text();
        break;
      case 70:
        record.flags = in.int16();
        break;
      case 102:
        in.readApplicationGroup(record);
        break;
      default:
        if (code >= 1000) in.readExtendedData(record);
        break;
    }
  }
}

namespace {

void readLayer(DxfLoader& in, LayerRecord& layer) {
  bool trueColor = false;
  readRecordGroups(in, layer, [&](int code) {
    switch (code) {
      case 62: {
        int aci = in.int16();
        layer.off = aci < 0;
        if (!trueColor) layer.color = OdCmEntityColor::fromACI(aci == 0 ? 7 : aci);
        return true;
      }
      case 420:
        layer.color = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32()));
        trueColor = true;
        return true;
      case 6: layer.linetype = in.linetypeFromTag(); return true;
      case 290: layer.plottable = in.boolean(); return true;
      case 370: layer.lineweight = in.int16(); return true;
      case 390: layer.plotStyle = in.handle(); return true;
      case 347: layer.material = in.handle(); return true;
      default: return false;
    }
  });
  if (const XDataGroup* t = layer.xdata("AcCmTransparency")) {
    for (const TaggedValue& v : t->values) {
      if (v.code == 1071) layer.transparency = OdCmTransparency::fromRaw(uint32_t(v.integer));
    }
  }
  if (const XDataGroup* d = layer.xdata("AcAecLayerStandard")) {
    if (d->values.size() >= 2 && d->values[1].code == 1000) layer.description = d->values[1].text;
  }
}

void readLinetype(DxfLoader& in, LinetypeRecord& linetype) {
  readRecordGroups(in, linetype, [&](int code) {
    LinetypeDash* dash = linetype.dashes.empty() ? nullptr : &linetype.dashes.back();
    switch (code) {
      case 3: linetype.description = in.text(); return true;
      case 72: linetype.alignment = in.int16(); return true;
      case 73: return true;  // element count: the 49 groups say it
      case 40: linetype.patternLength = in.real(); return true;
      case 49:
        linetype.dashes.emplace_back();
        linetype.dashes.back().length = in.real();
        return true;
      case 74: if (dash) dash->shapeFlags = in.int16(); return true;
      case 75: if (dash) dash->shapeNumber = in.int16(); return true;
      case 340: if (dash) dash->styleHandle = in.handle(); return true;
      case 46: if (dash) dash->scale = in.real(); return true;
      case 50: if (dash) dash->rotation = in.angle(); return true;
      case 44: if (dash) dash->offsetX = in.real(); return true;
      case 45: if (dash) dash->offsetY = in.real(); return true;
      case 9: if (dash) dash->text = in.text(); return true;
      default: return false;
    }
  });
}

void readTextStyle(DxfLoader& in, TextStyleRecord& style) {
  readRecordGroups(in, style, [&](int code) {
    switch (code) {
      case 40: style.fixedHeight = in.real(); return true;
      case 41: style.widthFactor = in.real(); return true;
      case 50: style.obliqueAngle = in.angle(); return true;
      case 71: style.generationFlags = in.int16(); return true;
      case 42: style.lastHeight = in.real(); return true;
      case 3: style.fontFile = in.text(); return true;
      case 4: style.bigFontFile = in.text(); return true;
      default: return false;
    }
  });
  // TrueType fonts name their family in the ACAD extended data.
  if (const XDataGroup* acad = style.xdata("ACAD")) {
    for (const TaggedValue& v : acad->values) {
      if (v.code == 1000 && style.trueTypeFace.empty()) style.trueTypeFace = v.text;
      if (v.code == 1071) style.trueTypeFlags = int32_t(v.integer);
    }
  }
}

void readDimStyle(DxfLoader& in, DimStyleRecord& style) {
  bool old = in.version() < 1012;
  readRecordGroups(in, style, [&](int code) {
    if (code == 5 && old) {  // DIMBLK by name in R12; later files use 105 for the handle
      style.values.push_back(in.taggedValue());
      return true;
    }
    if (code == 2 || code == 70 || code == 5 || code == 105 || code == 100 || code == 102 ||
        code == 330 || code >= 1000) {
      return false;
    }
    style.values.push_back(in.taggedValue());
    return true;
  });
}

void readView(DxfLoader& in, ViewRecord& view) {
  readRecordGroups(in, view, [&](int code) {
    switch (code) {
      case 10: case 20: in.coordinate(view.center, 10); return true;
      case 40: view.height = in.real(); return true;
      case 41: view.width = in.real(); return true;
      case 11: case 21: case 31: in.coordinate(view.direction, 11); return true;
      case 12: case 22: case 32: in.coordinate(view.target, 12); return true;
      case 42: view.lensLength = in.real(); return true;
      case 43: view.frontClip = in.real(); return true;
      case 44: view.backClip = in.real(); return true;
      case 50: view.twist = in.angle(); return true;
      case 71: view.viewMode = in.int16(); return true;
      case 281: view.renderMode = in.int16(); return true;
      case 72: view.hasUcs = in.boolean(); return true;
      case 110: case 120: case 130: in.coordinate(view.ucsOrigin, 110); return true;
      case 111: case 121: case 131: in.coordinate(view.ucsXAxis, 111); return true;
      case 112: case 122: case 132: in.coordinate(view.ucsYAxis, 112); return true;
      case 348: view.visualStyle = in.handle(); return true;
      default: return false;
    }
  });
}

void readViewportRecord(DxfLoader& in, ViewportRecord& vp) {
  readRecordGroups(in, vp, [&](int code) {
    switch (code) {
      case 10: case 20: in.coordinate(vp.lowerLeft, 10); return true;
      case 11: case 21: in.coordinate(vp.upperRight, 11); return true;
      case 12: case 22: in.coordinate(vp.center, 12); return true;
      case 13: case 23: in.coordinate(vp.snapBase, 13); return true;
      case 14: case 24: in.coordinate(vp.snapSpacing, 14); return true;
      case 15: case 25: in.coordinate(vp.gridSpacing, 15); return true;
      case 16: case 26: case 36: in.coordinate(vp.viewDirection, 16); return true;
      case 17: case 27: case 37: in.coordinate(vp.target, 17); return true;
      case 40: vp.height = in.real(); return true;
      case 41: vp.aspectRatio = in.real(); return true;
      case 42: vp.lensLength = in.real(); return true;
      case 43: vp.frontClip = in.real(); return true;
      case 44: vp.backClip = in.real(); return true;
      case 50: vp.snapRotation = in.angle(); return true;
      case 51: vp.twist = in.angle(); return true;
      case 71: vp.viewMode = in.int16(); return true;
      case 72: vp.circleSides = in.int16(); return true;
      case 281: vp.renderMode = in.int16(); return true;
      case 110: case 120: case 130: in.coordinate(vp.ucsOrigin, 110); return true;
      case 111: case 121: case 131: in.coordinate(vp.ucsXAxis, 111); return true;
      case 112: case 122: case 132: in.coordinate(vp.ucsYAxis, 112); return true;
      default: return false;
    }
  });
}

void readUcs(DxfLoader& in, UcsRecord& ucs) {
  readRecordGroups(in, ucs, [&](int code) {
    switch (code) {
      case 10: case 20: case 30: in.coordinate(ucs.origin, 10); return true;
      case 11: case 21: case 31: in.coordinate(ucs.xAxis, 11); return true;
      case 12: case 22: case 32: in.coordinate(ucs.yAxis, 12); return true;
      case 146: ucs.elevation = in.real(); return true;
      default: return false;
    }
  });
}

void readBlockRecord(DxfLoader& in, BlockRecord& block) {
  readRecordGroups(in, block, [&](int code) {
    switch (code) {
      case 340: block.layout = in.handle(); return true;
      case 70: block.insertUnits = in.int16(); return true;
      case 280: block.explodable = in.boolean(); return true;
      case 281: block.scaleUniformly = in.boolean(); return true;
      case 310: return true;  // preview image: not kept
      default: return false;
    }
  });
  block.name = DxfLoader::normalizedBlockName(block.name);
  block.hasTableRecord = true;
}

template <class Record, class ReadFn>
void readAndStore(DxfLoader& in, SymbolTable<Record>& table, ReadFn read) {
  Record parsed;
  read(in, parsed);
  // Shape files are text styles without a name; linetypes reach them by handle.
  bool shapeFile = Record::kType == DbType::kTextStyle && (parsed.flags & TextStyleRecord::kShapeFile);
  if (parsed.name.empty() && !shapeFile) {
    in.warn(std::string("a ") + dbTypeName(Record::kType) + " record without a name was dropped (" + in.where() + ")");
    return;
  }
  storeRecord(in.db, table, parsed);
}

}  // namespace

namespace {

SymbolTableBase* tableOfKind(OdDbDatabase& db, std::string_view kind) {
  if (kind == "LAYER") return &db.layers();
  if (kind == "LTYPE") return &db.linetypes();
  if (kind == "STYLE") return &db.textStyles();
  if (kind == "DIMSTYLE") return &db.dimStyles();
  if (kind == "VIEW") return &db.views();
  if (kind == "VPORT") return &db.viewports();
  if (kind == "UCS") return &db.ucss();
  if (kind == "APPID") return &db.regApps();
  if (kind == "BLOCK_RECORD") return &db.blocks();
  return nullptr;
}

// Reads the record whose "0 KIND" tag was just read; false when the kind is not a table's.
bool readRecord(DxfLoader& in, std::string_view record) {
  OdDbDatabase& db = in.db;
  if (record == "LAYER") readAndStore(in, db.layers(), readLayer);
  else if (record == "LTYPE") readAndStore(in, db.linetypes(), readLinetype);
  else if (record == "STYLE") readAndStore(in, db.textStyles(), readTextStyle);
  else if (record == "DIMSTYLE") readAndStore(in, db.dimStyles(), readDimStyle);
  else if (record == "VIEW") readAndStore(in, db.views(), readView);
  else if (record == "VPORT") readAndStore(in, db.viewports(), readViewportRecord);
  else if (record == "UCS") readAndStore(in, db.ucss(), readUcs);
  else if (record == "APPID") {
    readAndStore(in, db.regApps(), [](DxfLoader& r, RegAppRecord& app) {
      readRecordGroups(r, app, [](int) { return false; });
    });
  } else if (record == "BLOCK_RECORD") {
    readAndStore(in, db.blocks(), readBlockRecord);
  } else {
    return false;
  }
  return true;
}

}  // namespace

// Reads the records of one table up to its ENDTAB. Returns false when the section ended first.
bool DxfLoader::readTableRecords(const std::string& kind) {
  while (next()) {
    if (tag.code != 0) continue;
    std::string record(tag.trimmed());
    if (record == "ENDTAB") return true;
    if (record == "ENDSEC" || record == "TABLE") {
      warn("table " + kind + " not closed (" + where() + ")");
      if (record == "ENDSEC") return false;  // the section ends here too
      pushBack();
      return true;
    }
    if (record != kind) warn("record " + record + " in table " + kind + " (" + where() + ")");
    if (!readRecord(*this, record)) {
      warn("record " + record + " in table " + kind + " skipped (" + where() + ")");
      skipToNextObject();
    }
  }
  structureError(eEndOfFile, "the file ends inside the " + kind + " table");
}

void DxfLoader::readTablesSection() {
  while (next()) {
    if (tag.code != 0) continue;
    std::string name(tag.trimmed());
    if (name == "ENDSEC") return;
    if (name != "TABLE") {
      // A table whose TABLE header was lost: its records stand here on their own.
      if (!tableOfKind(db, name)) {
        warn("unexpected " + name + " in the TABLES section (" + where() + ")");
        continue;
      }
      warn("records of table " + name + " without a TABLE header (" + where() + ")");
      readRecord(*this, name);
      if (!readTableRecords(name)) return;
      continue;
    }
    if (!next()) break;
    std::string kind(tag.code == 2 ? tag.trimmed() : std::string_view());
    SymbolTableBase* table = tableOfKind(db, kind);
    // The table's own groups.
    while (next() && tag.code != 0) {
      if (!table) continue;
      if (tag.code == 5 || tag.code == 105) table->handle = handle();
      else if (tag.code == 330) table->ownerHandle = handle();
      else if (tag.code == 102) readApplicationGroup(*table);
    }
    if (table && !table->handle.isNull()) db.adoptHandle(table);
    if (tag.code != 0) break;
    pushBack();
    if (!readTableRecords(kind)) return;
  }
  structureError(eEndOfFile, "the file ends inside the TABLES section");
}
