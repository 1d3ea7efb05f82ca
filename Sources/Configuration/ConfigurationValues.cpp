// The functions of ZmConfiguration for values by path.

#include "Configuration/SectionPath.h"
#include "Configuration/ValueText.h"
#include "Platform/OutOfMemory.h"
#include "ZmConfiguration.h"

#include <string>

namespace {

/// A path and the sections that it begins with.
struct EntryPath {
    explicit EntryPath(const char* path)
    {
        const char* dot = path != nullptr ? strrchr(path, '.') : nullptr;
        name = dot != nullptr ? dot + 1 : path;
        isInSection = dot != nullptr;
        sections.assign(isInSection ? path : "", isInSection ? size_t(dot - path) : 0);
    }

    ZmConfigurationEntry* FindIn(const ZmConfigurationSection& tree) const
    {
        const ZmConfigurationSection* section = isInSection ? zm::FindPath(tree, sections.c_str(), true) : &tree;
        return section != nullptr && name != nullptr ? section->GetEntry(name) : nullptr;
    }

    const char* name;
    bool isInSection;
    std::string sections;
};

int Set(ZmConfigurationSection& root, const char* path, const char* value)
{
    return zm::UnlessOutOfMemory(0, [&] {
        const EntryPath place(path);
        ZmConfigurationSection* section = place.isInSection ? zm::CreatePath(root, place.sections.c_str()) : &root;
        if (section == nullptr || place.name == nullptr) {
            return 0;
        }
        ZmConfigurationEntry* old = nullptr;
        section->AddEntry(place.name, value, &old);
        if (old != nullptr) {
            old->SetValue(value);
        }
        const ZmConfigurationEntry* entry = section->GetEntry(place.name);
        return entry != nullptr && strcmp(entry->GetValue(), XBaseString(value).Text()) == 0 ? 1 : 0;
    });
}

}  // namespace

ZmConfigurationEntry* ZmConfiguration::FindEntry(const char* path) const
{
    return zm::UnlessOutOfMemory<ZmConfigurationEntry*>(nullptr, [&] {
        const EntryPath place(path);
        ZmConfigurationEntry* entry = place.FindIn(m_Root);
        return entry != nullptr ? entry : place.FindIn(m_Defaults);
    });
}

template <class Value>
Value ZmConfiguration::ReadOr(const char* path, Value otherwise) const
{
    return zm::UnlessOutOfMemory(otherwise, [&] {
        const EntryPath place(path);
        for (const ZmConfigurationSection* tree : {&m_Root, &m_Defaults}) {
            const ZmConfigurationEntry* entry = place.FindIn(*tree);
            Value value = otherwise;
            if (entry != nullptr && zm::ParseValue(entry->GetValue(), value)) {
                return value;
            }
        }
        return otherwise;
    });
}

int ZmConfiguration::GetInt(const char* path, int otherwise) const
{
    return ReadOr(path, otherwise);
}

unsigned int ZmConfiguration::GetUnsigned(const char* path, unsigned int otherwise) const
{
    return ReadOr(path, otherwise);
}

float ZmConfiguration::GetFloat(const char* path, float otherwise) const
{
    return ReadOr(path, otherwise);
}

bool ZmConfiguration::GetBool(const char* path, bool otherwise) const
{
    return ReadOr(path, otherwise);
}

const char* ZmConfiguration::GetText(const char* path, const char* otherwise) const
{
    const ZmConfigurationEntry* entry = FindEntry(path);
    return entry != nullptr ? entry->GetValue() : otherwise;
}

template <class Value>
int ZmConfiguration::Read(const char* path, Value& res, XString& why) const
{
    const ZmConfigurationEntry* entry = FindEntry(path);
    why = path;
    if (entry == nullptr) {
        why << " is missing";
        return 0;
    }
    if (zm::ParseValue(entry->GetValue(), res)) {
        why = nullptr;
        return 1;
    }
    why << " is '" << entry->GetValue() << "'";
    if (entry->GetLine() != 0) {
        why << " in line " << entry->GetLine();
    }
    why << ", which is no " << zm::KindOf(Value());
    return 0;
}

int ZmConfiguration::GetInt(const char* path, int& res, XString& why) const
{
    return Read(path, res, why);
}

int ZmConfiguration::GetUnsigned(const char* path, unsigned int& res, XString& why) const
{
    return Read(path, res, why);
}

int ZmConfiguration::GetFloat(const char* path, float& res, XString& why) const
{
    return Read(path, res, why);
}

int ZmConfiguration::GetBool(const char* path, bool& res, XString& why) const
{
    return Read(path, res, why);
}

int ZmConfiguration::SetInt(const char* path, int value)
{
    return Set(m_Root, path, (XString() << value).Text());
}

int ZmConfiguration::SetUnsigned(const char* path, unsigned int value)
{
    return Set(m_Root, path, (XString() << value).Text());
}

int ZmConfiguration::SetFloat(const char* path, float value)
{
    return Set(m_Root, path, zm::FloatText(value).Text());
}

int ZmConfiguration::SetBool(const char* path, bool value)
{
    return Set(m_Root, path, value ? "true" : "false");
}

int ZmConfiguration::SetText(const char* path, const char* value)
{
    return Set(m_Root, path, value);
}
