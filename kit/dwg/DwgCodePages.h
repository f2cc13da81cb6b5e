// The code page numbers DWG file headers carry, as the $DWGCODEPAGE names DXF files use.
#pragma once

#include <string>

// "ANSI_1252" for 30, ...; unknown numbers give "ANSI_1252".
std::string dwgCodePageName(int number);
