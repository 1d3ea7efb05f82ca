#pragma once

#include "ZmApi.h"

// Shared libraries by the system's handles, which ZmGetModuleFileName() takes, too. Any thread.

/// Loads a library, or takes one that is loaded once more. Both separators separate; a name without one is searched
/// where the system searches libraries. Null if there is none that can be loaded; no window tells why.
ZM_API void* ZmLoadSharedLibrary(const char* path);

/// The address of a function or variable that the library exports by that name; null if there is none.
ZM_API void* ZmGetSharedLibrarySymbol(void* library, const char* name);

/// Takes back one loading; with the last one the addresses become invalid. 1, or 0 for null and where the system
/// refuses.
ZM_API int ZmFreeSharedLibrary(void* library);
