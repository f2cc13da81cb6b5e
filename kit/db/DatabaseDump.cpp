#include "kit/db/DatabaseDump.h"

#include <cmath>
#include <cstdio>
#include <map>

#include "kit/db/OdDbDatabase.h"
#include "kit/db/ProxyClass.h"

namespace {

class Dumper {
public:
  Dumper(const OdDbDatabase& db, const DumpOptions& options) : db_(db), o_(options) {}

  std::string run() {
    header();
    tables();
    layouts();
    blocks();
    objects();
    if (o_.loadReport) report();
    return std::move(out_);
  }

private:
  // ---- formatting ----
  std::string num(double v) const {
    if (v == 0.0) return "0";  // no "-0"
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*g", o_.significantDigits, v);
    return buf;
  }
  std::string deg(double radians) const { return num(radians * 180.0 / kPi); }
  std::string pt(const OdGePoint3d& p) const { return "(" + num(p.x) + "," + num(p.y) + "," + num(p.z) + ")"; }
  std::string pt(const OdGeVector3d& p) const { return "(" + num(p.x) + "," + num(p.y) + "," + num(p.z) + ")"; }
  std::string pt(const OdGePoint2d& p) const { return "(" + num(p.x) + "," + num(p.y) + ")"; }
  static std::string str(const std::string& s) {
    std::string r = "\"";
    for (char c : s) {
      if (c == '"' || c == '\\') r += '\\', r += c;
      else if (c == '\n') r += "\\n";
      else if (c == '\r') r += "\\r";
      else if (static_cast<unsigned char>(c) < 0x20) {
        char buf[8];
        std::snprintf(buf, sizeof buf, "\\x%02X", static_cast<unsigned char>(c));
        r += buf;
      } else r += c;
    }
    return r + "\"";
  }
  static std::string color(const OdCmEntityColor& c) {
    if (c.isByLayer()) return "bylayer";
    if (c.isByBlock()) return "byblock";
    if (c.isByACI()) return std::to_string(c.colorIndex());
    if (c.isByColor()) {
      char buf[16];
      std::snprintf(buf, sizeof buf, "#%06X", c.rgb());
      return buf;
    }
    if (c.isForeground()) return "foreground";
    return "none";
  }
  static std::string name(const SymbolTableRecord* r) { return r ? str(r->name) : "null"; }
  static std::string hex(OdDbHandle h) { return h.toHex(); }
  // A table's widths, heights and cells: texts, then the merged and block cells by index.
  std::string tableGrid(const TableEntity& t) const {
    std::string widths, heights, texts, merges, blocks;
    for (double w : t.columnWidths) widths += (widths.empty() ? "" : ",") + num(w);
    for (double h : t.rowHeights) heights += (heights.empty() ? "" : ",") + num(h);
    for (size_t i = 0; i < t.cells.size(); ++i) {
      const TableCell& c = t.cells[i];
      texts += (i ? "," : "") + str(c.text);
      std::string at = (merges.empty() ? "" : ",") + std::to_string(i) + ":";
      if (c.merged) merges += at + "in";
      else if (c.mergedColumns > 1 || c.mergedRows > 1)
        merges += at + std::to_string(c.mergedColumns) + "x" + std::to_string(c.mergedRows);
      if (c.type == 2) blocks += (blocks.empty() ? "" : ",") + std::to_string(i) + ":" + hex(c.block);
    }
    return " widths=(" + widths + ") heights=(" + heights + ") texts=[" + texts + "] merged=[" + merges +
           "] blockcells=[" + blocks + "]";
  }
  void line(const std::string& s) {
    out_ += s;
    out_ += '\n';
  }

