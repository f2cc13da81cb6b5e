// What the drawing's INSUNITS and MEASUREMENT header values mean for the output: the unit name the
// driver writes, the millimetre factor of the per-view scale, and the converter's units code.
#pragma once

// "in", "ft", "mi", "mm", "cm", "m", "yd"; other INSUNITS values fall back to "mm" for metric
// drawings and "in" otherwise.
const char* DrawingUnitsName(int insUnits, int measurement);
// Factor that turns drawing units into the scale's unit (inches unless the drawing says otherwise).
double MillimetreFactor(int insUnits);
// The converter's units code (1 inch, 2 foot, 3 yard, 4 mile, 5 mm, 6 cm, 7 m) for the drawing.
int UnitsFromDrawing(int insUnits, int measurement);
