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
    tree.AddEntry(nullptr, "double", 0.1);
    tree.AddEntry(nullptr, "long", 5L);
    tree.AddDefaultEntry(nullptr, "size", sizeof(char));
    tree.AddEntry(nullptr, "large", FLT_MAX);
    ZmConfigurationSection* section = tree.CreateSubSection(nullptr, "s");
    section->AddEntry("int", -1);
    section->AddEntry("unsigned", 2u);
    EXPECT_EQ(TextOf(tree), "int=-2147483648;unsigned=4294967295;float=1.500000;"
                            "double=0.100000;long=5;large=340282346638528859811704183484516925440.000000;"
                            "s{int=-1;unsigned=2;}");

    EXPECT_STREQ(tree.GetEntry("size", 0)->GetValue(), "1");

    const struct {
        const char *text, *numbers;
    } kRows[] = {
        {"abc", "- - -"},       {" 42", "42 42 42.000000"},          {"12abc", "12 12 12.000000"},
        {".5", "- - 0.500000"}, {"-1.5", "-1 4294967295 -1.500000"},
    };
    ZmConfigurationEntry& entry = *tree.GetEntry("int", 0);
    for (const auto& row : kRows) {
        entry.SetValue(row.text);
        int i = 0;
        unsigned u = 0;
        float f = 0;
        XString numbers;
        entry.GetValueAsInteger(i) == 1 ? numbers << i : numbers << '-';
        entry.GetValueAsUnsignedInteger(u) == 1 ? numbers << ' ' << u : numbers << " -";
        entry.GetValueAsFloat(f) == 1 ? numbers << ' ' << f : numbers << " -";
        EXPECT_STREQ(numbers.Text(), row.numbers) << row.text;
    }
}

TEST(ZmConfigurationTest, DefaultsAreFoundWhereTheMainTreeHasNothing)
{
    ZmConfiguration tree(0);
    EXPECT_EQ(tree.CreateDefaultSubSection("s", "t"), nullptr) << "there are no defaults yet";
    EXPECT_EQ(tree.AddDefaultEntry(nullptr, "x", 1), 1);
    EXPECT_EQ(tree.AddDefaultEntry("s.t", "y", 2u), 1);
    ZmConfigurationSection* other = tree.CreateDefaultSubSection("s", "u");
    ASSERT_NE(other, nullptr);
    EXPECT_STREQ(tree.GetEntry("x", 0)->GetValue(), "1");
    tree.AddEntry(nullptr, "x", "hides");
    EXPECT_STREQ(tree.GetEntry("x", 1)->GetValue(), "hides");
    EXPECT_STREQ(tree.GetSubSection("s.t", 1)->GetEntry("y")->GetValue(), "2");

    // The section exists in the defaults, so the entry is added there.
    EXPECT_EQ(tree.AddEntry("s.u", "z", "4"), 1);
    EXPECT_STREQ(other->GetEntry("z")->GetValue(), "4");
    EXPECT_EQ(tree.GetNumberOfEntriesRecursive(), 1);
    tree.Clear();
    EXPECT_EQ(tree.GetSubSection("s.u", 1), other);
    tree.ClearDefault();
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
    EXPECT_EQ(tree.DeleteEntry("a.b", "c"), 0);
    EXPECT_EQ(tree.DeleteSection("a", "b"), 1);

    ZmConfiguration other(0);
    other.AddEntry((std::string(65535, 's') + ".t").c_str(), "c", "no string can be a name so long");
    EXPECT_EQ(TextOf(other), "{t{c=no string can be a name so long;}}");
}

TEST(ZmConfigurationTest, WithoutTheSectionNothingIsMadeFoundOrRemoved)
{
    ZmConfiguration tree(0);
    tree.AddEntry("a", "b", 1);
    const std::string before = TextOf(tree);
    EXPECT_TRUE(tree.CreateSubSection("x", "b") == nullptr && tree.CreateDefaultSubSection("x", "b") == nullptr);
    EXPECT_TRUE(tree.RemoveEntry("x", "b") == nullptr && tree.RemoveSection("x", "b") == nullptr);
    EXPECT_EQ(tree.DeleteEntry("x", "b") + tree.DeleteSection("x", "b"), 0);
    EXPECT_TRUE(tree.GetEntry(nullptr, 0) == nullptr && tree.GetEntry(nullptr, 1) == nullptr);
    EXPECT_TRUE(tree.GetSubSection(nullptr, 0) == nullptr && tree.GetSubSection(nullptr, 1) == nullptr);
    EXPECT_EQ(TextOf(tree), before);
    ASSERT_NE(tree.CreateDefaultSubSection(nullptr, "x"), nullptr);
    EXPECT_NE(tree.CreateDefaultSubSection("x", "y"), nullptr);
    EXPECT_NE(tree.GetSubSection("x.y", 1), nullptr);
    int line = -1;
    XString error;
    EXPECT_EQ(tree.BuildFromMemory(nullptr, line, error), 1);
    EXPECT_EQ(TextOf(tree), "");
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
    EXPECT_EQ(tree.RemoveSection(nullptr, "b"), nullptr);
    EXPECT_EQ(tree.DeleteEntry("d", tree.GetSubSection("d", 0)->GetEntry("e")->GetName()), 1);
    EXPECT_EQ(tree.DeleteEntry(nullptr, "b"), 0);
    tree.AddEntry(nullptr, "b", "2");
    EXPECT_EQ(TextOf(tree), "a=1;d=1;c=1;b=2;a{e=1;f{}}d{f{}}c{e=1;f{}}");
}

}  // namespace
