// What a view draws: the database's entities. Every entity kind is drawable; the kind says how
// regeneration breaks it into primitives.
#pragma once

#include "kit/db/Entity.h"

using OdGiDrawable = Entity;
