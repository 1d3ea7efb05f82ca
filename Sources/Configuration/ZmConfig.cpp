#include "ZmConfig.h"

#include "Platform/OrEmpty.h"
#include "Platform/OsSettings.h"

#include <string.h>

ZmConfig::ZmConfig()
    : m_Root(zm::OpenSettings(nullptr, "Software\\Quarnel\\UserConfig", MODE_WRITE)), m_Section(nullptr)
{
}

ZmConfig::~ZmConfig()
{
    CloseSection(nullptr);
    zm::CloseSettings(m_Root);
}

void ZmConfig::OpenSection(const char* name, Mode mode)
{
    CloseSection(nullptr);
    m_Section = m_Root != nullptr ? zm::OpenSettings(m_Root, zm::OrEmpty(name), mode) : nullptr;
}

void ZmConfig::CloseSection(const char* /*name*/)
{
    zm::CloseSettings(m_Section);
    m_Section = nullptr;
}

void ZmConfig::WriteStringEntry(const char* name, const char* value)
{
    if (m_Section != nullptr) {
        zm::WriteSetting(m_Section, zm::OrEmpty(name), zm::OrEmpty(value));
    }
}

int ZmConfig::ReadStringEntry(const char* name, char* value) const
{
    char text[kMaxValue] = {};
    const int size = m_Section != nullptr ? zm::ReadSetting(m_Section, zm::OrEmpty(name), text, kMaxValue) : -1;
    if (size >= 0) {
        const bool needsEnd = size < kMaxValue && (size == 0 || text[size - 1] != 0);
        memcpy(value, text, size_t(size) + needsEnd);
    }
    return size;
}
