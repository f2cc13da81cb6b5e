// libFuzzer entry for the DWG reader: any bytes, strict and recovering, must end in a database
// or an OdError; the completed database is dumped so that its links are walked. Built with
// -DDM_FUZZ=ON by clang (see the top CMakeLists.txt); seeds: the corpus DWG files.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kit/base/OdError.h"
#include "kit/db/DatabaseDump.h"
#include "kit/dwg/DwgReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (bool recover : {false, true}) {
    DwgReadOptions options;
    options.recover = recover;
    try {
      OdDbDatabasePtr db = readDwgBuffer(bytes, options, "fuzz.dwg");
      DumpOptions dump;
      dump.maxVerticesPerEntity = 4;
      (void)dumpDatabase(*db, dump);
    } catch (const OdError&) {
    }
  }
  return 0;
}
