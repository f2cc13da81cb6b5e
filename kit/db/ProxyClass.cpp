#include "kit/db/ProxyClass.h"

namespace {

constexpr int64_t kFirstClassNumber = 500;

}  // namespace

const DatabaseClass* proxyClass(const OdDbDatabase& db, const ProxyEntity& proxy) {
  for (const TaggedValue& v : proxy.data) {
    if (v.code != 91) continue;
    int64_t index = v.asInteger() - kFirstClassNumber;
    if (index < 0 || uint64_t(index) >= db.classes().size()) return nullptr;
    return &db.classes()[size_t(index)];
  }
  return nullptr;
}
