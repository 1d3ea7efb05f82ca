#include "Platform/OsModule.h"

#include "Platform/PathText.h"

#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <unistd.h>

namespace zm {

namespace {

std::string ProgramPath()
{
    char path[PATH_MAX];  // the system gives no longer ones
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path));
    return std::string(path, length > 0 ? size_t(length) : 0);
}

}  // namespace

std::string ModulePath(void* module)
{
    if (module == nullptr) {
        return ProgramPath();
    }
    link_map* map = nullptr;
    return dlinfo(module, RTLD_DI_LINKMAP, &map) == 0 && map->l_name != nullptr ? map->l_name : std::string();
}

// Other threads keep running until the process is gone.
bool OtherThreadsAreEnded()
{
    return false;
}

void* LoadModule(const char* path)
{
    return dlopen(WithSeparator('/', path).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* ModuleSymbol(void* module, const char* name)
{
    return dlsym(module, name);
}

bool UnloadModule(void* module)
{
    return dlclose(module) == 0;
}

}  // namespace zm
