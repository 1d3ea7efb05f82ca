#include "Platform/OsSettings.h"

#include <errno.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zm {

SettingsKey* OpenRegistry(const char*, unsigned)
{
    return nullptr;
}

std::string SettingsFolder()
{
    const char* folder = getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && *folder == '/') {  // relative paths must be ignored
        return std::string(folder) + '/';
    }
    const char* home = getenv("HOME");
    if (home == nullptr || *home == 0) {
        const passwd* user = getpwuid(getuid());
        home = user != nullptr ? user->pw_dir : nullptr;
    }
    return home != nullptr ? std::string(home) + "/.config/" : "";
}

bool MakePrivateFolder(const char* path)
{
    return mkdir(path, 0700) == 0 || errno == EEXIST;
}

}  // namespace zm
