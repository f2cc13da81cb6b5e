#include "kit/dwg/DwgR12ToDxf.h"

#include "kit/dwg/DwgOldAc14.h"
#include "kit/dwg/DwgR12Entities.h"
#include "kit/dwg/DwgR12File.h"
#include "kit/dwg/DwgR12Header.h"
#include "kit/dwg/DwgR12Tables.h"
#include "kit/dxf/DxfReader.h"
#include "kit/dxf/DxfTagWriter.h"

std::string dwgR12ToDxf(std::string_view bytes) {
  if (isDwgAc14(bytes)) return dwgAc14ToDxf(bytes);
  DwgR12File file = readDwgR12File(bytes);
  DwgR12Tables tables = readDwgR12Tables(file);
  DxfTagWriter out;
  writeDwgR12Header(file, tables, out);
  writeDwgR12Tables(tables, out);
  writeDwgR12Blocks(file.blockEntities, *file.release, tables, out);
  writeDwgR12Entities(file.entities, *file.release, tables, out);
  out.raw(0, "EOF");
  return out.takeBuffer();
}

OdDbDatabasePtr readDwgR12(std::string_view bytes, bool recover, const std::string& sourceName) {
  std::string dxf = dwgR12ToDxf(bytes);
  return readDxfBuffer(dxf, {.recover = recover}, sourceName);
}
