#include "kit/dwg/DwgLoader.h"

#include <algorithm>
#include <cstring>

#include "kit/base/OdError.h"
#include "kit/db/DatabaseCompletion.h"
#include "kit/dwg/DwgBlockNames.h"
#include "kit/dwg/DwgCodePages.h"
#include "kit/dwg/DwgCrc.h"
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgSectionFraming.h"

namespace {

std::string hex(uint64_t value) { return OdDbHandle(value).toHex(); }

}  // namespace

DwgLoader::DwgLoader(std::string_view bytes, OdDbDatabase& database, const DwgReadOptions& options,
                     std::string sourceName)
    : db(database), bytes_(bytes), options_(options), sourceName_(std::move(sourceName)) {}

void DwgLoader::fail(int code, const std::string& message) { throw DwgFormatError{code, message}; }

void DwgLoader::warn(std::string message) { db.loadReport().addMessage(std::move(message)); }

int64_t DwgLoader::indexOf(OdDbHandle h) const {
  auto it = std::lower_bound(map_.begin(), map_.end(), h.value(),
                             [](const DwgMapEntry& e, uint64_t v) { return e.handle < v; });
  if (it == map_.end() || it->handle != h.value()) return -1;
  return it - map_.begin();
}

const DwgClass* DwgLoader::classOfType(uint16_t type) const {
  if (type < 500) return nullptr;
  size_t index = type - 500u;
  if (index < classes_.size() && classes_[index].number == type) return &classes_[index];
  for (const DwgClass& c : classes_) {
    if (c.number == type) return &c;
  }
  return nullptr;
}

std::string DwgLoader::applicationName(OdDbHandle h) {
  if (auto* app = dbCast<RegAppRecord>(objectFor(h))) return app->name;
  return "";
}

DbObject* DwgLoader::objectFor(OdDbHandle h) {
  if (h.isNull()) return nullptr;
  int64_t index = indexOf(h);
  if (index < 0) return db.find(h);
  DwgObjectState& state = states_[size_t(index)];
  if (state.status == 0) readObject(size_t(index));
  return states_[size_t(index)].object;
}

void DwgLoader::readContainer() {
  sections_.versionText = std::string(bytes_.substr(0, 6));
  int v = 0;
  for (char c : std::string_view(sections_.versionText).substr(2)) v = v * 10 + (c - '0');
  sections_.version = v;
  switch (v) {
    case kDwgR13:
    case kDwgR14:
    case kDwgR2000: readDwgContainerR15(bytes_, sections_); break;
    case kDwgR2004:
    case kDwgR2010:
    case kDwgR2013:
    case kDwgR2018: readDwgContainerR18(bytes_, sections_); break;
    case kDwgR2007: readDwgContainerR21(bytes_, sections_); break;
    default: fail(eUnsupportedFileFormat, "DWG release " + sections_.versionText + " is not supported");
  }
  for (std::string& m : sections_.messages) warn(std::move(m));
  sections_.messages.clear();
}

void DwgLoader::readHeader() {
  DatabaseHeader& header = db.header();
  DwgStreams s(version(), &decoder_);
  DwgSectionFrame frame = openDwgSection(sections_.header, kDwgHeaderSentinel, s, sections_.maintenanceVersion);
  if (!frame.ok) {
    if (!options_.recover) fail(eInvalidDrawing, "the header section is damaged: " + frame.problem);
    // The objects still hold the tables and entities; the variables keep their defaults.
    warn("the header section is damaged: " + frame.problem);
    db.loadReport().recovered = true;
    return;
  }
  if (!frame.crcOk) warn("header section check sum mismatch");
  if (!readDwgHeaderVariables(s, header, headerHandles_)) {
    if (!options_.recover) fail(eInvalidDrawing, "the header section ends before its last variable");
    warn("the header section ends before its last variable");
    db.loadReport().recovered = true;
  }
}

void DwgLoader::readClasses() {
  DwgStreams s(version(), &decoder_);
  DwgSectionFrame frame = openDwgSection(sections_.classes, kDwgClassesSentinel, s, sections_.maintenanceVersion);
  if (!frame.ok) {
    warn("the classes section is damaged: " + frame.problem);
    return;
  }
  if (!frame.crcOk) warn("classes section check sum mismatch");
  readDwgClasses(s, frame.endBit, classes_);
  for (const DwgClass& c : classes_) db.classes().push_back(c.info);
}