  // ---- header ----
  void header() {
    const DatabaseHeader& h = db_.header();
    line("HEADER");
    line("  ACADVER " + h.acadVer + " DWGCODEPAGE " + h.dwgCodePage);
    line("  INSUNITS " + std::to_string(h.insUnits) + " MEASUREMENT " + std::to_string(h.measurement) +
         " LUNITS " + std::to_string(h.lunits) + " LUPREC " + std::to_string(h.luprec) + " AUNITS " +
         std::to_string(h.aunits));
    line("  TILEMODE " + std::to_string(h.tileMode) + " LTSCALE " + num(h.ltScale) + " CELTSCALE " +
         num(h.celtScale) + " PSLTSCALE " + std::to_string(h.psLtScale));
    line("  INSBASE " + pt(h.insBase) + " EXTMIN " + pt(h.extMin) + " EXTMAX " + pt(h.extMax));
    line("  LIMMIN " + pt(h.limMin) + " LIMMAX " + pt(h.limMax));
    line("  PEXTMIN " + pt(h.pextMin) + " PEXTMAX " + pt(h.pextMax) + " PLIMMIN " + pt(h.plimMin) +
         " PLIMMAX " + pt(h.plimMax));
    line("  CLAYER " + str(h.cLayer) + " TEXTSTYLE " + str(h.textStyle) + " DIMSTYLE " + str(h.dimStyle) +
         " CELTYPE " + str(h.celType));
    line("  PDMODE " + std::to_string(h.pdMode) + " PDSIZE " + num(h.pdSize) + " FILLMODE " +
         std::to_string(h.fillMode) + " MIRRTEXT " + std::to_string(h.mirrText) + " TEXTSIZE " +
         num(h.textSize) + " DIMSCALE " + num(h.dimScale));
    if (o_.allHeaderVariables) {
      for (const HeaderVariable& v : h.variables) {
        std::string s = "  $";
        s += v.name;
        for (const TaggedValue& t : v.values) {
          s += ' ';
          s += std::to_string(t.code);
          s += '=';
          s += valueText(t);
        }
        line(s);
      }
    } else {
      line("  variables " + std::to_string(h.variables.size()));
    }
  }

  std::string valueText(const TaggedValue& t) const {
    if (t.kind == GroupValueKind::kReal) return num(t.real);
    if (isNumericKind(t.kind)) return std::to_string(t.integer);
    return str(t.text);
  }

  // ---- tables ----
  void tables() {
    line("LAYERS " + std::to_string(db_.layers().size()));
    for (const LayerRecord* l : db_.layers()) {
      line("  " + str(l->name) + " " + hex(l->handle) + " color=" + color(l->color) + " linetype=" +
           name(l->linetype) + " lw=" + std::to_string(l->lineweight) + (l->isOff() ? " off" : " on") +
           (l->isFrozen() ? " frozen" : "") + (l->isLocked() ? " locked" : "") +
           (l->isPlottable() ? "" : " noplot") + (l->transparency.isByAlpha() ? " alpha=" + std::to_string(l->transparency.alpha()) : ""));
    }
    line("LINETYPES " + std::to_string(db_.linetypes().size()));
    for (const LinetypeRecord* t : db_.linetypes()) {
      std::string s = "  " + str(t->name) + " " + hex(t->handle) + " length=" + num(t->patternLength) + " dashes=[";
      for (size_t i = 0; i < t->dashes.size(); ++i) {
        const LinetypeDash& d = t->dashes[i];
        if (i) s += ",";
        s += num(d.length);
        if (d.shapeFlags & LinetypeDash::kText) s += " text " + str(d.text);
        if (d.shapeFlags & LinetypeDash::kShape) s += " shape " + std::to_string(d.shapeNumber);
      }
      line(s + "]");
    }
    line("STYLES " + std::to_string(db_.textStyles().size()));
    for (const TextStyleRecord* t : db_.textStyles()) {
      line("  " + str(t->name) + " " + hex(t->handle) + " font=" + str(t->fontFile) + " bigfont=" +
           str(t->bigFontFile) + (t->trueTypeFace.empty() ? "" : " face=" + str(t->trueTypeFace)) +
           " height=" + num(t->fixedHeight) + " width=" + num(t->widthFactor) + " oblique=" + deg(t->obliqueAngle));
    }
    line("DIMSTYLES " + std::to_string(db_.dimStyles().size()));
    for (const DimStyleRecord* d : db_.dimStyles()) {
      line("  " + str(d->name) + " " + hex(d->handle) + " values=" + std::to_string(d->values.size()) +
           " DIMSCALE=" + num(d->dimscale()) + " DIMTXT=" + num(d->dimtxt()) + " DIMASZ=" + num(d->dimasz()));
    }
    line("VIEWS " + std::to_string(db_.views().size()));
    for (const ViewRecord* v : db_.views()) {
      line("  " + str(v->name) + " " + hex(v->handle) + (v->isPaperspaceView() ? " paper" : " model") +
           " center=" + pt(v->center) + " height=" + num(v->height) + " width=" + num(v->width) +
           " target=" + pt(v->target) + " direction=" + pt(v->direction));
    }
    line("VPORTS " + std::to_string(db_.viewports().size()));
    for (const ViewportRecord* v : db_.viewports()) {
      line("  " + str(v->name) + " " + hex(v->handle) + " center=" + pt(v->center) + " height=" +
           num(v->height) + " aspect=" + num(v->aspectRatio) + " direction=" + pt(v->viewDirection));
    }
    line("UCS " + std::to_string(db_.ucss().size()));
    for (const UcsRecord* u : db_.ucss()) {
      line("  " + str(u->name) + " " + hex(u->handle) + " origin=" + pt(u->origin) + " x=" + pt(u->xAxis) +
           " y=" + pt(u->yAxis));
    }
    line("APPIDS " + std::to_string(db_.regApps().size()));
    for (const RegAppRecord* a : db_.regApps()) line("  " + str(a->name) + " " + hex(a->handle));
    line("BLOCKS " + std::to_string(db_.blocks().size()));
    for (const BlockRecord* b : db_.blocks()) {
      line("  " + str(b->name) + " " + hex(b->handle) + " flags=" + std::to_string(b->blockFlags) + " base=" +
           pt(b->basePoint) + " entities=" + std::to_string(b->entities.size()) +
           (b->isLayout() ? " layout=" + hex(b->layout) : "") + (b->hasDefinition ? "" : " undefined") +
           (b->xrefPath.empty() ? "" : " xref=" + str(b->xrefPath)));
    }
  }

