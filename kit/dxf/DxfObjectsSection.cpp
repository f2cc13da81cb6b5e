// OBJECTS section: dictionaries, layouts and page setups, image and underlay definitions,
// groups, xrecords, spatial filters, multiline styles and draw order tables; every other object
// is kept whole as a GenericObject.
#include <unordered_map>

#include "kit/base/OdError.h"
#include "kit/dxf/DxfLoader.h"

namespace {

// The group loop of objects: handle, owner (the first 330 before any subclass marker),
// application groups and extended data; the object's own codes go to `specific`. Xrecords hand
// every group after their marker to `specific`, since any code may be data there.
template <class O, class Specific>
void readObjectGroups(DxfLoader& in, O& object, bool xrecord, Specific&& specific) {
  bool ownerSeen = false;
  in.subclass = std::string_view();
  while (in.next()) {
    const int code = in.tag.code;
    if (code == 0) {
      in.pushBack();
      return;
    }
    bool beforeMarkers = in.subclass.empty();
    if (code == 100 && !(xrecord && in.subclass == "AcDbXrecord")) {
      in.subclass = in.tag.trimmed();
      specific(100);
      continue;
    }
    if (beforeMarkers) {
      if (code == 5 || code == 105) {
        object.handle = in.handle();
        continue;
      }
      if (code == 330 && !ownerSeen) {
        object.ownerHandle = in.handle();
        ownerSeen = true;
        continue;
      }
      if (code == 102) {
        in.readApplicationGroup(object);
        continue;
      }
    }
    if (code == 1001 || (code >= 1000 && !xrecord)) {
      in.readExtendedData(object);
      continue;
    }
    specific(code);
  }
}

void readDictionary(DxfLoader& in, Dictionary& d) {
  std::string pendingName;
  readObjectGroups(in, d, false, [&](int code) {
    switch (code) {
      case 280: d.hardOwner = in.boolean(); break;
      case 281: d.cloning = in.int16(); break;
      case 3: pendingName = in.text(); break;
      case 350:
      case 360:
        d.entries.push_back({std::move(pendingName), in.handle()});
        pendingName.clear();
        break;
      case 340: d.defaultEntry = in.handle(); break;
      default: break;
    }
  });
}

bool takePlotSettings(DxfLoader& in, int code, PlotSettingsData& p) {
  switch (code) {
    case 1: p.pageSetupName = in.text(); return true;
    case 2: p.plotConfiguration = in.text(); return true;
    case 4: p.paperSizeName = in.text(); return true;
    case 6: p.plotViewName = in.text(); return true;
    case 7: p.styleSheet = in.text(); return true;
    case 40: p.marginLeft = in.real(); return true;
    case 41: p.marginBottom = in.real(); return true;
    case 42: p.marginRight = in.real(); return true;
    case 43: p.marginTop = in.real(); return true;
    case 44: p.paperWidth = in.real(); return true;
    case 45: p.paperHeight = in.real(); return true;
    case 46: p.plotOriginX = in.real(); return true;
    case 47: p.plotOriginY = in.real(); return true;
    case 48: p.plotWindowMin.x = in.real(); return true;
    case 49: p.plotWindowMin.y = in.real(); return true;
    case 140: p.plotWindowMax.x = in.real(); return true;
    case 141: p.plotWindowMax.y = in.real(); return true;
    case 142: p.scaleNumerator = in.real(); return true;
    case 143: p.scaleDenominator = in.real(); return true;
    case 70: p.plotFlags = in.int16(); return true;
    case 72: p.paperUnits = in.int16(); return true;
    case 73: p.plotRotation = in.int16(); return true;
    case 74: p.plotType = in.int16(); return true;
    case 75: p.standardScaleType = in.int16(); return true;
    case 147: p.standardScaleFactor = in.real(); return true;
    case 148: p.paperImageOrigin.x = in.real(); return true;
    case 149: p.paperImageOrigin.y = in.real(); return true;
    case 76: p.shadePlotMode = in.int16(); return true;
    case 77: p.shadePlotResolution = in.int16(); return true;
    case 78: p.shadePlotDpi = in.int16(); return true;
    case 333: p.shadePlot = in.handle(); return true;
    default: return false;
  }
}

void readLayout(DxfLoader& in, Layout& l) {
  readObjectGroups(in, l, false, [&](int code) {
    if (in.subclass != "AcDbLayout") {
      takePlotSettings(in, code, l);
      return;
    }
    switch (code) {
      case 1: l.name = in.text(); break;
      case 70: l.layoutFlags = in.int16(); break;
      case 71: l.tabOrder = in.int16(); break;
      case 10: case 20: in.coordinate(l.limMin, 10); break;
      case 11: case 21: in.coordinate(l.limMax, 11); break;
      case 12: case 22: case 32: in.coordinate(l.insertionBase, 12); break;
      case 14: case 24: case 34: in.coordinate(l.extMin, 14); break;
      case 15: case 25: case 35: in.coordinate(l.extMax, 15); break;
      case 146: l.elevation = in.real(); break;
      case 13: case 23: case 33: in.coordinate(l.ucsOrigin, 13); break;
      case 16: case 26: case 36: in.coordinate(l.ucsXAxis, 16); break;
      case 17: case 27: case 37: in.coordinate(l.ucsYAxis, 17); break;
      case 76: l.ucsOrthoType = in.int16(); break;
      case 330: l.blockRecordHandle = in.handle(); break;
      case 331: l.lastActiveViewport = in.handle(); break;
      case 345: case 346: l.ucs = in.handle(); break;
      default: break;
    }
  });
}

void readImageDefinition(DxfLoader& in, RasterImageDefObject& d) {
  readObjectGroups(in, d, false, [&](int code) {
    switch (code) {
      case 90: d.classVersion = in.int32(); break;
      case 1: d.fileName = in.text(); break;
      case 10: case 20: in.coordinate(d.imageSize, 10); break;
      case 11: case 21: in.coordinate(d.pixelSize, 11); break;
      case 280: d.loaded = in.boolean(); break;
      case 281: d.resolutionUnits = in.int16(); break;
      default: break;
    }
  });
}

void readGroup(DxfLoader& in, GroupObject& g) {
  readObjectGroups(in, g, false, [&](int code) {
    switch (code) {
      case 300: g.description = in.text(); break;
      case 70: g.unnamed = in.boolean(); break;
      case 71: g.selectable = in.boolean(); break;
      case 340: g.entities.push_back(in.handle()); break;
      default: break;
    }
  });
}

void readXRecord(DxfLoader& in, XRecordObject& x) {
  bool cloningSeen = false;
  readObjectGroups(in, x, true, [&](int code) {
    if (code == 100 && x.values.empty() && !cloningSeen) return;  // the AcDbXrecord marker itself
    if (code == 280 && !cloningSeen && x.values.empty()) {
      x.cloning = in.int16();
      cloningSeen = true;
      return;
    }
    if (in.subclass == "AcDbXrecord") x.values.push_back(in.taggedValue());
  });
}

void readSpatialFilter(DxfLoader& in, SpatialFilterObject& f) {
  int matrixValues = 0;
  bool frontFlag = false, backFlag = false;
  readObjectGroups(in, f, false, [&](int code) {
    switch (code) {
      case 70: return;  // point count: the 10 groups say it
      case 10: f.boundary.push_back({in.real(), 0.0}); return;
      case 20: if (!f.boundary.empty()) f.boundary.back().y = in.real(); return;
      case 210: case 220: case 230: in.coordinate(f.normal, 210); return;
      case 11: case 21: case 31: in.coordinate(f.origin, 11); return;
      case 71: f.displayBoundary = in.boolean(); return;
      case 72:
        f.frontClipEnabled = in.boolean();
        frontFlag = f.frontClipEnabled;
        return;
      case 73:
        f.backClipEnabled = in.boolean();
        backFlag = f.backClipEnabled;
        return;
      case 41:  // the back distance has its own code (some writers use 40 for both)
        f.backClip = in.real();
        backFlag = false;
        return;
      case 40: {
        double value = in.real();
        // A front and a back distance come first when enabled, then two 3x4 matrices row by row.
        if (frontFlag) {
          f.frontClip = value;
          frontFlag = false;
          return;
        }
        if (backFlag) {
          f.backClip = value;
          backFlag = false;
          return;
        }
        if (matrixValues < 24) {
          OdGeMatrix3d& m = matrixValues < 12 ? f.inverseInsertTransform : f.clipTransform;
          int index = matrixValues % 12;
          m.entry[index / 4][index % 4] = value;
          ++matrixValues;
        }
        return;
      }
      default: return;
    }
  });
}

void readMLineStyle(DxfLoader& in, MLineStyleObject& s) {
  bool inElements = false;
  readObjectGroups(in, s, false, [&](int code) {
    MLineStyleElement* e = s.elements.empty() ? nullptr : &s.elements.back();
    switch (code) {
      case 2: s.name = in.text(); break;
      case 70: s.flags = in.int16(); break;
      case 3: s.description = in.text(); break;
      case 62:
        if (inElements && e) e->color = OdCmEntityColor::fromACI(in.int16());
        else s.fillColor = OdCmEntityColor::fromACI(in.int16());
        break;
      case 420:
        if (inElements && e) e->color = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32()));
        else s.fillColor = OdCmEntityColor::fromPackedRGB(uint32_t(in.int32()));
        break;
      case 51: s.startAngle = in.angle(); break;
      case 52: s.endAngle = in.angle(); break;
      case 71: inElements = true; break;
      case 49:
        s.elements.emplace_back();
        s.elements.back().offset = in.real();
        break;
      case 6: if (e) e->linetypeName = in.text(); break;
      default: break;
    }
  });
}

