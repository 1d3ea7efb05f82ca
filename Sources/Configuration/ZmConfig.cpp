#include "ZmConfig.h"

#include "Platform/OsSettings.h"

#include <string.h>

namespace {

const char* Text(const char* text)
{
    return text != nullptr ? text : "";
}

}  // namespace

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
    m_Section = m_Root != nullptr ? zm::OpenSettings(m_Root, Text(name), mode) : nullptr;
}

void ZmConfig::CloseSection(const char* /*name*/)
{
    zm::CloseSettings(m_Section);
    m_Section = nullptr;
}

void ZmConfig::WriteStringEntry(const char* name, const char* value)
{
    if (m_Section != nullptr) {
        zm::WriteSetting(m_Section, Text(name), Text(value));
    }
}

int ZmConfig::ReadStringEntry(const char* name, char* value) const
{
    char text[kMaxValue] = {};
    const int size = m_Section != nullptr ? zm::ReadSetting(m_Section, Text(name), text, kMaxValue) : -1;
    if (size >= 0) {
        const bool needsEnd = size < kMaxValue && (size == 0 || text[size - 1] != 0);
        memcpy(value, text, size_t(size) + needsEnd);
    }
    return size;
}
