#include "kit/base/OdError.h"

OdString odResultDescription(OdResult code) {
  switch (code) {
    case eOk: return L"No error";
    case eNotImplemented: return L"Not implemented yet";
    case eInvalidInput: return L"Invalid input";
    case eFileNotFound: return L"File not found";
    case eCantOpenFile: return L"Can't open file";
    case eFileAccessErr: return L"File access error";
    case eEndOfFile: return L"Unexpected end of file";
    case eNotDrawingFile: return L"File is not a drawing file";
    case eDwgNeedsRecovery: return L"Drawing file needs recovery";
    case eDwgCRCError: return L"CRC does not match";
    case eDwgObjectImproperlyRead: return L"Object improperly read";
    case eBadDxfSequence: return L"Bad DXF sequence";
    case eUnsupportedFileFormat: return L"Unsupported file format";
    case eInvalidDrawing: return L"Invalid drawing";
    case eOutOfMemory: return L"Out of memory";
    case eInvalidView: return L"Invalid view";
    case eNullPtr: return L"Null pointer";
  }
  return L"Unknown error";
}
