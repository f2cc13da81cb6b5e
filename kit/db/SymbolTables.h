// Symbol tables and their records: layers, linetypes, text styles, dimension styles, views,
// viewport configurations, UCSs, registered applications and block records. Records live in the
// database's arena; a table keeps them in file order and finds them by name ignoring case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kit/base/OdString.h"
#include "kit/db/Entity.h"

struct TextStyleRecord;

struct SymbolTableRecord : DbObject {
  static bool isKind(DbType t) { return isSymbolRecordType(t); }
  explicit SymbolTableRecord(DbType t) : DbObject(t) {}

  enum RecordFlag : int16_t { kXrefDependent = 16, kXrefResolved = 32, kReferenced = 64 };

  std::string name;  // UTF-8
  int16_t flags = 0;  // group 70: record-specific low bits plus the xref bits above
  // Created on load because something referred to a record the file did not define.
  bool implicitlyCreated = false;

  bool isXrefDependent() const { return (flags & kXrefDependent) != 0; }
  // The name as the kit's wide string.
  OdString getName() const { return OdString(odDecodeUtf8(name.data(), name.size())); }
};

template <DbType T>
struct RecordOf : SymbolTableRecord {
  static constexpr DbType kType = T;
  static bool isKind(DbType t) { return t == T; }
  RecordOf() : SymbolTableRecord(T) {}
};

struct LinetypeDash {
  enum ShapeFlag : int16_t { kAbsoluteRotation = 1, kText = 2, kShape = 4 };
  double length = 0.0;  // > 0 dash, < 0 gap, 0 dot
  int16_t shapeFlags = 0;
  int16_t shapeNumber = 0;  // for shapes: the shape in the style's SHX file; for text: 0
  OdDbHandle styleHandle;   // text style holding the shape file or the text font
  TextStyleRecord* style = nullptr;
  double scale = 1.0;
  double rotation = 0.0;
  double offsetX = 0.0;
  double offsetY = 0.0;
  std::string text;

  bool hasShapeOrText() const { return (shapeFlags & (kText | kShape)) != 0; }
};

struct LinetypeRecord : RecordOf<DbType::kLinetype> {
  std::string description;
  int16_t alignment = 'A';
  double patternLength = 0.0;
  std::vector<LinetypeDash> dashes;

  bool isByLayer() const;
  bool isByBlock() const;
  // Continuous: no dashes (whatever the name).
  bool isContinuous() const { return dashes.empty(); }
};

struct LayerRecord : RecordOf<DbType::kLayer> {
  enum LayerFlag : int16_t { kFrozen = 1, kFrozenInNewViewports = 2, kLocked = 4 };

  OdCmEntityColor color = OdCmEntityColor::fromACI(7);
  LinetypeRecord* linetype = nullptr;
  int16_t lineweight = kLnWtByLwDefault;
  OdCmTransparency transparency;  // by alpha when the file sets it, else by layer (opaque)
  OdDbHandle plotStyle;
  OdDbHandle material;
  std::string description;
  bool off = false;        // a negative colour number in the file
  bool plottable = true;
  bool hidden = false;     // hidden from the layer manager (not a visibility state)

  bool isOff() const { return off; }
  bool isFrozen() const { return (flags & kFrozen) != 0; }
  bool isFrozenInNewViewports() const { return (flags & kFrozenInNewViewports) != 0; }
  bool isLocked() const { return (flags & kLocked) != 0; }
  bool isHidden() const { return hidden; }
  bool isPlottable() const { return plottable; }
  void setIsOff(bool value) { off = value; }
  void setIsFrozen(bool value) { setFlag(kFrozen, value); }
  void setIsLocked(bool value) { setFlag(kLocked, value); }
  void setIsHidden(bool value) { hidden = value; }
  void setIsFrozenInNewViewports(bool value) { setFlag(kFrozenInNewViewports, value); }

private:
  void setFlag(int16_t bit, bool value) { flags = int16_t(value ? (flags | bit) : (flags & ~bit)); }
};

