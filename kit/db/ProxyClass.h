// The application class an ACAD_PROXY_ENTITY or ACAD_PROXY_OBJECT stands for: its groups give
// the class number (91), counted from 500 in the drawing's class list.
#pragma once

#include "kit/db/Entities.h"
#include "kit/db/OdDbDatabase.h"

// The class, or null when the groups name none the drawing declares.
const DatabaseClass* proxyClass(const OdDbDatabase& db, const TaggedValues& proxyGroups);
inline const DatabaseClass* proxyClass(const OdDbDatabase& db, const ProxyEntity& proxy) {
  return proxyClass(db, proxy.data);
}
