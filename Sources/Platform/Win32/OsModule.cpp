#include "Platform/OsModule.h"

#include <windows.h>

// Of ntdll; no header declares it.
extern "C" NTSYSAPI BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace zm {

std::string ModulePath(void* module)
{
    constexpr DWORD kLongestPath = 32768;
    std::string path(MAX_PATH, 0);
    for (;;) {
        const DWORD length = GetModuleFileNameA(static_cast<HMODULE>(module), path.data(), DWORD(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        if (path.size() >= kLongestPath) {
            return std::string();
        }
        path.resize(2 * path.size());
    }
}

bool OtherThreadsAreEnded()
{
    return RtlDllShutdownInProgress() != 0;
}

}  // namespace zm
