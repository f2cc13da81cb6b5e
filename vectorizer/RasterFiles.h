// PNG files of the drawing's images, written next to the output and placed into the drawing.
#pragma once

#include <cstdint>

#include "kit/base/OdString.h"

class OdGiRasterImage;

// Images written so far in this process.
extern int32_t g_ImageCounter;

// The output path cut at its last ".", then "__", the next image number and ".png".
OdString NextImageFileName(const OdString& outputPath);

// Writes the image's pixels as a PNG file; false (traced) when its format is unknown or the save
// fails.
bool CreateRasterFile(const OdGiRasterImage& image, const OdString& fileName, int64_t& widthOut,
                      int64_t& heightOut, int depth, double scale);
