#include "kit/dwg/DwgHeaderVariables.h"

#include "kit/db/Header.h"
#include "kit/dwg/DwgLineweight.h"
#include "kit/dwg/DwgStreams.h"

namespace {

// Reads variables in file order and keeps each the way a DXF header gives it.
class HeaderReader {
public:
  HeaderReader(DwgStreams& s, DatabaseHeader& h) : s_(s), d_(s.data), h_(h) {}

  bool b(const char* name) {
    bool v = d_.B();
    add(name, TaggedValue::ofInteger(70, v));
    return v;
  }
  int16_t bs(const char* name, int code = 70) {
    int16_t v = d_.BS();
    add(name, TaggedValue::ofInteger(code, v));
    return v;
  }
  int32_t bl(const char* name, int code = 90) {
    int32_t v = d_.BL();
    add(name, TaggedValue::ofInteger(code, v));
    return v;
  }
  uint8_t rc(const char* name, int code = 280) {
    uint8_t v = d_.RC();
    add(name, TaggedValue::ofInteger(code, v));
    return v;
  }
  double bd(const char* name, int code = 40) {
    double v = d_.BD();
    add(name, TaggedValue::ofReal(code, v));
    return v;
  }
  std::string tv(const char* name, int code = 1) {
    std::string v = s_.text();
    add(name, TaggedValue::ofString(code, v));
    return v;
  }
  // Old releases keep a few strings as code page text in the value stream.
  std::string t(const char* name, int code = 1) {
    std::string v = s_.codePageText(d_);
    add(name, TaggedValue::ofString(code, v));
    return v;
  }
  OdGePoint3d p3(const char* name) {
    OdGePoint3d p = d_.point3BD();
    addPoint(name, p.x, p.y, &p.z);
    return p;
  }
  OdGePoint2d p2(const char* name) {
    OdGePoint2d p = d_.point2RD();
    addPoint(name, p.x, p.y, nullptr);
    return p;
  }
  OdGeVector3d v3(const char* name) {
    OdGeVector3d v = d_.vector3BD();
    addPoint(name, v.x, v.y, &v.z);
    return v;
  }
  OdCmEntityColor cmc(const char* name, int code = 62) {
    DwgColor c = s_.color();
    add(name, TaggedValue::ofInteger(code, c.color.colorIndex()));
    return c.color;
  }
  // Handles: the name they stand for is filled in once the objects are read.
  OdDbHandle h(const char* name, int code = 5) {
    OdDbHandle handle = s_.handle();
    add(name, TaggedValue{int16_t(code), GroupValueKind::kHandle, 0.0, 0, handle.toHex()});
    return handle;
  }
  void julian(const char* name) {
    int32_t day = d_.BL();
    int32_t ms = d_.BL();
    add(name, TaggedValue::ofReal(40, day + ms / 86400000.0));
  }
  void skipBD(int n) {
    for (int i = 0; i < n; ++i) d_.BD();
  }
  void skipBL(int n) {
    for (int i = 0; i < n; ++i) d_.BL();
  }
  void skipTV(int n) {
    for (int i = 0; i < n; ++i) (void)s_.text();
  }
  void add(const char* name, TaggedValue value) {
    h_.variables.push_back(HeaderVariable{name, {std::move(value)}});
  }

