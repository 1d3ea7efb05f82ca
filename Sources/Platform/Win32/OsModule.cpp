#include "Platform/OsModule.h"

#include "Platform/PathText.h"

#include <windows.h>

// Part of ntdll, but not declared in any header.
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

void* LoadModule(const char* path)
{
    const std::string native = WithSeparator('\\', path);
    DWORD oldMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &oldMode);
    HMODULE module = LoadLibraryA(native.c_str());
    SetThreadErrorMode(oldMode, nullptr);
    return module;
}

void* ModuleSymbol(void* module, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

bool UnloadModule(void* module)
{
    return FreeLibrary(static_cast<HMODULE>(module)) != 0;
}

}  // namespace zm
