#include "Configuration/Trees.h"
#include "Support/Random.h"
#include "Support/TemporaryFolder.h"
#include "ZmConfiguration.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class ConfigurationFormatTest : public testing::Test {
protected:
    /// The result of a load as a text: "line error tree".
    std::string Load(const std::string& text, bool fromFile)
    {
        ZmConfiguration tree(0);
        tree.AddEntry("old", "entry", "is cleared");
        int line = -1;
        XString error;
        if (fromFile) {
            MakeFile(m_Path, text);
        }
        const int done = fromFile ? tree.BuildFromFile(m_Path.c_str(), line, error)
                                  : tree.BuildFromMemory(text.c_str(), line, error);
        EXPECT_EQ(done, error == "OK");
        return std::to_string(line) + ' ' + error.Text() + ' ' + TextOf(tree);
    }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "test.cfg";
};

TEST_F(ConfigurationFormatTest, TextsAndTheirTrees)
{
    const struct {
        const char *name, *text, *expected;
    } kRows[] = {
        {"nothing", "", "0 OK "},
        {"sections", "a = 1\n<S>\nb = x = y\n</S>\n", "4 OK a=1;S{b=x = y;}"},
        {"blanks", " \t a\t= \t1 2 \n\n \t\n  # no = entry\na#b=\n = 5\n", "6 OK a=1 2;a#b=;=5;"},
        {"sections go on", "<S>\na=1\n</S>\n<S>\na=2\nb=3\n<>\n", "7 OK S{a=1;b=3;{}}"},
        {"tags to the last bracket", "< S > >rest\n</ S > >\n<a.b>\n", "3 OK  S > {}a.b{}"},
        {"wrong end", "<S>\n</T>\n", "1 closing bad section : T != S S{}"},
        {"end of the root", "\n</root>\na = 1\n", "1 closing bad section : root != root "},
        {"end of nothing", "</>\n", "0 closing bad section :  != root "},
        {"open tag", "a=1\n<S\nb=2\n", "1 can't find end of section tag a=1;"},
        {"a byte that ends texts elsewhere", "a=1\x1a\nb=\x1a\x1a\n\x1a=2\n", "3 OK a=1\x1a;b=\x1a\x1a;\x1a=2;"},
        {"no equal", "a=1\nb\n", "1 can't find equal ('=') separator a=1;"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Load(row.text, true), row.expected);
        EXPECT_EQ(Load(std::string(row.text) + "lost", false), row.expected);
    }
}

TEST_F(ConfigurationFormatTest, WhereFilesAndTextsDiffer)
{
    const std::string x1022(1022, 'x'), x1023(1023, 'x');
    const struct {
        const char* name;
        std::string text, fromFile, fromMemory;
    } kRows[] = {
        {"memory loses the last line", "a = 1", "1 OK a=1;", "0 OK "},
        {"returns stay in memory", "<S>\r\na = 1\r\n</S>\r\n\n", "4 OK S{a=1;}", "3 OK S{a=1\r;}"},
        {"a line of 1023", "=" + x1022 + "\na=1\n\n", "4 OK =" + x1022 + ";a=1;", "2 OK =" + x1022 + ";a=1;"},
        {"a longer one is cut", "=" + x1023 + "=1\n\n", "3 OK =" + x1022 + ";x=1;", "2 OK =" + x1022 + ";x=1;"},
        {"a NUL ends the line", std::string("a = 1\0x\nb = 2\n", 14), "2 OK a=1;b=2;", "0 OK "},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Load(row.text, true), row.fromFile);
        EXPECT_EQ(Load(row.text, false), row.fromMemory);
    }
}

std::string RandomName(Random& random)
{
    static constexpr char kCharacters[] = "ab.c>\r \t\x1a\xff-";
    std::string name = "n";
    for (int length = random.Int(0, 6); length > 0; --length) {
        name += kCharacters[random.Int(0, 10)];
    }
    return name + char('a' + random.Int(0, 25));
}

