#pragma once

#include "ZmConfiguration.h"

#include <string>

inline std::string TextOf(const ZmConfigurationSection& section);

template <class NextEntry, class NextSection>
std::string TextOf(NextEntry nextEntry, NextSection nextSection)
{
    std::string text;
    while (const ZmConfigurationEntry* entry = nextEntry()) {
        text += std::string(entry->GetName()) + '=' + entry->GetValue() + ';';
    }
    while (const ZmConfigurationSection* section = nextSection()) {
        text += std::string(section->GetName()) + '{' + TextOf(*section) + '}';
    }
    return text;
}

/// The tree as one line, in its order: "a=1;S{b=2;}". For sections and whole configurations.
inline std::string TextOf(const ZmConfigurationSection& section)
{
    auto entry = section.BeginChildEntry();
    auto child = section.BeginChildSection();
    return TextOf([&] { return section.GetNextChildEntry(entry); }, [&] { return section.GetNextChildSection(child); });
}

inline std::string TextOf(const ZmConfiguration& tree)
{
    auto entry = tree.BeginEntries();
    auto child = tree.BeginSections();
    return TextOf([&] { return tree.GetNextEntry(entry); }, [&] { return tree.GetNextSection(child); });
}
