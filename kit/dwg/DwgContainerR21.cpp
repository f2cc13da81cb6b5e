// R2007 files: a Reed-Solomon coded file header, a page map and a section map, and sections made
// of coded, compressed pages.
#include "kit/base/OdError.h"
#include "kit/dwg/DwgDataSectionR21.h"
#include "kit/dwg/DwgFileSections.h"
#include "kit/dwg/DwgLittleEndian.h"
#include "kit/dwg/DwgR2007Header.h"
#include "kit/dwg/DwgR2007Maps.h"

namespace {

[[noreturn]] void fail(int code, const std::string& message) { throw DwgFormatError{code, message}; }

const DwgR2007Section* findSection(const std::vector<DwgR2007Section>& sections, const char* name) {
  for (const DwgR2007Section& s : sections) {
    if (s.name == name) return &s;
  }
  return nullptr;
}

std::string_view requiredSection(std::string_view file, const std::vector<DwgR2007Section>& infos, const char* name,
                                 const DwgR2007PageIndex& pages, DwgFileSections& sections) {
  const DwgR2007Section* info = findSection(infos, name);
  if (!info) fail(eInvalidDrawing, std::string("the section map lacks ") + name);
  return sections.keep(readDwgR2007DataSection(file, *info, pages, sections.messages));
}

}  // namespace

void readDwgContainerR21(std::string_view bytes, DwgFileSections& sections) {
  if (bytes.size() < kDwgR2007PagesAt) fail(eEndOfFile, "the file header is cut off");
  const auto* raw = reinterpret_cast<const uint8_t*>(bytes.data());
  sections.maintenanceVersion = raw[0x0B];
  sections.codePage = dwgLe16(raw + 0x13);
  if (dwgLe32(raw + 0x18) & 1) fail(eUnsupportedFileFormat, "the drawing is protected by a password");

  DwgR2007FileHeader header = readDwgR2007FileHeader(bytes, sections.messages);
  DwgR2007PageIndex pages = parseDwgR2007PageMap(readDwgR2007SystemPage(bytes, header.pageMap, "page map", sections.messages));
  auto sectionMapAt = pages.find(header.sectionMapId);
  if (sectionMapAt == pages.end()) fail(eInvalidDrawing, "the page map lacks the section map's page");
  header.sectionMap.offset = sectionMapAt->second - kDwgR2007PagesAt;
  std::vector<DwgR2007Section> infos = parseDwgR2007SectionMap(readDwgR2007SystemPage(bytes, header.sectionMap, "section map", sections.messages));

  sections.header = requiredSection(bytes, infos, "AcDb:Header", pages, sections);
  sections.classes = requiredSection(bytes, infos, "AcDb:Classes", pages, sections);
  sections.handles = requiredSection(bytes, infos, "AcDb:Handles", pages, sections);
  sections.objects = requiredSection(bytes, infos, "AcDb:AcDbObjects", pages, sections);
  if (const DwgR2007Section* info = findSection(infos, "AcDb:Template")) {
    sections.templateSection = sections.keep(readDwgR2007DataSection(bytes, *info, pages, sections.messages));
  }
}
