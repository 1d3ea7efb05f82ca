#include "Platform/OsModule.h"

#include "Platform/PathText.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

namespace zm {

namespace {

std::string ProgramPath()
{
    std::string path(256, 0);
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return std::string();
        }
        if (size_t(length) < path.size()) {
            path.resize(size_t(length));
            return path;
        }
        path.resize(2 * path.size());
    }
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
