#include "Configuration/Trees.h"
#include "Support/TemporaryFolder.h"
#include "ZmConfiguration.h"

#include <gtest/gtest.h>

#include <float.h>
#include <limits.h>

namespace {

/// The values of a text by every getter, with '-' for what is none: "int unsigned float bool".
std::string ValuesOf(const char* text)
{
    ZmConfiguration tree(0);
    tree.SetText("a", text);
    int whole = 0;
    unsigned natural = 0;
    float number = 0;
    bool flag = false;
    XString why, res;
    tree.GetInt("a", whole, why) ? res << whole : res << '-';
    tree.GetUnsigned("a", natural, why) ? res << ' ' << natural : res << " -";
    tree.GetFloat("a", number, why) ? res << ' ' << number : res << " -";
    tree.GetBool("a", flag, why) ? res << (flag ? " on" : " off") : res << " -";
    return res.Text();
}

TEST(ConfigurationValuesTest, TheWholeTextMustBeTheValue)
{
    const struct {
        const char *text, *values;
    } kRows[] = {
        {"0", "0 0 0.000000 off"},
        {"1", "1 1 1.000000 on"},
        {"+7", "7 7 7.000000 -"},
        {"-7", "-7 - -7.000000 -"},
        {"2147483648", "- 2147483648 2147483648.000000 -"},
        {"4294967296", "- - 4294967296.000000 -"},
        {"-2.5e1", "- - -25.000000 -"},
        {".5", "- - 0.500000 -"},
        {"0,5", "- - - -"},
        {"20k", "- - - -"},
        {"1 2", "- - - -"},
        {"", "- - - -"},
        {"+", "- - - -"},
        {"+-1", "- - - -"},
        {"0x10", "- - - -"},
        {"inf", "- - - -"},
        {"1e39", "- - - -"},
        {"YES", "- - - on"},
        {"Off", "- - - off"},
        {"trueish", "- - - -"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(ValuesOf(row.text), row.values) << "'" << row.text << "'";
    }
}

TEST(ConfigurationValuesTest, DefaultsHelpEntryByEntry)
{
    ZmConfiguration tree(0);
    tree.SetText("Server.Name", "alpha");
    tree.SetText("Server.Port", "80b");
    tree.AddDefaultEntry("Server", "Workers", 4);
    tree.AddDefaultEntry("Server", "Port", 8080);
    tree.AddDefaultEntry("Server", "Name", "beta");
    EXPECT_EQ(tree.GetInt("Server.Workers", 1), 4);
    EXPECT_EQ(tree.GetUnsigned("Server.Port", 1), 8080u);
    EXPECT_STREQ(tree.GetText("Server.Name"), "alpha");
    EXPECT_EQ(tree.GetFloat("Server.Name", 0.5f), 0.5f);
    EXPECT_TRUE(tree.GetBool("Server.Name", true));
    for (const char* missing :
         {"Workers", "Server", "Server.", ".Workers", "Server.Workers.x", "", "..", (const char*)nullptr}) {
        EXPECT_EQ(tree.GetInt(missing, -1), -1);
        EXPECT_STREQ(tree.GetText(missing, "none"), "none");
    }
}

TEST(ConfigurationValuesTest, AMistakeIsNamedWithItsLine)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file";
    MakeFile(path, "\n# workers\n<Server>\n  Workers = 20k\n</Server>\nOn = maybe\n");
    ZmConfiguration tree(0);
    int line = 0, workers = 3;
    bool on = true;
    XString why;
    ASSERT_EQ(tree.BuildFromFile(path.c_str(), line, why), 1);
    EXPECT_EQ(tree.FindEntry("Server.Workers")->GetLine(), 4);
    EXPECT_EQ(tree.GetInt("Server.Workers", workers, why), 0);
    EXPECT_STREQ(why.Text(), "Server.Workers is '20k' in line 4, which is no whole number");
    EXPECT_EQ(tree.GetBool("On", on, why), 0);
    EXPECT_STREQ(why.Text(), "On is 'maybe' in line 6, which is no 'true' or 'false'");
    EXPECT_EQ(tree.GetInt("Server.None", workers, why), 0);
    EXPECT_STREQ(why.Text(), "Server.None is missing");
    tree.AddDefaultEntry(nullptr, "Made", "x");
    EXPECT_EQ(tree.GetInt("Made", workers, why), 0);
    EXPECT_STREQ(why.Text(), "Made is 'x', which is no whole number");
    EXPECT_TRUE(workers == 3 && on);
}

TEST(ConfigurationValuesTest, WhatIsSetIsReadAgain)
{
    ZmConfiguration tree(0);
    for (const float value : {0.1f, -0.0f, FLT_MAX, FLT_MIN, FLT_TRUE_MIN, 1.0f / 3, 16777216.0f}) {
        ASSERT_EQ(tree.SetFloat("a.b.f", value), 1);
        const float again = tree.GetFloat("a.b.f", -1.0f);
        EXPECT_EQ(memcmp(&again, &value, sizeof(value)), 0) << tree.GetText("a.b.f");
    }
    EXPECT_EQ(tree.SetInt("a.i", INT_MIN), 1);
    EXPECT_EQ(tree.SetUnsigned("a.i", UINT_MAX), 1);
    EXPECT_EQ(tree.SetBool("flag", true), 1);
    EXPECT_EQ(tree.SetText("a.b.f", "0.1"), 1);
    EXPECT_EQ(tree.SetText("empty", nullptr), 1);
    EXPECT_EQ(tree.SetText(nullptr, "x"), 0);
    EXPECT_EQ(TextOf(tree), "flag=true;empty=;a{i=4294967295;b{f=0.1;}}");
    EXPECT_EQ(&tree.Root(), tree.GetSubSection("a", 0)->GetParent());
}

/// What UpdateFile() makes of a file that holds `old` after `change`.
template <class Change>
std::string Updated(const std::string& old, Change change)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file";
    MakeFile(path, old);
    ZmConfiguration tree(2);
    int line = 0;
    XString error;
    EXPECT_EQ(tree.BuildFromFile(path.c_str(), line, error), 1) << error.Text();
    change(tree);
    EXPECT_EQ(tree.UpdateFile(path.c_str(), &error), 1) << error.Text();
    EXPECT_STREQ(error.Text(), "");
    return BytesOf(path);
}

