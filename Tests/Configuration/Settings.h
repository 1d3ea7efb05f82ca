#pragma once

#include "ZmConfig.h"

#include <string>

/// A value as a new object reads it; empty if it does not exist.
inline std::string ReadSetting(const std::string& section, const std::string& name)
{
    ZmConfig settings;
    settings.OpenSection(section.c_str(), ZmConfig::MODE_READ);
    char value[ZmConfig::kMaxValue];
    const int size = settings.ReadStringEntry(name.c_str(), value);
    return size > 0 ? std::string(value, size_t(size - 1)) : "";
}

inline void WriteSetting(const std::string& section, const std::string& name, const std::string& value)
{
    ZmConfig settings;
    settings.OpenSection(section.c_str(), ZmConfig::MODE_WRITE);
    settings.WriteStringEntry(name.c_str(), value.c_str());
}
