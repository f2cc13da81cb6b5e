// libFuzzer entry for the DXF reader: any bytes, strict and recovering, must end in a database
// or an OdError; the completed database is walked and dumped so that its links are exercised.
// Built with -DDM_FUZZ=ON by clang (see the top CMakeLists.txt); seeds: the corpus DXF files.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kit/base/OdError.h"
#include "kit/db/DatabaseDump.h"
#include "kit/dxf/DxfReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (bool recover : {false, true}) {
    DxfReadOptions options;
    options.recover = recover;
    try {
      OdDbDatabasePtr db = readDxfBuffer(bytes, options, "fuzz.dxf");
      DumpOptions dump;
      dump.maxVerticesPerEntity = 4;
      (void)dumpDatabase(*db, dump);
    } catch (const OdError&) {
    }
  }
  return 0;
}
