// The fixed text at the top of every SVG file: XML declaration, the svg element, the style sheet
// with its colour and line-type classes, and the metadata texts the viewer reads. The values are
// gathered by the driver (SvgDocument.cpp); this file only lays them out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SvgColourRule {
  int index = 0;
  std::string colour;  // "red", "rgb(12,34,56)"
};

struct SvgLineTypeRule {
  std::string cleanName;
  std::string dashArray;
};

struct SvgPageEntry {
  std::string fileName;  // already made safe for the file
  std::string pageName;
};

struct SvgHeaderValues {
  std::string programVersion;
  std::string generator;  // empty: the product's own name
  double pageWidth = 0, pageHeight = 0;  // W2, H2
  double viewWidth = 0, viewHeight = 0;  // W1, H1
  int outputVersion = 2;
  std::string backgroundColour = "white";
  double minLineWidth = 0.01;
  std::string postfix;  // three characters when the postfix flag is set, else empty
  std::vector<SvgColourRule> colourRules;
  std::vector<SvgLineTypeRule> lineTypeRules;

  bool hasWorldExtents = false;
  double worldMinX = 0, worldMinY = 0, worldMaxX = 0, worldMaxY = 0;
  bool hasExplicitOrigin = false;
  double originX = 0, originY = 0;
  std::string units;
  double svgToWorldUnits = 1.0;
  double svgMinX = 0, svgMinY = 0, svgMaxX = 0, svgMaxY = 0;  // E1
  std::int64_t drawingHeight = 0;

  std::string building;  // raw UTF-8, escaped when written
  std::string floor;
  std::vector<SvgPageEntry> pages;
  int currentPage = 1;
};

// Fixed texts of the file's maker.
extern const char* const kSvgMakerAddress;
extern const char* const kSvgMakerNamespace;

void AppendSvgHeader(std::string& out, const SvgHeaderValues& values);

// Parts of the header, exposed for the tests that pin their shape.
void AppendColourRules(std::string& out, const std::vector<SvgColourRule>& used);
void AppendLineTypeRules(std::string& out, const std::vector<SvgLineTypeRule>& rules);
void AppendMetadata(std::string& out, const SvgHeaderValues& values);
// The page list text; `idTail` follows "vistrel_multiPages" in its id.
void AppendPageList(std::string& out, const std::vector<SvgPageEntry>& pages, int currentPage,
                    const std::string& idTail);
// Writes the page list anew into a file written earlier in the run, keeping its id; false when the
// file cannot be read or written or holds no page list.
bool ReplacePageList(const std::string& path, const std::vector<SvgPageEntry>& pages, int currentPage);
