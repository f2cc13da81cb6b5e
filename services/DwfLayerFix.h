// A repair made to ASCII DWF files (those beginning "(DWF V00.55)") before they are imported.
// A layer record "(Layer <number> <name>)" whose name is empty ('' or "") would make every such
// layer collapse into one nameless layer on import; it is renamed 'Layer_<number>' wherever the
// same record text occurs in the file. Other files and records are left alone.
#pragma once

#include <string>

// Writes the repaired text to `outputPath` and returns true when a record was renamed. Returns
// false, writing nothing, when nothing needed a repair or on any failure (with a message for
// files that cannot be opened or an output that exists without `overwrite`). `quiet` silences
// the line printed per replacement.
bool FixDwfLayers(const std::string& inputPath, const std::string& outputPath, bool quiet,
                  bool overwrite);
