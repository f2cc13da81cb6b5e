#include "kit/dxf/DxfLoader.h"

#include <cstdio>

#include "kit/base/MappedFile.h"
#include "kit/base/OdError.h"
#include "kit/db/DatabaseCompletion.h"

namespace {

OdString toOd(const std::string& s) { return OdString(odDecodeUtf8(s.data(), s.size())); }

char hexDigitValue(char c) {
  if (c >= '0' && c <= '9') return char(c - '0');
  if (c >= 'A' && c <= 'F') return char(c - 'A' + 10);
  if (c >= 'a' && c <= 'f') return char(c - 'a' + 10);
  return -1;
}

}  // namespace

DxfLoader::DxfLoader(std::string_view bytes, OdDbDatabase& database, const DxfReadOptions& options,
                     std::string sourceName)
    : db(database), reader_(bytes), options_(options), sourceName_(std::move(sourceName)), totalBytes_(bytes.size()) {}

size_t DxfLoader::remainingBytes() const { return totalBytes_ - reader_.bytesConsumed(); }

TextStyleRecord* DxfLoader::standardTextStyle() {
  if (!standardTextStyle_) standardTextStyle_ = db.textStyleNamed("Standard");
  return standardTextStyle_;
}

DimStyleRecord* DxfLoader::standardDimStyle() {
  if (!standardDimStyle_) standardDimStyle_ = db.dimStyleNamed("Standard");
  return standardDimStyle_;
}

void DxfLoader::structureError(int code, const std::string& message) {
  throw DxfStructureError{code, message};
}

bool DxfLoader::next() {
  if (reader_.next(tag)) return true;
  switch (reader_.error()) {
    case DxfTagReader::Error::kNone: return false;
    case DxfTagReader::Error::kTruncated:
      structureError(eEndOfFile, "the file ends in the middle of a group (" + where() + ")");
    case DxfTagReader::Error::kBadGroupCode:
      structureError(eBadDxfSequence, "invalid group code (" + where() + ")");
  }
  return false;
}

void DxfLoader::skipToNextObject() {
  while (next()) {
    if (tag.code == 0) {
      pushBack();
      return;
    }
  }
}

std::string DxfLoader::where() const {
  char buf[64];
  if (reader_.isBinary()) std::snprintf(buf, sizeof buf, "offset %zu", reader_.position());
  else std::snprintf(buf, sizeof buf, "line %zu", reader_.position());
  return buf;
}

void DxfLoader::warn(std::string message) { db.loadReport().addMessage(std::move(message)); }

double DxfLoader::real() {
  double d = 0.0;
  if (tag.toReal(d)) return d;
  if (++badValues_ <= 20) {
    warn("invalid number \"" + std::string(tag.trimmed().substr(0, 40)) + "\" for group " +
         std::to_string(tag.code) + " (" + where() + ")");
  }
  return 0.0;
}

int64_t DxfLoader::integer() {
  int64_t i = 0;
  if (tag.toInteger(i)) return i;
  if (++badValues_ <= 20) {
    warn("invalid integer \"" + std::string(tag.trimmed().substr(0, 40)) + "\" for group " +
         std::to_string(tag.code) + " (" + where() + ")");
  }
  return 0;
}

int16_t DxfLoader::int16() {
  int64_t i = integer();
  if (i < INT16_MIN) return INT16_MIN;
  if (i > INT16_MAX) return INT16_MAX;
  return int16_t(i);
}

int32_t DxfLoader::int32() {
  int64_t i = integer();
  if (i < INT32_MIN) return INT32_MIN;
  if (i > INT32_MAX) return INT32_MAX;
  return int32_t(i);
}

void DxfLoader::appendBinary(std::vector<uint8_t>& out) {
  if (tag.binary) {
    out.insert(out.end(), tag.value.begin(), tag.value.end());
    return;
  }
  std::string_view hex = tag.trimmed();
  for (size_t i = 0; i + 1 < hex.size(); i += 2) {
    char hi = hexDigitValue(hex[i]), lo = hexDigitValue(hex[i + 1]);
    if (hi < 0 || lo < 0) break;
    out.push_back(uint8_t(hi * 16 + lo));
  }
}

