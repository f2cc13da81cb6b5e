// What every entity carries besides its own geometry: layer, linetype, colour, lineweight,
// transparency, visibility. References to table records are plain pointers into the database's
// tables (never null once a reader has finished), so that regeneration resolves "by layer" and
// "by block" without lookups.
#pragma once

#include "kit/base/Color.h"
#include "kit/base/Geometry.h"
#include "kit/db/DbObject.h"

struct LayerRecord;
struct LinetypeRecord;

// Lineweights are hundredths of a millimetre, or one of these.
enum LineWeight : int16_t {
  kLnWtByLayer = -1,
  kLnWtByBlock = -2,
  kLnWtByLwDefault = -3,
};

struct Entity : DbObject {
  static bool isKind(DbType t) { return isEntityType(t); }
  explicit Entity(DbType t) : DbObject(t) {}

  enum EntityFlag : uint16_t {
    kInvisible = 1,   // group 60
    kPaperSpace = 2,  // group 67: drawn in paper space
  };

  LayerRecord* layer = nullptr;
  LinetypeRecord* linetype = nullptr;  // the BYLAYER record when the file names none
  OdCmEntityColor color;               // by layer unless the file says otherwise
  OdCmTransparency transparency;       // by layer unless the file says otherwise
  double linetypeScale = 1.0;
  int16_t lineweight = kLnWtByLayer;
  uint16_t entityFlags = 0;

  bool isVisible() const { return (entityFlags & kInvisible) == 0; }
  bool isInPaperSpace() const { return (entityFlags & kPaperSpace) != 0; }
};

// Base of each concrete entity kind: fixes the kind so that dbCast<> can check it.
template <DbType T>
struct EntityOf : Entity {
  static constexpr DbType kType = T;
  static bool isKind(DbType t) { return t == T; }
  EntityOf() : Entity(T) {}
};
