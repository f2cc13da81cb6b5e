// DWF, PDF and DGN inputs: imported into a fresh database through the kit's import modules. PDF
// and DGN imports are also saved as a DWG file beside the output.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "converter/CDm2017.h"
#include "converter/LoadingSupport.h"
#include "kit/host/DrawingFileReaders.h"
#include "kit/host/OdImportModules.h"
#include "projects/common/CommonRoutines.h"
#include "projects/common/ProgramInfo.h"
#include "services/DwfLayerFix.h"
#include "services/MyDgnServices.h"
#include "services/MyServices.h"
#include "services/Trace.h"

namespace {

constexpr int kInputKindDwf = 1000;

std::string Utf8(const OdString& text) {
  std::string out;
  return OdStringToUtf8(out, text);
}

// A name no other file has: a fresh temporary file's name with ".dwf" appended.
std::string TemporaryDwfName() {
  std::error_code failed;
  std::string pattern = (std::filesystem::temp_directory_path(failed) / "dmXXXXXX").string();
  if (failed) pattern = "/tmp/dmXXXXXX";
  const int descriptor = mkstemp(pattern.data());
  if (descriptor < 0) return {};
  close(descriptor);
  std::remove(pattern.c_str());
  return pattern + ".dwf";
}

OdString JoinedFontPaths() {
  OdString joined;
  for (const OdString& directory : TheServices().GetFontPaths()) {
    if (!joined.isEmpty()) joined += L";";
    joined += directory;
  }
  return joined;
}

MyDgnServices& DgnServices() {
  static MyDgnServices services;
  return services;
}

const char* DgnImportMessage(int result) {
  switch (result) {
    case kImportBadPassword: return "Invalid password.";
    case kImportCantOpenFile: return "Cannot open file.";
    case kImportInvalidFile: return "Invalid file.";
    case kImportDecryptionError: return "Decryption error.";
    default: return "Unknown error.";
  }
}

void SetDwfProperties(OdImportProperties& p, const OdDbDatabasePtr& database, const OdString& source) {
  p.putAt("Database", database);
  p.putAt("DwfPath", source);
  p.putAt("Password", OdString());
  p.putAt("PaperWidth", 297.0);
  p.putAt("PaperHeight", 210.0);
  p.putAt("Background", 0xFFFFFF);
  p.putAt("PreserveColorIndices", false);
  p.putAt("LayoutNumber", -1);
  p.putAt("ImportW3d", true);
}

void SetPdfOptions(OdImportProperties& p) {
  p.putAt("Rotation", 0.0);
  p.putAt("Scaling", 1.0);
  p.putAt("ImportVectorGeometry", true);
  p.putAt("ImportSolidFills", true);
  p.putAt("ImportTrueTypeText", true);
  p.putAt("ImportRasterImages", true);
  p.putAt("ImportGradientFills", false);
  p.putAt("ImportAsBlock", false);
  p.putAt("JoinLineAndArcSegments", true);
  p.putAt("ConvertSolidsToHatches", true);
  p.putAt("ApplyLineweight", true);
  p.putAt("UseGeometryOptimization", true);
}

void SetDgnProperties(OdImportProperties& p, const OdString& input, MyDgnServices& dgn) {
  p.putAt("Services", static_cast<OdDbHostAppServices*>(&TheServices()));
  p.putAt("DgnPath", input);
  p.putAt("DgnServices", static_cast<OdDbHostAppServices*>(&dgn));
  p.putAt("XRefImportMode", std::uint8_t{1});
  p.putAt("ImportActiveModelToModelSpace", true);
  p.putAt("ImportPaperSpaceModels", true);
  p.putAt("ExplodeTextNodes", false);
  p.putAt("RecomputeDimensionsAfterImport", false);
  p.putAt("MS_SYMBRSRC", dgn.SymbolResources());
  p.putAt("DontImportInvisibleElements", false);
  p.putAt("ImportViewIndex", std::uint8_t{255});
  p.putAt("3dEllipseImportMode", std::uint8_t{0});
  p.putAt("2dEllipseImportMode", std::uint8_t{0});
  p.putAt("3dShapeImportMode", std::uint8_t{1});
  p.putAt("2dShapeImportMode", std::uint8_t{0});
  // Set twice on purpose: the second value is the one in force, and the two-dimensional
  // counterpart stays unset. Files converted so far depend on it.
  p.putAt("3dClosedBSplineCurveImportMode", std::uint8_t{1});
  p.putAt("3dClosedBSplineCurveImportMode", std::uint8_t{0});
  p.putAt("shxFontsPath", JoinedFontPaths());
  p.putAt("BreakDimensionAssociation", false);
}

}  // namespace