  DwgStreams& s_;
  DwgBitReader& d_;
  DatabaseHeader& h_;

private:
  void addPoint(const char* name, double x, double y, const double* z) {
    TaggedValues values{TaggedValue::ofReal(10, x), TaggedValue::ofReal(20, y)};
    if (z) values.push_back(TaggedValue::ofReal(30, *z));
    h_.variables.push_back(HeaderVariable{name, std::move(values)});
  }
};

void readModes(HeaderReader& r, DatabaseHeader& h) {
  DwgStreams& s = r.s_;
  bool old = s.before(kDwgR2000);
  r.b("DIMASO");
  r.b("DIMSHO");
  if (old) r.b("DIMSAV");
  r.b("PLINEGEN");
  r.b("ORTHOMODE");
  r.b("REGENMODE");
  h.fillMode = r.b("FILLMODE");
  h.qTextMode = r.b("QTEXTMODE");
  h.psLtScale = r.b("PSLTSCALE");
  r.b("LIMCHECK");
  if (old) r.b("BLIPMODE");
  if (s.atLeast(kDwgR2004)) r.d_.B();
  r.b("USRTIMER");
  r.b("SKPOLY");
  h.angDir = r.b("ANGDIR");
  r.b("SPLFRAME");
  if (old) {
    r.b("ATTREQ");
    r.b("ATTDIA");
  }
  h.mirrText = r.b("MIRRTEXT");
  r.b("WORLDVIEW");
  if (old) r.b("WIREFRAME");
  h.tileMode = r.b("TILEMODE");
  r.b("PLIMCHECK");
  r.b("VISRETAIN");
  if (old) r.b("DELOBJ");
  h.dispSilh = r.b("DISPSILH");
  r.b("PELLIPSE");
  r.bs("PROXYGRAPHICS");
  if (old) r.bs("DRAGMODE");
  r.bs("TREEDEPTH");
  h.lunits = r.bs("LUNITS");
  h.luprec = r.bs("LUPREC");
  h.aunits = r.bs("AUNITS");
  h.auprec = r.bs("AUPREC");
  if (old) r.bs("OSMODE");
  r.bs("ATTMODE");
  if (old) r.bs("COORDS");
  h.pdMode = r.bs("PDMODE");
  if (old) r.bs("PICKSTYLE");
  if (s.atLeast(kDwgR2004)) r.skipBL(3);
  r.bs("USERI1");
  r.bs("USERI2");
  r.bs("USERI3");
  r.bs("USERI4");
  r.bs("USERI5");
  h.splineSegs = r.bs("SPLINESEGS");
  r.bs("SURFU");
  r.bs("SURFV");
  r.bs("SURFTYPE");
  r.bs("SURFTAB1");
  r.bs("SURFTAB2");
  r.bs("SPLINETYPE");
  r.bs("SHADEDGE");
  r.bs("SHADEDIF");
  r.bs("UNITMODE");
  r.bs("MAXACTVP");
  r.bs("ISOLINES");
  r.bs("CMLJUST");
  r.bs("TEXTQLTY");
}

void readReals(HeaderReader& r, DatabaseHeader& h) {
  h.ltScale = r.bd("LTSCALE");
  h.textSize = r.bd("TEXTSIZE");
  r.bd("TRACEWID");
  r.bd("SKETCHINC");
  r.bd("FILLETRAD");
  h.thickness = r.bd("THICKNESS");
  h.angBase = r.bd("ANGBASE", 50);
  h.pdSize = r.bd("PDSIZE");
  r.bd("PLINEWID");
  r.bd("USERR1");
  r.bd("USERR2");
  r.bd("USERR3");
  r.bd("USERR4");
  r.bd("USERR5");
  r.bd("CHAMFERA");
  r.bd("CHAMFERB");
  r.bd("CHAMFERC");
  r.bd("CHAMFERD");
  h.facetRes = r.bd("FACETRES");
  h.cmlScale = r.bd("CMLSCALE");
  h.celtScale = r.bd("CELTSCALE");
}

void readUcsBlock(HeaderReader& r, const char* prefix, bool paper, DatabaseHeader& h) {
  DwgStreams& s = r.s_;
  auto n = [prefix](const char* base) { return std::string(prefix) + base; };
  std::string names[] = {n("INSBASE"), n("EXTMIN"), n("EXTMAX"), n("LIMMIN"), n("LIMMAX"), n("ELEVATION"),
                         n("UCSORG"), n("UCSXDIR"), n("UCSYDIR"), n("UCSNAME")};
  OdGePoint3d insBase = r.p3(names[0].c_str());
  OdGePoint3d extMin = r.p3(names[1].c_str());
  OdGePoint3d extMax = r.p3(names[2].c_str());
  OdGePoint2d limMin = r.p2(names[3].c_str());
  OdGePoint2d limMax = r.p2(names[4].c_str());
  double elevation = r.bd(names[5].c_str());
  OdGePoint3d ucsOrg = r.p3(names[6].c_str());
  OdGeVector3d ucsX = r.v3(names[7].c_str());
  OdGeVector3d ucsY = r.v3(names[8].c_str());
  r.h(names[9].c_str(), 2);
  if (s.atLeast(kDwgR2000)) {
    r.h(n("UCSORTHOREF").c_str(), 2);
    r.bs(n("UCSORTHOVIEW").c_str());
    r.h(n("UCSBASE").c_str(), 2);
    for (const char* side : {"UCSORGTOP", "UCSORGBOTTOM", "UCSORGLEFT", "UCSORGRIGHT", "UCSORGFRONT", "UCSORGBACK"}) {
      r.p3(n(side).c_str());
    }
  }
  if (paper) {
    h.pinsBase = insBase;
    h.pextMin = extMin;
    h.pextMax = extMax;
    h.plimMin = limMin;
    h.plimMax = limMax;
  } else {
    h.insBase = insBase;
    h.extMin = extMin;
    h.extMax = extMax;
    h.limMin = limMin;
    h.limMax = limMax;
    h.elevation = elevation;
    h.ucsOrg = ucsOrg;
    h.ucsXDir = ucsX;
    h.ucsYDir = ucsY;
  }
}

void readDimensionVariables(HeaderReader& r, DatabaseHeader& h, DwgHeaderHandles& handles) {
  DwgStreams& s = r.s_;
  bool old = s.before(kDwgR2000);
  if (!old) {
    r.tv("DIMPOST");
    r.tv("DIMAPOST");
  }
  if (old) {
    for (const char* name : {"DIMTOL", "DIMLIM", "DIMTIH", "DIMTOH", "DIMSE1", "DIMSE2", "DIMALT", "DIMTOFL",
                             "DIMSAH", "DIMTIX", "DIMSOXD"}) {
      r.b(name);
    }
    r.rc("DIMALTD", 70);
    r.rc("DIMZIN", 70);
    r.b("DIMSD1");
    r.b("DIMSD2");
    r.rc("DIMTOLJ", 70);
    r.rc("DIMJUST", 70);
    r.rc("DIMFIT", 70);
    r.b("DIMUPT");
    r.rc("DIMTZIN", 70);
    r.rc("DIMALTZ", 70);
    r.rc("DIMALTTZ", 70);
    r.rc("DIMTAD", 70);
    for (const char* name : {"DIMUNIT", "DIMAUNIT", "DIMDEC", "DIMTDEC", "DIMALTU", "DIMALTTD"}) r.bs(name);
    handles.dimTextStyle = r.h("DIMTXSTY", 7);
  }
  h.dimScale = r.bd("DIMSCALE");
  h.dimAsz = r.bd("DIMASZ");
  for (const char* name : {"DIMEXO", "DIMDLI", "DIMEXE", "DIMRND", "DIMDLE", "DIMTP", "DIMTM"}) r.bd(name);
  if (s.atLeast(kDwgR2007)) {
    r.bd("DIMFXL");
    r.bd("DIMJOGANG", 50);
    r.bs("DIMTFILL");
    r.cmc("DIMTFILLCLR", 70);
  }
  if (!old) {
    for (const char* name : {"DIMTOL", "DIMLIM", "DIMTIH", "DIMTOH", "DIMSE1", "DIMSE2"}) r.b(name);
    r.bs("DIMTAD");
    r.bs("DIMZIN");
    r.bs("DIMAZIN");
  }
  if (s.atLeast(kDwgR2007)) r.bs("DIMARCSYM");
  h.dimTxt = r.bd("DIMTXT");
  for (const char* name : {"DIMCEN", "DIMTSZ", "DIMALTF", "DIMLFAC", "DIMTVP", "DIMTFAC", "DIMGAP"}) r.bd(name);
  if (old) {
    r.t("DIMPOST");
    r.t("DIMAPOST");
    r.t("DIMBLK");
    r.t("DIMBLK1");
    r.t("DIMBLK2");
  } else {
    r.bd("DIMALTRND");
    r.b("DIMALT");
    r.bs("DIMALTD");
    r.b("DIMTOFL");
    r.b("DIMSAH");
    r.b("DIMTIX");
    r.b("DIMSOXD");
  }
  r.cmc("DIMCLRD", 70);
  r.cmc("DIMCLRE", 70);
  r.cmc("DIMCLRT", 70);
  if (!old) {
    for (const char* name : {"DIMADEC", "DIMDEC", "DIMTDEC", "DIMALTU", "DIMALTTD", "DIMAUNIT", "DIMFRAC",
                             "DIMLUNIT", "DIMDSEP", "DIMTMOVE", "DIMJUST"}) {
      r.bs(name);
    }
    r.b("DIMSD1");
    r.b("DIMSD2");
    for (const char* name : {"DIMTOLJ", "DIMTZIN", "DIMALTZ", "DIMALTTZ"}) r.bs(name);
    r.b("DIMUPT");
    r.bs("DIMATFIT");
  }
  if (s.atLeast(kDwgR2007)) r.b("DIMFXLON");
  if (s.atLeast(kDwgR2010)) {
    r.b("DIMTXTDIRECTION");
    r.bd("DIMALTMZF");
    r.tv("DIMALTMZS");
    r.bd("DIMMZF");
    r.tv("DIMMZS");
  }
  if (!old) {
    handles.dimTextStyle = r.h("DIMTXSTY", 7);
    r.h("DIMLDRBLK", 1);
    r.h("DIMBLK", 1);
    r.h("DIMBLK1", 1);
    r.h("DIMBLK2", 1);
  }
  if (s.atLeast(kDwgR2007)) {
    r.h("DIMLTYPE", 6);
    r.h("DIMLTEX1", 6);
    r.h("DIMLTEX2", 6);
  }
  if (!old) {
    r.bs("DIMLWD");
    r.bs("DIMLWE");
  }
}

void readTablesAndDictionaries(HeaderReader& r, DwgHeaderHandles& handles) {
  DwgStreams& s = r.s_;
  handles.blockControl = s.handle();
  handles.layerControl = s.handle();
  handles.styleControl = s.handle();
  handles.linetypeControl = s.handle();
  handles.viewControl = s.handle();
  handles.ucsControl = s.handle();
  handles.vportControl = s.handle();
  handles.appIdControl = s.handle();
  handles.dimStyleControl = s.handle();
  if (s.before(kDwgR2004)) s.handle();  // viewport entity header control
  handles.groupDictionary = s.handle();
  handles.multilineStyleDictionary = s.handle();
  handles.namedObjectsDictionary = s.handle();
}

void readR2000Settings(HeaderReader& r, DatabaseHeader& h, DwgHeaderHandles& handles) {
  DwgStreams& s = r.s_;
  r.bs("TSTACKALIGN");
  r.bs("TSTACKSIZE");
  h.hyperlinkBase = r.tv("HYPERLINKBASE");
  r.tv("STYLESHEET");
  handles.layoutDictionary = s.handle();
  s.handle();  // plot settings dictionary
  s.handle();  // plot styles dictionary
  if (s.atLeast(kDwgR2004)) {
    s.handle();  // materials
    s.handle();  // colors
  }
  if (s.atLeast(kDwgR2007)) s.handle();  // visual styles
  if (s.atLeast(kDwgR2013)) s.handle();
  int32_t flags = r.d_.BL();
  h.celWeight = dwgLineweightFromIndex(flags & 0x1F);
  r.add("CELWEIGHT", TaggedValue::ofInteger(370, h.celWeight));
  r.add("ENDCAPS", TaggedValue::ofInteger(280, (flags & 0x60) >> 5));
  r.add("JOINSTYLE", TaggedValue::ofInteger(280, (flags & 0x180) >> 7));
  h.lwDisplay = (flags & 0x200) == 0;
  r.add("LWDISPLAY", TaggedValue::ofInteger(290, h.lwDisplay));
  r.add("XEDIT", TaggedValue::ofInteger(290, (flags & 0x400) == 0));
  r.add("EXTNAMES", TaggedValue::ofInteger(290, (flags & 0x800) != 0));
  r.add("PSTYLEMODE", TaggedValue::ofInteger(290, (flags & 0x2000) != 0));
  r.add("OLESTARTUP", TaggedValue::ofInteger(290, (flags & 0x4000) != 0));
  h.insUnits = r.bs("INSUNITS");
  int16_t plotStyleType = r.bs("CEPSNTYPE", 380);
  if (plotStyleType == 3) r.h("CPSNID", 390);
  r.tv("FINGERPRINTGUID", 2);
  r.tv("VERSIONGUID", 2);
  if (s.atLeast(kDwgR2004)) {
    r.rc("SORTENTS");
    r.rc("INDEXCTL");
    r.rc("HIDETEXT", 290);
    h.xclipFrame = r.rc("XCLIPFRAME", 290);
    r.rc("DIMASSOC");
    r.rc("HALOGAP");
    r.bs("OBSCOLOR");
    r.bs("INTERSECTIONCOLOR");
    r.rc("OBSLTYPE");
    r.rc("INTERSECTIONDISPLAY", 290);
    h.projectName = r.tv("PROJECTNAME");
  }
}

void readR2007Settings(HeaderReader& r) {
  r.b("CAMERADISPLAY");
  r.skipBL(2);
  r.skipBD(1);
  for (const char* name : {"STEPSPERSEC", "STEPSIZE", "3DDWFPREC", "LENSLENGTH", "CAMERAHEIGHT"}) r.bd(name);
  r.rc("SOLIDHIST");
  r.rc("SHOWHIST");
  for (const char* name : {"PSOLWIDTH", "PSOLHEIGHT", "LOFTANG1", "LOFTANG2", "LOFTMAG1", "LOFTMAG2"}) r.bd(name);
  r.bs("LOFTPARAM");
  r.rc("LOFTNORMALS");
  r.bd("LATITUDE");
  r.bd("LONGITUDE");
  r.bd("NORTHDIRECTION");
  r.bl("TIMEZONE", 70);
  r.rc("LIGHTGLYPHDISPLAY");
  r.rc("TILEMODELIGHTSYNCH");
  r.rc("DWFFRAME");
  r.rc("DGNFRAME");
  r.d_.B();
  r.cmc("INTERFERECOLOR");
  r.h("INTERFEREOBJVS", 345);
  r.h("INTERFEREVPVS", 346);
  r.h("DRAGVS", 349);
  r.rc("CSHADOW");
  r.skipBD(1);
}

}  // namespace

