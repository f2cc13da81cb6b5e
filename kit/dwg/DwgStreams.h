// The three streams one object (or the header section) is read from: values, strings (R2007 and
// later keep every string of an object in a stream of its own, in UTF-16) and handle references
// (kept after the values from R13 on, except in the header before R2007). Readers of objects ask
// for a value, a text or a handle and need not know where the release keeps it.
#pragma once

#include <cstdint>
#include <string>

#include "kit/base/Color.h"
#include "kit/db/Handle.h"
#include "kit/dwg/DwgBitReader.h"

class DxfTextDecoder;

// Releases by their AC10xx number.
enum DwgVersion : int {
  kDwgR13 = 1012,
  kDwgR14 = 1014,
  kDwgR2000 = 1015,
  kDwgR2004 = 1018,
  kDwgR2007 = 1021,
  kDwgR2010 = 1024,
  kDwgR2013 = 1027,
  kDwgR2018 = 1032,
};

// A colour as table records and some objects keep it (CMC): the index, and from R2004 the
// true colour and the optional colour book name.
struct DwgColor {
  OdCmEntityColor color;
  std::string bookName;
};

class DwgStreams {
public:
  DwgStreams(int version, const DxfTextDecoder* decoder) : version_(version), decoder_(decoder) {}

  int version() const { return version_; }
  bool atLeast(int v) const { return version_ >= v; }
  bool before(int v) const { return version_ < v; }

  DwgBitReader data;
  DwgBitReader strings;
  DwgBitReader handles;
  // Where strings and handles are read from: the streams above, or `data` itself.
  DwgBitReader& stringSource() { return separateStrings_ ? strings : data; }
  DwgBitReader& handleSource() { return separateHandles_ ? handles : data; }
  void useSeparateStrings(bool on) { separateStrings_ = on; }
  void useSeparateHandles(bool on) { separateHandles_ = on; }
  bool separateStrings() const { return separateStrings_; }

  // The handle relative references are counted from (the object's own).
  void setReferenceHandle(uint64_t handle) { reference_ = handle; }

  // A text value (TV) as UTF-8: code page bytes before R2007, UTF-16 after.
  std::string text();
  // Always code page bytes (T), whatever the release (some R2007+ fields keep them).
  std::string codePageText(DwgBitReader& from);
  // UTF-16 text: a character count, then the characters (TU).
  std::string unicodeText(DwgBitReader& from);
  // A handle reference from the handle stream, resolved to the handle it names.
  OdDbHandle handle();
  OdDbHandle handleFrom(DwgBitReader& from);
  // CMC: a colour index before R2004, index, RGB and names after.
  DwgColor color();
  // BE and BT: extrusion and thickness, with the R2000 shortcuts for the defaults.
  OdGeVector3d extrusion();
  double thickness();

  // True when some stream read past its end.
  bool overrun() const { return data.overrun() || strings.overrun() || handles.overrun(); }

  const DxfTextDecoder* decoder() const { return decoder_; }

private:
  int version_;
  const DxfTextDecoder* decoder_;
  bool separateStrings_ = false;
  bool separateHandles_ = false;
  uint64_t reference_ = 0;
  std::string scratch_;
};

// Converts UTF-16 code units (little-endian bytes) to UTF-8, pairing surrogates; lone ones
// become U+FFFD. Stops at a NUL.
void appendUtf16AsUtf8(const uint8_t* units, size_t count, std::string& out);
