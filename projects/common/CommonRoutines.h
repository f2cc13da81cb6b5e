// Free functions for text, encodings, escapes, files and paths, shared by every part of the program.
#pragma once

#include <cstdint>
#include <string>

#include "kit/base/OdString.h"

// UTF-8 encoding of each code point; code points past U+10FFFF become "?".
std::string& WideToUtf8(std::string& out, const std::wstring& text);
std::string& OdStringToUtf8(std::string& out, const OdString& text);
OdString& Utf8ToOdString(OdString& out, const OdAnsiString& text);
