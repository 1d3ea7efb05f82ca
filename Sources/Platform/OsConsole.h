#pragma once

#include <stddef.h>

namespace zm {

/// A console of the process's own, where the system has such; elsewhere the standard output. Null if there is none. The
/// title is set in any case.
void* OpenConsole(const char* title);
void CloseConsole(void* console);
void WriteConsoleText(void* console, const char* text, size_t length);
/// The size of the buffer in characters; false where there is none.
bool SizeConsole(void* console, int width, int height);

/// Passes a line to the debugger, or to the system's log.
void WriteDebugText(const char* text);

}  // namespace zm
