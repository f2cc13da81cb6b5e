// Facts about the running program that every part may read: its version and the directory it was
// started from (where the font map files live beside the executable).
#pragma once

#include <string>

// "V20.04.02a"
extern const char* const g_VersionText;
// The program path as given on the command line, cut after its last path separator (so it ends with
// the separator); the bare program name when the path has no directory part. Set once by the entry.
extern std::string g_ProgramDirectory;
