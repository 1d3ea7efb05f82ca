#pragma once

#include <malloc.h>
#include <stdint.h>
#include <windows.h>

/// Explicit loading of modules, and the resources that the process holds.
struct Modules {
    static void* Load(const char* path) { return LoadLibraryA(path); }
    static void* Find(void* module, const char* name)
    {
        return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
    }
    static void Unload(void* module) { FreeLibrary(static_cast<HMODULE>(module)); }
    static bool IsLoaded(const char* path) { return GetModuleHandleA(path) != nullptr; }

    /// Wine does not count handles, but always assigns the lowest free value.
    static long CountHandles()
    {
        DWORD count = 0;
        GetProcessHandleCount(GetCurrentProcess(), &count);
        const HANDLE next = CreateEventA(nullptr, FALSE, FALSE, nullptr);
        CloseHandle(next);
        return count != 0 ? long(count) : long(reinterpret_cast<intptr_t>(next) / 4);
    }
    /// Bytes of the C heap only: the loader keeps records of its own in the process heap.
    static long CountBytes()
    {
        long bytes = 0;
        PROCESS_HEAP_ENTRY entry = {};
        while (HeapWalk(reinterpret_cast<HANDLE>(_get_heap_handle()), &entry)) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? long(entry.cbData) : 0;
        }
        return bytes;
    }
};
