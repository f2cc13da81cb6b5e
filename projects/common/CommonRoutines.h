// Free functions for text, encodings, escapes, files and paths, shared by every part of the program.
// Paths handed to the C library are UTF-8 std::string; both "/" and "\" count as path separators,
// because drawings and parameter files written on other systems carry backslashes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "kit/base/OdString.h"

// ---- Case and comparison (TextCaseRoutines.cpp) ----------------------------------------------------

// Same length and equal after tolower of every byte.
bool EqualsNoCase(const std::string& a, const std::string& b);
void MakeUpperInPlace(std::string& text);
// toupper/tolower of every byte up to the terminator; a null pointer is returned as it is.
char* UpperCString(char* text);
char* LowerCString(char* text);
std::string ToLowerCopy(std::string text);
std::wstring ToLowerCopy(std::wstring text);
// ASCII letters only.
bool IsLetter(int c);
bool IsUpperLetter(int c);
bool IsLowerLetter(int c);

// ---- Substrings, splitting and replacing (TextSplitRoutines.cpp) ----------------------------------

// The first (last) count characters, or the whole text when count is not less than its length;
// a negative count gives an empty text.
std::string LeftChars(const std::string& text, int count);
std::string RightChars(const std::string& text, int count);
std::string ReplaceChar(std::string text, char from, char to);
// Replaces every occurrence, scanning on after each inserted replacement, so a replacement that
// holds the search text is not replaced again. An empty search text changes nothing.
void ReplaceAll(std::string& text, const std::string& search, const std::string& replacement);
std::wstring ReplaceAll(const std::wstring& text, const std::wstring& search, const std::wstring& replacement);
// Splits at any character of the set, keeping empty pieces; returns the number of pieces.
int SplitAny(std::vector<std::string>& pieces, const std::string& text, const std::string& delimiters);
// Splits at every occurrence of the delimiter and drops empty pieces, then rejoins quoted fields:
// a piece beginning with '"' runs (rejoined with ",") up to a piece longer than one character that
// ends with '"'. Quotes are kept. Returns the number of fields.
int SplitQuoted(std::vector<std::string>& fields, const std::string& text, const std::string& delimiter);
// Comma-separated items as getline reads them; true when at least one item was read.
bool SplitCommaList(const std::string& text, std::vector<std::string>& items);
void TrimLeft(std::string& text);
void TrimRight(std::string& text);
void Trim(std::string& text);
std::string IntToString(int value);
// Each byte as two upper-case hexadecimal digits, high nibble first.
std::string HexEncode(const std::string& bytes);
// Not empty and only characters of ".-0123456789" (IsNumber) or of "0123456789" (IsDigits).
bool IsNumber(const std::string& text);
bool IsDigits(const std::string& text);

// ---- Encodings (EncodingRoutines.cpp) -------------------------------------------------------------

// UTF-8 encoding of each code point; code points past U+10FFFF become "?".
std::string& WideToUtf8(std::string& out, const std::wstring& text);
// The conversion used for every file name handed to the C library.
std::string& OdStringToUtf8(std::string& out, const OdString& text);
// Appends the code points of the UTF-8 text (malformed bytes become U+FFFD, zero code points are
// dropped).
OdString& Utf8ToOdString(OdString& out, const OdAnsiString& text);
// Through the process code page (Latin-1), not UTF-8: characters it cannot hold become '?'.
std::string& OdStringToNarrow(std::string& out, const OdString& text);
// Keeps ASCII and the two-byte sequences of the Latin-1 range; every other byte is dropped.
std::string& Utf8ToLatin1(std::string& out, const std::string& text);
// False when the variable is unset; otherwise stores its value.
bool GetEnvironmentValue(const std::string& name, std::string& value);

// ---- Escapes and folding (EscapeRoutines.cpp) -----------------------------------------------------

// Copies characters up to code 127 (255 with allowLatin1); any other becomes prefix, the code as
// four upper-case hexadecimal digits (the first four when the code needs more), and suffix. The
// result is in the process code page.
void EscapeNonAscii(std::string& out, const OdString& text, const OdString& prefix, const OdString& suffix,
                    bool allowLatin1);
// Replaces every "\u" and the four hexadecimal digits after it by that character, searching again
// from the start after each replacement (so a decoded backslash may start a new escape). An escape
// whose digits are missing or not hexadecimal decodes to nothing.
void DecodeUnicodeEscapes(OdString& out, const OdString& text);
// The text holds one UTF-8 byte per character: each 0xC3 sequence of an accented Latin letter is
// folded to ASCII ("AE", "e", ...). True when the text changed.
bool TransliterateUtf8Latin(OdString& text);
// The same folding for Latin-1 bytes; 0xDF becomes "ss".
std::string& FoldLatin1(std::string& text);

