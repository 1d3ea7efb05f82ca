#pragma once

#include <string>

namespace zm {

/// The path of a library by its handle, or of the running program for null. Empty if the system cannot provide it.
std::string ModulePath(void* module);

/// Whether the process is exiting and the system has ended all other threads: locks that they held are never released.
bool OtherThreadsAreEnded();

/// Loads a library. Returns null on failure.
void* LoadModule(const char* path);
void* ModuleSymbol(void* module, const char* name);
bool UnloadModule(void* module);

}  // namespace zm
