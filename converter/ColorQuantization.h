// The colour quantisation the raster writers use when they reduce a picture to a palette. One value
// per process, set by the entry from the command line before the conversion starts.
#pragma once

extern int g_ColorQuantization;
