#pragma once

#include "ZmApi.h"

/// Writes the path of a loaded library, or of the running program if `module` is null, to a buffer of `size` bytes.
/// `module` is the system's handle of the library. Returns the length, or 0 with an empty text if the system does not
/// report the path or it does not fit. Paths have backslashes on Windows; elsewhere they are returned unchanged.
ZM_API unsigned int ZmGetModuleFileName(void* module, char* buffer, unsigned int size);
