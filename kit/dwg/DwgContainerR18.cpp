// R2004, R2010, R2013 and R2018 files: an encrypted file header, a page map and a section map,
// and sections made of compressed pages.
#include "kit/base/OdError.h"
#include "kit/dwg/DwgFileSections.h"

void readDwgContainerR18(std::string_view, DwgFileSections&) {
  throw DwgFormatError{eUnsupportedFileFormat, "R2004 and later files are not read yet"};
}
