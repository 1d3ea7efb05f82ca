#include "../Modules.h"

#include <malloc.h>
#include <stdint.h>
#include <windows.h>

#include <tlhelp32.h>

void* Load(const char* path)
{
    return LoadLibraryA(path);
}

void (*Find(void* module, const char* name))()
{
    return reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name)));
}

void Unload(void* module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

bool IsLoaded(const char* path)
{
    return GetModuleHandleA(path) != nullptr;
}

static long CountThreads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof(thread);
    long count = 0;
    for (BOOL more = Thread32First(snapshot, &thread); more; more = Thread32Next(snapshot, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId();
    }
    CloseHandle(snapshot);
    return count;
}

// Wine does not count handles, but gives each the lowest free value.
static long CountHandles()
{
    DWORD count = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &count) && count != 0) {
        return long(count);
    }
    const HANDLE next = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(next);
    return long(reinterpret_cast<intptr_t>(next) / 4);
}

// The C run time's heap; the loader keeps notes of its own in the process's.
static long CountHeapBytes()
{
    long bytes = 0;
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(reinterpret_cast<HANDLE>(_get_heap_handle()), &entry)) {
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? long(entry.cbData) : 0;
    }
    return bytes;
}

Held CountHeld()
{
    return {CountHandles(), CountThreads(), CountHeapBytes()};
}
