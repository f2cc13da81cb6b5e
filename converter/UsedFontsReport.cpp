// LIST: the fonts the drawing's text styles name, and where the host services found each.
#include <iostream>
#include <string>

#include "converter/CDm2017.h"
#include "projects/common/CommonRoutines.h"
#include "services/MyServices.h"

namespace {

void PrintFoundFile(const char* label, const std::string& fileName, int hint) {
  const OdString found = TheServices().findFile(toOdString(fileName), g_pDb.get(), hint);
  std::string path;
  std::cout << label << (found.isEmpty() ? std::string("   *** MISSING ***   ") : OdStringToUtf8(path, found))
            << "\n";
}

int HintFor(const TextStyleRecord& style) {
  return style.trueTypeFace.empty() ? OdDbHostAppServices::kCompiledShapeFile
                                    : OdDbHostAppServices::kTrueTypeFontFile;
}

}  // namespace

void CDm2017::ReportUsedFonts() {
  std::cout << "Used Font Files\n===============\n";
  if (g_pDb) {
    for (const TextStyleRecord* style : g_pDb->textStyles()) {
      std::cout << "Font Name:        " << style->getFileName() << "\n";
      PrintFoundFile("Filename :        ", style->getFileName(), HintFor(*style));
      if (!style->getBigFontFileName().empty()) {
        PrintFoundFile("BigFont Filename: ", style->getBigFontFileName(),
                       OdDbHostAppServices::kCompiledShapeFile);
      }
    }
  }
  std::cout.flush();
}
