#include "Logging/LogNames.h"

#include "Platform/FirstUse.h"

#include <algorithm>

namespace zm {

const char* LevelName(int level)
{
    static constexpr const char* kNames[] = {"DEBUG", "TRACE", "ERROR", "WARNING", "INFO"};  // from the lowest bit on
    int bit = 1;
    for (const char* name : kNames) {
        if (level == bit) {
            return name;
        }
        bit *= 2;
    }
    return "";
}

ModuleNames& ModuleNames::Instance()
{
    static FirstUse<ModuleNames> names;
    return names.Get([](void* memory) { new (memory) ModuleNames; });
}

int ModuleNames::Add(const char* name)
{
    if (name == nullptr || *name == 0) {
        return -1;
    }
    const int position = Find(name);
    if (position >= 0) {
        return position + 1;
    }
    XString copy(name);
    return !copy.IsEmpty() && m_Names.PushBack(zm::Move(copy)) ? m_Names.Size() : -1;
}

int ModuleNames::Find(const char* name) const
{
    if (name == nullptr || *name == 0) {
        return -1;
    }
    const XString* found = std::find(m_Names.Begin(), m_Names.End(), XBaseString(name));
    return found != m_Names.End() ? int(found - m_Names.Begin()) : -1;
}

const char* ModuleNames::NameOf(int id) const
{
    return id >= 1 && id <= m_Names.Size() ? m_Names[id - 1].Text() : nullptr;
}

void ModuleNames::Clear()
{
    m_Names = XArray<XString>();
}

}  // namespace zm
