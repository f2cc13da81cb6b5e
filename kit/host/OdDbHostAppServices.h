// The host application's services as the kit sees them: the application overrides findFile to
// say where fonts, external references and plot styles live.
#pragma once

#include "kit/base/OdString.h"

class OdDbDatabase;

class OdDbHostAppServices {
public:
  // What the kit is looking for.
  enum FindFileHint { kDefault = 0, kFontFile = 1, kCompiledShapeFile = 2, kTrueTypeFontFile = 3 };

  virtual ~OdDbHostAppServices() = default;

  // The kit's own search: the name as given, absolute or relative to the current directory.
  // Returns the path when a regular file is there, else an empty string.
  virtual OdString findFile(const OdString& fileName, OdDbDatabase* database = nullptr,
                            int hint = kDefault);
};