void CDm2017::ImportDwf(const OdString& input) {
  std::unique_ptr<OdDbImporter> importer = odLoadImporter("TD_Dwf7Import");
  if (!importer) {
    PrintMessage("Could not create dwf importer");
    return;
  }
  OdString source = input;
  const std::string temporary = TemporaryDwfName();
  const bool fixed = !temporary.empty() && FixDwfLayers(Utf8(input), temporary, false, true);
  if (fixed) {
    PrintMessage("DWF Layer Fix");
    source = toOdString(temporary);
  }
  inputKind = kInputKindDwf;
  g_pDb = HostServices().createDatabase();
  SetDwfProperties(importer->properties(), g_pDb, source);
  TraceMessage("Begin Importing DWF");
  importer->import();
  TraceMessage("Finsihed Importing DWF");
  if (fixed) std::remove(temporary.c_str());
  g_DwfImported = true;
}

void CDm2017::ImportPdf(const OdString& input) {
  std::unique_ptr<OdDbImporter> importer = odLoadImporter("TD_PdfImport");
  if (!importer) {
    PrintMessage("Could not create PDF importer");
    return;
  }
  importedPdfDb = HostServices().createDatabase();
  g_pDb = importedPdfDb;
  OdImportProperties& properties = importer->properties();
  properties.putAt("Database", importedPdfDb);
  properties.putAt("PdfPath", input);
  int result = importer->open();
  const int pages = result == kImportOk ? importer->pageCount() : 0;
  SetPdfOptions(properties);
  for (int page = 1; page <= pages; ++page) {
    std::cout << "Importing Page #" << page << " of .." << pages << "\n" << std::flush;
    properties.putAt("PageNumber", page);
    result = importer->import();
    TraceMessage("*** PDF Import Result", result);
    if (result != kImportOk) {
      std::cout << "*** PDF Import Failed: " << result << "\n" << std::flush;
      break;
    }
  }
  TraceMessage("PdfImport complete");
  if (result != kImportOk) throw odImportError(result);
  SaveImportedDrawing(importedPdfDb);
}

int CDm2017::ImportDgn(const OdString& input) {
  MyDgnServices& dgn = DgnServices();
  if (!fontPath.isEmpty()) dgn.SetFontPath(fontPath);
  dgn.AddToXPath(DirectoryPart(input));
  for (const OdString& path : {CurrentDirectory(), input, toOdString(g_ProgramDirectory)}) {
    dgn.AddToXPath(DirectoryPart(path));
  }

  std::unique_ptr<OdDbImporter> importer = odLoadImporter("TD_DgnImport");
  if (!importer) {
    PrintMessage("Could not create DGN Importer");
    return -1;
  }
  SetDgnProperties(importer->properties(), input, dgn);
  const int result = importer->import();
  if (result != kImportOk) {
    PrintMessage(DgnImportMessage(result));
    return -1;
  }
  const OdDbDatabasePtr* imported = importer->properties().getAs<OdDbDatabasePtr>("Database");
  if (!imported || !*imported) {
    PrintMessage("File Not Successfully Imported");
    return -1;
  }
  // The drawing is the run's before it is saved: a failed side file must not cost the conversion.
  importedDgnDb = *imported;
  g_pDb = importedDgnDb;
  SaveImportedDrawing(importedDgnDb);
  TraceMessage("DGN File Sucessfully Imported");
  return 0;
}

void CDm2017::SaveImportedDrawing(const OdDbDatabasePtr& database) {
  writeDrawingFile(*database, Utf8(baseOutputName + L".dwg"), kSaveDwg, kDwgVersionAC1024);
}
