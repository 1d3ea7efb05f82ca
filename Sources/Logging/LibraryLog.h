#pragma once

#include "ZmLog.h"

namespace zm {

/// The id of the library's own module; set when the library is loaded.
extern int g_LibraryModule;

/// Prints a warning of the library itself. Thread-safe. `file` is the name of the source file without extension.
void Warn(int line, const char* file, const char* format, ...) __attribute__((__format__(printf, 3, 4)));

}  // namespace zm
