#pragma once

#include "XString.h"

namespace zm {

/// One line of the text format.
struct ConfigurationLine {
    /// The longest line; further characters become the next line.
    static constexpr int kMaxLength = 1023;

    /// A part of the line, without a terminator.
    class Span : public XBaseString {
    public:
        Span() = default;
        Span(const char* begin, const char* end)
        {
            m_Buffer = const_cast<char*>(begin);
            m_Length = uint16_t(end - begin);
        }

        /// Without blanks at both ends. Carriage returns stay; those at line ends were dropped while reading.
        static Span Trimmed(const char* begin, const char* end)
        {
            while (begin != end && IsBlank(*begin)) {
                ++begin;
            }
            while (begin != end && IsBlank(end[-1])) {
                --end;
            }
            return {begin, end};
        }

        const char* Begin() const { return m_Buffer; }
        const char* End() const { return m_Buffer + m_Length; }

    private:
        static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }
    };

    enum Kind {
        NOTHING,  ///< an empty line or a comment
        ENTRY,
        OPENING,
        CLOSING,
        TAG_WITHOUT_END,
        ENTRY_WITHOUT_EQUAL
    };

    ConfigurationLine(const char* begin, const char* end)
    {
        const Span line = Span::Trimmed(begin, end);
        if (!line.IsEmpty() && *line.Begin() != '#') {
            *line.Begin() == '<' ? ReadTag(line.Begin() + 1, line.End()) : ReadEntry(line.Begin(), line.End());
        }
    }

    Kind kind = NOTHING;
    Span name;
    Span value;  ///< of an entry

private:
    void ReadTag(const char* begin, const char* end)
    {
        while (end != begin && end[-1] != '>') {
            --end;
        }
        if (end == begin) {
            kind = TAG_WITHOUT_END;
        } else if (*begin == '/') {
            kind = CLOSING;
            name = {begin + 1, end - 1};
        } else {
            kind = OPENING;
            name = {begin, end - 1};
        }
    }

    void ReadEntry(const char* begin, const char* end)
    {
        const char* equal = static_cast<const char*>(memchr(begin, '=', size_t(end - begin)));
        if (equal == nullptr) {
            kind = ENTRY_WITHOUT_EQUAL;
            return;
        }
        kind = ENTRY;
        name = Span::Trimmed(begin, equal);
        value = Span::Trimmed(equal + 1, end);
    }
};

}  // namespace zm
