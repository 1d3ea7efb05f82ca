#pragma once

#include <stddef.h>

namespace zm {

/// Opens a console of the process's own, or the standard output on systems that have no such consoles. Returns null if
/// there is none. Sets the title in any case.
[[nodiscard]] void* OpenConsole(const char* title);
void CloseConsole(void* console);
void WriteConsoleText(void* console, const char* text, size_t length);
/// Sets the size of the buffer in characters. Returns false if the console has none.
[[nodiscard]] bool SizeConsole(void* console, int width, int height);

/// Sends a line to the debugger or to the system log.
void WriteDebugText(const char* text);

}  // namespace zm
