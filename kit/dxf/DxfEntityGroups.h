// The group loop every entity reader shares. It reads an entity's groups up to the next "0" tag
// and takes the ones every entity has (handle, owner, layer, linetype, colour, lineweight,
// transparency, visibility, space, application groups, extended data), handing the rest to the
// entity's own reader.
//
// Before the entity's own subclass marker (and in R12 files, which have no markers) the common
// groups win; after it the entity's own reading of a code wins, and the common meaning is only a
// fallback for writers that misplace their groups.
#pragma once

#include "kit/dxf/DxfLoader.h"

// Takes one common entity group; false when the code is not one of them.
bool readCommonEntityGroup(DxfLoader& in, Entity& e, bool& ownerSeen, bool& trueColorSeen);

template <class E, class Specific>
void readEntityGroups(DxfLoader& in, E& e, Specific&& specific) {
  bool ownerSeen = false;
  bool trueColorSeen = false;
  bool commonZone = true;
  in.subclass = std::string_view();
  while (in.next()) {
    const int code = in.tag.code;
    if (code == 0) {
      in.pushBack();
      return;
    }
    if (code == 100) {
      in.subclass = in.tag.trimmed();
      commonZone = in.subclass == "AcDbEntity";
      specific(100);  // entities that track their subclasses see the marker too
      continue;
    }
    if (code == 102) {
      in.readApplicationGroup(e);
      continue;
    }
    if (code >= 1000) {
      in.readExtendedData(e);
      continue;
    }
    if (commonZone && readCommonEntityGroup(in, e, ownerSeen, trueColorSeen)) continue;
    if (specific(code)) continue;
    if (!commonZone) readCommonEntityGroup(in, e, ownerSeen, trueColorSeen);
  }
}

// Entity readers, one per kind or family (DxfEntities*.cpp). Each is called just after the
// "0 NAME" tag and returns the new entity with its handle adopted.
Entity* readLineEntity(DxfLoader& in);
Entity* readPointEntity(DxfLoader& in);
Entity* readCircleEntity(DxfLoader& in);
Entity* readArcEntity(DxfLoader& in);
Entity* readEllipseEntity(DxfLoader& in);
Entity* readLwPolylineEntity(DxfLoader& in);
Entity* readPolylineEntity(DxfLoader& in);  // with its VERTEX records and SEQEND
Entity* readSplineEntity(DxfLoader& in);
Entity* readHelixEntity(DxfLoader& in);
Entity* readXLineEntity(DxfLoader& in);
Entity* readRayEntity(DxfLoader& in);
Entity* readSolidEntity(DxfLoader& in);
Entity* readTraceEntity(DxfLoader& in);
Entity* readFaceEntity(DxfLoader& in);
Entity* readTextEntity(DxfLoader& in);
Entity* readMTextEntity(DxfLoader& in);
Entity* readAttributeEntity(DxfLoader& in);
Entity* readAttributeDefinitionEntity(DxfLoader& in);
Entity* readShapeEntity(DxfLoader& in);
Entity* readToleranceEntity(DxfLoader& in);
Entity* readBlockReferenceEntity(DxfLoader& in);  // with its ATTRIB records and SEQEND
Entity* readDimensionEntity(DxfLoader& in);
Entity* readLeaderEntity(DxfLoader& in);
Entity* readMLeaderEntity(DxfLoader& in);
Entity* readTableEntity(DxfLoader& in);
Entity* readHatchEntity(DxfLoader& in);
Entity* readMPolygonEntity(DxfLoader& in);
Entity* readImageEntity(DxfLoader& in);
Entity* readWipeoutEntity(DxfLoader& in);
Entity* readViewportEntity(DxfLoader& in);
Entity* readOle2FrameEntity(DxfLoader& in);
Entity* readMLineEntity(DxfLoader& in);
Entity* readUnderlayEntity(DxfLoader& in, UnderlayEntity::Format format);
Entity* readModelerGeometryEntity(DxfLoader& in, std::string_view dxfName);
Entity* readMeshEntity(DxfLoader& in);
Entity* readProxyEntity(DxfLoader& in, std::string_view dxfName);

// Reads "0 SEQEND" when it follows, returning its handle (null when the file left it out).
OdDbHandle readSequenceEnd(DxfLoader& in);

// A hard limit on the records one entity may hold (vertices, edges, knots), so that a file that
// claims absurd counts cannot exhaust memory before it runs out of data.
constexpr size_t kMaxRecordCount = 50'000'000;