// ---- Whole files as text (TextFileRoutines.cpp) ---------------------------------------------------

// The whole file, read in binary mode; returns its length, or 0 when it cannot be opened.
std::size_t ReadWholeFile(const std::string& path, std::string& content);
std::size_t ReadWholeFile(const OdString& path, std::string& content);
// The first balanced "{...}" of the text (braces counted without regard to quotes). False when the
// text holds no "{" or the braces never close.
bool ExtractJsonObject(const std::string& text, std::string& object);

// ---- Small helpers (SmallHelpers.cpp) -------------------------------------------------------------

// CMYK fractions 0..1 from RGB 0..255; always true.
bool RgbToCmyk(int red, int green, int blue, double& c, double& m, double& y, double& k);
void PolarPoint(double centerX, double centerY, double angleDegrees, double radius, double& x, double& y);
// Tab, line feed and carriage return: true. A space: true unless inside single or double quotes.
// A quote flips its process-wide toggle and gives false. Anything else: false.
bool IsWhitespaceOutsideQuotes(int c);
// Clears the two quote toggles (start of a new text).
void ResetWhitespaceQuoteState();
// Local time as "%Y-%m-%d-%H%M%S".
std::string MakeTimestamp();

// Even-odd point-in-polygon test over any container of points with x and y members. A point outside
// the bounding box is outside; a point on the box edge goes on to the edge-crossing test.
template <typename Points>
bool PointInPolygon(const Points& points, double x, double y) {
  if (points.empty()) return false;
  double minX = points.begin()->x, maxX = minX, minY = points.begin()->y, maxY = minY;
  for (const auto& p : points) {
    minX = p.x < minX ? p.x : minX;
    maxX = p.x > maxX ? p.x : maxX;
    minY = p.y < minY ? p.y : minY;
    maxY = p.y > maxY ? p.y : maxY;
  }
  if (x < minX || x > maxX || y < minY || y > maxY) return false;
  bool inside = false;
  auto j = std::prev(points.end());
  for (auto i = points.begin(); i != points.end(); j = i++) {
    double xi = i->x, yi = i->y, xj = j->x, yj = j->y;
    if ((yi > y) != (yj > y) && xi + (xj - xi) * (y - yi) / (yj - yi) > x) inside = !inside;
  }
  return inside;
}

// ---- Files (FileRoutines.cpp) ---------------------------------------------------------------------

bool fileExists(const std::string& path);
bool fileExists(const OdString& path);
bool directoryExists(const std::string& path);
bool IsDirectory(const std::string& path);
bool IsRegularFile(const std::string& path);
// The source must exist: a missing source stops the process with an assertion message on standard
// error. Returns whether the destination exists afterwards.
bool copyFile(std::string fileNameFrom, std::string fileNameTo);
// Copies, then removes the source whatever the copy gave; returns the copy's result.
bool MoveFile(const OdString& from, const OdString& to);

// ---- Case-insensitive lookup (FileLookupRoutines.cpp) ---------------------------------------------

// The path as given when it exists; otherwise the one entry of its directory whose name matches
// without regard to case. No match or several matches: false (the latter with a message).
bool FindFileNoCase(const std::string& path, std::string& result);
// A subdirectory of directory (default "/") whose name matches without regard to case.
bool FindDirectoryNoCase(const std::string& directory, const std::string& name, std::string& result);

// ---- Paths (PathRoutines.cpp) ---------------------------------------------------------------------

// Directory up to and including the last separator, base name without extension, extension
// without the dot.
void SplitPath(const std::string& path, std::string& directory, std::string& baseName, std::string& extension);
// The kind of the later of the last "\" and the last "/" (true); "/" and false when there is none.
bool PathSeparatorOf(const OdString& path, OdChar& separator);
// Index of the later of the last "\" and the last "/", or -1. The backslash of a "\U+" escape
// is never taken for a separator.
int LastSeparator(const OdString& path);
int LastSeparator(const std::string& path);
// Text after the last "." when fewer than six characters remain from the dot on (one trailing
// double quote removed); otherwise empty. The last result is kept process-wide.
OdString GetFileExtension(const OdString& path);
// The path without such an extension and without its directory part (a separator at position 0
// is kept). The last result is kept process-wide.
OdString GetFileBaseName(const OdString& path);

// ---- External raster conversion (RasterConversion.cpp) --------------------------------------------

// Converts the first frame or page of a raster file named in a drawing to a PNG file through the
// external "convert" command, then loads it and, for a brightness other than 50 (0..100), adjusts
// it and writes it back. False with a message on every failure.
bool ConvertToPNG(const std::string& inputName, const std::string& targetName, double brightness);
