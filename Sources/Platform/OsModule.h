#pragma once

#include <string>

namespace zm {

/// The path of a library, by its handle, or of the running program for null. Empty if the system does not tell.
std::string ModulePath(void* module);

/// Whether this process is ending and the system has ended all threads but this one: what they held stays held.
bool OtherThreadsAreEnded();

/// Null if it cannot be loaded.
void* LoadModule(const char* path);
void* ModuleSymbol(void* module, const char* name);
bool UnloadModule(void* module);

}  // namespace zm
