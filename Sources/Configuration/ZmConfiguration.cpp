#include "ZmConfiguration.h"

#include "Configuration/ConfigurationReader.h"
#include "Configuration/ConfigurationUpdate.h"
#include "Configuration/ConfigurationWriter.h"
#include "Configuration/SectionPath.h"
#include "Files/RegularFile.h"
#include "Platform/OrEmpty.h"
#include "Platform/OsFiles.h"
#include "Platform/OutOfMemory.h"
#include "Platform/Replacement.h"
#include "ZmFile.h"

#include <string>

ZmConfiguration::ZmConfiguration(unsigned short indent)
    : m_Root("root", nullptr), m_Defaults("default", nullptr), m_Indent(indent)
{
}

ZmConfiguration::~ZmConfiguration() = default;

namespace {

XBaseString ValueOf(const char* text)
{
    return XBaseString(text);
}

template <class Number>
Number ValueOf(Number number)
{
    return number;
}

}  // namespace

template <class Value>
int ZmConfiguration::Add(const char* section, const char* name, Value value, ZmConfigurationEntry** entry)
{
    ZmConfigurationSection* holder = &m_Root;
    if (section != nullptr) {
        // Also searches the defaults, which may therefore receive the entry: callers rely on it.
        holder = GetSubSection(section, 1);
        if (holder == nullptr) {
            holder = zm::CreatePath(m_Root, section);
        }
    }
    return holder != nullptr && holder->AddValue(XBaseString(name), ValueOf(value), entry);
}

int ZmConfiguration::AddEntry(const char* section, const char* name, const char* value, ZmConfigurationEntry** entry)
{
    return Add(section, name, value, entry);
}

int ZmConfiguration::AddEntry(const char* section, const char* name, int value, ZmConfigurationEntry** entry)
{
    return Add(section, name, value, entry);
}

int ZmConfiguration::AddEntry(const char* section, const char* name, unsigned int value, ZmConfigurationEntry** entry)
{
    return Add(section, name, value, entry);
}

int ZmConfiguration::AddEntry(const char* section, const char* name, float value, ZmConfigurationEntry** entry)
{
    return Add(section, name, value, entry);
}

template <class Value>
int ZmConfiguration::AddDefault(const char* section, const char* name, Value value)
{
    ZmConfigurationSection* holder = section != nullptr ? zm::CreatePath(m_Defaults, section) : &m_Defaults;
    return holder != nullptr && holder->AddValue(XBaseString(name), ValueOf(value), nullptr);
}

int ZmConfiguration::AddDefaultEntry(const char* section, const char* name, const char* value)
{
    return AddDefault(section, name, value);
}

int ZmConfiguration::AddDefaultEntry(const char* section, const char* name, int value)
{
    return AddDefault(section, name, value);
}

int ZmConfiguration::AddDefaultEntry(const char* section, const char* name, unsigned int value)
{
    return AddDefault(section, name, value);
}

int ZmConfiguration::AddDefaultEntry(const char* section, const char* name, float value)
{
    return AddDefault(section, name, value);
}

ZmConfigurationSection* ZmConfiguration::ParentOf(const char* name)
{
    return name != nullptr ? m_Root.GetSubSection(name) : &m_Root;
}

ZmConfigurationSection* ZmConfiguration::CreateSubSection(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = ParentOf(parent);
    return holder != nullptr ? holder->CreateSubSection(name) : nullptr;
}

int ZmConfiguration::DeleteEntry(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = ParentOf(parent);
    return holder != nullptr ? holder->DeleteEntry(name) : 0;
}

int ZmConfiguration::DeleteSection(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = ParentOf(parent);
    return holder != nullptr ? holder->DeleteSection(name) : 0;
}

ZmConfigurationEntry* ZmConfiguration::RemoveEntry(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = ParentOf(parent);
    return holder != nullptr ? holder->RemoveEntry(name) : nullptr;
}

ZmConfigurationSection* ZmConfiguration::RemoveSection(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = ParentOf(parent);
    return holder != nullptr ? holder->RemoveSection(name) : nullptr;
}

ZmConfigurationSection* ZmConfiguration::CreateDefaultSubSection(const char* parent, const char* name)
{
    ZmConfigurationSection* holder = parent != nullptr ? m_Defaults.GetSubSection(parent) : &m_Defaults;
    return holder != nullptr ? holder->CreateSubSection(name) : nullptr;
}

ZmConfigurationSection* ZmConfiguration::GetSubSection(const char* path, int dots) const
{
    ZmConfigurationSection* found = zm::FindPath(m_Root, path, dots != 0);
    return found != nullptr ? found : zm::FindPath(m_Defaults, path, dots != 0);
}

