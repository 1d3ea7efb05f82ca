#pragma once

#include "ZmConfigurationSection.h"

namespace zm {

/// Reads the text format into a tree, starting in a given section. Counts lines and reports the first error.
class ConfigurationReader {
public:
    /// The longest line; further characters become the next line.
    static constexpr int kMaxLine = 1023;

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
    class Span;

    bool ReadLine(const char* begin, const char* end);
    bool ReadTag(const char* begin, const char* end);
    bool ReadEntry(const char* begin, const char* end);
    bool Open(const Span& name);
    bool Close(const Span& name);
    bool Fail(const char* message, const XBaseString& name = {}, const char* relation = "");

    ZmConfigurationSection* m_Section;
    int& m_Line;
    XString& m_Error;
};

}  // namespace zm