TaggedValue DxfLoader::taggedValue() {
  TaggedValue v;
  v.code = int16_t(tag.code);
  v.kind = groupValueKind(tag.code);
  switch (v.kind) {
    case GroupValueKind::kReal:
      v.real = real();
      break;
    case GroupValueKind::kInt16:
    case GroupValueKind::kInt32:
    case GroupValueKind::kInt64:
    case GroupValueKind::kBool:
      v.integer = integer();
      break;
    case GroupValueKind::kBinary:
      if (tag.binary) {
        static const char kHex[] = "0123456789ABCDEF";
        v.text.reserve(tag.value.size() * 2);
        for (unsigned char b : tag.value) {
          v.text += kHex[b >> 4];
          v.text += kHex[b & 15];
        }
      } else {
        v.text = std::string(tag.trimmed());
      }
      break;
    case GroupValueKind::kHandle:
      v.text = std::string(tag.trimmed());
      break;
    case GroupValueKind::kString:
      v.text = text();
      break;
  }
  return v;
}

void DxfLoader::coordinate(OdGePoint3d& p, int base) {
  double d = real();
  int axis = (tag.code - base) / 10;
  if (axis == 0) p.x = d;
  else if (axis == 1) p.y = d;
  else p.z = d;
}

void DxfLoader::coordinate(OdGeVector3d& v, int base) {
  double d = real();
  int axis = (tag.code - base) / 10;
  if (axis == 0) v.x = d;
  else if (axis == 1) v.y = d;
  else v.z = d;
}

void DxfLoader::coordinate(OdGePoint2d& p, int base) {
  double d = real();
  int axis = (tag.code - base) / 10;
  if (axis == 0) p.x = d;
  else if (axis == 1) p.y = d;
}

LayerRecord* DxfLoader::layerFromTag() {
  std::string_view raw = tag.value;
  if (lastLayer_ && raw == lastLayerName_) return lastLayer_;
  auto it = layerCache_.find(raw);
  LayerRecord* layer;
  if (it != layerCache_.end()) {
    layer = it->second;
  } else {
    std::string name = text();
    layer = db.layerNamed(name.empty() ? std::string_view("0") : std::string_view(name));
    layerCache_.emplace(raw, layer);
  }
  lastLayer_ = layer;
  lastLayerName_ = raw;
  return layer;
}

LinetypeRecord* DxfLoader::linetypeFromTag() {
  std::string name = text();
  if (name.empty()) return db.linetypeNamed("ByLayer");
  return db.linetypeNamed(name);
}

TextStyleRecord* DxfLoader::textStyleFromTag() {
  std::string name = text();
  return db.textStyleNamed(name.empty() ? std::string_view("Standard") : std::string_view(name));
}

DimStyleRecord* DxfLoader::dimStyleFromTag() {
  std::string name = text();
  return db.dimStyleNamed(name.empty() ? std::string_view("Standard") : std::string_view(name));
}

BlockRecord* DxfLoader::blockFromTag() {
  std::string name = normalizedBlockName(text());
  if (name.empty()) return nullptr;
  return db.blockNamed(name);
}

std::string DxfLoader::normalizedBlockName(std::string name) {
  if (equalsIgnoringCase(name, "$MODEL_SPACE")) return "*Model_Space";
  if (equalsIgnoringCase(name, "$PAPER_SPACE")) return "*Paper_Space";
  return name;
}

