#include "projects/common/ProgramInfo.h"

const char* const g_VersionText = "V20.04.02a";
std::string g_ProgramDirectory;
