#pragma once

#include "ZmLog.h"

namespace zm {

/// The id of the library's own module; set when the library is loaded.
extern int g_LibraryModule;

/// A warning of the library itself, from any thread. `file` is the source's name without extension.
void Warn(int line, const char* file, const char* format, ...) __attribute__((__format__(printf, 3, 4)));

}  // namespace zm
