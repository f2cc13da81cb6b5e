// Where a single-line text's run starts and which way it goes: the alignment modes (left, centre,
// right, aligned, middle, fit with baseline, bottom, middle and top), the mirroring flags and the
// obliquing angle, worked out in the text's own plane.
#pragma once

#include "kit/db/Entities.h"

namespace gi {

struct TextRun {
  OdGePoint3d start;      // world (block) coordinates of the run's baseline start
  OdGeVector3d direction; // along the run, length height x width factor
  OdGeVector3d up;        // up the glyphs, length height (slanted by the obliquing angle)
  double height = 0.0;
  double widthFactor = 1.0;
};

// `advance` is the text's width in heights at width factor 1. `defaultHeight` stands in for a
// zero height. `descent` (in heights) is how far below the baseline "bottom" alignment puts the
// point: the font's descender for TrueType fonts.
TextRun placeText(const TextData& text, double advance, double defaultHeight, double defaultWidthFactor,
                  double descent = 1.0 / 3.0);

}  // namespace gi
