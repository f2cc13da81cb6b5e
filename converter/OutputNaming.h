// Names of the output files of one run: the extension of each output format, and the names the
// view selection gives to model space and the numbered layouts.
#pragma once

#include "kit/base/OdString.h"

// ".svg", ".pdf", ".js", ".dwf", ".jpg", ".gif", ".tif"; ".png" for every other format.
OdString OutputExtension(int format);
// The name without the extension when it ends in it, ignoring case; otherwise the name.
OdString StripExtension(const OdString& name, const OdString& extension);
// base + "__ModelSpace".
OdString ModelSpaceOutputName(const OdString& base);
// base + "__Layout" + the number as two digits at least ("__Layout01").
OdString LayoutOutputName(const OdString& base, int number);
// Whole-name comparison ignoring case.
bool NameIs(const OdString& name, const wchar_t* other);
// Prefix test; case-sensitive.
bool NameStartsWith(const OdString& name, const wchar_t* prefix);
// An output name ending in ".htm" or ".html" (any case) asks for the HTML page: the SVG file is
// written as the name up to that ending plus ".svg", and the page under the name itself. Returns
// the SVG file's name, or an empty name for any other output name.
OdString SvgNameForPage(const OdString& name);
