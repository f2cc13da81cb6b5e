// The drawing properties of the primitives that follow: colour, layer, linetype, lineweight,
// fill and transparency. Regeneration sets them before an entity's primitives (resolved: never
// "by layer" or "by block"); a view is told when they change and reads them back.
#pragma once

#include <cstdint>

#include "kit/base/Color.h"

struct LayerRecord;
struct LinetypeRecord;

enum OdGiFillType { kOdGiFillAlways = 1, kOdGiFillNever = 2 };

struct OdGiSubEntityTraitsData {
  OdCmEntityColor trueColor = OdCmEntityColor::fromACI(7);  // an index colour or a true colour
  const LayerRecord* layer = nullptr;
  const LinetypeRecord* lineType = nullptr;  // the resolved linetype (dashes already applied)
  double lineTypeScale = 1.0;
  int16_t lineWeight = -3;  // hundredths of a millimetre, or -3 for the default weight
  OdGiFillType fillType = kOdGiFillNever;
  OdCmTransparency transparency;

  // The palette index of the colour (for a true colour the index it was saved with, else 0).
  int16_t color() const { return trueColor.colorIndex(); }
  bool operator==(const OdGiSubEntityTraitsData&) const = default;
};

class OdGiSubEntityTraits {
public:
  virtual ~OdGiSubEntityTraits() = default;
  virtual void setColor(int16_t colorIndex) = 0;
  virtual void setTrueColor(const OdCmEntityColor& color) = 0;
  virtual void setLayer(const LayerRecord* layer) = 0;
  virtual void setLineType(const LinetypeRecord* lineType, double scale) = 0;
  virtual void setLineWeight(int16_t lineWeight) = 0;
  virtual void setFillType(OdGiFillType fillType) = 0;
  virtual void setTransparency(const OdCmTransparency& transparency) = 0;
  virtual const OdGiSubEntityTraitsData& traits() const = 0;
};

// Traits kept in a plain record; a change marks them modified until the consumer has seen them.
class OdGiSubEntityTraitsImpl : public OdGiSubEntityTraits {
public:
  void setColor(int16_t colorIndex) override { update(data_.trueColor, OdCmEntityColor::fromACI(colorIndex)); }
  void setTrueColor(const OdCmEntityColor& color) override { update(data_.trueColor, color); }
  void setLayer(const LayerRecord* layer) override { update(data_.layer, layer); }
  void setLineType(const LinetypeRecord* lineType, double scale) override {
    update(data_.lineType, lineType);
    update(data_.lineTypeScale, scale);
  }
  void setLineWeight(int16_t lineWeight) override { update(data_.lineWeight, lineWeight); }
  void setFillType(OdGiFillType fillType) override { update(data_.fillType, fillType); }
  void setTransparency(const OdCmTransparency& transparency) override { update(data_.transparency, transparency); }
  void setAll(const OdGiSubEntityTraitsData& data) {
    if (!(data == data_)) {
      data_ = data;
      modified_ = true;
    }
  }
  const OdGiSubEntityTraitsData& traits() const override { return data_; }

  bool isModified() const { return modified_; }
  void setModified(bool value) { modified_ = value; }

private:
  template <class T>
  void update(T& field, const T& value) {
    if (!(field == value)) {
      field = value;
      modified_ = true;
    }
  }

  OdGiSubEntityTraitsData data_;
  bool modified_ = true;
};

// What a conveyor stage may ask about the entity being drawn.
class OdGiConveyorContext {
public:
  virtual ~OdGiConveyorContext() = default;
  virtual const OdGiSubEntityTraitsData& effectiveTraits() const = 0;
};
