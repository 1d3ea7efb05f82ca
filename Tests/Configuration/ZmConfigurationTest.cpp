#include "ZmConfiguration.h"
#include "Configuration/Trees.h"

#include <gtest/gtest.h>

#include <float.h>
#include <limits.h>

#include <memory>

namespace {

TEST(ZmConfigurationTest, TheFirstEntryOfANameWins)
{
    ZmConfiguration tree(0);
    ZmConfigurationEntry* entry = nullptr;
    EXPECT_EQ(tree.AddEntry("s.t", "a", "1", &entry), 1);
    EXPECT_EQ(entry, nullptr);
    EXPECT_EQ(tree.AddEntry("s.t", "a", 2, &entry), 1);
    ASSERT_NE(entry, nullptr);
    EXPECT_STREQ(entry->GetValue(), "1");
    entry->SetValue("3");
    EXPECT_EQ(tree.AddEntry(nullptr, "a.b", nullptr), 1);
    EXPECT_EQ(TextOf(tree), "a.b=;s{t{a=3;}}");
}

TEST(ZmConfigurationTest, NumbersAreKeptAsTexts)
{
    ZmConfiguration tree(0);
    tree.AddEntry(nullptr, "int", INT_MIN);
    tree.AddEntry(nullptr, "unsigned", UINT_MAX);
    tree.AddEntry(nullptr, "float", 1.5f);
    tree.AddEntry(nullptr, "large", FLT_MAX);
    EXPECT_EQ(TextOf(tree), "int=-2147483648;unsigned=4294967295;float=1.500000;"
                            "large=340282346638528859811704183484516925440.000000;");

    const struct {
        const char* text;
        int isInt, intValue, isUnsigned;
        unsigned unsignedValue;
        int isFloat;
        float floatValue;
    } kRows[] = {
        {"abc", 0, 0, 0, 0, 0, 0},
        {"", 0, 0, 0, 0, 0, 0},
        {" 42", 1, 42, 1, 42, 1, 42},
        {"12abc", 1, 12, 1, 12, 1, 12},
        {"-1.5", 1, -1, 1, UINT_MAX, 1, -1.5f},
        {"4294967295", -1, 0, 1, UINT_MAX, 1, 4294967295.0f},
        {".5", 0, 0, 0, 0, 1, 0.5f},
    };
    ZmConfigurationEntry& entry = *tree.GetEntry("int", 0);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.text);
        entry.SetValue(row.text);
        int i = 0;
        unsigned u = 0;
        float f = 0;
        if (row.isInt >= 0) {  // scanf() says nothing of numbers that do not fit
            EXPECT_EQ(entry.GetValueAsInteger(i), row.isInt);
            EXPECT_EQ(i, row.intValue);
        }
        EXPECT_EQ(entry.GetValueAsUnsignedInteger(u), row.isUnsigned);
        EXPECT_EQ(u, row.unsignedValue);
        EXPECT_EQ(entry.GetValueAsFloat(f), row.isFloat);
        EXPECT_EQ(f, row.floatValue);
    }
}

TEST(ZmConfigurationTest, DefaultsAreFoundWhereTheMainTreeHasNothing)
{
    ZmConfiguration tree(0);
    EXPECT_EQ(tree.CreateDefaultSubSection("s", "t"), nullptr) << "there are no defaults yet";
    EXPECT_EQ(tree.AddDefaultEntry(nullptr, "x", 1), 1);
    EXPECT_EQ(tree.AddDefaultEntry("s.t", "y", 2u), 1);
    EXPECT_EQ(tree.AddDefaultEntry("s.t", "y", 3.0f), 1);
    ZmConfigurationSection* other = tree.CreateDefaultSubSection("s", "u");
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(tree.CreateDefaultSubSection("none", "u"), nullptr);
    EXPECT_EQ(TextOf(tree), "") << "walks do not show them";
    EXPECT_STREQ(tree.GetEntry("x", 0)->GetValue(), "1");
    tree.AddEntry(nullptr, "x", "hides");
    EXPECT_STREQ(tree.GetEntry("x", 1)->GetValue(), "hides");
    EXPECT_STREQ(tree.GetSubSection("s.t", 1)->GetEntry("y")->GetValue(), "2");

    // The section is known among the defaults, and so the entry goes there.
    EXPECT_EQ(tree.AddEntry("s.u", "z", "4"), 1);
    EXPECT_STREQ(other->GetEntry("z")->GetValue(), "4");
    EXPECT_EQ(tree.GetNumberOfEntriesRecursive(), 1);
    tree.Clear();
    EXPECT_EQ(tree.GetSubSection("s.u", 1), other);
    tree.ClearDefault();
    EXPECT_EQ(tree.GetSubSection("s.u", 1), nullptr);
    EXPECT_EQ(tree.AddEntry("s.u", "z", "5"), 1);
    EXPECT_EQ(TextOf(tree), "s{u{z=5;}}");
}

