#include "kit/dwg/DwgClasses.h"

#include "kit/dwg/DwgStreams.h"

namespace {

constexpr size_t kMaxClasses = 65536;

}  // namespace

void readDwgClasses(DwgStreams& s, size_t endBit, std::vector<DwgClass>& classes) {
  DwgBitReader& d = s.data;
  int maxNumber = 0x7FFF;
  if (s.atLeast(kDwgR2004)) {
    maxNumber = d.BS();
    d.RC();
    d.RC();
    d.B();
  }
  while (d.position() + 16 < endBit && !s.overrun() && classes.size() < kMaxClasses) {
    DwgClass c;
    c.number = d.BS();
    c.info.proxyFlags = d.BS();
    c.info.appName = s.text();
    c.info.cppName = s.text();
    c.info.dxfName = s.text();
    c.info.wasProxy = d.B();
    c.info.isEntity = d.BS() == 0x1F2;
    if (s.atLeast(kDwgR2004)) {
      c.info.instanceCount = d.BL();
      d.BL();  // the release the class was written for
      d.BL();  // its maintenance release
      d.BL();
      d.BL();
    }
    if (s.overrun()) break;
    classes.push_back(std::move(c));
    if (classes.back().number >= maxNumber) break;
  }
}
