// The text style a text run is drawn with, as the conveyor carries it: font files and TrueType
// description, size, width factor, obliquing and the drawing flags.
#pragma once

#include "kit/base/OdString.h"

class OdGiTextStyle {
public:
  const OdString& typeface() const { return typeface_; }
  const OdString& fileName() const { return fileName_; }
  const OdString& bigFontFileName() const { return bigFontFileName_; }
  bool isBold() const { return bold_; }
  bool isItalic() const { return italic_; }
  int charset() const { return charset_; }
  int pitchAndFamily() const { return pitchAndFamily_; }
  double textSize() const { return textSize_; }
  double xScale() const { return xScale_; }
  double obliquingAngle() const { return obliquingAngle_; }
  bool isVertical() const { return vertical_; }
  bool isBackward() const { return backward_; }
  bool isUpsideDown() const { return upsideDown_; }
  bool isUnderlined() const { return underlined_; }
  bool isOverlined() const { return overlined_; }
  bool isStruckThrough() const { return struckThrough_; }
  bool isShapeFile() const { return shapeFile_; }
  // A TrueType font: a typeface name, or a font file that is not an SHX file.
  bool isTtfFont() const;
  bool isShxFont() const { return !isTtfFont(); }

  void setTypeface(const OdString& name, bool bold = false, bool italic = false, int charset = 0,
                   int pitchAndFamily = 0) {
    typeface_ = name;
    bold_ = bold;
    italic_ = italic;
    charset_ = charset;
    pitchAndFamily_ = pitchAndFamily;
  }
  void setFileName(const OdString& name) { fileName_ = name; }
  void setBigFontFileName(const OdString& name) { bigFontFileName_ = name; }
  void setTextSize(double size) { textSize_ = size; }
  void setXScale(double scale) { xScale_ = scale; }
  void setObliquingAngle(double angle) { obliquingAngle_ = angle; }
  void setVertical(bool value) { vertical_ = value; }
  void setBackward(bool value) { backward_ = value; }
  void setUpsideDown(bool value) { upsideDown_ = value; }
  void setUnderlined(bool value) { underlined_ = value; }
  void setOverlined(bool value) { overlined_ = value; }
  void setStruckThrough(bool value) { struckThrough_ = value; }
  void setShapeFile(bool value) { shapeFile_ = value; }

private:
  OdString typeface_;
  OdString fileName_;
  OdString bigFontFileName_;
  bool bold_ = false;
  bool italic_ = false;
  int charset_ = 0;
  int pitchAndFamily_ = 0;
  double textSize_ = 0.0;
  double xScale_ = 1.0;
  double obliquingAngle_ = 0.0;
  bool vertical_ = false;
  bool backward_ = false;
  bool upsideDown_ = false;
  bool underlined_ = false;
  bool overlined_ = false;
  bool struckThrough_ = false;
  bool shapeFile_ = false;
};
