// dmdump: prints a drawing database as stable text (see kit/db/DatabaseDump.h), so that two loads
// can be compared with diff.
//
//   dmdump [--recover] [--summary] [--header] [--no-report] [--write-dxf out.dxf] <drawing.dxf|drawing.dwg>
//
// --write-dxf also writes the loaded drawing as DXF (its own version, or R2000 for older ones).
#include <cstdio>
#include <cstring>
#include <string>

#include "kit/base/OdError.h"
#include "kit/db/DatabaseDump.h"
#include "kit/dwg/DwgReader.h"
#include "kit/dxf/DxfReader.h"
#include "kit/dxf/DxfWriter.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: dmdump [--recover] [--summary] [--header] [--no-report] [--write-dxf out.dxf] "
               "<drawing.dxf|drawing.dwg>\n");
  return 2;
}

std::string narrow(const OdString& s) {
  std::string out;
  for (OdChar c : s.str()) out += (c < 0x80) ? char(c) : '?';
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  DxfReadOptions readOptions;
  DumpOptions dumpOptions;
  const char* path = nullptr;
  const char* dxfOut = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--recover") == 0) readOptions.recover = true;
    else if (std::strcmp(argv[i], "--summary") == 0) dumpOptions.entities = false;
    else if (std::strcmp(argv[i], "--header") == 0) dumpOptions.allHeaderVariables = true;
    else if (std::strcmp(argv[i], "--no-report") == 0) dumpOptions.loadReport = false;
    else if (std::strcmp(argv[i], "--write-dxf") == 0 && i + 1 < argc) dxfOut = argv[++i];
    else if (argv[i][0] == '-' || path) return usage();
    else path = argv[i];
  }
  if (!path) return usage();
  try {
    OdDbDatabasePtr db;
    char head[8] = {};
    if (FILE* f = std::fopen(path, "rb")) {
      size_t got = std::fread(head, 1, sizeof head, f);
      std::fclose(f);
      if (looksLikeDwg(std::string_view(head, got))) db = readDwgFile(path, DwgReadOptions{readOptions.recover});
    }
    if (!db) db = readDxfFile(path, readOptions);
    std::string text = dumpDatabase(*db, dumpOptions);
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (dxfOut) writeDxfFile(*db, dxfOut);
  } catch (const OdError& e) {
    std::fprintf(stderr, "dmdump: %s\n", narrow(e.description()).c_str());
    return 1;
  }
  return 0;
}