bool DxfLoader::readApplicationGroup(DbObject& object) {
  if (tag.code != 102) return false;
  std::string_view start = tag.trimmed();
  if (start.empty() || start[0] != '{') return true;  // a stray closing brace
  bool reactors = start == "{ACAD_REACTORS";
  bool xdictionary = start == "{ACAD_XDICTIONARY";
  while (next()) {
    if (tag.code == 0) {
      pushBack();
      return true;
    }
    if (tag.code == 102) return true;  // "}" ends the group
    if (reactors && (tag.code == 330 || tag.code == 360)) {
      db.extrasOf(object).reactors.push_back(handle());
    } else if (xdictionary && tag.code == 360) {
      db.extrasOf(object).extensionDictionary = handle();
    }
  }
  return true;
}

bool DxfLoader::readExtendedData(DbObject& object) {
  if (tag.code < 1000) return false;
  std::vector<XDataGroup>& groups = db.extrasOf(object).xdata;
  XDataGroup* current = nullptr;
  do {
    if (tag.code < 1000) {
      pushBack();
      break;
    }
    if (tag.code == 1001) {
      groups.push_back(XDataGroup{text(), {}});
      current = &groups.back();
    } else if (current) {
      current->values.push_back(taggedValue());
    }
  } while (next());
  hyperlinksFromExtendedData(groups, object.extras->hyperlinks);
  return true;
}

void DxfLoader::applyCodePage(std::string_view codePage) {
  decoder_.setCodePage(codePage);
  db.loadReport().codePage = decoder_.isUtf8() ? "UTF-8" : decoder_.codePageName();
}

void DxfLoader::readSections() {
  bool sawEof = false;
  bool strayGroups = false;
  bool strayEntities = false;
  while (next()) {
    if (tag.code != 0) {
      if (!strayGroups) warn("groups outside any section skipped (" + where() + ")");
      strayGroups = true;
      continue;
    }
    strayGroups = false;
    std::string_view name = tag.trimmed();
    if (name == "EOF") {
      sawEof = true;
      break;
    }
    if (name == "ENDSEC") {
      warn("ENDSEC outside any section (" + where() + ")");
      continue;
    }
    if (name != "SECTION") {
      // A few writers put entities after the last section; they are read as model space.
      if (!strayEntities) warn("entities outside any section (" + where() + ")");
      strayEntities = true;
      readEntityInto(db.blockNamed("*Model_Space"), false);
      continue;
    }
    strayEntities = false;
    if (!next()) structureError(eEndOfFile, "the file ends after SECTION (" + where() + ")");
    if (tag.code != 2) structureError(eBadDxfSequence, "SECTION without a name (" + where() + ")");
    std::string section(tag.trimmed());
    if (section == "HEADER") readHeaderSection();
    else if (section == "CLASSES") readClassesSection();
    else if (section == "TABLES") readTablesSection();
    else if (section == "BLOCKS") readBlocksSection();
    else if (section == "ENTITIES") readEntitiesSection();
    else if (section == "OBJECTS") readObjectsSection();
    else if (section == "ACDSDATA") readDataStorageSection();
    else {
      // THUMBNAILIMAGE and sections of other programs: skipped.
      bool closed = false;
      while (next()) {
        if (tag.code == 0 && tag.trimmed() == "ENDSEC") {
          closed = true;
          break;
        }
      }
      if (!closed) structureError(eEndOfFile, "the file ends inside the " + section + " section");
    }
  }
  if (!sawEof) warn("no EOF marker at the end of the file");
}

void DxfLoader::load() {
  LoadReport& report = db.loadReport();
  report.sourceFormat = reader_.isBinary() ? "binary DXF" : "DXF";
  applyCodePage("ANSI_1252");
  // Until $ACADVER says otherwise: files without a header are R12 files.
  db.header().acadVer = "AC1009";
  version_ = 1009;
  report.fileVersion = db.header().acadVer;
  try {
    readSections();
  } catch (const DxfStructureError& e) {
    if (!options_.recover) throw OdError(OdResult(e.code), toOd(sourceName_ + ": " + e.message));
    report.recovered = true;
    report.addMessage(e.message);
  }
  if (badValues_ > 20) warn(std::to_string(badValues_ - 20) + " more invalid values not listed");
  completeDatabase(db);
}
