#include "Threads/SystemThread.h"

#include <windows.h>

int SystemPriority()
{
    return GetThreadPriority(GetCurrentThread());
}

std::string SystemThreadName()
{
    typedef HRESULT(WINAPI * Function)(HANDLE, wchar_t**);
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetThreadDescription");
    wchar_t* wide = nullptr;
    if (found == nullptr ||
        reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found))(GetCurrentThread(), &wide) < 0) {
        return "?";
    }
    char name[512] = "";
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, name, sizeof(name), nullptr, nullptr);
    LocalFree(wide);
    return name;
}

bool SystemStopsThreads()
{
    return true;
}
