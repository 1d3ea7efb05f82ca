#pragma once

#include "ZmApi.h"

// Shared libraries by the system's handles, which ZmGetModuleFileName() also accepts. Any thread may call.

/// Loads a library, or adds a reference if it is loaded already. Both separators are accepted; a name without one is
/// searched in the system's library paths. Returns null if the library cannot be loaded; never shows an error dialogue.
ZM_API void* ZmLoadSharedLibrary(const char* path);

/// Returns the address of an exported function or variable, or null if there is none of that name.
ZM_API void* ZmGetSharedLibrarySymbol(void* library, const char* name);

/// Releases one reference; with the last one the library's addresses become invalid. Returns 1, or 0 for null or if the
/// system refuses.
ZM_API int ZmFreeSharedLibrary(void* library);
