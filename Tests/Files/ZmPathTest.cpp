#include "ZmPath.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string k255(255, 'x'), k256(256, 'x');

TEST(ZmPathTest, SplittingGivesTheFourPartsOrNone)
{
    const struct {
        std::string path, drive, dir, name, extension;
    } kRows[] = {
        {"C:\\data\\a.txt", "C:", "\\data\\", "a", ".txt"},
        {"/data/sub\\a.b.txt", "", "/data/sub\\", "a.b", ".txt"},
        {"a", "", "", "a", ""},
        {"C:a.txt", "C:", "", "a", ".txt"},
        {"\\data.d\\a", "", "\\data.d\\", "a", ""},
        {".hidden", "", "", "", ".hidden"},
        {"data\\", "", "data\\", "", ""},
        {"a.", "", "", "a", "."},
        {"C:", "C:", "", "", ""},
        {"", "", "", "", ""},
        {k255 + "." + k255.substr(1), "", "", k255, "." + k255.substr(1)},
        {"C:" + k255.substr(1) + "\\a", "C:", k255.substr(1) + "\\", "a", ""},
        {"C:\\" + k256 + ".txt", "", "", "", ""},
        {"C:" + k255 + "\\a.txt", "", "", "", ""},
        {"C:\\data\\a." + k255, "", "", "", ""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        const RKPathSplitter parts(row.path.c_str());
        EXPECT_EQ(parts.GetDrive(), row.drive);
        EXPECT_EQ(parts.GetDir(), row.dir);
        EXPECT_EQ(parts.GetName(), row.name);
        EXPECT_EQ(parts.GetExtension(), row.extension);
    }
    EXPECT_STREQ(RKPathSplitter(nullptr).GetName(), "");
}

TEST(ZmPathTest, MakingJoinsTheFourPartsUpTo259Characters)
{
    const struct {
        const char *drive, *dir, *name, *extension;
        std::string path;
    } kRows[] = {
        {"C:", "\\data\\", "a", ".txt", "C:\\data\\a.txt"},
        {"C", "\\data", "a", "txt", "C:\\data\\a.txt"},
        {"", "/data/", "a", "", "/data/a"},
        {nullptr, "data", "a", nullptr, "data\\a"},
        {nullptr, nullptr, "a", "txt", "a.txt"},
        {nullptr, nullptr, nullptr, nullptr, ""},
        {"C:", "", "", "", "C:"},
        {"C:", nullptr, k255.c_str(), ".x", "C:" + k255 + ".x"},
        {"C:", nullptr, k255.c_str(), ".xy", ""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(RKPathMaker(row.drive, row.dir, row.name, row.extension).GetPath(), row.path);
    }
}

TEST(ZmPathTest, AFileInADirectoryFitsInto260BytesOrIsRefused)
{
    const struct {
        const char* dir;
        std::string file, path;
        int result;
    } kRows[] = {
        {"C:\\data", "a.txt", "C:\\data\\a.txt", 1},
        {"C:\\data\\", "a.txt", "C:\\data\\a.txt", 1},
        {"/data/", "a.txt", "/data/a.txt", 1},
        {"", "a.txt", "a.txt", 1},
        {nullptr, "a.txt", "a.txt", 1},
        {"data", "", "data\\", 1},
        {"abc", k255, "abc\\" + k255, 1},
        {"abcd", k255, "", 0},
        {k256.c_str(), k256, "", 0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        std::string out(300, '#');
        EXPECT_EQ(ZmMakePath(&out[0], row.dir, row.file.c_str()), row.result);
        EXPECT_EQ(out.c_str(), row.path);
        EXPECT_EQ(out.substr(260), std::string(40, '#'));
    }
    char out[260];
    EXPECT_EQ(ZmMakePath(out, "data", nullptr), 1);
    EXPECT_STREQ(out, "data\\");
}

TEST(ZmPathTest, ASeparatorIsAlwaysAdded)
{
    XString path("data");
    ZmAddDirectorySeparator(path);
    EXPECT_STREQ(path.Text(), "data\\");
    ZmAddDirectorySeparator(path);
    EXPECT_STREQ(path.Text(), "data\\\\");
}

TEST(ZmPathTest, SystemPathsHaveBackslashesBehindTheDrive)
{
    constexpr const char* kRows[][2] = {{"C:\\a/b:c\\d", "C:\\a\\b\\c\\d"},
                                        {"z:\\", "z:\\"},
                                        {"C:/a", "C\\\\a"},
                                        {"C:", "C\\"},
                                        {"1:\\a", "1\\\\a"},
                                        {"{:\\a", "{\\\\a"},
                                        {"Mac HD:Folder:File", "Mac HD\\Folder\\File"},
                                        {"/a/b", "\\a\\b"},
                                        {"", ""}};
    for (const auto& row : kRows) {
        XString path(row[0]);
        ZmConvertPathToSystemPath(path);
        EXPECT_STREQ(path.Text(), row[1]) << row[0];
    }
}

TEST(ZmPathTest, UrlsEscapeTheSetAndNothingElse)
{
    constexpr const char* kRows[][2] = {
        {"C:\\My Files\\a.txt", "file://C:/My%20Files/a.txt"},
        {"http://host/a b", "http://host/a%20b"},
        {"C:/data/a.txt", "C:/data/a.txt"},
        {"FILE://C:\\a b", "FILE://C:\\a b"},
        {"file:/a b", "file://file:/a%20b"},
        {" \\+,;=@[]^{}", "file://%20/%2b%2c%3b%3d%40%5b%5d%5e%7b%7d"},
        {"!\"#$%&'()*-./:<>?_`|~\x7f\x80\xff", "!\"#$%&'()*-./:<>?_`|~\x7f\x80\xff"},
        {"\xe9 ", "file://\xe9%20"},
        {"", ""},
    };
    for (const auto& row : kRows) {
        XString url("before");
        EXPECT_EQ(ZmEscapeURL(row[0], url), 0u) << row[0];
        EXPECT_STREQ(url.Text(), row[1]) << row[0];
    }
}

TEST(ZmPathTest, UrlsThatCannotBeMadeFail)
{
    XString url("before");
    EXPECT_EQ(ZmEscapeURL(nullptr, url), 0xFFFFFFFFul);
    EXPECT_TRUE(url.IsEmpty());
    const std::string longest(65524, 'x'), tooLong(65525, 'x');
    EXPECT_EQ(ZmEscapeURL((longest + ' ').c_str(), url), 0u);
    EXPECT_EQ(url.Text(), "file://" + longest + "%20");
    EXPECT_EQ(ZmEscapeURL((tooLong + ' ').c_str(), url), 0xFFFFFFFFul);
    EXPECT_TRUE(url.IsEmpty());
    url = "a b";
    EXPECT_EQ(ZmEscapeURL(url.Text(), url), 0u);
    EXPECT_STREQ(url.Text(), "file://a%20b");
}

TEST(ZmPathTest, UnescapingReadsTwoDecimalDigits)
{
    constexpr const char* kRows[][2] = {
        {"%41", "41"},     {"a%05b", "a5b"}, {"%00%99", "099"}, {"%2b", "70"},     {"%zz", "814"},
        {"%%41", "-1061"}, {"%", "%"},       {"a%4", "a%4"},    {"%4%12", "2912"}, {"no escapes", "no escapes"},
        {"", ""}};
    for (const auto& row : kRows) {
        XString text(row[0]);
        ZmUnEscapeUrl(text);
        EXPECT_STREQ(text.Text(), row[1]) << row[0];
    }
}

}  // namespace
