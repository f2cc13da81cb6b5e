// Output format codes by name (the "F" parameter) and their file extensions (derived output names).
#pragma once

#include "kit/base/OdString.h"

// What a format name selects besides its code.
enum class FormatSideEffect { kNone, kThinLines, kJpegLowQuality, kBlackAndWhite, kRasterPdf };

struct OutputFormatName {
  const wchar_t* name;       // upper case
  int code;
  const wchar_t* extension;  // replaces the name as the format extension; null keeps the name
  FormatSideEffect effect;
};

// The entry for an upper-case name, or null for a name the system does not know.
const OutputFormatName* FindOutputFormatName(const OdString& upperName);
