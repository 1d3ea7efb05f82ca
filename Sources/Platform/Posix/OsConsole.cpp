#include "Platform/OsConsole.h"

#include <stdio.h>
#include <syslog.h>

namespace zm {

void* OpenConsole(const char*)
{
    return stdout;
}

void CloseConsole(void*) {}

void WriteConsoleText(void* console, const char* text, size_t length)
{
    FILE* file = static_cast<FILE*>(console);
    fwrite(text, 1, length, file);
    fflush(file);
}

bool SizeConsole(void*, int, int)
{
    return false;
}

void WriteDebugText(const char* text)
{
    syslog(LOG_USER | LOG_DEBUG, "%s", text);
}

}  // namespace zm
