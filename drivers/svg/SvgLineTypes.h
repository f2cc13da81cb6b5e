// Line-type names and dash patterns as the SVG writer writes them: class names "sLt_" + the
// cleaned name, and stroke-dasharray lists.
#pragma once

#include <string>
#include <vector>

// Blanks, brackets, quotes and the other characters that cannot stand in a class name become
// "_"; the result is UTF-8 in upper case. Characters XML forbids are dropped.
std::string CleanSvgName(const std::wstring& name);

// One value per dash, separated by one blank, each in fixed notation with six decimals: a dot
// (dash 0) becomes the minimum line width when that is above 0.4, else 0.4; any other dash d
// becomes |scale * d| / 0.0625. Values that are not finite numbers are written as 0.
std::string DashArrayText(const std::vector<double>& dashes, double scale, double minLineWidth);
