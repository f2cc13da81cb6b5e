// The dumper of this system: diagnostic dumps are dropped, point lists become driver calls
// (lines, polylines, dots, circles found in tessellations, raster frames, background masks).
#pragma once

#include <vector>

#include "vectorizer/OdGiDumper.h"

class TRANS_BASE2;

class OdGiDumperImpl : public OdGiDumper {
public:
  void outputLabel(const OdString&) override {}
  void outputValue(const OdString&, const OdString&) override {}
  void outputPolyline(int32_t numPoints, const OdGePoint3d* points) override;
  void outputTextStyle(const OdGiTextStyle*) override {}
  void outputEdgeData(const OdGiEdgeData*, int32_t) override {}
  void outputFaceData(const OdGiFaceData*, int32_t) override {}
  void outputVertexData(const OdGiVertexData*, int32_t) override {}
  void outputColors(const int16_t*, int32_t, const OdString&) override {}
  void outputTrueColors(const uint32_t*, int32_t, const OdString&) override {}
  void outputLayers(const OdString*, int32_t, const OdString&) override {}
  void outputSelectionMarkers(const int64_t*, int32_t, const OdString&) override {}
  void outputVisibility(const uint8_t*, int32_t, const OdString&) override {}
  void outputMappers(int32_t, const OdString&) override {}
};

// The special point lists, each consuming its one-shot request; true when the list was drawn.
bool DrawRasterFrame(TRANS_BASE2& driver, int32_t numPoints, const OdGePoint3d* points);
bool DrawDetectedCircle(TRANS_BASE2& driver, int32_t numPoints, const OdGePoint3d* points);
// Paints a filled four-corner background mask in the background colour; returns the colour index
// to restore after drawing, or -1 when the list is no mask.
int BeginBackgroundMask(TRANS_BASE2& driver, const OdGePoint3d* points);
