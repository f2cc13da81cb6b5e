// Proxy graphics: records read from hand-made data (padding, Unicode, transforms, damage), a
// proxy drawn through a view, and the graphics of real proxies in the corpus.
#include <gtest/gtest.h>

#include <cstring>

#include "kit/gi/ProxyGraphics.h"
#include "tests/kit/DwgTestSupport.h"
#include "tests/kit/GsTestSupport.h"

namespace {

using Kind = ProxyGraphicsItem::Kind;

// Writes graphics data record by record.
class Graphics {
public:
  Graphics& rl(uint32_t v) {
    for (int i = 0; i < 4; ++i) record_ += char(v >> (8 * i));
    return *this;
  }
  Graphics& rd(double v) {
    uint64_t bits;
    std::memcpy(&bits, &v, 8);
    for (int i = 0; i < 8; ++i) record_ += char(bits >> (8 * i));
    return *this;
  }
  Graphics& point(double x, double y, double z = 0.0) { return rd(x).rd(y).rd(z); }
  Graphics& bytes(std::string_view raw) {
    record_ += raw;
    while (record_.size() % 4) record_ += '\0';
    return *this;
  }
  // Ends the record under construction as one of `type`.
  Graphics& end(uint32_t type, int32_t sizeChange = 0) {
    std::string head;
    uint32_t size = uint32_t(int32_t(record_.size() + 8) + sizeChange);
    for (uint32_t v : {size, type})
      for (int i = 0; i < 4; ++i) head += char(v >> (8 * i));
    records_ += head + record_;
    record_.clear();
    ++count_;
    return *this;
  }
  std::string data() const {
    Graphics header;
    header.rl(uint32_t(records_.size() + 8)).rl(count_);
    return header.record_ + records_;
  }

private:
  std::string record_, records_;
  uint32_t count_ = 0;
};

TEST(ProxyGraphics, RecordsDecodeWithTheirValues) {
  Graphics g;
  g.point(0, 0).point(1, 1).end(1);                                 // extents: not drawn
  g.rl(3).point(0, 0).point(10, 0).point(10, 5).end(6);             // polyline
  g.point(5, 5).rd(2).point(0, 0, 1).end(2);                        // circle
  g.point(1, 0).point(0, 1).point(-1, 0).rl(0).end(5);              // arc through three points
  g.rl(1).end(14);                                                  // colour 1
  g.rl(0xC2102030).end(22);                                         // true colour
  g.point(1, 2).point(0, 0, 1).point(0, 1).rd(2.5).rd(0.8).rd(0).bytes(std::string("AB\0", 3)).end(10);
  g.point(3, 4).point(0, 0, 1).point(1, 0).bytes(std::string("\x34\x6C\x00\x00", 4)).rl(0xFFFFFFFF).rl(0)
      .rd(1.5).rd(1).rd(0).rd(0).rl(0).rl(0).rl(0).rl(0).rl(0).end(38);  // Unicode text: U+6C34
  std::vector<ProxyGraphicsItem> items = parseProxyGraphics(g.data(), nullptr);
  ASSERT_EQ(items.size(), 7u);
  EXPECT_EQ(items[0].kind, Kind::kPolyline);
  EXPECT_EQ(items[0].points.size(), 3u);
  EXPECT_EQ(items[0].points[2].y, 5.0);
  EXPECT_EQ(items[1].kind, Kind::kArc);
  EXPECT_EQ(items[1].radius, 2.0);
  EXPECT_NEAR(items[1].sweep, 2 * M_PI, 1e-12);
  EXPECT_NEAR(items[2].radius, 1.0, 1e-12);
  EXPECT_NEAR(items[2].sweep, M_PI, 1e-12);  // the upper half, from (1,0) through (0,1)
  EXPECT_EQ(items[3].color, OdCmEntityColor::fromACI(1));
  EXPECT_EQ(items[4].color, OdCmEntityColor::fromRGB(0x10, 0x20, 0x30));
  EXPECT_EQ(items[5].kind, Kind::kText);
  EXPECT_EQ(items[5].text, "AB");
  EXPECT_EQ(items[5].height, 2.5);
  EXPECT_EQ(items[5].widthFactor, 0.8);
  EXPECT_EQ(items[6].text, "\u6C34");
  EXPECT_EQ(items[6].height, 1.5);
}

TEST(ProxyGraphics, DamageStopsOrSkipsWithoutReadingPastTheData) {
  Graphics counts;
  counts.rl(1000000).point(0, 0).end(6);     // more points than the record holds: skipped
  counts.rl(2).point(0, 0).point(1, 1).end(6);
  EXPECT_EQ(parseProxyGraphics(counts.data(), nullptr).size(), 1u);

  Graphics oversize;
  oversize.rl(2).point(0, 0).point(1, 1).end(6);
  oversize.rl(2).point(0, 0).point(1, 1).end(6, 4000);  // claims more than there is: the rest goes
  EXPECT_EQ(parseProxyGraphics(oversize.data(), nullptr).size(), 1u);

  Graphics unterminated;
  unterminated.point(0, 0).point(0, 0, 1).point(1, 0).rd(1).rd(1).rd(0).bytes("ABCD").end(10);
  ASSERT_EQ(parseProxyGraphics(unterminated.data(), nullptr).size(), 1u);
  std::string data = counts.data();
  for (size_t cut = 0; cut < data.size(); ++cut) parseProxyGraphics(std::string_view(data).substr(0, cut), nullptr);
}

// A proxy in model space carrying `g`, drawn by a view at one device unit per drawing unit.
std::vector<RecordedCall> drawProxy(GsRig& rig, const Graphics& g, const char* kind) {
  BlockRecord& model = *rig.db->modelSpace();
  auto* proxy = addEntity<ProxyEntity>(*rig.db, model);
  proxy->dxfName = "ACAD_PROXY_ENTITY";
  std::string bytes = g.data(), hex;
  for (unsigned char c : bytes) hex += "0123456789ABCDEF"[c >> 4], hex += "0123456789ABCDEF"[c & 15];
  proxy->data = {TaggedValue::ofInteger(90, 498), TaggedValue::ofInteger(92, int64_t(bytes.size())),
                 TaggedValue{310, GroupValueKind::kBinary, 0.0, 0, hex}, TaggedValue::ofInteger(93, 0)};
  OdGsViewPtr view = rig.device->createView();
  rig.device->addView(view.get());
  view->setSceneBlock(&model);
  view->zoomExtents({0, 0, 0}, {150, 50, 0});
  rig.device->onSize(OdGsDCRect(0, 150, 0, 50));  // y up
  rig.device->update();
  return rig.sink.ofKind(kind);
}

// Graphics under a transform: the sink gets the placed geometry in the colours the records set.
TEST(ProxyGraphics, AProxyIsDrawnFromItsGraphics) {
  GsRig rig(emptyDrawing());
  Graphics g;
  g.rl(3).end(14);
  OdGeMatrix3d shift = OdGeMatrix3d::translation({100, 0, 0});
  for (const auto& row : shift.entry)
    for (double v : row) g.rd(v);
  g.end(29);
  g.rl(2).point(0, 0).point(50, 50).end(6);
  g.end(31);
  g.rl(2).point(0, 0).point(10, 0).end(6);
  // "By layer" after a layer record: the colour of that layer, not of the proxy's own.
  auto* walls = rig.db->newObject<LayerRecord>();
  walls->name = "WALLS";
  walls->color = OdCmEntityColor::fromACI(5);
  rig.db->layers().add(walls);
  g.rl(uint32_t(rig.db->layers().size() - 1)).end(16).rl(256).end(14);
  g.rl(2).point(0, 50).point(10, 50).end(6);
  std::vector<RecordedCall> lines = drawProxy(rig, g, "polyline");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 100, 0));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 150, 50));
  EXPECT_TRUE(nearXY(lines[1].points.back(), 10, 0));  // after the pop: not shifted
  EXPECT_EQ(lines[0].traits.trueColor.colorIndex(), 3);
  EXPECT_EQ(lines[2].traits.trueColor.colorIndex(), 5);
  EXPECT_EQ(lines[2].traits.layer, rig.db->layerZero());
}

