// The frame every object in the objects section shares: its size, type and handle, extended
// data, and for entities the common entity data (space, colour, linetype, lineweight, ...),
// followed in the handle stream by the owner, reactors, extension dictionary and, for entities,
// layer, linetype and the other common references. Reading the frame leaves the streams at the
// object's own data and handles.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kit/base/Color.h"
#include "kit/db/Handle.h"
#include "kit/db/TaggedValue.h"
#include "kit/dwg/DwgStreams.h"

struct DwgObjectFrame {
  uint32_t sizeBytes = 0;  // of the object data, without the size fields and the check sum
  uint16_t type = 0;
  OdDbHandle handle;

  // Extended data: application handle and the raw items, decoded by DwgExtendedData.
  struct ExtendedData {
    OdDbHandle application;
    std::string bytes;
  };
  std::vector<ExtendedData> extendedData;

  uint32_t reactorCount = 0;
  bool hasXDictionary = true;

  // Entities only.
  uint8_t entityMode = 0;  // 0 owner given, 1 paper space, 2 model space
  bool noLinks = true;
  bool byLayerLinetype = false;  // R13/R14
  OdCmEntityColor color;
  bool colorFromBook = false;
  OdCmTransparency transparency;
  double linetypeScale = 1.0;
  uint8_t linetypeFlags = 0;  // 0 by layer, 1 by block, 2 continuous, 3 handle given
  uint8_t plotStyleFlags = 0;
  uint8_t materialFlags = 0;
  uint8_t shadowFlags = 0;  // 3: a shadow handle follows the material's
  bool fullVisualStyle = false;
  bool faceVisualStyle = false;
  bool edgeVisualStyle = false;
  int16_t invisible = 0;
  int16_t lineweight = -1;
  uint32_t graphicsBytes = 0;
  size_t graphicsBit = 0;  // where the graphics start in the value stream

  // Common references.
  OdDbHandle owner;
  std::vector<OdDbHandle> reactors;
  OdDbHandle xdictionary;
  OdDbHandle layer;
  OdDbHandle linetype;
  OdDbHandle previous;
  OdDbHandle next;
  OdDbHandle plotStyle;
  OdDbHandle material;
  OdDbHandle visualStyle;
  OdDbHandle bookColour;  // the DBCOLOR of a colour-book colour
};

// Where an object's bytes are and what the map entry promised.
struct DwgObjectLocation {
  std::string_view objects;  // the objects section
  uint64_t offset = 0;       // of the object's size field
};

enum class DwgFrameResult { kOk, kOutside, kTooLarge };

// Sets up the streams over the object at `where` and reads its size and type; then
// readDwgObjectCommon reads the rest of the frame once the caller knows whether the type is an
// entity. `crcOk` tells whether the object's check sum matched.
DwgFrameResult openDwgObject(const DwgObjectLocation& where, DwgStreams& s, DwgObjectFrame& frame, bool& crcOk);
void readDwgObjectCommon(DwgStreams& s, DwgObjectFrame& frame, bool isEntity);
// An entity kept inside another (the text of R2018 multi-line attributes) repeats the common
// entity part from the entity mode on, with its references; the outer entity's values win.
void skipDwgEmbeddedEntityCommon(DwgStreams& s);

// Splits the bits of an object (or of a section from R2007) at `handleStart`: handles after it,
// values before it and, from R2007, the strings at the end of the values.
void splitDwgStreams(DwgStreams& s, const uint8_t* data, size_t sizeBytes, size_t handleStart);
