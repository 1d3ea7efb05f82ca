#include "Configuration/Trees.h"
#include "Support/Random.h"
#include "Support/TemporaryFolder.h"
#include "ZmConfiguration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <sstream>
#include <vector>

namespace {

/// What a load gave: "line error tree".
std::string Loaded(int done, int line, const XString& error, const ZmConfiguration& tree)
{
    EXPECT_EQ(done, error == "OK");
    return std::to_string(line) + ' ' + error.Text() + ' ' + TextOf(tree);
}

std::string LoadedFromMemory(const std::string& text)
{
    ZmConfiguration tree(0);
    tree.AddEntry("old", "entry", "is cleared");
    int line = -1;
    XString error;
    const int done = tree.BuildFromMemory(text.c_str(), line, error);
    return Loaded(done, line, error, tree);
}

class ConfigurationFormatTest : public testing::Test {
protected:
    std::string LoadedFromFile(const std::string& text)
    {
        MakeFile(m_Path, text);
        ZmConfiguration tree(0);
        tree.AddEntry("old", "entry", "is cleared");
        int line = -1;
        XString error;
        const int done = tree.BuildFromFile(m_Path.c_str(), line, error);
        return Loaded(done, line, error, tree);
    }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "test.cfg";
};

TEST_F(ConfigurationFormatTest, TextsAndTheirTrees)
{
    const std::string x1022(1022, 'x'), x1023(1023, 'x');
    const struct {
        const char* name;
        std::string text, fromFile, fromMemory;
    } kRows[] = {
        {"nothing", "", "0 OK ", "0 OK "},
        {"sections", "a = 1\n<S>\nb = x = y\n</S>\n", "4 OK a=1;S{b=x = y;}", "3 OK a=1;S{b=x = y;}"},
        {"memory loses the last line", "a = 1", "1 OK a=1;", "0 OK "},
        {"also one that ends", "a = 1\nb = 2\n", "2 OK a=1;b=2;", "1 OK a=1;"},
        {"blanks", " \t a\t= \t1 2 \n\n \t\n  # no = entry\na#b=\n = 5\n\n", "7 OK a=1 2;a#b=;=5;",
         "6 OK a=1 2;a#b=;=5;"},
        {"the first value wins", "a = 1\na = 2\n\n", "3 OK a=1;", "2 OK a=1;"},
        {"sections go on", "<S>\na=1\n</S>\n<S>\na=2\nb=3\n<>\n", "7 OK S{a=1;b=3;{}}", "6 OK S{a=1;b=3;}"},
        {"tags to the last bracket", "< S > >rest\n</ S > >\n<a.b>\n\n", "4 OK  S > {}a.b{}", "3 OK  S > {}a.b{}"},
        {"wrong end", "<S>\n</T>\n\n", "1 closing bad section : T != S S{}", "1 closing bad section : T != S S{}"},
        {"end of the root", "\n</root>\na = 1\n\n", "1 closing bad section : root != root ",
         "1 closing bad section : root != root "},
        {"end of nothing", "</>\n\n", "0 closing bad section :  != root ", "0 closing bad section :  != root "},
        {"open tag", "a=1\n<S\nb=2\n\n", "1 can't find end of section tag a=1;",
         "1 can't find end of section tag a=1;"},
        {"no equal", "a=1\nb\n\n", "1 can't find equal ('=') separator a=1;",
         "1 can't find equal ('=') separator a=1;"},
        {"returns stay in memory", "<S>\r\na = 1\r\n</S>\r\n\n", "4 OK S{a=1;}", "3 OK S{a=1\r;}"},
        {"a line of 1023", "=" + x1022 + "\na=1\n\n", "4 OK =" + x1022 + ";a=1;", "2 OK =" + x1022 + ";a=1;"},
        {"a longer one is cut", "=" + x1023 + "=1\n\n", "3 OK =" + x1022 + ";x=1;", "2 OK =" + x1022 + ";x=1;"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(LoadedFromFile(row.text), row.fromFile);
        EXPECT_EQ(LoadedFromMemory(row.text), row.fromMemory);
    }
    EXPECT_EQ(LoadedFromFile(std::string("a = 1\0x\nb = 2\n", 14)), "2 OK a=1;b=2;");
}

/// Reads a text as the description of the format says, for the lines of a file; without any of the library's classes.
class PlainReader {
public:
    std::string Read(const std::string& text)
    {
        std::istringstream lines(text);
        std::string raw, error = "OK";
        int count = 0;
        for (; error == "OK" && std::getline(lines, raw); count += error == "OK") {
            const std::string line = Trimmed(raw);
            const size_t equal = line.find('='), bracket = line.rfind('>');
            if (line.empty() || line[0] == '#') {
                continue;
            }
            if (line[0] != '<') {
                if (equal == std::string::npos) {
                    error = "can't find equal ('=') separator";
                } else {
                    AddTo(m_Current->entries, Trimmed(line.substr(0, equal))).value = Trimmed(line.substr(equal + 1));
                }
            } else if (bracket == std::string::npos) {
                error = "can't find end of section tag";
            } else if (line[1] != '/') {
                Node& child = AddTo(m_Current->sections, line.substr(1, bracket - 1));
                child.parent = m_Current;
                m_Current = &child;
            } else if (line.substr(2, bracket - 2) == m_Current->name && m_Current->parent != nullptr) {
                m_Current = m_Current->parent;
            } else {
                error = "closing bad section : " + line.substr(2, bracket - 2) + " != " + m_Current->name;
            }
        }
        return std::to_string(count) + ' ' + error + ' ' + Print(m_Root);
    }

private:
    struct Node {
        std::string name, value;
        std::deque<Node> entries, sections;
        Node* parent = nullptr;
    };

    static std::string Trimmed(const std::string& text)
    {
        const size_t begin = text.find_first_not_of(" \t\n"), end = text.find_last_not_of(" \t\n");
        return begin != std::string::npos ? text.substr(begin, end - begin + 1) : "";
    }

    // The child of that name; an entry that is there already is replaced by one that nobody sees.
    Node& AddTo(std::deque<Node>& children, const std::string& name)
    {
        for (Node& child : children) {
            if (child.name == name) {
                return &children == &m_Current->entries ? m_Ignored : child;
            }
        }
        children.push_back({name, "", {}, {}, nullptr});
        return children.back();
    }

    static std::string Print(const Node& node)
    {
        std::string text;
        for (const Node& entry : node.entries) {
            text += entry.name + '=' + entry.value + ';';
        }
        for (const Node& section : node.sections) {
            text += section.name + '{' + Print(section) + '}';
        }
        return text;
    }

    Node m_Root{"root", "", {}, {}, nullptr}, m_Ignored;
    Node* m_Current = &m_Root;
};

TEST_F(ConfigurationFormatTest, RandomTextsReadAsAPlainReaderReadsThem)
{
    static const char* const kPieces[] = {"a",    "b",   "=",    " ", "\t", "#", "<a>",
                                          "</a>", "<b>", "</b>", "<", ">",  "/", "\n"};
    Random random(1);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (int lines = random.Int(1, 12); lines > 0; --lines) {
            static const char* const kLines[] = {"a = b", "<a>", "<b>", "</a>", "</b>", "# a", "b=", "x=1", "", "<c>"};
            text += kLines[random.Int(0, 9)];
            for (int pieces = random.Int(0, 7) - 5; pieces > 0; --pieces) {
                text += kPieces[random.Int(0, 13)];
            }
            text += '\n';
        }
        SCOPED_TRACE(text);
        const std::string expected = PlainReader().Read(text);
        ASSERT_EQ(LoadedFromMemory(text + "lost"), expected);
        if (round % 10 == 0) {
            ASSERT_EQ(LoadedFromFile(text), expected);
        }
    }
}

std::string RandomName(Random& random)
{
    // Everything that the format holds at the end and at the beginning of a name.
    static const char kCharacters[] = "ab.c>\r \t\x01\xff-";
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

TEST_F(ConfigurationFormatTest, FilesAreWrittenAsThis)
{
    ZmConfiguration tree(2);
    tree.AddEntry("Video", "Width", 640);
    tree.AddEntry("Video.Driver", "Name", "Default");
    tree.AddEntry("Video", "Height", 480);
    tree.AddEntry(nullptr, "version", 3);
    const std::string expected = "version = 3\n<Video>\n  Width = 640\n  Height = 480\n  <Driver>\n"
                                 "    Name = Default\n  </Driver>\n</Video>\n";
    MakeFile(m_Path, std::string(1000, 'x'));
    ASSERT_EQ(tree.SaveToFile(m_Path.c_str()), 1);
    std::string text = BytesOf(m_Path);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    EXPECT_EQ(text, expected);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_Folder.Path()), {}), 1) << "nothing else stays";
}

TEST_F(ConfigurationFormatTest, ErrorsOfFiles)
{
    ZmConfiguration tree(0);
    int line;
    XString error = (m_Folder / "none").c_str();
    tree.AddEntry(nullptr, "file", error.Text());
    EXPECT_EQ(tree.BuildFromFile(tree.GetEntry("file", 0)->GetValue(), line, error), 0);
    EXPECT_EQ(error.Text(), "can't open file : " + m_Folder / "none");
    EXPECT_EQ(TextOf(tree), "");
    EXPECT_EQ(tree.BuildFromFile(nullptr, line, error), 0);
    EXPECT_STREQ(error.Text(), "null filename");
    tree.AddEntry(nullptr, "text", "a = 1 \n\n");
    EXPECT_EQ(tree.BuildFromMemory(tree.GetEntry("text", 0)->GetValue(), line, error), 1);
    EXPECT_EQ(TextOf(tree), "a=1;");
    EXPECT_EQ(tree.SaveToFile((m_Folder / "none/file").c_str()), 0);
    EXPECT_EQ(tree.SaveToFile(nullptr), 0);
}

}  // namespace
