#include "Platform/OsConsole.h"

#include <windows.h>

namespace zm {

void* OpenConsole(const char* title)
{
    bool made = AllocConsole() != 0;
    if (!made) {
        FreeConsole();
        made = AllocConsole() != 0;
    }
    const HANDLE console = made ? GetStdHandle(STD_OUTPUT_HANDLE) : nullptr;
    SetConsoleTitleA(title);
    return console != INVALID_HANDLE_VALUE ? console : nullptr;
}

void CloseConsole(void*)
{
    FreeConsole();
}

void WriteConsoleText(void* console, const char* text, size_t length)
{
    DWORD written;
    WriteFile(console, text, DWORD(length), &written, nullptr);
}

bool SizeConsole(void* console, int width, int height)
{
    const COORD size = {SHORT(width), SHORT(height)};
    return SetConsoleScreenBufferSize(console, size) != 0;
}

void WriteDebugText(const char* text)
{
    OutputDebugStringA(text);
}

}  // namespace zm
