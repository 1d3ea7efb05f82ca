#include "ZmSharedLibrary.h"

#include "Platform/OsModule.h"
#include "Platform/OutOfMemory.h"

void* ZmLoadSharedLibrary(const char* path)
{
    return path != nullptr && *path != 0
               ? zm::UnlessOutOfMemory<void*>(nullptr, [path] { return zm::LoadModule(path); })
               : nullptr;
}

void* ZmGetSharedLibrarySymbol(void* library, const char* name)
{
    return library != nullptr && name != nullptr ? zm::ModuleSymbol(library, name) : nullptr;
}

int ZmFreeSharedLibrary(void* library)
{
    return library != nullptr && zm::UnloadModule(library);
}