struct TextStyleRecord : RecordOf<DbType::kTextStyle> {
  enum StyleFlag : int16_t { kShapeFile = 1, kVertical = 4 };
  std::string fontFile;     // SHX or TrueType file name as written
  std::string bigFontFile;  // SHX big font, empty when none
  std::string trueTypeFace; // family name of a TrueType font (extended data), empty when none
  int32_t trueTypeFlags = 0;  // bold, italic, charset and pitch as the extended data gives them
  double fixedHeight = 0.0;
  double widthFactor = 1.0;
  double obliqueAngle = 0.0;
  double lastHeight = 0.0;
  int16_t generationFlags = 0;  // 2 backwards, 4 upside down

  bool isShapeFile() const { return (flags & kShapeFile) != 0; }
  bool isVertical() const { return (flags & kVertical) != 0; }
  const std::string& getFileName() const { return fontFile; }
  const std::string& getBigFontFileName() const { return bigFontFile; }
};

// Dimension styles keep every dimension variable as its group code and value; the accessors read
// the ones regeneration needs with the defaults AutoCAD uses when a file omits them.
struct DimStyleRecord : RecordOf<DbType::kDimStyle> {
  TaggedValues values;

  const TaggedValue* find(int code) const;
  double real(int code, double fallback) const;
  int64_t integer(int code, int64_t fallback) const;
  OdDbHandle handleOf(int code) const;
  std::string text(int code) const;

  double dimscale() const { return real(40, 1.0); }
  double dimasz() const { return real(41, 0.18); }
  double dimexo() const { return real(42, 0.0625); }
  double dimexe() const { return real(44, 0.18); }
  double dimtxt() const { return real(140, 0.18); }
  double dimcen() const { return real(141, 0.09); }
  double dimgap() const { return real(147, 0.09); }
  OdDbHandle dimtxsty() const { return handleOf(340); }
  OdDbHandle dimblk() const { return handleOf(342); }
};

struct ViewRecord : RecordOf<DbType::kView> {
  enum ViewFlag : int16_t { kPaperSpace = 1 };
  OdGePoint2d center;  // DCS
  double height = 1.0;
  double width = 1.0;
  OdGeVector3d direction{0.0, 0.0, 1.0};
  OdGePoint3d target;
  double lensLength = 50.0;
  double frontClip = 0.0;
  double backClip = 0.0;
  double twist = 0.0;
  int16_t viewMode = 0;
  int16_t renderMode = 0;
  bool hasUcs = false;
  OdGePoint3d ucsOrigin;
  OdGeVector3d ucsXAxis{1.0, 0.0, 0.0};
  OdGeVector3d ucsYAxis{0.0, 1.0, 0.0};
  OdDbHandle visualStyle;

  bool isPaperspaceView() const { return (flags & kPaperSpace) != 0; }
};

// A viewport configuration record (the VPORT table); "*ACTIVE" is the current model view.
struct ViewportRecord : RecordOf<DbType::kViewportRecord> {
  OdGePoint2d lowerLeft;
  OdGePoint2d upperRight{1.0, 1.0};
  OdGePoint2d center;  // DCS
  OdGePoint2d snapBase;
  OdGePoint2d snapSpacing{1.0, 1.0};
  OdGePoint2d gridSpacing;
  OdGeVector3d viewDirection{0.0, 0.0, 1.0};
  OdGePoint3d target;
  double height = 1.0;       // view height
  double aspectRatio = 1.0;  // view width / height
  double lensLength = 50.0;
  double frontClip = 0.0;
  double backClip = 0.0;
  double snapRotation = 0.0;
  double twist = 0.0;
  int16_t viewMode = 0;
  int16_t circleSides = 100;
  int16_t renderMode = 0;
  OdGePoint3d ucsOrigin;
  OdGeVector3d ucsXAxis{1.0, 0.0, 0.0};
  OdGeVector3d ucsYAxis{0.0, 1.0, 0.0};

