#include "Configuration/ConfigurationReader.h"

#include "Files/RegularFile.h"

#include <algorithm>

namespace zm {

/// A part of a line, without a terminator.
class ConfigurationReader::Span : public XBaseString {
public:
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

int ConfigurationReader::ReadFile(const char* path)
{
    ZmFile file;
    if (!OpenRegularFile(file, path, ZmFile::READONLY | ZmFile::TEXT)) {
        Fail("can't open file : ", path);
        return 0;
    }
    m_Line = 0;
    char buffer[kMaxLine + 1];
    while (file.GetString(buffer, sizeof(buffer))) {
        if (!ReadLine(buffer, buffer + strlen(buffer))) {
            return 0;
        }
    }
    if (!file.EndOfFile()) {
        Fail("Fails at the end.");
        return 0;
    }
    m_Error = "OK";
    return 1;
}

// A line is read only if text follows it, so the last line is not read: callers end their texts with an extra line
// (ConfigurationFormatTest, TextsAndTheirTrees).
int ConfigurationReader::ReadText(const char* text, size_t length)
{
    m_Line = 0;
    const char* const end = text + length;
    for (const char* begin = text; begin != end;) {
        const size_t most = std::min(size_t(end - begin), size_t(kMaxLine));
        // A line feed after exactly `most` characters still belongs to the line.
        const size_t searched = std::min(size_t(end - begin), most + 1);
        const char* feed = static_cast<const char*>(memchr(begin, '\n', searched));
        const char* lineEnd = feed != nullptr ? feed : begin + most;
        const char* next = feed != nullptr ? feed + 1 : lineEnd;
        if (next != end && !ReadLine(begin, lineEnd)) {
            return 0;
        }
        begin = next;
    }
    m_Error = "OK";
    return 1;
}

bool ConfigurationReader::ReadLine(const char* begin, const char* end)
{
    const Span line = Span::Trimmed(begin, end);
    bool done = true;
    if (!line.IsEmpty() && *line.Begin() != '#') {
        done = *line.Begin() == '<' ? ReadTag(line.Begin() + 1, line.End()) : ReadEntry(line.Begin(), line.End());
    }
    m_Line += done ? 1 : 0;
    return done;
}

bool ConfigurationReader::ReadTag(const char* begin, const char* end)
{
    while (end != begin && end[-1] != '>') {
        --end;
    }
    if (end == begin) {
        return Fail("can't find end of section tag");
    }
    return *begin == '/' ? Close({begin + 1, end - 1}) : Open({begin, end - 1});
}

bool ConfigurationReader::Open(const Span& name)
{
    ZmConfigurationSection* section = m_Section->Create(name);
    if (section == nullptr) {
        return Fail("can't create subsection ", name, " in ");
    }
    m_Section = section;
    return true;
}

bool ConfigurationReader::Close(const Span& name)
{
    // The section in which reading began stays open, whatever its name.
    if (m_Section->m_Name != name || m_Section->GetParent() == nullptr) {
        return Fail("closing bad section : ", name, " != ");
    }
    m_Section = m_Section->GetParent();
    return true;
}

bool ConfigurationReader::ReadEntry(const char* begin, const char* end)
{
    const char* equal = static_cast<const char*>(memchr(begin, '=', size_t(end - begin)));
    if (equal == nullptr) {
        return Fail("can't find equal ('=') separator");
    }
    const XBaseString name = Span::Trimmed(begin, equal), value = Span::Trimmed(equal + 1, end);
    if (!m_Section->AddValue(name, value, nullptr)) {
        return Fail("out of memory");
    }
    return true;
}

// Stores the message with the name and, if a relation is given, the relation and the current section's name.
bool ConfigurationReader::Fail(const char* message, const XBaseString& name, const char* relation)
{
    m_Error = message;
    m_Error << name << relation;
    if (*relation != 0) {
        m_Error << m_Section->m_Name;
    }
    return false;
}

}  // namespace zm
