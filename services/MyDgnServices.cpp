#include "services/MyDgnServices.h"

#include "services/MyServices.h"
#include "services/Trace.h"

OdString MyDgnServices::findFile(const OdString& fileName, OdDbDatabase* database, int hint) {
  if (fileName.isEmpty()) return fileName;
  const OdString extension = LowerExtensionOf(fileName);
  if (extension == L".rsc" || extension == L".mat") {
    return OdDbHostAppServices::findFile(fileName, database, hint);
  }
  OdString name = fileName;
  name.replace(L'\\', L'/');
  OdString found = OdDbHostAppServices::findFile(name, database, hint);
  if (found.isEmpty()) {
    TraceMessage("-------------------------------------");
    found = FindReference(BareFileName(name), extension == L".dgn");
  }
  TraceMessage(found.isEmpty() ? "File Not Found" : "File Found");
  if (!found.isEmpty()) g_LastFoundFile = found;
  return found;
}

// Names are looked up in one encoding on this system; the traces of the other forms stay.
OdString MyDgnServices::FindReference(const OdString& bareName, bool hasDgnExtension) {
  for (const OdString& directory : xrefPaths.Directories()) {
    const OdString joined = directory + bareName;
    TraceMessage("Checking newPath", joined);
    OdString found = OdDbHostAppServices::findFile(joined);
    if (found.isEmpty()) {
      TraceMessage("Checking nPath as UTF8", joined);
      TraceMessage("Checking nPath as Unicode", joined);
    }
    if (found.isEmpty() && !hasDgnExtension) found = OdDbHostAppServices::findFile(joined + L".dgn");
    if (found.isEmpty()) continue;
    TraceMessage("Found XRef", found);
    return found;
  }
  return OdString();
}
