#include "ZmConfig.h"

#include "Configuration/SettingsFiles.h"
#include "Platform/OrEmpty.h"
#include "Platform/OutOfMemory.h"

#include <algorithm>
#include <string.h>

namespace {

constexpr char kRootPath[] = "Software\\Quarnel\\UserConfig";

zm::SettingsKey* OpenRoot()
{
    return zm::UnlessOutOfMemory<zm::SettingsKey*>(nullptr, []() -> zm::SettingsKey* {
        std::string folder = zm::SettingsFolder();
        if (folder.empty()) {
            return zm::OpenRegistry(kRootPath, ZmConfig::MODE_WRITE);
        }
        folder += kRootPath;
        std::replace(folder.begin(), folder.end(), '\\', '/');
        return new zm::SettingsFiles(folder + '/', "", ZmConfig::MODE_WRITE);
    });
}

}  // namespace

ZmConfig::ZmConfig() : m_Root(OpenRoot()), m_Section(nullptr) {}

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
    if (m_Section != nullptr) {
        m_Section->Write(zm::OrEmpty(name), zm::OrEmpty(value));
    }
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
