#include "kit/host/OdKit.h"

#include <algorithm>

namespace {

OdDbHostAppServices* hostServices = nullptr;
bool kitStarted = false;
bool graphicsStarted = false;
OdAssertFunc assertHandler = nullptr;

std::vector<std::string>& staticModules() {
  static std::vector<std::string> modules;
  return modules;
}

}  // namespace

void odInitialize(OdDbHostAppServices* services) {
  hostServices = services;
  kitStarted = true;
}

void odUninitialize() {
  hostServices = nullptr;
  kitStarted = false;
}

bool odIsInitialized() { return kitStarted; }
OdDbHostAppServices* odHostAppServices() { return hostServices; }

void odgsInitialize() { graphicsStarted = true; }
void odgsUninitialize() { graphicsStarted = false; }
bool odgsIsInitialized() { return graphicsStarted; }

void odRegisterStaticModule(const std::string& name) {
  if (!odIsModuleRegistered(name)) staticModules().push_back(name);
}

const std::vector<std::string>& odStaticModules() { return staticModules(); }

bool odIsModuleRegistered(const std::string& name) {
  const auto& modules = staticModules();
  return std::find(modules.begin(), modules.end(), name) != modules.end();
}

void odSetAssertFunc(OdAssertFunc handler) { assertHandler = handler; }

void odAssertFailed(const char* expression, const char* fileName, int line) {
  if (assertHandler) assertHandler(expression ? expression : "", fileName ? fileName : "", line);
}
