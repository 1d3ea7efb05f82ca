#include "XString.h"

#include <float.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include <functional>
#include <string>

// The edge cases. XStringModelTest.cpp compares random operations with a model.

namespace {

constexpr uint16_t kNone = 65535;

std::string Xs(int count)
{
    return std::string(size_t(count), 'x');
}

std::string All(const XBaseString& string)
{
    return {string.Text(), string.Length()};
}

/// Checks length, capacity and the terminator.
void ExpectSizes(const XString& string, int length, int capacity)
{
    EXPECT_EQ(string.Length(), length);
    EXPECT_EQ(string.Capacity(), capacity);
    EXPECT_EQ(string.Text()[string.Length()], 0);
    EXPECT_EQ(string.Text() == XString().Text(), capacity == 0) << "the shared text is that of strings without storage";
}

TEST(XStringTest, ConstructionFromTextAndLength)
{
    const std::string tooLong = Xs(65535);
    const struct {
        const char* name;
        const char* text;
        int length;
        std::string expected;
    } rows[] = {
        {"null", nullptr, 0, ""},
        {"null with a length", nullptr, 4, ""},
        {"empty", "", 0, ""},
        {"a NUL first", "\0abc", 4, ""},
        {"whole", "abc", 0, "abc"},
        {"past a NUL", "ab\0cd", 5, std::string("ab\0cd", 5)},
        {"negative", "abc", -1, ""},
        {"longest", tooLong.c_str(), 65534, Xs(65534)},
        {"too long", tooLong.c_str(), 0, ""},
        {"too long, by length", tooLong.c_str(), 65535, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const XString string(row.text, row.length);
        EXPECT_EQ(All(string), row.expected);
        ExpectSizes(string, int(row.expected.size()), row.expected.empty() ? 0 : int(row.expected.size()) + 1);
    }
}

TEST(XStringTest, ConstructionFromASizeCountsItsZeros)
{
    for (const int size : {1, 5, 65535}) {
        const XString string(size);
        ExpectSizes(string, size - 1, size);
        EXPECT_EQ(All(string), std::string(size_t(size - 1), '\0'));
        ExpectSizes(XString(string), size - 1, size > 1 ? size : 0);
    }
    for (const int size : {0, -1, INT_MIN, 65536, INT_MAX}) {
        ExpectSizes(XString(size), 0, 0);
    }
}

TEST(XStringTest, ARoomIsFilledAndFitted)
{
    XString room(8);
    memcpy(room.Data(), "abc", 3);
    room.FitLength();
    ExpectSizes(room, 3, 8);
    room << "d";
    EXPECT_STREQ(room.Text(), "abcd");
    XString none;
    none.FitLength();
    EXPECT_EQ(none.Data(), nullptr);
}

TEST(XStringTest, CreateTakesTheLengthAsItStands)
{
    XString string;
    string.Create("abc", 0);
    ExpectSizes(string, 0, 1);
    string.Create(nullptr, 3);
    EXPECT_EQ(All(string), std::string(3, '\0'));
    string.Create("ab\0cdef", 7);
    EXPECT_EQ(All(string), std::string("ab\0cdef", 7));
    string.Create(nullptr, 2);
    EXPECT_EQ(All(string), std::string(2, '\0'));
    ExpectSizes(string, 2, 8);
    for (const int length : {-1, 65535, 65536, INT_MAX}) {
        string = "abc";
        string.Create(nullptr, length);
        ExpectSizes(string, 0, 8);
    }
    for (const int start : {-1, 4, INT_MAX, INT_MIN}) {
        string.CreateTail("abc", start);
        ExpectSizes(string, 0, 8);
    }
    ExpectSizes(XString().CreateTail(XString(), 0), 0, 1);
}

TEST(XStringTest, AssignmentKeepsItsStorageAndRefusesWhatIsTooLong)
{
    XString string("abc");
    string = Xs(65535).c_str();
    ExpectSizes(string, 0, 4);
    string = "ab";
    string = XString(5);
    ExpectSizes(string, 4, 5);
    EXPECT_EQ(All(string), std::string(4, '\0'));
    string = Xs(65534).c_str();
    ExpectSizes(string, 65534, 65535);
    string = XString();
    ExpectSizes(string, 0, 65535);
    ExpectSizes(XString() = "", 0, 0);
    EXPECT_EQ(XBaseString(Xs(65535).c_str()).Length(), 0);
}

TEST(XStringTest, AppendsStopAtTheLongestLength)
{
    const struct {
        const char* name;
        void (*append)(XString& string);
        int count;
    } rows[] = {
        {"char", [](XString& s) { s << 'y'; }, 1},
        {"text", [](XString& s) { s << "yyy"; }, 3},
        {"string", [](XString& s) { s << XString("yy"); }, 2},
        {"int", [](XString& s) { s << -12; }, 3},
        {"unsigned", [](XString& s) { s << 12u; }, 2},
        {"float", [](XString& s) { s << 0.5f; }, 8},
    };
    for (const auto& row : rows) {
        for (const int length : {65534 - row.count, 65535 - row.count, 65534}) {
            SCOPED_TRACE(std::string(row.name) + " to " + std::to_string(length));
            const bool fits = length + row.count <= 65534;
            XString string(Xs(length).c_str());
            row.append(string);
            ExpectSizes(string, fits ? 65534 : length, fits ? 65535 : length + 1);
        }
    }
    XString string;
    string << Xs(65535).c_str();
    ExpectSizes(string, 0, 0);
    string << '\0' << 'a';
    ExpectSizes(string, 2, 3);
}

TEST(XStringTest, NumbersAreWrittenAsPrintfWritesThem)
{
    const struct {
        XString string;
        const char* expected;
    } rows[] = {
        {XString() + INT_MIN, "-2147483648"},
        {XString("n") + 0, "n0"},
        {XString() + UINT_MAX, "4294967295"},
        {XString() + 1.5f, "1.500000"},
        {XString() + -0.0f, "-0.000000"},
        {XString() + 0.1f, "0.100000"},
        {XString() + 1e10f, "10000000000.000000"},
        {XString("a") + "b" + 'c' + XString("d"), "abcd"},
        {XString() + 0.1, "0.100000"},
        {XString() + 5L + sizeof(char), "51"},
        {XString() + LLONG_MIN, "-9223372036854775808"},
        {XString() + ULLONG_MAX, "18446744073709551615"},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(row.string.Text(), row.expected);
    }
    const XString largest = XString() + -FLT_MAX;
    EXPECT_EQ(largest.Length(), 1 + 39 + 7);
    EXPECT_EQ(strtof(largest.Text(), nullptr), -FLT_MAX);
    EXPECT_EQ(strtod((XString() << -0x1p1023).Text(), nullptr), -0x1p1023);  // nearly the largest double
    XString pointer("at ");
    pointer << static_cast<const void*>(&largest);
    EXPECT_EQ(strtoull(pointer.Text() + 3, nullptr, 16), reinterpret_cast<uintptr_t>(&largest));
}

TEST(XStringTest, FormattedTextIsCutTo511Characters)
{
    XString string("x");
    for (const int width : {510, 511, 512, 5000}) {
        string.Format("%*d", width, 7);
        EXPECT_EQ(string.Length(), width < 512 ? width : 511);
        EXPECT_EQ(string.Capacity(), string.Length() + 1);
        EXPECT_EQ(string[string.Length() - 1], width < 512 ? '7' : ' ');
    }
    string.Format("%s %c %u %.3f%%", "a", 'b', 3u, 2.5);
    EXPECT_STREQ(string.Text(), "a b 3 2.500%");
    EXPECT_EQ(All(string.Format("a%cb", 0)), std::string("a\0b", 3));
    string.Format("%s", "");
    ExpectSizes(string, 0, 512);
}

TEST(XStringTest, TimesAreLocal)
{
    constexpr char format[] = "%Y-%m-%d %H:%M:%S";
    for (const int seconds : {86400, 1000000000, INT_MAX}) {
        const time_t time = seconds;
        char expected[64];
        ASSERT_NE(strftime(expected, sizeof(expected), format, localtime(&time)), 0u);
        EXPECT_STREQ(XString().FormatTime(seconds, format).Text(), expected);
    }
    const int before = int(time(nullptr));
    XString now, earliest, latest;
    now.FormatTime(format);
    earliest.FormatTime(before, format);
    latest.FormatTime(int(time(nullptr)), format);
    EXPECT_TRUE(earliest <= now && now <= latest) << now.Text();

    EXPECT_EQ(XString().FormatTime(86400, Xs(511).c_str()).Length(), 511);
    XString string("abc");
    ExpectSizes(string.FormatTime(86400, Xs(512).c_str()), 0, 4);
    ExpectSizes(string.FormatTime(86400, ""), 0, 4);
}

const struct {
    const char* a;
    const char* b;
    int expected;
} kCompared[] = {
    {"", "", 0},           {"", "abc", -3},         {"abc", "", 3},        {"ABC", "abd", -1},
    {"abc", "ABC", 0},     {"a", "ab", -'b'},       {"ab", "A", 'b'},      {"Z", "[", 'z' - '['},
    {"_", "A", '_' - 'a'}, {"a", "\xE9", 'a' + 23}, {"\xC9", "\xE9", -32},
};

TEST(XStringTest, ComparisonWithoutCaseGivesTheDifference)
{
    for (const auto& row : kCompared) {
        EXPECT_EQ(XString(row.a).ICompare(row.b), row.expected) << row.a << " and " << row.b;
    }
    EXPECT_EQ(XString(5).ICompare("a"), -'a') << "five bytes, and the first ends the text";
}

TEST(XStringTest, OrderIsByUnsignedBytesThenByLength)
{
    const std::string sorted[] = {"", std::string(1, '\0'), "A", "a", std::string("a\0", 2), "ab", "b", "\xE9"};
    for (size_t i = 0; i < std::size(sorted); ++i) {
        for (size_t k = 0; k < std::size(sorted); ++k) {
            SCOPED_TRACE(std::to_string(i) + " and " + std::to_string(k));
            XString a, b;
            a.Create(sorted[i].data(), int(sorted[i].size()));
            b.Create(sorted[k].data(), int(sorted[k].size()));
            EXPECT_TRUE((a < b) == (i < k) && (a > b) == (i > k) && (a <= b) == (i <= k) && (a >= b) == (i >= k));
            EXPECT_TRUE((a == b) == (i == k) && (a != b) == (i != k));
        }
    }
    EXPECT_TRUE("ab" == XString("ab") && "a" != XString("ab") && XString() == nullptr);
}

TEST(XStringTest, SearchesFindPositionsOr65535)
{
    const XString abca("abca"), empty, longest(Xs(65534).c_str());
    const struct {
        const char* name;
        uint16_t found;
        uint16_t expected;
    } rows[] = {
        {"no such character", XString("abc").Find('x'), kNone},
        {"first", abca.Find('a'), 0},
        {"the terminator", abca.Find('\0'), 4},
        {"the terminator from there on", abca.Find('\0', 4), 4},
        {"start beyond the end", abca.Find('a', 5), kNone},
        {"in the empty string", empty.Find('\0'), kNone},
        {"text in the empty string", empty.Find("a"), kNone},
        {"another case", XString("aBc").IFind("BC"), 1},
        {"another case, beyond the end", abca.IFind("A", 5), kNone},
        {"letters without case", XString("\xC9").IFind("\xE9"), kNone},
        {"last", abca.RFind('a'), 3},
        {"last before its own place", abca.RFind('a', 3), 0},
        {"last before beyond the end", abca.RFind('a', 100), 3},
        {"last terminator", abca.RFind('\0'), 4},
        {"last before the first NUL", XString("ab\0a", 4).RFind('a'), 0},
        {"last in the empty string", empty.RFind('a'), kNone},
        {"largest position", longest.RFind('x'), 65533},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.found, row.expected) << row.name;
    }
}

/// A change and its expected result.
struct Change {
    const char* name;
    const char* text;
    std::function<void(XString& string)> apply;
    const char* expected;
};

const Change kChanges[] = {
    {"Trim both ends", "  a b  ", [](XString& s) { s.Trim(); }, "a b"},
    {"Trim all kinds", "\t\n\v\f\r a\r\f\v\n\t", [](XString& s) { s.Trim(); }, "a"},
    {"Trim no-break spaces", "\xA0 a\x85", [](XString& s) { s.Trim(); }, "\xA0 a\x85"},
    {"Strip: single spaces stay", "a b\tc", [](XString& s) { s.Strip(); }, "a b\tc"},
    {"Strip: a run costs the last byte", "a  bc", [](XString& s) { s.Strip(); }, "a b"},
    {"Strip: run before the last byte", "a  b", [](XString& s) { s.Strip(); }, "a "},
    {"Strip: run at the front", "  abc", [](XString& s) { s.Strip(); }, " ab"},
    {"Strip: tabs become spaces after the run", "a\t\tb\tc\td", [](XString& s) { s.Strip(); }, "a\tb c "},
    {"Crop", "hello", [](XString& s) { s.Crop(1, 10); }, "ello"},
    {"Crop beyond the end", "hello", [](XString& s) { s.Crop(6, 65535); }, ""},
    {"Cut", "hello", [](XString& s) { s.Cut(1, 2); }, "hlo"},
    {"Cut over the end", "hello", [](XString& s) { s.Cut(3, 65535); }, "hel"},
    {"Cut beyond the end", "hello", [](XString& s) { s.Cut(6, 1); }, "hello"},
    {"Substring over the end", "hello", [](XString& s) { s = s.Substring(3, 65535); }, "lo"},
    {"Substring beyond the end", "hello", [](XString& s) { s = s.Substring(6, 2); }, ""},
    {"upper case", "az{`\xE9Z", [](XString& s) { s.ToUpper(); }, "AZ{`\xE9Z"},
    {"lower case", "AZ[@\xC9z", [](XString& s) { s.ToLower(); }, "az[@\xC9z"},
};

TEST(XStringTest, ChangesInPlaceKeepTheStorage)
{
    for (const Change& row : kChanges) {
        SCOPED_TRACE(row.name);
        XString string(row.text), empty;
        const char* block = string.Text();
        row.apply(string);
        EXPECT_STREQ(string.Text(), row.expected);
        EXPECT_EQ(string.Length(), strlen(row.expected));
        EXPECT_EQ(string.Text(), block);
        row.apply(empty);
        ExpectSizes(empty, 0, 0);
    }
}

TEST(XStringTest, TextsAreReplacedFromLeftToRight)
{
    const struct {
        const char* text;
        const char* from;
        const char* to;
        const char* expected;
        int count;
        bool sameBlock;
    } rows[] = {
        {"abab", "ab", "x", "xx", 2, false}, {"aaa", "a", "b", "bbb", 3, true}, {"aaa", "aa", "b", "ba", 1, false},
        {"aaa", "aa", "ba", "baa", 1, true}, {"abc", "abc", "", "", 1, false},  {"aba", "a", "aa", "aabaa", 2, false},
        {"abc", "x", "yy", "abc", 0, false}, {"abc", "", "yy", "abc", 0, true}, {"abc", "x", "y", "abc", 0, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.text) + ", " + row.from + " by " + row.to);
        XString string(row.text);
        string.Reserve(20);
        const char* block = string.Text();
        EXPECT_EQ(string.Replace(row.from, row.to), row.count);
        EXPECT_STREQ(string.Text(), row.expected);
        ExpectSizes(string, int(strlen(row.expected)), row.sameBlock ? 21 : int(strlen(row.expected)) + 1);
        EXPECT_TRUE(!row.sameBlock || string.Text() == block);
    }
    XString longest(("ab" + Xs(65531)).c_str());
    EXPECT_EQ(longest.Replace("ab", "abcd"), 0);
    ExpectSizes(longest, 65533, 65534);
    EXPECT_EQ(longest.Replace("ab", "abc"), 1);
    ExpectSizes(longest, 65534, 65535);
    XString zeros(4), string("abc");
    EXPECT_EQ(zeros.Replace('\0', 'a'), 3);
    EXPECT_STREQ(zeros.Text(), "aaa");
    string.Replace(XString(3), "xy");  // two NULs read as a text of none
    ExpectSizes(string, 3, 4);
}

TEST(XStringTest, ReserveMakesRoomForTheSizeAndATerminator)
{
    XString string;
    string.Reserve(0);
    ExpectSizes(string, 0, 1);
    string = "abc";
    string.Reserve(3);
    ExpectSizes(string, 3, 4);
    string.Reserve(65534);
    ExpectSizes(string, 3, 65535);
    string.Reserve(65535);
    EXPECT_STREQ(string.Text(), "abc");
    EXPECT_EQ(string.Capacity(), 65535);
}

}  // namespace