void DwgLoader::readObject(size_t index) {
  DwgObjectState& state = states_[index];
  state.status = 2;  // a reference back to this object while it is read finds nothing
  const DwgMapEntry& entry = map_[index];
  DwgStreams s(version(), &decoder_);
  DwgObjectFrame frame;
  bool crcOk = false;
  DwgFrameResult opened = openDwgObject({sections_.objects, entry.offset}, s, frame, crcOk);
  if (opened != DwgFrameResult::kOk) {
    ++failedObjects_;
    warn("object " + hex(entry.handle) + " skipped: it lies outside the objects section");
    return;
  }
  if (!crcOk) ++crcFailures_;
  const DwgReaderEntry* reader = nullptr;
  const DwgClass* cls = nullptr;
  if (frame.type < 500) {
    reader = dwgReaderForType(frame.type);
  } else if ((cls = classOfType(frame.type)) != nullptr) {
    reader = dwgReaderForClass(cls->info.dxfName);
  }
  bool isEntity = reader ? reader->isEntity : cls ? cls->info.isEntity : dwgFixedTypeIsEntity(frame.type);
  readDwgObjectCommon(s, frame, isEntity);
  if (frame.handle.value() != entry.handle) {
    warn("object " + hex(entry.handle) + " carries handle " + frame.handle.toHex() + "; the map's handle is kept");
    frame.handle = OdDbHandle(entry.handle);
    s.setReferenceHandle(entry.handle);
  }
  DwgObjectContext context(*this, s, frame);
  if (reader) {
    reader->read(context);
  } else {
    readUnknownDwgObject(context, cls, isEntity);
  }
  if (s.overrun() || (context.result == nullptr && context.role == DwgRole::kOther)) {
    ++failedObjects_;
    ++db.loadReport().damagedObjects;
    std::string kind = cls ? cls->info.dxfName : "type " + std::to_string(frame.type);
    warn("object " + hex(entry.handle) + " (" + kind + ") skipped: its data ends early");
    return;
  }
  state.status = 1;
  state.role = context.role;
  state.object = context.result;
  state.owner = frame.owner;
  state.entityMode = frame.entityMode;
  state.next = frame.noLinks ? OdDbHandle(entry.handle + 1) : frame.next;
  if (context.role == DwgRole::kVertex) state.vertex = uint32_t(vertices_.size() - 1);
  commitDwgObject(*this, context);
}

void DwgLoader::readControlObject(OdDbHandle control) {
  int64_t index = indexOf(control);
  if (index < 0) {
    warn("table control object " + control.toHex() + " is missing");
    return;
  }
  readObject(size_t(index));
}

void DwgLoader::readTables() {
  const DwgHeaderHandles& h = headerHandles_;
  // Records that others refer to come first: applications (extended data), text styles and
  // linetypes (layers), then the rest; blocks last.
  const OdDbHandle controls[] = {h.appIdControl, h.styleControl, h.linetypeControl, h.layerControl,
                                 h.viewControl,  h.ucsControl,   h.vportControl,    h.dimStyleControl,
                                 h.blockControl};
  for (OdDbHandle control : controls) {
    readControlObject(control);
    int64_t index = indexOf(control);
    if (index < 0 || !states_[size_t(index)].object) continue;
    auto it = owned_.find(states_[size_t(index)].object);
    if (it == owned_.end()) continue;
    for (OdDbHandle record : it->second.handles) {
      if (!objectFor(record) && indexOf(record) < 0) warn("table record " + record.toHex() + " is missing");
    }
  }
}

void DwgLoader::readObjects() {
  states_.assign(map_.size(), DwgObjectState{});
  readTables();
  for (size_t i = 0; i < map_.size(); ++i) {
    if (states_[i].status == 0) readObject(i);
  }
  if (crcFailures_) warn(std::to_string(crcFailures_) + " objects fail their check sum");
}

void DwgLoader::load() {
  LoadReport& report = db.loadReport();
  report.sourceFormat = "DWG";
  readContainer();
  for (const auto& section : sections_.storage) report.decodedBytes += section->size();
  if (sections_.storage.empty()) report.decodedBytes = bytes_.size();  // sections in place
  DatabaseHeader& header = db.header();
  header.acadVer = sections_.versionText;
  header.acadMaintVer = sections_.maintenanceVersion;
  report.fileVersion = sections_.versionText;
  if (version() >= kDwgR2007) {
    header.dwgCodePage = "ANSI_1252";
    report.codePage = "UTF-16";
  } else {
    header.dwgCodePage = dwgCodePageName(sections_.codePage);
    decoder_.setCodePage(header.dwgCodePage);
    report.codePage = decoder_.codePageName();
  }
  if (version() >= kDwgR2007) header.dwgCodePage = dwgCodePageName(sections_.codePage == 0 ? 30 : sections_.codePage);
  readHeader();
  readClasses();
  std::vector<std::string> mapMessages;
  readDwgObjectMap(sections_.handles, map_, mapMessages);
  for (std::string& m : mapMessages) warn(std::move(m));
  if (map_.empty()) fail(eInvalidDrawing, "the object map is empty");
  readObjects();
  attachStoredAcisData();
  finishHeader();
  assemble();
  numberDwgAnonymousBlocks(db, headerHandles_.paperSpaceBlock);
  numberDwgViewports(db);
  if (failedObjects_ && !options_.recover) report.recovered = false;
  completeDatabase(db);
}
