// The ACDSDATA section of R2013 and later files: records of the drawing's data storage. The ones
// that matter here hold the binary ACIS data of a REGION, 3DSOLID, BODY or surface ("ASM_Data",
// its size in group 94, then the bytes in groups 310), naming their entity by handle (group 320).
// The data joins the entity, which keeps no ACIS text of its own in these files.
#include "kit/base/OdError.h"
#include "kit/db/Entities.h"
#include "kit/dxf/DxfLoader.h"

namespace {

struct AsmRecord {
  OdDbHandle entity;
  bool inAsmData = false;
  std::vector<uint8_t> bytes;
};

}  // namespace

void DxfLoader::readDataStorageSection() {
  AsmRecord record;
  size_t orphans = 0;  // data of objects no longer in the drawing
  auto attach = [&] {
    if (!record.bytes.empty()) {
      auto* e = db.findAs<ModelerGeometryEntity>(record.entity);
      if (e) e->acisBinary.assign(record.bytes.begin(), record.bytes.end());
      else ++orphans;
    }
    record = AsmRecord();
  };
  while (next()) {
    switch (tag.code) {
      case 0:
        attach();
        if (tag.trimmed() != "ENDSEC") break;
        if (orphans) warn(std::to_string(orphans) + " ACIS data records of the data storage name no modeler entity");
        return;
        break;
      case 320: record.entity = handle(); break;
      case 2: record.inAsmData = tag.trimmed() == "ASM_Data"; break;
      case 310:
        if (record.inAsmData) appendBinary(record.bytes);
        break;
      default: break;
    }
  }
  structureError(eEndOfFile, "the file ends inside the ACDSDATA section");
}