bool readDwgHeaderVariables(DwgStreams& s, DatabaseHeader& h, DwgHeaderHandles& handles) {
  HeaderReader r(s, h);
  DwgBitReader& d = s.data;
  if (s.atLeast(kDwgR2013)) r.add("REQUIREDVERSIONS", TaggedValue::ofInteger(160, int64_t(d.BLL())));
  r.skipBD(4);
  r.skipTV(4);
  r.skipBL(2);
  if (s.before(kDwgR2000)) d.BS();
  if (s.before(kDwgR2004)) s.handle();  // current viewport entity header
  readModes(r, h);
  readReals(r, h);
  if (s.before(kDwgR2007)) r.tv("MENU");
  r.julian("TDCREATE");
  r.julian("TDUPDATE");
  if (s.atLeast(kDwgR2004)) r.skipBL(3);
  r.julian("TDINDWG");
  r.julian("TDUSRTIMER");
  h.ceColor = r.cmc("CECOLOR");
  h.handSeed = s.handleFrom(d);  // in the value stream, whatever the release
  r.add("HANDSEED", TaggedValue{5, GroupValueKind::kHandle, 0.0, 0, h.handSeed.toHex()});
  handles.currentLayer = r.h("CLAYER", 8);
  handles.textStyle = r.h("TEXTSTYLE", 7);
  handles.currentLinetype = r.h("CELTYPE", 6);
  if (s.atLeast(kDwgR2007)) r.h("CMATERIAL", 347);
  handles.dimStyle = r.h("DIMSTYLE", 2);
  handles.multilineStyle = r.h("CMLSTYLE", 2);
  if (s.atLeast(kDwgR2000)) h.psvpScale = r.bd("PSVPSCALE");
  readUcsBlock(r, "P", true, h);
  readUcsBlock(r, "", false, h);
  readDimensionVariables(r, h, handles);
  readTablesAndDictionaries(r, handles);
  if (s.atLeast(kDwgR2000)) readR2000Settings(r, h, handles);
  handles.paperSpaceBlock = s.handle();
  handles.modelSpaceBlock = s.handle();
  handles.linetypeByLayer = s.handle();
  handles.linetypeByBlock = s.handle();
  handles.linetypeContinuous = s.handle();
  if (s.atLeast(kDwgR2007)) readR2007Settings(r);
  return !s.overrun();
}
