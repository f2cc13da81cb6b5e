// The order in which a block's entities are drawn: as stored, unless the block has a draw order
// table (SORTENTSTABLE), which gives entities a sort handle to be drawn by instead of their own.
#pragma once

#include <vector>

#include "kit/db/OdDbDatabase.h"

std::vector<const Entity*> entitiesInDrawOrder(const OdDbDatabase& db, const BlockRecord& block);