TEST(ConfigurationValuesTest, AnUpdateKeepsCommentsOrderAndBlankLines)
{
    const std::string text = "# the server\n\n<Server>\n\tWorkers=4\n\n  # its name\n  Name  =  alpha  \n  <TLS>\n"
                             "  </TLS> ignored\n</Server>\nversion = 1\n\n# end";
    const struct {
        const char* what;
        void (*change)(ZmConfiguration& tree);
        std::string from, to;
    } kRows[] = {
        {"nothing but the last line's end", [](ZmConfiguration&) {}, "# end", "# end\n"},
        {"a value", [](ZmConfiguration& tree) { tree.SetInt("Server.Workers", 16); }, "=4", "=16"},
        {"a value with blanks before it", [](ZmConfiguration& tree) { tree.SetText("Server.Name", "b"); },
         "  =  alpha  \n", "  =  b\n"},
        {"an empty value", [](ZmConfiguration& tree) { tree.SetText("Server.Workers", ""); }, "=4", "="},
        {"a new entry of a section", [](ZmConfiguration& tree) { tree.SetBool("Server.On", true); }, "alpha  \n",
         "alpha  \n  On = true\n"},
        {"a new entry of an empty section", [](ZmConfiguration& tree) { tree.SetInt("Server.TLS.Port", 1); }, "<TLS>\n",
         "<TLS>\n    Port = 1\n"},
        {"a new entry of the root", [](ZmConfiguration& tree) { tree.SetInt("more", 2); }, "version = 1\n",
         "version = 1\nmore = 2\n"},
        {"a new section", [](ZmConfiguration& tree) { tree.SetInt("Server.A.B.x", 1); }, "</Server>",
         "  <A>\n    <B>\n      x = 1\n    </B>\n  </A>\n</Server>"},
        {"a new section of the root", [](ZmConfiguration& tree) { tree.SetInt("A.x", 1); }, "# end",
         "# end\n<A>\n  x = 1\n</A>\n"},
        {"an entry less", [](ZmConfiguration& tree) { tree.Root().DeleteEntry("version"); }, "version = 1\n", ""},
        {"a section less", [](ZmConfiguration& tree) { tree.GetSubSection("Server", 0)->DeleteSection("TLS"); },
         "  <TLS>\n  </TLS> ignored\n", ""},
    };
    for (const auto& row : kRows) {
        std::string expected = text;
        expected.replace(expected.find(row.from), row.from.size(), row.to);
        EXPECT_EQ(Updated(text, row.change), expected + (expected.back() == '\n' ? "" : "\n")) << row.what;
    }
}

