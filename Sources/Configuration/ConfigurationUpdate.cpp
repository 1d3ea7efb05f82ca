#include "Configuration/ConfigurationUpdate.h"

#include "Configuration/TreeWriter.h"

#include <unordered_map>
#include <unordered_set>

namespace zm {

bool OldText::Read(const std::string& text, XString& why)
{
    for (size_t at = 0, feed = 0; at < text.size(); at = feed + 1) {
        feed = std::min(text.find('\n', at), text.size());
        const bool hasReturn = feed > at && text[feed - 1] == '\r';
        m_HasReturns = m_HasReturns || (at == 0 && hasReturn);
        if (const char* problem = Add(text.data() + at, text.data() + feed - (hasReturn ? 1 : 0))) {
            why << "line " << int(m_Lines.size() + 1) << ": " << problem;
            return false;
        }
    }
    return true;
}

const char* OldText::Add(const char* begin, const char* end)
{
    if (end - begin >= ConfigurationLine::kMaxLength || memchr(begin, 0, size_t(end - begin)) != nullptr) {
        return "the line is too long or has a NUL";
    }
    const ConfigurationLine content(begin, end);
    const std::string name(content.name.Begin(), content.name.End());
    const ZmConfigurationSection* section = m_Sections.back();
    switch (content.kind) {
    case ConfigurationLine::TAG_WITHOUT_END: return "can't find end of section tag";
    case ConfigurationLine::ENTRY_WITHOUT_EQUAL: return "can't find equal ('=') separator";
    case ConfigurationLine::OPENING:
        section = section != nullptr ? section->GetSubSection(name.c_str()) : nullptr;
        m_Names.push_back(name);
        m_Sections.push_back(section);
        break;
    case ConfigurationLine::CLOSING:
        if (m_Names.empty() || m_Names.back() != name) {
            return "closing bad section";
        }
        break;
    default: break;
    }
    m_Lines.push_back({begin, end, section, unsigned(m_Names.size()), content, name});
    if (content.kind == ConfigurationLine::CLOSING) {
        m_Names.pop_back();
        m_Sections.pop_back();
    }
    return nullptr;
}

namespace {

/// Writes a section that the old text does not contain.
class NewSection {
public:
    NewSection(TreeWriter& writer, unsigned depth) : m_Writer(writer), m_Depth(depth) {}

    bool Write(const ZmConfigurationSection& section)
    {
        return m_Writer.BeginSection(section, m_Depth) && TreeWalk<NewSection>(*this).Run(section) &&
               m_Writer.EndSection(section, m_Depth);
    }

    bool Entry(const ZmConfigurationEntry& entry, unsigned depth) { return m_Writer.Entry(entry, m_Depth + 1 + depth); }
    bool BeginSection(const ZmConfigurationSection& section, unsigned depth)
    {
        return m_Writer.BeginSection(section, m_Depth + 1 + depth);
    }
    bool EndSection(const ZmConfigurationSection& section, unsigned depth)
    {
        return m_Writer.EndSection(section, m_Depth + 1 + depth);
    }

private:
    TreeWriter& m_Writer;
    unsigned m_Depth;
};

class Update {
public:
    Update(TreeWriter& writer, const OldText& old) : m_Writer(writer), m_Old(old) {}

    bool Run()
    {
        const std::vector<OldText::Line>& lines = m_Old.Lines();
        for (size_t i = 0; i < lines.size(); ++i) {
            Mark(lines[i], i);
        }
        bool done = true;
        for (size_t i = 0; i < lines.size() && done; ++i) {
            const OldText::Line& line = lines[i];
            if (line.section == nullptr) {
                continue;
            }
            if (line.content.kind == ConfigurationLine::CLOSING) {
                done = NewSections(*line.section, line.depth);
            }
            Copy(line);
            const auto last = m_LastEntries.find(line.section);
            if (last != m_LastEntries.end() && last->second == i) {
                done = done && NewEntries(*line.section, line.depth);
            }
        }
        return done && CloseAll();
    }

private:
    // Notes what is there, and after which line the new entries of each section stand.
    void Mark(const OldText::Line& line, size_t number)
    {
        if (line.section == nullptr) {
            return;
        }
        if (line.content.kind == ConfigurationLine::OPENING) {
            m_There.insert(line.section);
            m_LastEntries.emplace(line.section, number);
        } else if (line.content.kind == ConfigurationLine::ENTRY) {
            m_There.insert(line.section->GetEntry(line.name.c_str()));
            m_LastEntries[line.section] = number;
        }
    }

    void Copy(const OldText::Line& line)
    {
        if (line.content.kind == ConfigurationLine::ENTRY) {
            const ZmConfigurationEntry* entry = line.section->GetEntry(line.name.c_str());
            if (entry == nullptr) {
                return;
            }
            // Only the first entry of a name counts.
            const XString value(entry->GetValue());
            if (m_Copied.insert(entry).second && line.content.value != value) {
                const size_t before = size_t(line.content.value.Begin() - line.begin);
                if (before + value.Length() >= size_t(ConfigurationLine::kMaxLength)) {
                    m_Writer.Entry(*entry, line.depth);
                    return;
                }
                m_Writer.Put(line.begin, before);
                m_Writer.Put(value.Text(), value.Length());
                m_Writer.EndLine();
                return;
            }
        }
        m_Writer.Put(line.begin, size_t(line.end - line.begin));
        m_Writer.EndLine();
    }

    bool NewEntries(const ZmConfigurationSection& section, unsigned depth)
    {
        auto position = section.BeginChildEntry();
        while (const ZmConfigurationEntry* entry = section.GetNextChildEntry(position)) {
            if (m_There.count(entry) == 0 && !m_Writer.Entry(*entry, depth)) {
                return false;
            }
        }
        return true;
    }

    bool NewSections(const ZmConfigurationSection& section, unsigned depth)
    {
        auto position = section.BeginChildSection();
        while (const ZmConfigurationSection* child = section.GetNextChildSection(position)) {
            if (m_There.insert(child).second && !NewSection(m_Writer, depth).Write(*child)) {
                return false;
            }
        }
        return true;
    }

    // What is new in the root stands at the end, where no section may be open.
    bool CloseAll()
    {
        const std::vector<const ZmConfigurationSection*>& open = m_Old.Unclosed();
        bool done = true;
        for (size_t depth = open.size(); depth-- != 0 && done;) {
            const ZmConfigurationSection* section = open[depth];
            if (section == nullptr) {
                continue;
            }
            if (m_LastEntries.count(section) == 0) {
                done = NewEntries(*section, unsigned(depth));
            }
            done = done && NewSections(*section, unsigned(depth));
            if (depth != 0) {
                done = done && m_Writer.EndSection(*section, unsigned(depth - 1));
            }
        }
        return done;
    }

    TreeWriter& m_Writer;
    const OldText& m_Old;
    std::unordered_set<const void*> m_There;   ///< sections and entries that the old text has
    std::unordered_set<const void*> m_Copied;  ///< entries
    std::unordered_map<const ZmConfigurationSection*, size_t> m_LastEntries;
};

}  // namespace

bool WriteUpdate(ZmStream& res, const OldText& old, unsigned indent)
{
    TreeWriter writer(res, indent, old.NewLine());
    const bool done = Update(writer, old).Run();
    return writer.End() && done;
}

}  // namespace zm
