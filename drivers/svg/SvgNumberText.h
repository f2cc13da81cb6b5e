// Number texts of the SVG writer. Everything appends to a caller's buffer: the writer formats
// millions of numbers per file and must not allocate for each one.
#pragma once

#include <string>

// The standard stream's default form: six significant digits, no trailing zeros, exponent form
// from 1e6 on ("841.89", "1.23457e+06").
void AppendDouble(std::string& out, double value);
std::string DoubleText(double value);

// Fixed notation with six decimals ("0.400000"), as dash lengths are written.
void AppendFixed6(std::string& out, double value);

// A coordinate in fixed notation with the given number of decimals, then trimmed: when the text
// holds ".00" anywhere its last three characters go, otherwise one trailing "0" goes; then a
// trailing "." goes. So 12.5 -> "12.5", 12 -> "12", -0.004 -> "-0" at two decimals. The odd cut
// (12.005 -> "12" at three decimals) is how coordinates have always been written; keep it.
void AppendCoordinate(std::string& out, double value, int precision);
std::string CoordinateText(double value, int precision);

// Values with ten significant digits (room areas).
void AppendDouble10(std::string& out, double value);
