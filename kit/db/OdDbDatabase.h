// The drawing database: one in-memory model of a drawing, filled by the readers and importers and
// read by regeneration and the writers.
#pragma once

#include <memory>

class OdDbDatabase {
public:
  virtual ~OdDbDatabase() = default;
};

using OdDbDatabasePtr = std::shared_ptr<OdDbDatabase>;
