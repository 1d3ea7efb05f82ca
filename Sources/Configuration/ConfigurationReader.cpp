#include "Configuration/ConfigurationReader.h"

#include "Files/RegularFile.h"

#include <algorithm>

namespace zm {

int ConfigurationReader::ReadFile(const char* path)
{
    ZmFile file;
    if (!OpenRegularFile(file, path, ZmFile::READONLY | ZmFile::TEXT)) {
        Fail("can't open file : ", path);
        return 0;
    }
    m_Line = 0;
    char buffer[ConfigurationLine::kMaxLength + 1];
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
        const size_t most = std::min(size_t(end - begin), size_t(ConfigurationLine::kMaxLength));
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
    const bool done = Store(ConfigurationLine(begin, end));
    m_Line += done ? 1 : 0;
    return done;
}

bool ConfigurationReader::Store(const ConfigurationLine& line)
{
    switch (line.kind) {
    case ConfigurationLine::ENTRY:
        return m_Section->AddValue<XBaseString>(line.name, line.value, nullptr, m_Line + 1) || Fail("out of memory");
    case ConfigurationLine::OPENING: return Open(line.name);
    case ConfigurationLine::CLOSING: return Close(line.name);
    case ConfigurationLine::TAG_WITHOUT_END: return Fail("can't find end of section tag");
    case ConfigurationLine::ENTRY_WITHOUT_EQUAL: return Fail("can't find equal ('=') separator");
    default: return true;
    }
}

bool ConfigurationReader::Open(const XBaseString& name)
{
    ZmConfigurationSection* section = m_Section->Create(name);
    if (section == nullptr) {
        return Fail("can't create subsection ", name, " in ");
    }
    m_Section = section;
    return true;
}

bool ConfigurationReader::Close(const XBaseString& name)
{
    // The section in which reading began stays open, whatever its name.
    if (m_Section->m_Name != name || m_Section->GetParent() == nullptr) {
        return Fail("closing bad section : ", name, " != ");
    }
    m_Section = m_Section->GetParent();
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
