#include "ZmModule.h"

#include "Platform/OsModule.h"
#include "Platform/OutOfMemory.h"

#include <string.h>

unsigned int ZmGetModuleFileName(void* module, char* buffer, unsigned int size)
{
    if (buffer == nullptr || size == 0) {
        return 0;
    }
    *buffer = 0;
    return zm::UnlessOutOfMemory(0u, [&] {
        const std::string path = zm::ModulePath(module);
        if (path.size() >= size) {
            return 0u;
        }
        memcpy(buffer, path.c_str(), path.size() + 1);
        return unsigned(path.size());
    });
}
