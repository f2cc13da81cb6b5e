#include "kit/db/ProxyClass.h"

namespace {

constexpr int64_t kFirstClassNumber = 500;
constexpr int64_t kProxyEntityClass = 498;
constexpr int64_t kProxyObjectClass = 499;

}  // namespace

const DatabaseClass* proxyClass(const OdDbDatabase& db, const TaggedValues& proxyGroups) {
  // The proxy class number (90) comes right before the application's (91).
  for (size_t i = 0; i + 1 < proxyGroups.size(); ++i) {
    const TaggedValue &proxy = proxyGroups[i], &application = proxyGroups[i + 1];
    if (proxy.code != 90 || application.code != 91) continue;
    if (proxy.asInteger() != kProxyEntityClass && proxy.asInteger() != kProxyObjectClass) continue;
    int64_t index = application.asInteger() - kFirstClassNumber;
    if (index < 0 || uint64_t(index) >= db.classes().size()) return nullptr;
    return &db.classes()[size_t(index)];
  }
  return nullptr;
}