void Grow(ZmConfigurationSection& section, Random& random, int levels)
{
    for (int i = random.Int(0, 20); i > 0; --i) {
        const std::string name = RandomName(random), value = RandomName(random) + "=#<";
        section.AddEntry(name.c_str(), value.c_str());
        if (random.Int(0, 3) == 0) {
            section.DeleteEntry(name.c_str());
        }
    }
    for (int i = levels > 0 ? random.Int(0, 5) : 0; i > 0; --i) {
        Grow(*section.CreateSubSection((" " + RandomName(random) + " ").c_str()), random, levels - 1);
    }
}

TEST_F(ConfigurationFormatTest, WhatIsSavedLoadsAsTheSameTree)
{
    Random random(2);
    for (int round = 0; round < 100; ++round) {
        ZmConfiguration tree(uint16_t(random.Int(0, 1) * round)), copy(0);
        tree.AddDefaultEntry("default", "is", "not saved");
        Grow(*tree.CreateSubSection(nullptr, "top"), random, 4);
        ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
        int line;
        XString error;
        ASSERT_EQ(copy.BuildFromFile(m_Path.c_str(), line, error), 1) << error.Text();
        ASSERT_EQ(TextOf(copy), TextOf(tree));
        ASSERT_EQ(line, tree.GetNumberOfEntriesRecursive() + 2 * tree.GetNumberOfSubSectionsRecursive());
    }
}

TEST_F(ConfigurationFormatTest, WhatCanBeSavedLoadsAsTheSameTree)
{
    Random random(3);
    const auto text = [&random] {
        std::string res;
        for (int i = random.Int(0, 5); i > 0; --i) {
            res += "a b=#</>\n\r\t"[random.Int(0, 11)];
        }
        return res + std::string(size_t(random.Int(0, 30) == 0 ? random.Int(1000, 1023) : 0), 'x');
    };
    int held = 0;
    for (int round = 0; round < 400; ++round) {
        ZmConfiguration tree(uint16_t(random.Int(0, 900))), copy(0);
        ZmConfigurationSection* section = tree.CreateSubSection(nullptr, text().c_str());
        section->CreateSubSection(text().c_str())->AddEntry(text().c_str(), text().c_str());
        tree.CreateSubSection(nullptr, "another")->AddEntry("name", "value");
        XString why;
        int line;
        ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
        const bool isSame = copy.BuildFromFile(m_Path.c_str(), line, why) && TextOf(copy) == TextOf(tree);
        const int res = tree.CanBeSaved(why);
        EXPECT_TRUE(isSame || res == 0) << TextOf(tree);
        EXPECT_EQ(why.IsEmpty(), res == 1);
        held += res;
    }
    EXPECT_GT(held, 25);
}

TEST_F(ConfigurationFormatTest, TheReasonNamesTheFirstPlace)
{
    const std::string longest(1013, 'x'), tooLong(1021, 'x');
    const std::string tooLongWhy = "the name of a section is too long: " + tooLong;
    std::string deep = "a", deepWhy = "an entry begins or ends with a blank: ";
    for (int level = 1; level < 30; ++level) {
        deep += ".a";
        deepWhy += level <= 20 ? "a." : "";
    }
    deepWhy += "b";
    const struct {
        const char *section, *name, *value, *why;
    } kRows[] = {
        {"Server.Web", "Motto", "x\nadmin = 1",
         "a value has a line feed, or ends with a carriage return: Server.Web.Motto"},
        {"Server", "Motto", "x\r", "a value has a line feed, or ends with a carriage return: Server.Motto"},
        {"a", "a=b", "1", "the name of an entry has '=' or a line feed: a.a=b"},
        {"a", "#a", "1", "the name of an entry begins with '#' or '<': a.#a"},
        {"a", " b", "1", "an entry begins or ends with a blank: a. b"},
        {"a", "b", "1\t", "an entry begins or ends with a blank: a.b"},
        {"a", "longer", tooLong.c_str(), "an entry is too long for a line: a.longer"},
        {"/a", "b", "1", "the name of a section begins with '/': /a"},
        {"a\nb", "b", "1", "the name of a section has a line feed: a\nb"},
        {tooLong.c_str(), "b", "1", tooLongWhy.c_str()},
        {deep.c_str(), "b", " ", deepWhy.c_str()},
    };
    for (const auto& row : kRows) {
        ZmConfiguration tree(4);
        tree.AddEntry("fine", "name with blanks", "a value = # < >");
        tree.AddEntry("fine", "longest", longest.c_str());
        XString why("old");
        EXPECT_EQ(tree.CanBeSaved(why), 1);
        EXPECT_STREQ(why.Text(), "");
        tree.AddEntry(row.section, row.name, row.value);
        EXPECT_EQ(tree.CanBeSaved(why), 0) << row.why;
        EXPECT_STREQ(why.Text(), row.why);
    }
}

