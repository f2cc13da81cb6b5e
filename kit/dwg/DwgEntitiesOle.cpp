// OLE2FRAME: the OLE object's kind, the space it was placed in and its data. The frame's
// corners are not stored apart: the data begins with a short and the four corners (upper left
// first, lower right third) as three doubles each.
#include <cstring>

#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

constexpr size_t kUpperLeftAt = 2;
constexpr size_t kLowerRightAt = 2 + 2 * 24;

OdGePoint3d cornerAt(const std::vector<uint8_t>& data, size_t at) {
  double xyz[3];
  std::memcpy(xyz, data.data() + at, sizeof xyz);
  return {xyz[0], xyz[1], xyz[2]};
}

}  // namespace

void readDwgOle2Frame(DwgObjectContext& c) {
  auto* e = c.newEntity<Ole2FrameEntity>();
  DwgBitReader& d = c.d;
  e->oleType = d.BS();
  if (c.atLeast(kDwgR2000)) e->tileMode = d.BS();
  int32_t size = d.BL();
  if (size < 0 || size_t(size) > d.bitsLeft() / 8) {
    d.skip(d.bitsLeft() + 1);
    return;
  }
  e->data.resize(size_t(size));
  for (uint8_t& b : e->data) b = d.RC();
  if (c.atLeast(kDwgR2000)) d.RC();  // aspect ratio locked
  if (e->data.size() >= kLowerRightAt + 24) {
    e->upperLeft = cornerAt(e->data, kUpperLeftAt);
    e->lowerRight = cornerAt(e->data, kLowerRightAt);
  }
}
