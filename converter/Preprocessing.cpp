// Adjustments to the loaded drawing before any output: block attributes filled from the workspace
// file's block records, and external references re-pointed to files the host services can find.
#include <iostream>
#include <map>
#include <string>

#include "converter/CDm2017.h"
#include "converter/LoadingSupport.h"
#include "projects/common/CommonRoutines.h"
#include "services/Trace.h"

namespace {

using AttributeMap = std::map<std::string, std::string>;

// The attribute values for one reference: every record of its block, those naming another
// reference's handle excepted; later records win.
AttributeMap AttributeMapFor(const std::vector<WorkspaceBlockRecord>& records, const std::string& upperName,
                             const OdDbHandle& reference) {
  AttributeMap map;
  for (const WorkspaceBlockRecord& record : records) {
    if (toUpperAscii(record.blockName) != upperName) continue;
    if (!record.handle.empty() && OdDbHandle::fromHex(record.handle) != reference) continue;
    for (const auto& [tag, value] : record.attributes) map[tag] = value;
  }
  return map;
}

bool HasRecordFor(const std::vector<WorkspaceBlockRecord>& records, const std::string& upperName) {
  for (const WorkspaceBlockRecord& record : records) {
    if (toUpperAscii(record.blockName) == upperName) return true;
  }
  return false;
}

void SetAttributeText(AttributeEntity& attribute, const std::string& text) {
  attribute.text = text;
  if (attribute.multiline) attribute.multiline->text = text;
}

void FillAttributes(BlockReferenceEntity& reference, const std::vector<WorkspaceBlockRecord>& records) {
  if (!reference.block) return;
  const std::string upperName = toUpperAscii(reference.block->name);
  if (!HasRecordFor(records, upperName)) return;
  std::cout << "BlockName: " << upperName << "\n";
  const AttributeMap map = AttributeMapFor(records, upperName, reference.handle);
  std::cout << "Attribute Map Size: " << map.size() << "\n" << std::flush;
  if (map.empty()) return;
  for (AttributeEntity* attribute : reference.attributes) {
    if (!attribute) continue;
    for (const auto& [tag, value] : map) {
      std::cout << "    Test " << attribute->tag << " against " << tag << "\n";
      if (equalsIgnoringCase(attribute->tag, tag)) SetAttributeText(*attribute, value);
    }
  }
  std::cout.flush();
}

void RepointExternalReference(OdDbBlockTableRecord& block) {
  const OdString path = toOdString(block.xrefPath);
  TraceMessage("*** Checking XRef Name 1", path);
  if (path.isEmpty()) return;
  const OdString found = HostServices().findFile(path, g_pDb.get());
  if (found.isEmpty()) return;
  TraceMessage("Modified XRef Name", found);
  std::string utf8;
  block.xrefPath = OdStringToUtf8(utf8, found);
}

}  // namespace

void CDm2017::PreprocessFile() {
  TraceMessage("**** Preprocess File");
  if (!g_pDb) return;
  if (!workspaceBlocks.empty()) {
    for (OdDbBlockTableRecord* block : g_pDb->blocks()) {
      for (Entity* entity : block->entities) {
        if (auto* reference = dbCast<BlockReferenceEntity>(entity)) FillAttributes(*reference, workspaceBlocks);
      }
    }
  }
  for (OdDbBlockTableRecord* block : g_pDb->blocks()) {
    if (block->isFromExternalReference()) RepointExternalReference(*block);
  }
}