ZmConfigurationEntry* ZmConfiguration::GetEntry(const char* path, int dots) const
{
    const char* lastDot = path != nullptr && dots != 0 ? strrchr(path, '.') : nullptr;
    for (const ZmConfigurationSection* tree : {&m_Root, &m_Defaults}) {
        // Callers rely on the section of the whole path, including its last part
        // (ZmConfigurationTest, PathsAreReadDifferentlyByEachOperation).
        const ZmConfigurationSection* section = lastDot != nullptr ? zm::FindPath(*tree, path, true) : tree;
        ZmConfigurationEntry* entry =
            section != nullptr ? section->GetEntry(lastDot != nullptr ? lastDot + 1 : path) : nullptr;
        if (entry != nullptr) {
            return entry;
        }
    }
    return nullptr;
}

void ZmConfiguration::Clear()
{
    m_Root.Clear();
}

void ZmConfiguration::ClearDefault()
{
    m_Defaults.Clear();
}

int ZmConfiguration::BuildFromFile(const char* filename, int& line, XString& error)
{
    return zm::UnlessOutOfMemory(0, [&] {
        const std::string path = zm::OrEmpty(filename);  // it may be a value of the tree
        Clear();
        if (filename == nullptr) {
            error = "null filename";
            return 0;
        }
        return zm::ConfigurationReader(m_Root, line, error).ReadFile(path.c_str());
    });
}

int ZmConfiguration::BuildFromMemory(const char* text, int& line, XString& error)
{
    return zm::UnlessOutOfMemory(0, [&] {
        // Copies a text that may be a value of the tree, which is about to be cleared: no value is longer than this.
        const size_t length = text != nullptr ? strlen(text) : 0;
        const std::string copy(text, length <= size_t(XBaseString::kMaxLength) ? length : 0);
        Clear();
        return zm::ConfigurationReader(m_Root, line, error).ReadText(copy.empty() ? text : copy.data(), length);
    });
}

namespace {

/// Replaces a file by what `write` writes.
template <class Write>
bool ReplaceFile(const char* filename, unsigned mode, Write write)
{
    zm::Replacement replacement;
    const bool replaces = replacement.Begin(filename, zm::Replacement::EXACT);
    if (!replaces && replacement.HasFailed()) {
        return false;  // overwriting the file now could cost its old contents
    }
    ZmFile file;
    const bool written =
        file.Open(replaces ? replacement.Path() : filename, ZmFile::OpenMode(mode)) != 0 && write(file);
    const bool done = file.Close() != 0 && written;
    return done && (!replaces || replacement.Commit());
}

bool ReadWhole(const char* filename, std::string& res)
{
    ZmFile file;
    if (!zm::OpenRegularFile(file, filename, ZmFile::READONLY)) {
        return false;
    }
    res.resize(file.Size());
    return res.empty() || file.Read(&res[0], unsigned(res.size())) == res.size();
}

}  // namespace

int ZmConfiguration::SaveToFile(const char* filename) const
{
    return filename != nullptr && ReplaceFile(filename, ZmFile::WRITEONLY | ZmFile::TEXT, [&](ZmFile& file) {
               return zm::WriteConfiguration(file, m_Root, m_Indent);
           });
}

int ZmConfiguration::UpdateFile(const char* filename, XString* why) const
{
    return zm::UnlessOutOfMemory(0, [&] {
        XString ignored;
        XString& reason = why != nullptr ? *why : ignored;
        if (!CanBeSaved(reason)) {
            return 0;
        }
        std::string old;
        const bool isThere = filename != nullptr && zm::FileMode(filename) != 0;
        if (isThere && !ReadWhole(filename, old)) {
            reason = "the file cannot be read";
            return 0;
        }
        if (!isThere) {
            const int saved = SaveToFile(filename);
            reason = saved != 0 ? nullptr : "the file cannot be written";
            return saved;
        }
        zm::OldText text(m_Root);
        if (!text.Read(old, reason)) {
            return 0;
        }
        const bool done = ReplaceFile(filename, ZmFile::WRITEONLY,
                                      [&](ZmFile& file) { return zm::WriteUpdate(file, text, m_Indent); });
        reason = done ? nullptr : "the file cannot be written";
        return done ? 1 : 0;
    });
}

int ZmConfiguration::CanBeSaved(XString& why) const
{
    return zm::FormatHolds(m_Root, why);
}

// Non-static, although they do nothing: callers use them as members.
// NOLINTBEGIN(readability-convert-member-functions-to-static)

int ZmConfiguration::BuildFromDataFile(const char* /*filename*/, XString& /*error*/)
{
    return 0;
}

int ZmConfiguration::SaveToDataFile(const char* /*filename*/) const
{
    return 0;
}

// NOLINTEND(readability-convert-member-functions-to-static)
