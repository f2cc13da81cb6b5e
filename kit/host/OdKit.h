// The kit's start and stop, the list of modules linked into the program, and the handler that
// failed kit assertions report to. The application starts the kit once, with its host services,
// before it reads any drawing, and stops it after the last database is released.
#pragma once

#include <string>
#include <vector>

class OdDbHostAppServices;

// Starts the kit with the application's host services; readers, importers and lookups reach them
// through odHostAppServices() until odUninitialize(). A second call replaces the services.
void odInitialize(OdDbHostAppServices* services);
void odUninitialize();
bool odIsInitialized();
// The services given to odInitialize, or null when the kit is not started.
OdDbHostAppServices* odHostAppServices();

// The graphics system (devices, views); started after the kit and stopped before it.
void odgsInitialize();
void odgsUninitialize();
bool odgsIsInitialized();

// Modules linked into the program rather than loaded from files. Registering a name twice keeps
// one entry; the list keeps registration order.
void odRegisterStaticModule(const std::string& name);
const std::vector<std::string>& odStaticModules();
bool odIsModuleRegistered(const std::string& name);

// What a failed kit assertion reports: the expression, the source file and the line. The
// handler returns and the kit goes on.
using OdAssertFunc = void (*)(const char* expression, const char* fileName, int line);
void odSetAssertFunc(OdAssertFunc handler);
// Reports a failed assertion to the installed handler (nothing happens without one).
void odAssertFailed(const char* expression, const char* fileName, int line);

#define ODA_ASSERT(expression) \
  ((expression) ? static_cast<void>(0) : odAssertFailed(#expression, __FILE__, __LINE__))
