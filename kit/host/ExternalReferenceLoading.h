// Loading the drawings that a freshly read database's external references name, and theirs in
// turn. Each file is read once however many references name it, and the loaded drawings stay
// with the database that references them (kit/db/ExternalReference.h).
//
// A reference is looked up through the host services' findFile, with the referencing database
// given so that the search can start beside that drawing. Overlays are followed only from the
// drawing being loaded, not from the drawings it references; a reference back into the chain
// of drawings being loaded, or one nested deeper than kMaxXrefNesting, is not followed. Every
// reference that cannot be drawn for want of its file is reported once through the services'
// warning().
#pragma once

#include "kit/db/OdDbDatabase.h"

class OdDbHostAppServices;

constexpr int kMaxXrefNesting = 16;

void loadExternalReferences(OdDbDatabase& db, OdDbHostAppServices& services);
