#include "Commands.h"
#include "Lines.h"
#include "Text.h"
#include "ZmConfiguration.h"

#include <cstdio>
#include <filesystem>

namespace {

/// The lines of a configuration that says what the lines of an INI file say.
class IniFile {
public:
    IniFile(const std::string& path, int indent) : m_Path(path), m_Indent(indent)
    {
        for (const std::string& line : LinesOf(ReadFile(path))) {
            ++m_Line;
            // Some editors begin a file of UTF-8 with a mark.
            const bool hasMark = m_Line == 1 && line.compare(0, 3, "\xEF\xBB\xBF") == 0;
            Add(Trimmed(hasMark ? line.substr(3) : line));
        }
        Enter("");
    }

    const std::string& Text() const { return m_Text; }

private:
    [[noreturn]] void Fail(const char* what) const
    {
        throw Failure(Printable(m_Path) + ':' + std::to_string(m_Line) + ": " + what);
    }

    void Add(const std::string& line)
    {
        if (line.empty()) {
            m_Text += '\n';
        } else if (line[0] == ';' || line[0] == '#') {
            Put('#' + line.substr(1));
        } else if (line[0] == '[') {
            const size_t end = line.rfind(']');
            if (end == std::string::npos) {
                Fail("the section has no ']'");
            }
            Enter(Trimmed(line.substr(1, end - 1)));
        } else {
            AddEntry(line);
        }
    }

    void AddEntry(const std::string& line)
    {
        size_t separator = line.find('=');
        separator = separator == std::string::npos ? line.find(':') : separator;
        const std::string name = Trimmed(line.substr(0, separator));
        if (separator == std::string::npos || name.empty()) {
            Fail("no section, comment or 'name = value'");
        }
        if (name[0] == '<') {
            Fail("the name of an entry cannot begin with '<'");
        }
        Put(name + " = " + ValueOf(Trimmed(line.substr(separator + 1))));
    }

    // Without the quotes around it, or else without a comment after it.
    static std::string ValueOf(const std::string& text)
    {
        const size_t end = text.size() < 2 || text[0] != '"' ? std::string::npos : text.find('"', 1);
        if (end != std::string::npos) {
            return text.substr(1, end - 1);
        }
        size_t comment = text.find(';');
        while (comment != std::string::npos && comment != 0 && text[comment - 1] != ' ' && text[comment - 1] != '\t') {
            comment = text.find(';', comment + 1);
        }
        return Trimmed(text.substr(0, comment));
    }

    /// Closes the open section and opens another one; dots separate the names of sections in each other.
    void Enter(const std::string& section)
    {
        while (!m_Open.empty()) {
            const std::string name = m_Open.back();
            m_Open.pop_back();
            Put("</" + name + '>');
        }
        for (size_t at = 0; at < section.size();) {
            const size_t dot = std::min(section.find('.', at), section.size());
            const std::string name = Trimmed(section.substr(at, dot - at));
            if (name[0] == '/') {
                Fail("the name of a section cannot begin with '/'");
            }
            Put('<' + name + '>');
            m_Open.push_back(name);
            at = dot + 1;
        }
    }

    void Put(const std::string& line) { m_Text += std::string(m_Open.size() * size_t(m_Indent), ' ') + line + '\n'; }

    std::string m_Path, m_Text;
    int m_Indent, m_Line = 0;
    std::vector<std::string> m_Open;
};

}  // namespace

int Import(const Arguments& arguments)
{
    const std::string& target = arguments.rest[0];
    if (target != "-" && std::filesystem::exists(target)) {
        throw Failure(Printable(target) + " already exists");
    }
    const IniFile ini(arguments.file, arguments.indent);
    ZmConfiguration tree(0);
    int line = 0;
    XString error;
    if (!tree.BuildFromMemory((ini.Text() + '\n').c_str(), line, error)) {
        throw Failure(Printable(arguments.file) + " cannot be a configuration: " + Printable(error.Text()));
    }
    WriteFile(target, ini.Text());
    return 0;
}
