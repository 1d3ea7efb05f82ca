#include "ZmConfigurationEntry.h"

#include "Foundations/StringStorage.h"

#include <stdio.h>

void* ZmConfigurationEntry::operator new(size_t size) noexcept
{
    return zm::NewRecord(size);
}

void ZmConfigurationEntry::operator delete(void* block)
{
    zm::DeleteRecord(block, sizeof(ZmConfigurationEntry));
}

void ZmConfigurationEntry::SetValue(const char* value)
{
    m_Value = value;
}

void ZmConfigurationEntry::SetValue(int value)
{
    m_Value.Format("%d", value);
}

void ZmConfigurationEntry::SetValue(unsigned int value)
{
    m_Value.Format("%u", value);
}

void ZmConfigurationEntry::SetValue(float value)
{
    m_Value.Format("%f", double(value));
}

// Values are parsed as by scanf(), which accepts input that strtol() does not.
// NOLINTBEGIN(cert-err34-c)

int ZmConfigurationEntry::GetValueAsInteger(int& res) const
{
    return sscanf(GetValue(), "%d", &res) == 1;
}

int ZmConfigurationEntry::GetValueAsUnsignedInteger(unsigned int& res) const
{
    return sscanf(GetValue(), "%u", &res) == 1;
}

int ZmConfigurationEntry::GetValueAsFloat(float& res) const
{
    return sscanf(GetValue(), "%f", &res) == 1;
}

// NOLINTEND(cert-err34-c)
