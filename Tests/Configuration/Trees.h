#pragma once

#include "ZmConfiguration.h"

#include <gtest/gtest.h>

#include <string>

/// A tree in one line and in its order: "a=1;S{b=2;}". For sections and whole configurations.
inline std::string TextOf(const ZmConfigurationSection& section)
{
    std::string text;
    auto entry = section.BeginChildEntry();
    while (const ZmConfigurationEntry* child = section.GetNextChildEntry(entry)) {
        EXPECT_EQ(child->GetParent(), &section);
        text += std::string(child->GetName()) + '=' + child->GetValue() + ';';
    }
    auto next = section.BeginChildSection();
    while (const ZmConfigurationSection* child = section.GetNextChildSection(next)) {
        EXPECT_EQ(child->GetParent(), &section);
        text += std::string(child->GetName()) + '{' + TextOf(*child) + '}';
    }
    return text;
}

inline std::string TextOf(const ZmConfiguration& configuration)
{
    std::string text;
    auto entry = configuration.BeginEntries();
    while (const ZmConfigurationEntry* child = configuration.GetNextEntry(entry)) {
        text += std::string(child->GetName()) + '=' + child->GetValue() + ';';
    }
    auto next = configuration.BeginSections();
    while (const ZmConfigurationSection* child = configuration.GetNextSection(next)) {
        text += std::string(child->GetName()) + '{' + TextOf(*child) + '}';
    }
    return text;
}