TEST(ZmConfigurationTest, PathsAreReadDifferentlyByEachOperation)
{
    ZmConfiguration tree(0);
    tree.AddEntry("a.b.c", "c", "deep");
    tree.AddEntry("a.b", "c", "not this");
    tree.AddEntry(nullptr, "a.b.c", "dots in a name");
    tree.AddEntry("a..", "", "empty names");
    EXPECT_EQ(TextOf(tree), "a.b.c=dots in a name;a{b{c=not this;c{c=deep;}}{{=empty names;}}}");

    EXPECT_STREQ(tree.GetEntry("a.b.c", 1)->GetValue(), "deep");
    EXPECT_STREQ(tree.GetEntry("a.b.c", 0)->GetValue(), "dots in a name");
    EXPECT_EQ(tree.GetEntry("a.b", 1), nullptr);
    tree.AddDefaultEntry("a.b", "b", "of the defaults");
    EXPECT_STREQ(tree.GetEntry("a.b", 1)->GetValue(), "of the defaults");

    EXPECT_EQ(tree.GetSubSection("a.b", 0), nullptr);
    EXPECT_EQ(tree.GetSubSection("a.b.", 1), nullptr);
    EXPECT_EQ(tree.CreateSubSection("a.b", "x"), nullptr);
    EXPECT_NE(tree.CreateSubSection(nullptr, "a.b"), nullptr);
    ASSERT_NE(tree.CreateSubSection("a.b", "x"), nullptr);
    EXPECT_EQ(TextOf(*tree.GetSubSection("a.b", 0)), "x{}");
    EXPECT_EQ(tree.CreateSubSection("a", "b"), tree.GetSubSection("a.b", 1));
    EXPECT_EQ(tree.DeleteEntry("a.b", "c"), 0);
    EXPECT_EQ(tree.DeleteSection("a", "b"), 1);
    EXPECT_EQ(tree.GetSubSection("a.b.c", 1), nullptr);
}

TEST(ZmConfigurationTest, ARemovalPutsTheLastChildIntoThePlace)
{
    ZmConfiguration tree(0);
    for (const char* name : {"a", "b", "c", "d"}) {
        tree.AddEntry(nullptr, name, "1");
        tree.CreateSubSection(nullptr, name)->AddEntry("e", "1");
        tree.CreateSubSection(name, "f");
    }
    EXPECT_EQ(tree.GetNumberOfEntriesRecursive(), 8);
    EXPECT_EQ(tree.GetNumberOfSubSectionsRecursive(), 8);
    const std::unique_ptr<ZmConfigurationEntry> entry(tree.RemoveEntry(nullptr, "b"));
    const std::unique_ptr<ZmConfigurationSection> section(tree.RemoveSection(nullptr, "b"));
    EXPECT_EQ(TextOf(tree), "a=1;d=1;c=1;a{e=1;f{}}d{e=1;f{}}c{e=1;f{}}");
    EXPECT_EQ(TextOf(*section), "e=1;f{}");
    EXPECT_STREQ(section->GetParent()->GetName(), "root");
    EXPECT_STREQ(entry->GetName(), "b");
    EXPECT_EQ(tree.RemoveEntry("none", "a"), nullptr);
    EXPECT_EQ(tree.RemoveSection(nullptr, "b"), nullptr);
    EXPECT_EQ(tree.DeleteEntry("d", tree.GetSubSection("d", 0)->GetEntry("e")->GetName()), 1);
    EXPECT_EQ(tree.DeleteEntry(nullptr, "b"), 0);
    tree.AddEntry(nullptr, "b", "2");
    EXPECT_EQ(TextOf(tree), "a=1;d=1;c=1;b=2;a{e=1;f{}}d{f{}}c{e=1;f{}}");
    EXPECT_EQ(tree.GetNumberOfEntries(), 4);
    EXPECT_EQ(tree.GetNumberOfSubSections(), 3);
}

}  // namespace
