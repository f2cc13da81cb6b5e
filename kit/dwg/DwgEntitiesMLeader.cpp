// MULTILEADER: the laid-out content (leader roots with their lines, then the text or block)
// as its annotation context holds it, followed by the entity's own properties and overrides.
// Every count is bounded by the bits left.
#include "kit/dwg/DwgEntityReaders.h"
#include "kit/dwg/DwgLoader.h"

namespace {

void readLeaderLine(DwgObjectContext& c, MLeaderLine& line) {
  DwgBitReader& d = c.d;
  uint32_t points = c.boundedCount(d.BL(), 6);
  for (uint32_t i = 0; i < points && !d.overrun(); ++i) line.vertices.push_back(d.point3BD());
  if (d.BL() > 0) {  // break information
    d.BL();          // segment index
    uint32_t pairs = c.boundedCount(d.BL(), 12);
    for (uint32_t i = 0; i < pairs && !d.overrun(); ++i) {
      d.point3BD();
      d.point3BD();
    }
  }
  line.index = d.BL();
  if (c.atLeast(kDwgR2010)) {
    d.BS();             // leader type
    (void)c.s.color();  // line colour
    c.s.handle();       // linetype
    d.BL();             // lineweight
    d.BD();             // arrow size
    c.s.handle();       // arrow symbol
    d.BL();             // override flags
  }
}

void readLeaderRoot(DwgObjectContext& c, MLeaderBranch& branch) {
  DwgBitReader& d = c.d;
  branch.hasLastLeaderLinePoint = d.B();
  branch.hasDogleg = d.B();
  branch.lastLeaderLinePoint = d.point3BD();
  branch.doglegVector = d.vector3BD();
  uint32_t breaks = c.boundedCount(d.BL(), 12);
  for (uint32_t i = 0; i < breaks && !d.overrun(); ++i) {
    d.point3BD();
    d.point3BD();
  }
  branch.index = d.BL();
  branch.doglegLength = d.BD();
  uint32_t lines = c.boundedCount(d.BL(), 6);
  branch.lines.resize(lines);
  for (MLeaderLine& line : branch.lines) {
    readLeaderLine(c, line);
    if (d.overrun()) break;
  }
  if (c.atLeast(kDwgR2010)) branch.attachmentDirection = d.BS();
}

void readTextContent(DwgObjectContext& c, MLeaderEntity& e) {
  DwgBitReader& d = c.d;
  e.text = c.s.text();
  e.textNormal = d.vector3BD();
  e.contextTextStyle = c.s.handle();
  e.textLocation = d.point3BD();
  e.textDirection = d.vector3BD();
  e.textRotation = d.BD();
  e.textWidth = d.BD();
  e.textDefinedHeight = d.BD();
  e.textLineSpacingFactor = d.BD();
  e.textLineSpacingStyle = d.BS();
  e.contextTextColor = c.s.color().color;
  e.textAttachment = d.BS();
  e.textFlowDirection = d.BS();
  (void)c.s.color();  // background colour
  d.BD();             // background scale
  d.BL();             // background transparency
  d.B();              // background fill on
  d.B();              // background mask on
  d.BS();             // column kind
  d.B();              // automatic height
  d.BD();             // column width
  d.BD();             // column gutter
  d.B();              // column flow reversed
  uint32_t columns = c.boundedCount(d.BL(), 2);
  for (uint32_t i = 0; i < columns && !d.overrun(); ++i) d.BD();
  d.B();  // word break
  d.B();
}

void readBlockContent(DwgObjectContext& c, MLeaderEntity& e) {
  DwgBitReader& d = c.d;
  e.contextBlock = c.s.handle();
  e.contextBlockNormal = d.vector3BD();
  e.blockPosition = d.point3BD();
  e.contextBlockScale = d.vector3BD();
  e.contextBlockRotation = d.BD();
  e.contextBlockColor = c.s.color().color;
  for (double& v : e.blockTransform) v = d.BD();
}

void readContext(DwgObjectContext& c, MLeaderEntity& e) {
  DwgBitReader& d = c.d;
  uint32_t roots = c.boundedCount(d.BL(), 2 + 6 + 6 + 2 + 2 + 2 + 2);
  e.branches.resize(roots);
  for (MLeaderBranch& branch : e.branches) {
    readLeaderRoot(c, branch);
    if (d.overrun()) return;
  }
  e.contentScale = d.BD();
  e.contentBasePoint = d.point3BD();
  e.contextTextHeight = d.BD();
  e.contextArrowheadSize = d.BD();
  e.landingGap = d.BD();
  d.BS();  // left text attachment
  d.BS();  // right text attachment
  d.BS();  // text alignment
  d.BS();  // attachment kind
  e.hasMText = d.B();
  if (e.hasMText) {
    readTextContent(c, e);
  } else {
    e.hasBlock = d.B();
    if (e.hasBlock) readBlockContent(c, e);
  }
  e.planeOrigin = d.point3BD();
  e.planeXAxis = d.vector3BD();
  e.planeYAxis = d.vector3BD();
  e.planeNormalReversed = d.B();
  if (c.atLeast(kDwgR2010)) {
    d.BS();  // top attachment
    d.BS();  // bottom attachment
  }
}

void readProperties(DwgObjectContext& c, MLeaderEntity& e) {
  DwgBitReader& d = c.d;
  e.style = c.s.handle();
  e.overrideFlags = d.BL();
  e.leaderType = d.BS();
  e.leaderColor = c.s.color().color;
  e.leaderLinetype = c.s.handle();
  e.leaderLineweight = int16_t(d.BL());
  e.landingEnabled = d.B();
  e.doglegEnabled = d.B();
  e.landingDistance = d.BD();
  e.arrowhead = c.s.handle();
  e.arrowheadSize = d.BD();
  e.contentType = d.BS();
  e.textStyle = c.s.handle();
  e.textLeftAttachment = d.BS();
  e.textRightAttachment = d.BS();
  e.textAngleType = d.BS();
  d.BS();  // unknown
  e.textColor = c.s.color().color;
  e.textFrame = d.B();
  e.blockContent = c.s.handle();
  e.blockColor = c.s.color().color;
  e.blockScale = d.vector3BD();
  e.blockRotation = d.BD();
  e.blockConnection = d.BS();
  e.annotative = d.B();
  if (c.before(kDwgR2010)) {
    uint32_t arrowheads = c.boundedCount(d.BL(), 1);
    for (uint32_t i = 0; i < arrowheads && !d.overrun(); ++i) {
      d.B();         // default
      c.s.handle();  // arrowhead
    }
  }
  uint32_t labels = c.boundedCount(d.BL(), 2 + 2);  // index and width; text and handle elsewhere
  for (uint32_t i = 0; i < labels && !d.overrun(); ++i) {
    OdDbHandle definition = c.s.handle();
    std::string text = c.s.text();
    d.BS();  // index
    d.BD();  // width
    e.blockAttributes.emplace_back(definition, std::move(text));
  }
}

}  // namespace

void readDwgMLeader(DwgObjectContext& c) {
  auto* e = c.newEntity<MLeaderEntity>();
  if (c.atLeast(kDwgR2010)) c.d.BS();  // version
  readContext(c, *e);
  if (c.d.overrun()) return;
  readProperties(c, *e);
  // The rest (text direction, justification, scale, attachment directions) the regeneration
  // takes from the context above.
}
