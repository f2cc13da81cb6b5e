// The conveyor: the one interface through which regeneration hands primitives to whatever draws
// them (a device's geometry sink, a transform or clip stage, an extents collector). Operations
// are declared in a fixed order, the order in which sinks override them.
#pragma once

#include <cstdint>
#include <vector>

#include "kit/base/Geometry.h"
#include "kit/base/OdString.h"
#include "kit/gi/GiCurves.h"
#include "kit/gi/OdGiTextStyle.h"

struct HatchEdge;

enum OdGiArcType { kOdGiArcSimple = 0, kOdGiArcSector = 1, kOdGiArcChord = 2 };

enum OdGiVisibility : uint8_t { kOdGiInvisible = 0, kOdGiVisible = 1, kOdGiSilhouette = 2 };

// Per-edge, per-face and per-vertex data of meshes and shells; any pointer may be null.
struct OdGiEdgeData {
  const uint8_t* visibility = nullptr;  // OdGiVisibility per edge
};
struct OdGiFaceData {
  const uint8_t* visibility = nullptr;  // OdGiVisibility per face
  const OdGeVector3d* normals = nullptr;
};
struct OdGiVertexData {
  const OdGeVector3d* normals = nullptr;
};

// A lightweight polyline as its entity keeps it: 2D points in the plane of `normal` at
// `elevation`, bulges and widths per vertex (empty when none).
struct OdGiPolyline {
  std::vector<OdGePoint2d> points;
  std::vector<double> bulges;
  std::vector<OdGePoint2d> widths;  // (start width, end width) per vertex
  double constantWidth = 0.0;
  double elevation = 0.0;
  OdGeVector3d normal{0.0, 0.0, 1.0};
  bool closed = false;

  double bulgeAt(size_t i) const { return i < bulges.size() ? bulges[i] : 0.0; }
  size_t numSegments() const { return points.size() < 2 ? 0 : (closed ? points.size() : points.size() - 1); }
  // Some vertex has a width of its own: the polyline is drawn as filled outlines, not as a line.
  bool hasVertexWidths() const;
};

// The pixels of a raster image as the conveyor hands them on. Rows run bottom-up. An image may
// come without rows (scanLines() null): a picture the device finds by itself, of this size.
class OdGiRasterImage {
public:
  virtual ~OdGiRasterImage() = default;
  virtual uint32_t pixelWidth() const = 0;
  virtual uint32_t pixelHeight() const = 0;
  virtual uint32_t colorDepth() const = 0;
  virtual uint32_t scanLineSize() const = 0;
  virtual uint32_t paletteDataSize() const = 0;
  virtual const uint8_t* paletteData() const = 0;  // BGRA entries
  virtual const uint8_t* scanLines() const = 0;
};

class OdGiMetafile;  // never produced by this kit's regeneration

class OdGiConveyorGeometry {
public:
  virtual ~OdGiConveyorGeometry();

