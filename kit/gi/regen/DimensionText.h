// The text of a dimension drawn without its block: the measurement formatted the way the dimension
// variables say (units, precision, zero suppression, rounding, scale factor, prefix and suffix,
// tolerances), then merged with the user's text. The result is MText contents ("\S" stacks for
// tolerances and limits).
#pragma once

#include <string>

struct DimensionFormat {
  int linearUnit = 2;        // DIMLUNIT: 1 scientific, 2 decimal, 3 engineering, 4 architectural,
                             // 5 fractional, 6 decimal with the system's separator
  int decimals = 4;          // DIMDEC: decimal places, or the fraction's power of two
  int zeroSuppression = 0;   // DIMZIN: 0..3 feet/inches, 4 leading, 8 trailing
  double roundTo = 0.0;      // DIMRND
  double linearFactor = 1.0; // DIMLFAC
  char decimalSeparator = '.';  // DIMDSEP
  std::string post;          // DIMPOST: "<>" marks the measurement, otherwise a suffix
  int angularUnit = 0;       // DIMAUNIT: 0 degrees, 1 deg/min/sec, 2 grads, 3 radians, 4 surveyor
  int angularDecimals = 0;   // DIMADEC (-1: DIMDEC)
  int angularZeroSuppression = 0;  // DIMAZIN: 1 leading, 2 trailing
  bool tolerance = false;    // DIMTOL
  bool limits = false;       // DIMLIM
  double plus = 0.0;         // DIMTP
  double minus = 0.0;        // DIMTM
  int toleranceDecimals = 4; // DIMTDEC
  int toleranceZeroSuppression = 0;  // DIMTZIN
};

// A length (drawing units) as the dimension shows it, DIMLFAC and DIMRND applied, without DIMPOST.
std::string formatDimensionLength(double value, const DimensionFormat& format);
// An angle (radians) as an angular dimension shows it.
std::string formatDimensionAngle(double radians, const DimensionFormat& format);
// The whole text: the measurement (already formatted) with DIMPOST and the tolerance or limits,
// then the user's text where "<>" stands for it, "" means it alone and " " means no text.
std::string composeDimensionText(const std::string& userText, const std::string& measurement,
                                 const DimensionFormat& format, bool angular, double rawValue);