  void layouts() {
    std::vector<Layout*> all = db_.layouts();
    line("LAYOUTS " + std::to_string(all.size()));
    for (const Layout* l : all) {
      line("  " + str(l->name) + " " + hex(l->handle) + " tab=" + std::to_string(l->tabOrder) + " block=" +
           name(l->block) + " paper=" + num(l->paperWidth) + "x" + num(l->paperHeight) + " limits=" +
           pt(l->limMin) + "-" + pt(l->limMax));
    }
    const Layout* active = db_.activeLayout();
    line("  active " + (active ? str(active->name) : std::string("none")));
  }

  // ---- entities ----
  void blocks() {
    for (const BlockRecord* b : db_.blocks()) {
      if (!o_.entities) continue;
      if (b->entities.empty()) continue;
      line("BLOCK " + str(b->name) + " " + std::to_string(b->entities.size()));
      for (const Entity* e : b->entities) entity(*e, "  ");
    }
  }

  std::string common(const Entity& e) const {
    std::string s = std::string(dbTypeName(e.type)) + " " + hex(e.handle) + " layer=" + name(e.layer);
    if (!e.color.isByLayer()) s += " color=" + color(e.color);
    if (e.linetype && !e.linetype->isByLayer()) s += " linetype=" + name(e.linetype);
    if (e.lineweight != kLnWtByLayer) s += " lw=" + std::to_string(e.lineweight);
    if (e.linetypeScale != 1.0) s += " ltscale=" + num(e.linetypeScale);
    if (!e.transparency.isByLayer()) s += " transparency=" + std::to_string(e.transparency.raw());
    if (!e.isVisible()) s += " invisible";
    if (e.extras && !e.extras->hyperlinks.empty()) s += " hyperlink=" + str(e.extras->hyperlinks.front().url);
    if (e.extras && !e.extras->xdata.empty()) s += " xdata=" + std::to_string(e.extras->xdata.size());
    return s;
  }

  std::string normal(const OdGeVector3d& n) const {
    return n == kDefaultNormal ? std::string() : " normal=" + pt(n);
  }

  template <class Points>
  std::string points(const Points& list) const {
    std::string s = "[";
    size_t n = 0;
    for (const auto& p : list) {
      if (n == o_.maxVerticesPerEntity) {
        s += ",...";
        break;
      }
      if (n++) s += ",";
      s += pt(p);
    }
    return s + "]";
  }

