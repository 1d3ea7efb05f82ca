#include "Platform/OsSystem.h"

#include <windows.h>

namespace zm {

const ZM_PLATFORM kPlatform = ZM_PLATFORM_WINDOWS;

// The documented functions return the version in the program's manifest; this one returns the system's.
SystemVersion ReadSystemVersion()
{
    typedef LONG(WINAPI * GetVersionFunction)(RTL_OSVERSIONINFOW*);
    SystemVersion version;
    const FARPROC address = GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetVersion");
    const GetVersionFunction read = reinterpret_cast<GetVersionFunction>(reinterpret_cast<void*>(address));
    RTL_OSVERSIONINFOW info = {};
    info.dwOSVersionInfoSize = sizeof(info);
    if (read != nullptr && read(&info) == 0) {
        version.part[0] = info.dwMajorVersion;
        version.part[1] = info.dwMinorVersion;
        version.part[2] = info.dwBuildNumber;
        version.name = "Windows " + std::to_string(info.dwMajorVersion) + '.' + std::to_string(info.dwMinorVersion) +
                       '.' + std::to_string(info.dwBuildNumber);
    }
    return version;
}

}  // namespace zm
