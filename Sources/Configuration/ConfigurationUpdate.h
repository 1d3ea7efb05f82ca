#pragma once

#include "Configuration/ConfigurationLine.h"
#include "ZmConfigurationSection.h"
#include "ZmStream.h"

#include <string>
#include <vector>

namespace zm {

/// The old text, line by line, with the sections of the tree that its lines belong to.
class OldText {
public:
    struct Line {
        const char *begin, *end;                ///< without the line feed and a carriage return before it
        const ZmConfigurationSection* section;  ///< for a tag the one that it opens or closes; null if not in the tree
        unsigned depth;                         ///< of the section's children
        ConfigurationLine content;
        std::string name;
    };

    explicit OldText(const ZmConfigurationSection& root) : m_Sections{&root} {}

    /// Returns false with the reason if the text is no configuration. It must outlive the lines.
    bool Read(const std::string& text, XString& why);

    /// What ends its lines, or at least the first one.
    const char* NewLine() const { return m_HasReturns ? "\r\n" : "\n"; }

    const std::vector<Line>& Lines() const { return m_Lines; }

    /// The root and what is not closed at the end; null for sections that are not in the tree.
    const std::vector<const ZmConfigurationSection*>& Unclosed() const { return m_Sections; }

private:
    /// Returns what is wrong with the line, or null.
    const char* Add(const char* begin, const char* end);

    bool m_HasReturns = false;
    std::vector<Line> m_Lines;
    std::vector<const ZmConfigurationSection*> m_Sections;
    std::vector<std::string> m_Names;  ///< of the open sections but the root
};

/// Writes a file that has the contents of the tree, and the comments, the order and the blank lines of the old text. An
/// entry with a new value keeps its line; new entries follow the last one of their section, new sections stand at its
/// end. What the tree does not contain is left out. Returns false if the stream refuses some of it.
bool WriteUpdate(ZmStream& res, const OldText& old, unsigned indent);

}  // namespace zm
