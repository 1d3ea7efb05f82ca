#pragma once

#include <dlfcn.h>
#include <filesystem>
#include <malloc.h>

/// Explicit loading of modules, and the resources that the process holds.
struct Modules {
    static void* Load(const char* path) { return dlopen(path, RTLD_NOW | RTLD_LOCAL); }
    static void* Find(void* module, const char* name) { return dlsym(module, name); }
    static void Unload(void* module) { dlclose(module); }
    static bool IsLoaded(const char* path)
    {
        void* module = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
        return module != nullptr && dlclose(module) == 0;
    }

    /// Open files and threads.
    static long CountHandles()
    {
        const auto count = [](const char* folder) {
            const std::filesystem::directory_iterator first(folder);
            return long(std::distance(begin(first), end(first)));
        };
        return count("/proc/self/fd") + count("/proc/self/task");
    }
    /// Bytes of the C heap.
    static long CountBytes() { return long(mallinfo2().uordblks); }
};