// Writes DWG bit codes, first bit highest.
class Bits {
public:
  Bits& put(uint64_t value, unsigned count) {
    for (unsigned i = count; i-- > 0;) {
      if (used_ % 8 == 0) bytes_ += '\0';
      if ((value >> i) & 1) bytes_.back() = char(bytes_.back() | (0x80 >> (used_ % 8)));
      ++used_;
    }
    return *this;
  }
  Bits& rd(double v) {
    uint64_t raw;
    std::memcpy(&raw, &v, 8);
    for (int i = 0; i < 8; ++i) put((raw >> (8 * i)) & 0xFF, 8);
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

private:
  std::string bytes_;
  size_t used_ = 0;
};

// A polyline kept in DWG form, with a bulge: arcs where the bulges say, lines elsewhere.
TEST(ProxyGraphics, PolylinesInDwgFormKeepTheirArcs) {
  Bits pline;
  pline.put(1, 2).put(16, 8);                            // flags: has bulges
  pline.put(1, 2).put(3, 8).put(1, 2).put(3, 8);         // three points, three bulges
  pline.rd(20).rd(10).put(3, 2).rd(30).put(3, 2).rd(10);  // (20,10), then (30,10) in full
  pline.put(3, 2).rd(30).put(3, 2).rd(15);                // (30,15)
  pline.put(0, 2).rd(-1).put(2, 2).put(2, 2);            // bulges -1 (a half turn clockwise), 0, 0
  Graphics g;
  g.rl(uint32_t(pline.bytes().size())).bytes(pline.bytes()).end(33);
  std::vector<ProxyGraphicsItem> items = parseProxyGraphics(g.data(), nullptr);
  ASSERT_EQ(items.size(), 1u);
  EXPECT_EQ(items[0].bulges.size(), 3u);
  GsRig rig(emptyDrawing());
  std::vector<RecordedCall> arcs = drawProxy(rig, g, "arc");
  ASSERT_EQ(arcs.size(), 1u);
  EXPECT_TRUE(nearXY(arcs[0].center, 25, 10));
  EXPECT_NEAR(arcs[0].radius, 5, 1e-9);
  EXPECT_NEAR(std::fabs(arcs[0].sweep), M_PI, 1e-9);
  EXPECT_LT(arcs[0].sweep * arcs[0].normal.z, 0.0);  // clockwise: over the chord, not under it
  std::vector<RecordedCall> lines = rig.sink.ofKind("polyline");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(nearXY(lines[0].points.front(), 30, 10));
  EXPECT_TRUE(nearXY(lines[0].points.back(), 30, 15));
}

TEST(ProxyGraphics, TheProxiesOfAnArchitecturalDrawingHaveGraphicsToDraw) {
  for (const char* file : {"dwg/2013/gh109_1.dwg", "dwg/2013/gh109_1.dxf"}) {
    std::string path = corpusPath(file);
    OdDbDatabasePtr db = std::string(file).ends_with(".dwg") ? readDwgFile(path) : readDxfFile(path);
    size_t proxies = 0, drawable = 0;
    for (const Entity* e : db->modelSpace()->entities) {
      const auto* proxy = dbCast<ProxyEntity>(e);
      if (!proxy) continue;
      ++proxies;
      std::vector<ProxyGraphicsItem> items = parseProxyGraphics(proxyGraphicsBytes(*proxy), nullptr);
      size_t drawn = std::count_if(items.begin(), items.end(), [](const ProxyGraphicsItem& it) {
        return it.kind != Kind::kColor && it.kind != Kind::kFill && it.kind != Kind::kPushTransform &&
               it.kind != Kind::kPopTransform;
      });
      drawable += drawn > 0 ? 1 : 0;
    }
    // Two block references of the application carry empty graphics.
    EXPECT_EQ(proxies, 25u) << file;
    EXPECT_EQ(drawable, 23u) << file;
  }
}

}  // namespace
