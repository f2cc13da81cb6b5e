// Entities of classes the kit does not read keep their data as AutoCAD writes proxies to DXF.
// The DWG of a drawing and AutoCAD's DXF of it agree on every group, except where AutoCAD
// writes its own: it draws some proxy graphics again (text records lose their font names),
// and it pads the last byte of the data its own way.
#include <gtest/gtest.h>

#include "kit/db/Entities.h"
#include "kit/dxf/DxfReader.h"
#include "tests/kit/DwgTestSupport.h"

namespace {

struct ProxyParts {
  std::vector<std::string> groups;  // everything but the graphics, with the data's last byte cut
  std::string graphics;
  int64_t graphicsBytes = -1;
};

ProxyParts parts(const ProxyEntity& e) {
  ProxyParts p;
  int section = 0;  // the size group the chunks follow
  for (size_t i = 0; i < e.data.size(); ++i) {
    const TaggedValue& v = e.data[i];
    if (v.code == 92 || v.code == 160 || v.code == 161 || v.code == 162 || v.code == 93) section = v.code;
    if (section == 92 || section == 160) {
      if (v.code == section) p.graphicsBytes = v.asInteger();
      else p.graphics += v.text;
      continue;
    }
    std::string text = v.asText();
    bool lastChunk = (v.code == 310 || v.code == 311) && (i + 1 == e.data.size() || e.data[i + 1].code != v.code);
    if (lastChunk && text.size() >= 2) text.resize(text.size() - 2);
    p.groups.push_back(std::to_string(v.code) + "=" + text);
  }
  return p;
}

TEST(DwgProxyData, ProxiesOfAnUnknownApplicationMatchAutoCadsDxf) {
  OdDbDatabasePtr dwg = readDwgFile(corpusPath("dwg/2013/gh109_1.dwg"));
  OdDbDatabasePtr dxf = readDxfFile(corpusPath("dwg/2013/gh109_1.dxf"));
  size_t compared = 0, sameSize = 0, sameGraphics = 0;
  for (const BlockRecord* block : dxf->blocks()) {
    for (const Entity* e : block->entities) {
      const auto* x = dbCast<ProxyEntity>(e);
      if (!x) continue;
      const auto* w = dbCast<ProxyEntity>(dwg->find(e->handle));
      ASSERT_NE(w, nullptr) << e->handle.toHex();
      EXPECT_EQ(w->dxfName, x->dxfName);
      ProxyParts a = parts(*w), b = parts(*x);
      EXPECT_EQ(a.groups, b.groups) << e->handle.toHex();
      EXPECT_GT(a.graphicsBytes, 0) << e->handle.toHex();
      if (a.graphicsBytes == b.graphicsBytes) ++sameSize;
      if (a.graphics == b.graphics) ++sameGraphics;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 25u);
  EXPECT_GE(sameSize, 22u);
  EXPECT_GE(sameGraphics, 17u);
}

// Objects of an application's classes (a mapping program's managers here) kept as proxy
// objects: the same groups as AutoCAD's DXF gives them, but for the last byte of the data.
TEST(DwgProxyData, ProxyObjectsMatchAutoCadsDxf) {
  OdDbDatabasePtr dwg = readDwgFile(corpusPath("dwg/2010/gh209_1.dwg"));
  OdDbDatabasePtr dxf = readDxfFile(corpusPath("dwg/2010/gh209_1.dxf"));
  size_t compared = 0;
  for (const DbObject* o : dxf->objects()) {
    const auto* x = dbCast<GenericObject>(o);
    if (!x || x->dxfName != "ACAD_PROXY_OBJECT") continue;
    const auto* w = dbCast<GenericObject>(dwg->find(o->handle));
    ASSERT_NE(w, nullptr) << o->handle.toHex();
    EXPECT_EQ(w->dxfName, x->dxfName);
    ProxyEntity a, b;  // the same groups, read as the entity form is
    a.data = w->data;
    b.data = x->data;
    EXPECT_EQ(parts(a).groups, parts(b).groups) << o->handle.toHex();
    ++compared;
  }
  EXPECT_EQ(compared, 3u);
}

}  // namespace
