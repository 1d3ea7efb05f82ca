#include "Configuration/ConfigurationWriter.h"

#include "Configuration/ConfigurationReader.h"

#include <algorithm>

namespace zm {

namespace {

/// Collects pieces of text and writes them in blocks.
class TextWriter {
public:
    explicit TextWriter(ZmStream& stream) : m_Stream(stream) {}

    bool Failed() const { return m_Failed; }

    void Put(const char* text, size_t length)
    {
        if (length > size_t(m_Block + sizeof(m_Block) - m_End)) {
            Flush();
        }
        if (length > sizeof(m_Block)) {
            m_Failed = m_Failed || m_Stream.Write(text, unsigned(length)) == 0;
            return;
        }
        memcpy(m_End, text, length);
        m_End += length;
    }

    void PutBlanks(uint64_t count)
    {
        static constexpr char blanks[] = "                                                                ";
        for (; count != 0 && !m_Failed; count -= std::min(count, uint64_t(sizeof(blanks) - 1))) {
            Put(blanks, size_t(std::min(count, uint64_t(sizeof(blanks) - 1))));
        }
    }

    void Flush()
    {
        const unsigned length = unsigned(m_End - m_Block);
        m_Failed = m_Failed || (length != 0 && m_Stream.Write(m_Block, length) == 0);
        m_End = m_Block;
    }

private:
    ZmStream& m_Stream;
    char m_Block[32768];
    char* m_End = m_Block;
    bool m_Failed = false;
};

/// Visits the contents of a section and of all below it, in the order of the file. Not by recursion, which would
/// exhaust the stack on deep trees: keeps the sections from the root to the current one, each with its next child. The
/// visitor's functions return false to stop. Returns false then, or if memory runs out.
template <class Visitor>
class TreeWalk {
public:
    explicit TreeWalk(Visitor& visitor) : m_Visitor(visitor) {}

    bool Run(const ZmConfigurationSection& root)
    {
        bool done = Enter(root);
        while (done && !m_Open.IsEmpty()) {
            OpenSection& current = m_Open.Back();
            const ZmConfigurationSection* child = current.section->GetNextChildSection(current.next);
            done = child == nullptr ? Leave() : m_Visitor.BeginSection(*child, Depth()) && Enter(*child);
        }
        return done;
    }

private:
    struct OpenSection {
        const ZmConfigurationSection* section;
        ZmConfigurationSection::SectionTable::ConstIterator next;
    };

    // Of the children of the current section, while there is one.
    unsigned Depth() const { return unsigned(m_Open.Size() - 1); }

    bool Enter(const ZmConfigurationSection& section)
    {
        bool done = m_Open.PushBack({&section, section.BeginChildSection()}) != 0;
        auto position = section.BeginChildEntry();
        while (const ZmConfigurationEntry* entry = done ? section.GetNextChildEntry(position) : nullptr) {
            done = m_Visitor.Entry(*entry, Depth());
        }
        return done;
    }

    bool Leave()
    {
        const ZmConfigurationSection& section = *m_Open.Back().section;
        m_Open.PopBack();
        return m_Open.IsEmpty() || m_Visitor.EndSection(section, Depth());
    }

    Visitor& m_Visitor;
    XArray<OpenSection> m_Open;
};

class TreeWriter {
public:
    TreeWriter(ZmStream& stream, unsigned indent) : m_Text(stream), m_Indent(indent) {}

    bool Entry(const ZmConfigurationEntry& entry, unsigned depth)
    {
        const size_t name = strlen(entry.GetName()), value = strlen(entry.GetValue());
        Indent(depth, name + 3 + value);
        m_Text.Put(entry.GetName(), name);
        m_Text.Put(" = ", 3);
        m_Text.Put(entry.GetValue(), value);
        m_Text.Put("\n", 1);
        return !m_Text.Failed();
    }

    bool BeginSection(const ZmConfigurationSection& section, unsigned depth) { return Tag("<", section, depth); }
    bool EndSection(const ZmConfigurationSection& section, unsigned depth) { return Tag("</", section, depth); }

