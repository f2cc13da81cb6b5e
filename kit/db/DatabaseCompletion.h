// The last step of every reader: makes a freshly read database whole, whatever the file left out
// or broke. It adds the standard records (layer "0", the BYLAYER/BYBLOCK/CONTINUOUS linetypes,
// the Standard text and dimension styles, model and paper space with their layouts, the named
// objects and layout dictionaries), gives fresh handles to objects that had none or a taken one,
// links layouts and their blocks both ways, resolves per-viewport frozen layers, and cuts
// circular block references. Every repair is noted in the load report.
#pragma once

class OdDbDatabase;

void completeDatabase(OdDbDatabase& db);