  virtual void plineProc(const OdGiPolyline& polyline, const OdGeMatrix3d* transform = nullptr,
                         uint32_t fromIndex = 0, uint32_t numSegs = 0) = 0;
  virtual void polylineProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                            const OdGeVector3d* extrusion = nullptr, int64_t baseSubEntMarker = -1) = 0;
  virtual void polygonProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normal = nullptr,
                           const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void xlineProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) = 0;
  virtual void rayProc(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) = 0;
  virtual void meshProc(int32_t numRows, int32_t numColumns, const OdGePoint3d* vertexList,
                        const OdGiEdgeData* edgeData = nullptr, const OdGiFaceData* faceData = nullptr,
                        const OdGiVertexData* vertexData = nullptr) = 0;
  // faceList: per face its vertex count then the vertex indices; a negative count marks a hole
  // of the face before it.
  virtual void shellProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                         const int32_t* faceList, const OdGiEdgeData* edgeData = nullptr,
                         const OdGiFaceData* faceData = nullptr, const OdGiVertexData* vertexData = nullptr) = 0;
  virtual void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                          const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void circleProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                          const OdGeVector3d& startVector, const OdGeVector3d* extrusion);
  virtual void circleProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                          const OdGePoint3d& thirdPoint, const OdGeVector3d* extrusion = nullptr) = 0;
  // Counter-clockwise about `normal` from `startVector` through `sweepAngle` (negative sweeps
  // run clockwise).
  virtual void circularArcProc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                               const OdGeVector3d& startVector, double sweepAngle,
                               OdGiArcType arcType = kOdGiArcSimple, const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void circularArcProc(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint,
                               const OdGePoint3d& thirdPoint, OdGiArcType arcType = kOdGiArcSimple,
                               const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void ellipArcProc(const OdGeEllipArc3d& ellipArc, const OdGePoint3d* endPointOverrides = nullptr,
                            OdGiArcType arcType = kOdGiArcSimple, const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void nurbsProc(const OdGeNurbCurve3d& nurbsCurve) = 0;
  // A run of text at `position` (left end of the baseline): `direction` runs along the baseline,
  // its length the text height times the width factor; `upVector` runs up the glyphs (slanted by
  // the obliquing angle), its length the text height. `raw` texts carry no %% codes to interpret.
  virtual void textProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                        const OdChar* msg, int32_t numChars, bool raw, const OdGiTextStyle* textStyle,
                        const OdGeVector3d* extrusion = nullptr) = 0;
  virtual void textProc2(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                         const OdChar* msg, int32_t numChars, bool raw, const OdGiTextStyle* textStyle,
                         const OdGeVector3d* extrusion, const OdGeExtents3d* extentsBox);
  virtual void shapeProc(const OdGePoint3d& position, const OdGeVector3d& direction, const OdGeVector3d& upVector,
                         int shapeNumber, const OdGiTextStyle* textStyle, const OdGeVector3d* extrusion = nullptr) = 0;
  // An image with one pixel along u and v from origin (its lower left corner); uvBoundary, when
  // it has three points or more, is the clip outline in pixel coordinates (y down from the top
  // edge, pixel centres at whole numbers).
  virtual void rasterImageProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                               const OdGiRasterImage* image, const OdGePoint2d* uvBoundary, uint32_t numBoundPts,
                               bool transparency = false, double brightness = 50.0, double contrast = 50.0,
                               double fade = 0.0) = 0;
  virtual void metafileProc(const OdGePoint3d& origin, const OdGeVector3d& u, const OdGeVector3d& v,
                            const OdGiMetafile* metafile, bool dcAligned = true, bool allowClipping = false) = 0;
  virtual void xlineProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction);
  virtual void rayProc2(const OdGePoint3d& basePoint, const OdGeVector3d& direction);
  // Operations with defaults that sinks rarely override.
  virtual void setExtentsProc(const OdGePoint3d* newExtents, bool add = false);
  virtual void conveyorBoundaryInfoProc(const OdGeExtents3d& boundary, uint32_t& status);
  virtual void rowOfDotsProc(int32_t numPoints, const OdGePoint3d& startPoint, const OdGeVector3d& dirToNextPoint);
  virtual void worldLineProc(const OdGePoint3d& first, const OdGePoint3d& second);
  // Points: each becomes a one-point polyline unless a sink takes them otherwise.
  virtual void polypointProc(int32_t numPoints, const OdGePoint3d* vertexList, const OdGeVector3d* normals = nullptr);
  // TrueType glyph outlines (filled curves); nothing by default.
  virtual void ttfPolyDrawProc(int32_t numVertices, const OdGePoint3d* vertexList, int32_t faceListSize,
                               const int32_t* faceList, const uint8_t* bezierTypes, const OdGiFaceData* faceData);
  // A closed boundary of 2D edges (lines, arcs, elliptic arcs, splines), mapped by `transform`.
  virtual void edgeProc(const std::vector<HatchEdge>& edges, const OdGeMatrix3d* transform = nullptr);
};