    bool End()
    {
        m_Text.Flush();
        return !m_Text.Failed();
    }

private:
    bool Tag(const char* bracket, const ZmConfigurationSection& section, unsigned depth)
    {
        const size_t begin = strlen(bracket), name = strlen(section.GetName());
        Indent(depth, begin + name + 1);
        m_Text.Put(bracket, begin);
        m_Text.Put(section.GetName(), name);
        m_Text.Put(">\n", 2);
        return !m_Text.Failed();
    }

    // A line that its indentation would make longer than the reader takes has less of it, so that it loads again and
    // deep trees do not become files of gigabytes.
    void Indent(unsigned depth, size_t lineLength)
    {
        constexpr uint64_t kMost = ConfigurationReader::kMaxLine, kOfLongLines = 256;
        const uint64_t wanted = uint64_t(depth) * m_Indent, room = kMost - std::min(uint64_t(lineLength), kMost);
        m_Text.PutBlanks(wanted <= room ? wanted : std::min(room, kOfLongLines));
    }

    TextWriter m_Text;
    const unsigned m_Indent;
};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

/// Looks for what would be read differently from how it was written.
class FormatCheck {
public:
    const char* Reason() const { return m_Reason; }
    const char* Name() const { return m_Name; }
    const ZmConfigurationSection* Parent() const { return m_Parent; }

    bool Entry(const ZmConfigurationEntry& entry, unsigned)
    {
        return Holds(ReasonOf(entry), entry.GetName(), entry.GetParent());
    }

    bool BeginSection(const ZmConfigurationSection& section, unsigned)
    {
        const char* name = section.GetName();
        const char* reason = *name == '/'                     ? "the name of a section begins with '/'"
                             : strchr(name, '\n') != nullptr  ? "the name of a section has a line feed"
                             : strlen(name) + 3 > kMostOfLine ? "the name of a section is too long"
                                                              : nullptr;
        return Holds(reason, name, section.GetParent());
    }

    static bool EndSection(const ZmConfigurationSection&, unsigned) { return true; }

private:
    static constexpr size_t kMostOfLine = ConfigurationReader::kMaxLine;

    static bool HasBlankEnd(const char* text)
    {
        return *text != 0 && (IsBlank(*text) || IsBlank(text[strlen(text) - 1]));
    }

    static const char* ReasonOf(const ZmConfigurationEntry& entry)
    {
        const char *name = entry.GetName(), *value = entry.GetValue();
        if (*name == '#' || *name == '<') {
            return "the name of an entry begins with '#' or '<'";
        }
        if (strpbrk(name, "=\n") != nullptr) {
            return "the name of an entry has '=' or a line feed";
        }
        if (HasBlankEnd(name) || HasBlankEnd(value)) {
            return "an entry begins or ends with a blank";
        }
        if (strchr(value, '\n') != nullptr || (*value != 0 && value[strlen(value) - 1] == '\r')) {
            return "a value has a line feed, or ends with a carriage return";
        }
        return strlen(name) + 3 + strlen(value) > kMostOfLine ? "an entry is too long for a line" : nullptr;
    }

    /// Keeps the reason, which ends the walk. Returns whether there is none.
    bool Holds(const char* reason, const char* name, const ZmConfigurationSection* parent)
    {
        m_Reason = reason;
        m_Name = name;
        m_Parent = parent;
        return reason == nullptr;
    }

    const char* m_Reason = nullptr;
    const char* m_Name = "";
    const ZmConfigurationSection* m_Parent = nullptr;
};

}  // namespace

bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent)
{
    TreeWriter writer(res, indent);
    const bool done = TreeWalk<TreeWriter>(writer).Run(root);
    return writer.End() && done;
}

bool FormatHolds(const ZmConfigurationSection& root, XString& why)
{
    FormatCheck check;
    why = nullptr;
    if (TreeWalk<FormatCheck>(check).Run(root)) {
        return true;
    }
    if (check.Reason() == nullptr) {
        why = "out of memory";
        return false;
    }
    constexpr int kMostSections = 20;  // of which the path is shown
    XString path(check.Name());
    int shown = 0;
    const ZmConfigurationSection* section = check.Parent();
    for (; section->GetParent() != nullptr && shown < kMostSections; ++shown) {
        path = XString(section->GetName()) + "." + path;
        section = section->GetParent();
    }
    why << check.Reason() << ": " << path;
    return false;
}

}  // namespace zm
