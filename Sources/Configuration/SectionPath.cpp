#include "Configuration/SectionPath.h"

#include <string>

namespace zm {

namespace {

// step(section, name) for each part of the path, until there is no section.
template <class Step>
ZmConfigurationSection* WalkPath(ZmConfigurationSection* section, const char* path, Step step)
{
    std::string name;
    for (bool more = true; section != nullptr && more;) {
        const size_t length = strcspn(path, ".");
        name.assign(path, length);
        more = path[length] != 0;
        path += length + (more ? 1 : 0);
        section = step(*section, name.c_str());
    }
    return section;
}

}  // namespace

ZmConfigurationSection* FindPath(const ZmConfigurationSection& from, const char* path, bool dots)
{
    if (path == nullptr || !dots) {
        return from.GetSubSection(path);
    }
    // What is found is the tree's own and not this function's to protect.
    return WalkPath(const_cast<ZmConfigurationSection*>(&from), path,
                    [](ZmConfigurationSection& section, const char* name) { return section.GetSubSection(name); });
}

ZmConfigurationSection* CreatePath(ZmConfigurationSection& from, const char* path)
{
    return WalkPath(&from, path,
                    [](ZmConfigurationSection& section, const char* name) { return section.CreateSubSection(name); });
}

}  // namespace zm
