#include "Configuration/SectionPath.h"

#include <string>

namespace zm {

namespace {

// Calls step(section, name) for each part of the path until the section is null.
template <class Step>
ZmConfigurationSection* WalkPath(ZmConfigurationSection* section, const char* path, Step step)
{
    for (bool more = true; section != nullptr && more;) {
        const size_t length = strcspn(path, ".");
        const bool isName = length != 0 && length <= size_t(XString::kMaxLength);
        const XString name = isName ? XString(path, int(length)) : XString();
        more = path[length] != 0;
        path += length + (more ? 1 : 0);
        section = step(*section, name.Text());
    }
    return section;
}

}  // namespace

ZmConfigurationSection* FindPath(const ZmConfigurationSection& from, const char* path, bool dots)
{
    if (path == nullptr || !dots) {
        return from.GetSubSection(path);
    }
    // Removes const: the found section belongs to the tree, and the callers decide whether to change it.
    return WalkPath(const_cast<ZmConfigurationSection*>(&from), path,
                    [](ZmConfigurationSection& section, const char* name) { return section.GetSubSection(name); });
}

ZmConfigurationSection* CreatePath(ZmConfigurationSection& from, const char* path)
{
    return WalkPath(&from, path,
                    [](ZmConfigurationSection& section, const char* name) { return section.CreateSubSection(name); });
}

}  // namespace zm
