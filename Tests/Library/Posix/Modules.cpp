#include "../Modules.h"

#include <dlfcn.h>
#include <filesystem>
#include <iterator>
#include <malloc.h>
#include <stdio.h>

void* Load(const char* path)
{
    void* module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
    }
    return module;
}

void (*Find(void* module, const char* name))()
{
    return reinterpret_cast<void (*)()>(dlsym(module, name));
}

void Unload(void* module)
{
    dlclose(module);
}

bool IsLoaded(const char* path)
{
    void* module = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (module != nullptr) {
        dlclose(module);
    }
    return module != nullptr;
}

static long CountEntries(const char* folder)
{
    const std::filesystem::directory_iterator first(folder);
    return long(std::distance(begin(first), end(first)));
}

Held CountHeld()
{
    return {CountEntries("/proc/self/fd"), CountEntries("/proc/self/task"), long(mallinfo2().uordblks)};
}
