#include "ZmConfig.h"

#include "Configuration/SettingsFiles.h"
#include "Platform/OrEmpty.h"
#include "Platform/OutOfMemory.h"

#include <algorithm>
#include <string.h>

namespace {

/// A key below the user's registry or, where there is none, files in a folder below that of the user's settings.
zm::SettingsKey* OpenRoot(const std::string& key, std::string folder)
{
    std::string settings = zm::SettingsFolder();
    if (settings.empty()) {
        return zm::OpenRegistry(key.c_str(), ZmConfig::MODE_WRITE);
    }
    std::replace(folder.begin(), folder.end(), '\\', '/');
    return new zm::SettingsFiles(settings + folder + '/', "", ZmConfig::MODE_WRITE);
}

bool IsApplication(const std::string& name)
{
    if (name.find('/') != std::string::npos) {
        return false;
    }
    for (size_t at = 0; at <= name.size();) {
        const size_t end = std::min(name.find('\\', at), name.size());
        const std::string level = name.substr(at, end - at);
        if (level.empty() || level == "." || level == "..") {
            return false;
        }
        at = end + 1;
    }
    return true;
}

}  // namespace

ZmConfig::ZmConfig() : m_Section(nullptr)
{
    m_Root = zm::UnlessOutOfMemory<zm::SettingsKey*>(nullptr, [] {
        const std::string path = "Software\\Quarnel\\UserConfig";
        return OpenRoot(path, path);
    });
}

ZmConfig::ZmConfig(const char* application) : m_Section(nullptr)
{
    m_Root = zm::UnlessOutOfMemory<zm::SettingsKey*>(nullptr, [&]() -> zm::SettingsKey* {
        const std::string name = zm::OrEmpty(application);
        return IsApplication(name) ? OpenRoot("Software\\" + name, name) : nullptr;
    });
}

ZmConfig::~ZmConfig()
{
    CloseSection(nullptr);
    delete m_Root;
}

void ZmConfig::OpenSection(const char* name, Mode mode)
{
    CloseSection(nullptr);
    m_Section = m_Root != nullptr ? m_Root->Open(zm::OrEmpty(name), mode) : nullptr;
}

void ZmConfig::CloseSection(const char* /*name*/)
{
    delete m_Section;
    m_Section = nullptr;
}

void ZmConfig::WriteStringEntry(const char* name, const char* value)
{
    WriteText(name, value);
}

int ZmConfig::WriteText(const char* name, const char* value)
{
    return m_Section != nullptr && m_Section->Write(zm::OrEmpty(name), zm::OrEmpty(value)) ? 1 : 0;
}

int ZmConfig::ReadText(const char* name, XString& res) const
{
    return zm::UnlessOutOfMemory(0, [&] {
        int size = -1;
        std::string text;
        for (size_t room = kMaxValue; m_Section != nullptr && size < 0 && room <= 0x10000; room *= 16) {
            text.assign(room, 0);
            size = m_Section->Read(zm::OrEmpty(name), &text[0], int(room));
        }
        const size_t length = strlen(text.c_str());
        if (size < 0 || length > size_t(XString::kMaxLength)) {
            return 0;
        }
        res = text.c_str();
        return res.Length() == length ? 1 : 0;
    });
}

int ZmConfig::ReadStringEntry(const char* name, char* value) const
{
    char text[kMaxValue] = {};
    const int size = m_Section != nullptr ? m_Section->Read(zm::OrEmpty(name), text, kMaxValue) : -1;
    if (size >= 0) {
        const bool needsEnd = size < kMaxValue && (size == 0 || text[size - 1] != 0);
        memcpy(value, text, size_t(size) + needsEnd);
    }
    return size;
}
