// Vertices kept for the assembly: each is taken once, whole, across chunk boundaries, also
// after the chunks before it are gone.
#include <gtest/gtest.h>

#include "kit/dwg/DwgVertexStore.h"

TEST(DwgVertexStore, EveryVertexIsTakenOnceWithItsValues) {
  DwgVertexStore store;
  const size_t n = 1000;  // several chunks and a partial last one
  for (size_t i = 0; i < n; ++i) store.add().position = OdGePoint3d(double(i), 0.0, 0.0);
  ASSERT_EQ(store.size(), n);
  // In order, as the assembly takes them, then a few again.
  for (size_t i = 0; i < n; ++i) EXPECT_EQ(store.take(i).position.x, double(i)) << i;
  EXPECT_EQ(store.take(0).position.x, 0.0);
  EXPECT_EQ(store.take(n - 1).position.x, 0.0);
  EXPECT_EQ(store.take(n + 5).position.x, 0.0);
  store.add().position.x = 7.0;  // the last chunk is still there
  EXPECT_EQ(store.take(n).position.x, 7.0);
  store.clear();
  EXPECT_EQ(store.size(), 0u);
}

TEST(DwgVertexStore, VerticesTakenOutOfOrderStayIntact) {
  DwgVertexStore store;
  for (int i = 0; i < 600; ++i) store.add().bulge = i;
  for (int i = 599; i >= 0; i -= 2) EXPECT_EQ(store.take(size_t(i)).bulge, i);
  for (int i = 0; i < 600; i += 2) EXPECT_EQ(store.take(size_t(i)).bulge, i);
}
