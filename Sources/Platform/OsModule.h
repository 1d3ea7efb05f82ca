#pragma once

#include <string>

namespace zm {

/// The path of a library by its handle, or of the running program for null. Empty if the system cannot provide it.
[[nodiscard]] std::string ModulePath(void* module);

/// Whether the process is exiting and the system has ended all other threads: locks that they held are never released.
[[nodiscard]] bool OtherThreadsAreEnded();

/// Loads a library. Returns null on failure.
[[nodiscard]] void* LoadModule(const char* path);
[[nodiscard]] void* ModuleSymbol(void* module, const char* name);
[[nodiscard]] bool UnloadModule(void* module);

}  // namespace zm
