// R2007 files: Reed-Solomon coded pages with their own compression.
#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

void readDwgContainerR21(std::string_view, DwgFileSections&) {
  throw DwgFormatError{eUnsupportedFileFormat, "R2007 files are not read yet"};
}