TEST_F(ConfigurationFormatTest, IndentationNeverMakesALineTooLong)
{
    ZmConfiguration tree(300), copy(0);
    std::string path = "a";
    for (int level = 0; level < 200; ++level) {
        tree.AddEntry(path.c_str(), "name", std::string(size_t(level * 5), 'v').c_str());
        path += ".a";
    }
    int line;
    XString error;
    ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
    EXPECT_LT(std::filesystem::file_size(m_Path), 600 * 1024u);
    ASSERT_EQ(copy.BuildFromFile(m_Path.c_str(), line, error), 1) << error.Text();
    EXPECT_EQ(TextOf(copy), TextOf(tree));
}

TEST_F(ConfigurationFormatTest, LongNamesAndValuesAreWrittenWhole)
{
    const std::string name(40000, 'n'), value(60000, 'v');
    ZmConfiguration tree(2);
    tree.AddEntry(nullptr, name.c_str(), value.c_str());
    ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
    EXPECT_EQ(BytesOf(m_Path).find(name + " = " + value), 0u);
}

TEST_F(ConfigurationFormatTest, FilesAreWrittenAsThis)
{
    ZmConfiguration tree(2);
    tree.AddEntry("Video.Driver", "Name", "Default");
    tree.AddEntry("Video", "Width", 640);
    tree.AddEntry(nullptr, "version", 3);
    MakeFile(m_Path, std::string(1000, 'x'));
    ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
    std::string text = BytesOf(m_Path);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    EXPECT_EQ(text, "version = 3\n<Video>\n  Width = 640\n  <Driver>\n    Name = Default\n  </Driver>\n</Video>\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_Folder.Path()), {}), 1) << "nothing else stays";
    EXPECT_EQ(tree.SaveToFile((m_Folder / "none/file").c_str()), 0);
    EXPECT_EQ(tree.SaveToFile(nullptr), 0);
}

TEST_F(ConfigurationFormatTest, NamesOfFilesAndTextsMayBeValuesOfTheTree)
{
    ZmConfiguration tree(0);
    int line = 42;
    XString error;
    tree.AddEntry(nullptr, "file", (m_Folder / "none").c_str());
    EXPECT_EQ(tree.BuildFromFile(tree.GetEntry("file", 0)->GetValue(), line, error), 0);
    EXPECT_EQ(error.Text(), "can't open file : " + m_Folder / "none");
    EXPECT_EQ(tree.BuildFromFile(nullptr, line, error), 0);
    EXPECT_STREQ(error.Text(), "null filename");
    EXPECT_EQ(tree.BuildFromFile(m_Folder.Path().c_str(), line, error), 0);
    EXPECT_EQ(error.Text(), "can't open file : " + m_Folder.Path());
    EXPECT_EQ(line, 42) << "no line of any file";
    tree.AddEntry(nullptr, "text", "a = 1 \n\n");
    EXPECT_EQ(tree.BuildFromMemory(tree.GetEntry("text", 0)->GetValue(), line, error), 1);
    EXPECT_EQ(TextOf(tree), "a=1;");
}

}  // namespace
