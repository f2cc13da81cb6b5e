// R2004, R2010, R2013 and R2018 files: an encrypted file header, a page map and a section map,
// and sections made of compressed pages.
#include <string>

#include "kit/base/OdError.h"
#include "kit/dwg/DwgDataSectionR18.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR2004Header.h"
#include "kit/dwg/DwgSectionPages.h"

namespace {

[[noreturn]] void fail(int code, const std::string& message) { throw DwgFormatError{code, message}; }

const DwgSectionInfo* findSection(const std::vector<DwgSectionInfo>& infos, const char* name) {
  for (const DwgSectionInfo& info : infos) {
    if (info.name == name) return &info;
  }
  return nullptr;
}

std::string_view requiredSection(std::string_view file, const std::vector<DwgSectionInfo>& infos, const char* name,
                                 const DwgPageIndex& pages, DwgFileSections& sections) {
  const DwgSectionInfo* info = findSection(infos, name);
  if (!info) fail(eInvalidDrawing, std::string("the section map lacks ") + name);
  return sections.keep(readDwgDataSection(file, *info, pages, sections.messages));
}

}  // namespace

void readDwgContainerR18(std::string_view bytes, DwgFileSections& sections) {
  if (bytes.size() < kDwgR2004FirstPageAt) fail(eEndOfFile, "the file header is cut off");
  const auto* raw = reinterpret_cast<const uint8_t*>(bytes.data());
  sections.maintenanceVersion = raw[0x0B];
  sections.codePage = dwgLe16(raw + 0x13);
  DwgR2004FileHeader header = readDwgR2004FileHeader(bytes, sections.messages);
  if (header.securityFlags & 1) fail(eUnsupportedFileFormat, "the drawing is protected by a password");

  std::vector<uint8_t> pageMap = readDwgSystemPage(bytes, header.pageMapAddress, kDwgPageMapType, sections.messages);
  DwgPageIndex pages = indexDwgPages(parseDwgPageMap(pageMap));
  auto sectionMapPage = pages.find(int32_t(header.sectionMapId));
  if (sectionMapPage == pages.end()) fail(eInvalidDrawing, "the page map lacks the section map's page");
  std::vector<uint8_t> sectionMap =
      readDwgSystemPage(bytes, sectionMapPage->second.address, kDwgSectionMapType, sections.messages);
  std::vector<DwgSectionInfo> infos = parseDwgSectionMap(sectionMap);

  sections.header = requiredSection(bytes, infos, "AcDb:Header", pages, sections);
  sections.classes = requiredSection(bytes, infos, "AcDb:Classes", pages, sections);
  sections.handles = requiredSection(bytes, infos, "AcDb:Handles", pages, sections);
  sections.objects = requiredSection(bytes, infos, "AcDb:AcDbObjects", pages, sections);
  if (const DwgSectionInfo* info = findSection(infos, "AcDb:Template")) {
    sections.templateSection = sections.keep(readDwgDataSection(bytes, *info, pages, sections.messages));
  }
  // Only the modeler data lives there: damage costs the solids, not the drawing.
  if (const DwgSectionInfo* info = findSection(infos, "AcDb:AcDsPrototype_1b")) {
    try {
      sections.dataStorage = sections.keep(readDwgDataSection(bytes, *info, pages, sections.messages));
    } catch (const DwgFormatError& e) {
      sections.messages.push_back("the data storage section is unreadable: " + e.message);
    }
  }
}
