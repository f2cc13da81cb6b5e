// The ACIS model of a REGION, 3DSOLID, BODY or surface entity: from its binary data when it has
// some, otherwise from the SAT text of its groups 1 (a line each) and 3 (the rest of a long line).
#pragma once

#include "kit/db/Entities.h"
#include "kit/gi/acis/AcisRecords.h"

AcisModel acisModelOf(const ModelerGeometryEntity& entity);