void readSortEntsTable(DxfLoader& in, SortEntsTableObject& t) {
  readObjectGroups(in, t, false, [&](int code) {
    switch (code) {
      case 330: t.blockRecordHandle = in.handle(); break;
      case 331: t.entries.push_back({in.handle(), OdDbHandle()}); break;
      case 5: if (!t.entries.empty()) t.entries.back().second = in.handle(); break;
      default: break;
    }
  });
}

void readUnderlayDefinition(DxfLoader& in, UnderlayDefinitionObject& d) {
  readObjectGroups(in, d, false, [&](int code) {
    if (code == 1) d.fileName = in.text();
    else if (code == 2) d.itemName = in.text();
  });
}

void readGenericObject(DxfLoader& in, GenericObject& g) {
  readObjectGroups(in, g, false, [&](int code) {
    if (code == 100 && g.data.empty() && in.subclass == "AcDbObject") return;
    g.data.push_back(in.taggedValue());
  });
}

template <class O, class Read>
DbObject* make(DxfLoader& in, Read read) {
  O* o = in.db.newObject<O>();
  read(in, *o);
  return o;
}


}  // namespace

void DxfLoader::readObjectsSection() {
  // Classes the file marks as proxies, by name (the first declaration of a name counts).
  std::unordered_map<std::string, bool> classProxy;
  for (const DatabaseClass& c : db.classes()) classProxy.emplace(c.dxfName, c.wasProxy);
  auto classIsProxy = [&classProxy](const std::string& name) {
    auto it = classProxy.find(name);
    return it != classProxy.end() && it->second;
  };
  while (next()) {
    if (tag.code != 0) continue;
    std::string name(tag.trimmed());
    if (name == "ENDSEC") return;
    if (name == "EOF" || name == "SECTION") {
      warn("OBJECTS section not closed (" + where() + ")");
      pushBack();
      return;
    }
    DbObject* object;
    if (name == "DICTIONARY" || name == "ACDBDICTIONARYWDFLT") {
      auto* d = db.newObject<Dictionary>();
      d->withDefault = name == "ACDBDICTIONARYWDFLT";
      readDictionary(*this, *d);
      object = d;
      if (!db.namedObjectsDictionary() && d->ownerHandle.isNull() && !d->handle.isNull()) {
        db.setNamedObjectsDictionary(d->handle);
      }
    } else if (name == "LAYOUT") {
      object = make<Layout>(*this, readLayout);
    } else if (name == "PLOTSETTINGS") {
      object = make<PlotSettingsObject>(*this, [](DxfLoader& in, PlotSettingsObject& p) {
        readObjectGroups(in, p, false, [&](int code) { takePlotSettings(in, code, p); });
      });
    } else if (name == "IMAGEDEF") {
      object = make<RasterImageDefObject>(*this, readImageDefinition);
    } else if (name == "GROUP") {
      object = make<GroupObject>(*this, readGroup);
    } else if (name == "XRECORD") {
      object = make<XRecordObject>(*this, readXRecord);
    } else if (name == "SPATIAL_FILTER") {
      object = make<SpatialFilterObject>(*this, readSpatialFilter);
    } else if (name == "MLINESTYLE") {
      object = make<MLineStyleObject>(*this, readMLineStyle);
    } else if (name == "SORTENTSTABLE") {
      object = make<SortEntsTableObject>(*this, readSortEntsTable);
    } else if (name == "PDFDEFINITION" || name == "DWFDEFINITION" || name == "DGNDEFINITION") {
      auto* d = db.newObject<UnderlayDefinitionObject>();
      d->format = name.rfind("PDF", 0) == 0   ? UnderlayDefinitionObject::Format::kPdf
                  : name.rfind("DWF", 0) == 0 ? UnderlayDefinitionObject::Format::kDwf
                                              : UnderlayDefinitionObject::Format::kDgn;
      readUnderlayDefinition(*this, *d);
      object = d;
    } else {
      auto* g = db.newObject<GenericObject>();
      g->dxfName = name;
      g->isProxy = name == "ACAD_PROXY_OBJECT" || classIsProxy(name);
      readGenericObject(*this, *g);
      LoadReport& report = db.loadReport();
      if (g->isProxy) {
        ++report.proxyObjects;
        ++report.proxyNames[name];
      } else {
        ++report.unmodelledObjects;
      }
      object = g;
    }
    db.addObject(object);
  }
  structureError(eEndOfFile, "the file ends inside the OBJECTS section");
}