TEST(ConfigurationValuesTest, AnUpdateReadsAsTheReaderDoes)
{
    const auto set = [](ZmConfiguration& tree) {
        tree.SetInt("a", 2);
        tree.SetInt("S.b", 2);
        tree.SetInt("S.T.c", 2);
        tree.SetInt("U.d", 2);
    };
    // Only the first entry of a name counts, sections are continued, and open ones are closed where something follows.
    EXPECT_EQ(Updated("a=1\r\na=3\r\n<S>\r\nb=1\r\n</S>\r\n<S>\r\n</S>\r\n", set),
              "a=2\r\na=3\r\n<S>\r\nb=2\r\n  <T>\r\n    c = 2\r\n  </T>\r\n</S>\r\n<S>\r\n</S>\r\n"
              "<U>\r\n  d = 2\r\n</U>\r\n");
    EXPECT_EQ(Updated("a=1\n<S>\n<T>", set), "a=2\n<S>\n  b = 2\n<T>\n    c = 2\n  </T>\n</S>\n<U>\n  d = 2\n</U>\n");
    EXPECT_EQ(Updated("", set), "a = 2\n<S>\n  b = 2\n  <T>\n    c = 2\n  </T>\n</S>\n<U>\n  d = 2\n</U>\n");
}

TEST(ConfigurationValuesTest, AFileThatCannotBeUpdatedStays)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file", fresh = folder / "fresh";
    ZmConfiguration tree(2);
    tree.SetInt("S.a", 1);
    XString why;
    for (const std::string& text :
         {std::string("no equal\n"), std::string("<S\n"), std::string("</S>\n"), std::string("<S>\n</T>\n"),
          std::string("a=\0b\n", 5), "a=" + std::string(1021, 'x') + "\n"}) {
        MakeFile(path, text);
        EXPECT_EQ(tree.UpdateFile(path.c_str(), &why), 0);
        EXPECT_EQ(BytesOf(path), text) << why.Text();
        EXPECT_NE(std::string(why.Text()).find("line "), std::string::npos) << why.Text();
    }
    EXPECT_EQ(tree.UpdateFile(folder.Path().c_str(), &why), 0);
    EXPECT_STREQ(why.Text(), "the file cannot be read");
    EXPECT_EQ(tree.UpdateFile(nullptr), 0);
    EXPECT_EQ(tree.UpdateFile(fresh.c_str()), 1);
    tree.SetText("S.a", "two\nlines");
    EXPECT_EQ(tree.UpdateFile(fresh.c_str(), &why), 0);
    EXPECT_STREQ(why.Text(), "a value has a line feed, or ends with a carriage return: S.a");
    EXPECT_EQ(BytesOf(fresh).substr(0, 3), "<S>");
}

}  // namespace
