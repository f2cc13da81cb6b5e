// The kit reports failures by throwing OdError: a result code and a readable description.
#pragma once

#include "kit/base/OdString.h"

enum OdResult {
  eOk = 0,
  eNotImplemented,
  eInvalidInput,
  eFileNotFound,
  eCantOpenFile,
  eFileAccessErr,
  eEndOfFile,
  eNotDrawingFile,
  eDwgNeedsRecovery,
  eDwgCRCError,
  eDwgObjectImproperlyRead,
  eBadDxfSequence,
  eUnsupportedFileFormat,
  eInvalidDrawing,
  eOutOfMemory,
  eInvalidView,
  eNullPtr,
};

// The standard description of a result code.
OdString odResultDescription(OdResult code);

class OdError {
public:
  explicit OdError(OdResult code) : code_(code), description_(odResultDescription(code)) {}
  OdError(OdResult code, const OdString& description) : code_(code), description_(description) {}
  explicit OdError(const OdString& description) : code_(eInvalidInput), description_(description) {}

  OdResult code() const { return code_; }
  OdString description() const { return description_; }

private:
  OdResult code_;
  OdString description_;
};
