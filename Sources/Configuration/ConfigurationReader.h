#pragma once

#include "Configuration/ConfigurationLine.h"
#include "ZmConfigurationSection.h"

namespace zm {

/// Reads the text format into a tree, starting in a given section. Counts lines and reports the first error.
class ConfigurationReader {
public:
    ConfigurationReader(ZmConfigurationSection& root, int& line, XString& error)
        : m_Section(&root), m_Line(line), m_Error(error)
    {
    }

    /// Returns 1, or 0 after an error.
    /// @{
    int ReadFile(const char* path);
    int ReadText(const char* text, size_t length);
    /// @}

private:
    bool ReadLine(const char* begin, const char* end);
    bool Store(const ConfigurationLine& line);
    bool Open(const XBaseString& name);
    bool Close(const XBaseString& name);
    bool Fail(const char* message, const XBaseString& name = {}, const char* relation = "");

    ZmConfigurationSection* m_Section;
    int& m_Line;
    XString& m_Error;
};

}  // namespace zm