  void entity(const Entity& e, const std::string& indent) {
    std::string s = indent + common(e) + " ";
    switch (e.type) {
      case DbType::kLine: {
        auto& l = static_cast<const LineEntity&>(e);
        s += "start=" + pt(l.start) + " end=" + pt(l.end) + normal(l.normal);
        break;
      }
      case DbType::kPoint: {
        auto& p = static_cast<const PointEntity&>(e);
        s += "position=" + pt(p.position);
        break;
      }
      case DbType::kCircle: {
        auto& c = static_cast<const CircleEntity&>(e);
        s += "center=" + pt(c.center) + " radius=" + num(c.radius) + normal(c.normal);
        break;
      }
      case DbType::kArc: {
        auto& a = static_cast<const ArcEntity&>(e);
        s += "center=" + pt(a.center) + " radius=" + num(a.radius) + " start=" + deg(a.startAngle) + " end=" +
             deg(a.endAngle) + normal(a.normal);
        break;
      }
      case DbType::kEllipse: {
        auto& el = static_cast<const EllipseEntity&>(e);
        s += "center=" + pt(el.center) + " major=" + pt(el.majorAxis) + " ratio=" + num(el.radiusRatio) +
             " params=" + num(el.startParam) + ".." + num(el.endParam);
        break;
      }
      case DbType::kLwPolyline: {
        auto& p = static_cast<const LwPolylineEntity&>(e);
        s += std::string(p.isClosed() ? "closed" : "open") + " n=" + std::to_string(p.points.size()) +
             " points=" + points(p.points) + (p.bulges.empty() ? "" : " bulges") + normal(p.normal);
        break;
      }
      case DbType::kPolyline: {
        auto& p = static_cast<const PolylineEntity&>(e);
        static const char* kinds[] = {"2d", "3d", "mesh", "polyface"};
        std::vector<OdGePoint3d> pts;
        for (const PolylineVertex& v : p.vertices) pts.push_back(v.position);
        s += std::string(kinds[int(p.kind())]) + (p.isClosed() ? " closed" : " open") + " n=" +
             std::to_string(p.vertices.size()) + " points=" + points(pts);
        break;
      }
      case DbType::kSpline:
      case DbType::kHelix: {
        const SplineData& sp = e.type == DbType::kSpline
                                   ? static_cast<const SplineData&>(static_cast<const SplineEntity&>(e))
                                   : static_cast<const SplineData&>(static_cast<const HelixEntity&>(e));
        s += "degree=" + std::to_string(sp.degree) + " knots=" + std::to_string(sp.knots.size()) + " control=" +
             points(sp.controlPoints) + " fit=" + std::to_string(sp.fitPoints.size());
        break;
      }
      case DbType::kText: {
        auto& t = static_cast<const TextEntity&>(e);
        s += textData(t);
        break;
      }
      case DbType::kAttribute: {
        auto& t = static_cast<const AttributeEntity&>(e);
        s += "tag=" + str(t.tag) + " " + textData(t) + (t.multiline ? " mtext=" + str(t.multiline->text) : "");
        break;
      }
      case DbType::kAttributeDefinition: {
        auto& t = static_cast<const AttributeDefinitionEntity&>(e);
        s += "tag=" + str(t.tag) + " prompt=" + str(t.prompt) + " " + textData(t);
        break;
      }
      case DbType::kMText: {
        auto& m = static_cast<const MTextEntity&>(e);
        s += "position=" + pt(m.position) + " height=" + num(m.height) + " width=" + num(m.referenceWidth) +
             " attach=" + std::to_string(m.attachment) + " style=" + name(m.style) + " text=" + str(m.text);
        break;
      }
      case DbType::kBlockReference: {
        auto& r = static_cast<const BlockReferenceEntity&>(e);
        s += "block=" + name(r.block) + " position=" + pt(r.position) + " scale=" + pt(r.scale) + " rotation=" +
             deg(r.rotation) + (r.isArray() ? " array=" + std::to_string(r.columnCount) + "x" + std::to_string(r.rowCount) : "") +
             normal(r.normal) + " attributes=" + std::to_string(r.attributes.size());
        line(s);
        for (const AttributeEntity* a : r.attributes) entity(*a, indent + "    ");
        return;
      }
      case DbType::kDimension: {
        auto& d = static_cast<const DimensionEntity&>(e);
        s += "kind=" + std::to_string(int(d.kind)) + " block=" + name(d.block) + " style=" + name(d.style) +
             " defpoint=" + pt(d.definitionPoint) + " textmid=" + pt(d.textMidpoint) + " p13=" + pt(d.defPoint2) +
             " p14=" + pt(d.defPoint3) + (d.hasActualMeasurement ? " measurement=" + num(d.actualMeasurement) : "") +
             " text=" + str(d.text);
        break;
      }
      case DbType::kLeader: {
        auto& l = static_cast<const LeaderEntity&>(e);
        s += "vertices=" + points(l.vertices);
        break;
      }
      case DbType::kMLeader: {
        auto& m = static_cast<const MLeaderEntity&>(e);
        size_t lines = 0;
        for (const MLeaderBranch& b : m.branches) lines += b.lines.size();
        s += "content=" + std::to_string(m.contentType) + " branches=" + std::to_string(m.branches.size()) +
             " lines=" + std::to_string(lines) + " text=" + str(m.text);
        break;
      }
      case DbType::kHatch:
      case DbType::kMPolygon: {
        const HatchData& h = e.type == DbType::kHatch ? static_cast<const HatchData&>(static_cast<const HatchEntity&>(e))
                                                      : static_cast<const MPolygonEntity&>(e);
        size_t edges = 0;
        for (const HatchLoop& l : h.loops) edges += l.isPolyline() ? l.points.size() : l.edges.size();
        s += "pattern=" + str(h.patternName) + (h.solidFill ? " solid" : "") + " loops=" +
             std::to_string(h.loops.size()) + " edges=" + std::to_string(edges) + " lines=" +
             std::to_string(h.patternLines.size()) + (h.gradient.enabled ? " gradient=" + str(h.gradient.name) : "");
        break;
      }
      case DbType::kSolid:
      case DbType::kTrace:
      case DbType::kFace: {
        const OdGePoint3d* c = e.type == DbType::kSolid  ? static_cast<const SolidEntity&>(e).corners
                               : e.type == DbType::kTrace ? static_cast<const TraceEntity&>(e).corners
                                                          : static_cast<const FaceEntity&>(e).corners;
        s += "corners=" + pt(c[0]) + pt(c[1]) + pt(c[2]) + pt(c[3]);
        break;
      }
      case DbType::kRasterImage:
      case DbType::kWipeout: {
        const RasterImageData& r = e.type == DbType::kRasterImage
                                       ? static_cast<const RasterImageData&>(static_cast<const RasterImageEntity&>(e))
                                       : static_cast<const RasterImageData&>(static_cast<const WipeoutEntity&>(e));
        s += "origin=" + pt(r.origin) + " u=" + pt(r.uVector) + " v=" + pt(r.vVector) + " size=" + pt(r.imageSize) +
             " def=" + hex(r.imageDefinition) + " clip=" + std::to_string(r.clipBoundary.size());
        break;
      }
      case DbType::kViewport: {
        auto& v = static_cast<const ViewportEntity&>(e);
        s += "id=" + std::to_string(v.number) + " center=" + pt(v.center) + " size=" + num(v.width) + "x" +
             num(v.height) + " view=" + pt(v.viewCenter) + " viewheight=" + num(v.viewHeight) + " frozen=" +
             std::to_string(v.frozenLayers.size());
        break;
      }
      case DbType::kXLine: {
        auto& x = static_cast<const XLineEntity&>(e);
        s += "base=" + pt(x.basePoint) + " direction=" + pt(x.direction);
        break;
      }
      case DbType::kRay: {
        auto& x = static_cast<const RayEntity&>(e);
        s += "base=" + pt(x.basePoint) + " direction=" + pt(x.direction);
        break;
      }
      case DbType::kTolerance: {
        auto& t = static_cast<const ToleranceEntity&>(e);
        s += "position=" + pt(t.position) + " text=" + str(t.text);
        break;
      }
      case DbType::kTable: {
        auto& t = static_cast<const TableEntity&>(e);
        s += "block=" + name(t.block) + " position=" + pt(t.position) + " size=" + std::to_string(t.rows) + "x" +
             std::to_string(t.columns) + " cells=" + std::to_string(t.cells.size()) + tableGrid(t);
        break;
      }
      case DbType::kOle2Frame: {
        auto& o = static_cast<const Ole2FrameEntity&>(e);
        s += "upperleft=" + pt(o.upperLeft) + " lowerright=" + pt(o.lowerRight) + " bytes=" + std::to_string(o.data.size());
        break;
      }
      case DbType::kMLine: {
        auto& m = static_cast<const MLineEntity&>(e);
        std::vector<OdGePoint3d> pts;
        for (const MLineVertex& v : m.vertices) pts.push_back(v.position);
        s += "style=" + str(m.styleName) + " points=" + points(pts);
        break;
      }
      case DbType::kShape: {
        auto& sh = static_cast<const ShapeEntity&>(e);
        s += "name=" + str(sh.name) + " position=" + pt(sh.position) + " size=" + num(sh.size);
        if (sh.number) s += " number=" + std::to_string(sh.number);
        if (sh.style) s += " style=" + str(sh.style->name);
        break;
      }
      case DbType::kUnderlay: {
        auto& u = static_cast<const UnderlayEntity&>(e);
        s += "def=" + hex(u.definition) + " position=" + pt(u.position) + " scale=" + pt(u.scale);
        break;
      }
      case DbType::kModelerGeometry: {
        auto& m = static_cast<const ModelerGeometryEntity&>(e);
        s += "kind=" + m.dxfName + " groups=" + std::to_string(m.data.size());
        break;
      }
      case DbType::kMesh: {
        auto& m = static_cast<const MeshEntity&>(e);
        s += "vertices=" + points(m.vertices) + " facelist=" + std::to_string(m.faceList.size()) + " level=" +
             std::to_string(m.subdivisionLevel);
        break;
      }
      case DbType::kProxyEntity: {
        auto& p = static_cast<const ProxyEntity&>(e);
        s += "name=" + p.dxfName;
        if (const DatabaseClass* cls = proxyClass(db_, p)) s += " class=" + cls->dxfName;
        s += " groups=" + std::to_string(p.data.size());
        break;
      }
      default:
        break;
    }
    line(s);
  }

