#include "converter/DrawingUnits.h"

const char* DrawingUnitsName(int insUnits, int measurement) {
  switch (insUnits) {
    case 1: return "in";
    case 2: return "ft";
    case 3: return "mi";
    case 4: return "mm";
    case 5: return "cm";
    case 6: return "m";
    case 10: return "yd";
    default: return measurement == 1 ? "mm" : "in";
  }
}

double MillimetreFactor(int insUnits) {
  switch (insUnits) {
    case 2: return 1.0 / 304.8;
    case 3: return 6.213711922373341e-7;
    case 5: return 0.1;
    case 6: return 0.001;
    case 7: return 1e-6;
    default: return 1.0 / 25.4;
  }
}

int UnitsFromDrawing(int insUnits, int measurement) {
  switch (insUnits) {
    case 1: return 1;
    case 2: return 2;
    case 10: return 3;
    case 3: return 4;
    case 4: return 5;
    case 5: return 6;
    case 6: return 7;
    default: return measurement == 1 ? 5 : 1;
  }
}
