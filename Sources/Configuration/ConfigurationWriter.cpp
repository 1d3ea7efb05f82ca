#include "Configuration/ConfigurationWriter.h"

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

    void Put(const char* text) { Put(text, strlen(text)); }

    void PutBlanks(uint64_t count)
    {
        static const char blanks[] = "                                                                ";
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

/// Writes a tree without recursion, which would exhaust the stack on deep trees: keeps the sections from the root to
/// the current one, each with its next child.
class TreeWriter {
public:
    TreeWriter(ZmStream& stream, unsigned indent) : m_Text(stream), m_Indent(indent) {}

    bool Write(const ZmConfigurationSection& root)
    {
        bool done = Enter(root);
        while (done && !m_Open.IsEmpty() && !m_Text.Failed()) {
            OpenSection& current = m_Open.Back();
            const ZmConfigurationSection* child = current.section->GetNextChildSection(current.next);
            if (child == nullptr) {
                Leave();
            } else {
                PutTag("<", *child);
                done = Enter(*child);
            }
        }
        m_Text.Flush();
        return done && !m_Text.Failed();
    }

private:
    struct OpenSection {
        const ZmConfigurationSection* section;
        ZmConfigurationSection::SectionTable::ConstIterator next;
    };

    // Number of blanks before the children of the current section.
    uint64_t Depth() const { return m_Open.IsEmpty() ? 0 : uint64_t(m_Open.Size() - 1) * m_Indent; }

    bool Enter(const ZmConfigurationSection& section)
    {
        if (!m_Open.PushBack({&section, section.BeginChildSection()})) {
            return false;
        }
        auto position = section.BeginChildEntry();
        while (const ZmConfigurationEntry* entry = section.GetNextChildEntry(position)) {
            m_Text.PutBlanks(Depth());
            m_Text.Put(entry->GetName());
            m_Text.Put(" = ", 3);
            m_Text.Put(entry->GetValue());
            m_Text.Put("\n", 1);
        }
        return true;
    }

    void Leave()
    {
        const ZmConfigurationSection& section = *m_Open.Back().section;
        m_Open.PopBack();
        if (!m_Open.IsEmpty()) {
            PutTag("</", section);
        }
    }

    void PutTag(const char* bracket, const ZmConfigurationSection& section)
    {
        m_Text.PutBlanks(Depth());
        m_Text.Put(bracket);
        m_Text.Put(section.GetName());
        m_Text.Put(">\n", 2);
    }

    TextWriter m_Text;
    const unsigned m_Indent;
    XArray<OpenSection> m_Open;
};

}  // namespace

bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent)
{
    return TreeWriter(res, indent).Write(root);
}

}  // namespace zm
