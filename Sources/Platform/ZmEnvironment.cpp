#include "ZmEnvironment.h"

#include "Platform/FirstUse.h"
#include "Platform/OsEnvironment.h"
#include "Platform/OutOfMemory.h"
#include "Platform/OwnMutexHolder.h"

#include <stdlib.h>
#include <string.h>

namespace {

bool IsName(const char* name)
{
    return name != nullptr && *name != 0 && strchr(name, '=') == nullptr;
}

// Guards the environment, since not every system does.
ZmMutex& Lock()
{
    static zm::FirstUse<ZmMutex> mutex;
    return mutex.Get([](void* memory) {
        new (memory) ZmMutex;
        atexit([] { Lock().~ZmMutex(); });
    });
}

}  // namespace

int ZmGetEnvironmentVariable(const char* name, char* buffer, unsigned int size)
{
    const bool copies = buffer != nullptr && size != 0;
    if (copies) {
        *buffer = 0;
    }
    return zm::UnlessOutOfMemory(-1, [&] {
        std::string value;
        {
            const zm::OwnMutexHolder holder(Lock());
            if (!IsName(name) || !zm::ReadVariable(name, value)) {
                return -1;
            }
        }
        if (copies && value.size() < size) {
            memcpy(buffer, value.c_str(), value.size() + 1);
        }
        return int(value.size());
    });
}

int ZmSetEnvironmentVariable(const char* name, const char* value)
{
    const zm::OwnMutexHolder holder(Lock());
    return IsName(name) && value != nullptr && zm::WriteVariable(name, value);
}

int ZmRemoveEnvironmentVariable(const char* name)
{
    const zm::OwnMutexHolder holder(Lock());
    return IsName(name) && zm::RemoveVariable(name);
}
