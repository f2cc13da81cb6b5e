// Hands the parsed parameters to the converter, in the one fixed order the converter relies on
// (a later setter may depend on an earlier one, e.g. the output file before the format).
#pragma once

class CParseCommandLine;
class CDm2017;

// Settles the drawing-size mode against the units: metric units with a US size mode mean DIN,
// imperial units with a DIN mode mean ANSI.
void AdjustDrawingSizeMode(CParseCommandLine& parameters);

void TransferParameters(CParseCommandLine& parameters, CDm2017& converter);
