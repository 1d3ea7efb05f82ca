#pragma once

#include "Configuration/ConfigurationLine.h"
#include "XArray.h"
#include "ZmConfigurationSection.h"
#include "ZmStream.h"

#include <algorithm>
#include <string.h>

namespace zm {

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

/// Writes entries and tags.
class TreeWriter {
public:
    TreeWriter(ZmStream& stream, unsigned indent, const char* newLine = "\n")
        : m_Text(stream), m_Indent(indent), m_NewLine(newLine)
    {
    }

    /// Writes any text as it is.
    void Put(const char* text, size_t length) { m_Text.Put(text, length); }
    void EndLine() { m_Text.Put(m_NewLine, strlen(m_NewLine)); }

    bool Entry(const ZmConfigurationEntry& entry, unsigned depth)
    {
        const size_t name = strlen(entry.GetName()), value = strlen(entry.GetValue());
        Indent(depth, name + 3 + value);
        m_Text.Put(entry.GetName(), name);
        m_Text.Put(" = ", 3);
        m_Text.Put(entry.GetValue(), value);
        EndLine();
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
        m_Text.Put(">", 1);
        EndLine();
        return !m_Text.Failed();
    }

    // A line that its indentation would make longer than the reader takes has less of it, so that it loads again and
    // deep trees do not become files of gigabytes.
    void Indent(unsigned depth, size_t lineLength)
    {
        constexpr uint64_t kMost = ConfigurationLine::kMaxLength, kOfLongLines = 256;
        const uint64_t wanted = uint64_t(depth) * m_Indent, room = kMost - std::min(uint64_t(lineLength), kMost);
        m_Text.PutBlanks(wanted <= room ? wanted : std::min(room, kOfLongLines));
    }

    TextWriter m_Text;
    const unsigned m_Indent;
    const char* const m_NewLine;
};

}  // namespace zm
