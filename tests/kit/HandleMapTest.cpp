// The handle index: lookups after many inserts and erases (erasing must keep every other key
// reachable through the probe chains it sat in), duplicates refused, handle 0 never stored.
#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

#include "kit/db/DbObject.h"
#include "kit/db/HandleMap.h"

TEST(HandleMap, AgreesWithAReferenceMapThroughInsertsAndErases) {
  HandleMap map;
  std::unordered_map<uint64_t, DbObject*> reference;
  std::vector<DbObject> objects(64, DbObject(DbType::kUnknown));
  std::mt19937_64 random(7);
  // Small handles (kept in the flat part as it grows) and huge ones (kept hashed), in few
  // enough values that probe chains are long and keys come and go often.
  auto keyAt = [](uint64_t i) { return i < 3000 ? 1 + i : (uint64_t(1) << 40) + i; };
  for (int step = 0; step < 200000; ++step) {
    uint64_t key = keyAt(random() % 6000);
    DbObject* object = &objects[random() % objects.size()];
    if (random() % 3 == 0) {
      EXPECT_EQ(map.erase(OdDbHandle(key)), reference.erase(key) == 1);
    } else {
      bool inserted = map.insert(OdDbHandle(key), object);
      EXPECT_EQ(inserted, reference.emplace(key, object).second);
    }
  }
  EXPECT_EQ(map.size(), reference.size());
  for (uint64_t i = 0; i < 6000; ++i) {
    uint64_t key = keyAt(i);
    auto it = reference.find(key);
    EXPECT_EQ(map.find(OdDbHandle(key)), it == reference.end() ? nullptr : it->second) << key;
  }
}

TEST(HandleMap, ScatteredHugeHandlesStayHashed) {
  HandleMap map;
  DbObject object(DbType::kUnknown);
  for (uint64_t i = 1; i <= 1000; ++i) EXPECT_TRUE(map.insert(OdDbHandle(i * 1000003), &object));
  EXPECT_EQ(map.size(), 1000u);
  for (uint64_t i = 1; i <= 1000; ++i) EXPECT_EQ(map.find(OdDbHandle(i * 1000003)), &object);
  EXPECT_EQ(map.find(OdDbHandle(1000002)), nullptr);
}

TEST(HandleMap, RefusesTheNullHandle) {
  HandleMap map;
  DbObject object(DbType::kUnknown);
  EXPECT_FALSE(map.insert(OdDbHandle(), &object));
  EXPECT_EQ(map.find(OdDbHandle()), nullptr);
  EXPECT_EQ(map.size(), 0u);
}

TEST(Handle, ParsesAndPrintsHexadecimal) {
  EXPECT_EQ(OdDbHandle::fromHex(" 1bD\r").value(), 0x1BDu);
  EXPECT_EQ(OdDbHandle::fromHex("FFFFFFFFFFFFFFFF").value(), ~uint64_t(0));
  EXPECT_TRUE(OdDbHandle::fromHex("10000000000000000").isNull());  // 17 digits
  EXPECT_TRUE(OdDbHandle::fromHex("12G").isNull());
  EXPECT_TRUE(OdDbHandle::fromHex("").isNull());
  EXPECT_EQ(OdDbHandle(0x1BD).toHex(), "1BD");
  EXPECT_EQ(OdDbHandle().toHex(), "0");
}
