// Where the geometry sink sends its point lists and diagnostic dumps. Only outputPolyline has an
// effect in this system; the dump operations exist so that the sink can describe what it sees
// (text styles, colours, mesh data) to a dumper that chooses to listen.
#pragma once

#include <cstdint>

#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"

class OdGiTextStyle;
struct OdGiEdgeData;
struct OdGiFaceData;
struct OdGiVertexData;

class OdGiDumper {
public:
  virtual ~OdGiDumper() = default;
  virtual void outputLabel(const OdString& label) = 0;
  virtual void outputValue(const OdString& label, const OdString& value) = 0;
  virtual void outputPolyline(int32_t numPoints, const OdGePoint3d* points) = 0;
  virtual void outputTextStyle(const OdGiTextStyle* textStyle) = 0;
  virtual void outputEdgeData(const OdGiEdgeData* edgeData, int32_t numEdges) = 0;
  virtual void outputFaceData(const OdGiFaceData* faceData, int32_t numFaces) = 0;
  virtual void outputVertexData(const OdGiVertexData* vertexData, int32_t numVerts) = 0;
  virtual void outputColors(const int16_t* colors, int32_t count, const OdString& label) = 0;
  virtual void outputTrueColors(const uint32_t* colors, int32_t count, const OdString& label) = 0;
  virtual void outputLayers(const OdString* layers, int32_t count, const OdString& label) = 0;
  virtual void outputSelectionMarkers(const int64_t* markers, int32_t count, const OdString& label) = 0;
  virtual void outputVisibility(const uint8_t* visibility, int32_t count, const OdString& label) = 0;
  virtual void outputMappers(int32_t count, const OdString& label) = 0;
};
