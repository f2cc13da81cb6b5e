// Multi-line text settings that files before R2018 keep in the ACAD application's extended data
// rather than in the entity: the column layout and the defined height. DXF and DWG readers both
// apply them after the entity's own values.
#pragma once

#include "kit/db/DbObject.h"
#include "kit/db/Entities.h"

void applyMTextExtendedData(const DbObject& object, MTextData& m);