  double width() const { return height * aspectRatio; }
};

struct UcsRecord : RecordOf<DbType::kUcs> {
  OdGePoint3d origin;
  OdGeVector3d xAxis{1.0, 0.0, 0.0};
  OdGeVector3d yAxis{0.0, 1.0, 0.0};
  double elevation = 0.0;
};

struct RegAppRecord : RecordOf<DbType::kRegApp> {};

// A block: its table record and its definition (BLOCK ... ENDBLK) in one.
struct BlockRecord : RecordOf<DbType::kBlockRecord> {
  enum BlockFlag : int16_t {
    kAnonymous = 1, kHasAttributes = 2, kExternal = 4, kOverlay = 8, kXrefDependentBlock = 16,
    kResolved = 32, kReferencedXref = 64,
  };
  int16_t blockFlags = 0;  // BLOCK group 70
  OdGePoint3d basePoint;
  std::string xrefPath;
  std::string description;
  OdDbHandle layout;  // the LAYOUT object of model and paper space blocks
  int16_t insertUnits = 0;
  bool explodable = true;
  bool scaleUniformly = false;
  LayerRecord* blockLayer = nullptr;  // the layer of the BLOCK entity itself
  std::vector<Entity*> entities;      // in drawing order as stored
  OdDbHandle beginHandle;             // BLOCK entity
  OdDbHandle endHandle;               // ENDBLK entity
  bool hasDefinition = false;         // a BLOCK ... ENDBLK was read
  bool hasTableRecord = false;        // a BLOCK_RECORD was read

  bool isAnonymous() const { return (blockFlags & kAnonymous) != 0 || (!name.empty() && name[0] == '*'); }
  bool isFromExternalReference() const { return (blockFlags & (kExternal | kOverlay)) != 0; }
  bool isModelSpace() const;
  // *Paper_Space, *Paper_Space0, ...
  bool isPaperSpace() const;
  bool isLayout() const { return !layout.isNull() || isModelSpace() || isPaperSpace(); }
};

// A table: its own handle (files give tables one), its records in order and a name index.
class SymbolTableBase : public DbObject {
public:
  explicit SymbolTableBase(DbType recordType) : DbObject(DbType::kSymbolTable), recordType_(recordType) {}
  static bool isKind(DbType t) { return t == DbType::kSymbolTable; }
  DbType recordType() const { return recordType_; }

protected:
  static std::string nameKey(std::string_view name) { return toUpperAscii(name); }

private:
  DbType recordType_;
};

template <class Record>
class SymbolTable : public SymbolTableBase {
public:
  SymbolTable() : SymbolTableBase(Record::kType) {}

  size_t size() const { return records_.size(); }
  bool empty() const { return records_.empty(); }
  Record* operator[](size_t i) const { return records_[i]; }
  auto begin() const { return records_.begin(); }
  auto end() const { return records_.end(); }

  Record* find(std::string_view name) const {
    auto it = byName_.find(nameKey(name));
    return it == byName_.end() ? nullptr : it->second;
  }
  // Appends the record; a second record of the same name stays in the list but the name keeps
  // finding the first one.
  void add(Record* record) {
    records_.push_back(record);
    byName_.emplace(nameKey(record->name), record);
  }
  void rename(Record* record, std::string newName) {
    auto it = byName_.find(nameKey(record->name));
    if (it != byName_.end() && it->second == record) byName_.erase(it);
    record->name = std::move(newName);
    byName_.emplace(nameKey(record->name), record);
  }
  void remove(Record* record) {
    auto it = byName_.find(nameKey(record->name));
    if (it != byName_.end() && it->second == record) byName_.erase(it);
    std::erase(records_, record);
    for (Record* r : records_) {
      if (equalsIgnoringCase(r->name, record->name)) {
        byName_.emplace(nameKey(r->name), r);
        break;
      }
    }
  }

private:
  std::vector<Record*> records_;
  std::unordered_map<std::string, Record*> byName_;
};