  std::string textData(const TextData& t) const {
    return "position=" + pt(t.position) + (t.hasAlignmentPoint ? " align=" + pt(t.alignmentPoint) : "") +
           " height=" + num(t.height) + " rotation=" + deg(t.rotation) + " style=" + name(t.style) +
           " h=" + std::to_string(t.horizontalMode) + " v=" + std::to_string(t.verticalMode) + " text=" + str(t.text);
  }

  // ---- objects ----
  void objects() {
    std::map<std::string, size_t> counts;
    for (const DbObject* o : db_.objects()) {
      const GenericObject* g = dbCast<GenericObject>(o);
      const DatabaseClass* cls = g ? proxyClass(db_, g->data) : nullptr;  // proxies by their class
      counts[cls ? cls->dxfName : g ? g->dxfName : std::string(dbTypeName(o->type))]++;
    }
    line("OBJECTS " + std::to_string(db_.objects().size()));
    for (const auto& [kind, count] : counts) line("  " + kind + " " + std::to_string(count));
  }

  void report() {
    const LoadReport& r = db_.loadReport();
    line("LOAD " + r.sourceFormat + " " + r.fileVersion + " " + r.codePage + (r.recovered ? " recovered" : ""));
    line("  proxies=" + std::to_string(r.proxyEntities) + "+" + std::to_string(r.proxyObjects) + " unmodelled=" +
         std::to_string(r.unmodelledObjects) + " handles given=" + std::to_string(r.reassignedHandles));
    for (const std::string& m : r.messages) line("  " + m);
    if (r.suppressedMessages) line("  ... " + std::to_string(r.suppressedMessages) + " more");
  }

  const OdDbDatabase& db_;
  const DumpOptions& o_;
  std::string out_;
};

}  // namespace

std::string dumpDatabase(const OdDbDatabase& db, const DumpOptions& options) { return Dumper(db, options).run(); }
