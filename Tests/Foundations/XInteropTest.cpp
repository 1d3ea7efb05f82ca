#include "XInterop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <unordered_set>

namespace {

TEST(XInteropTest, ViewsAndStringsHoldTheSameCharacters)
{
    for (const std::string& text :
         {std::string(), std::string("abc"), std::string("a\0b\0", 4), std::string(65534, 'x')}) {
        const XString string = XFromView(text);
        EXPECT_EQ(XView(string), text);
        EXPECT_EQ(string.Capacity(), text.empty() ? 0 : text.size() + 1);
        EXPECT_EQ(std::string(begin(string), end(string)), text);
    }
    EXPECT_EQ(XFromView(std::string(65535, 'x')).Capacity(), 0);
    EXPECT_EQ(XFromView(std::string_view("abc").substr(1, 1)), "b");
}

TEST(XInteropTest, StreamsWriteAllCharactersInTheirWidth)
{
    std::ostringstream stream;
    stream.width(5);
    stream.fill('.');
    stream << XString("ab\0", 3) << XString("|") << XString();
    EXPECT_EQ(stream.str(), std::string("..ab\0|", 6));
}

TEST(XInteropTest, RangeForVisitsStringsArraysAndTables)
{
    XArray<int> array;
    XHashTable<int, XString> table;
    for (int i = 1; i <= 3; ++i) {
        array.PushBack(i);
        table.Insert(XString() + i, i);
    }
    for (int& item : array) {
        item *= 2;
    }
    for (auto& item : table) {
        item.value *= 3;
    }
    std::string seen;
    for (const char c : XString("ab")) {
        seen += c;
    }
    const XArray<int>& constArray = array;
    for (const int& item : constArray) {
        seen += std::to_string(item);
    }
    const XHashTable<int, XString>& constTable = table;
    for (const auto& item : constTable) {
        seen += item.key.Text() + std::string("=") + std::to_string(item.value);
    }
    EXPECT_EQ(seen, "ab2461=32=63=9");
    const auto isSix = [](const auto& item) { return item.value == 6; };
    EXPECT_EQ(std::find_if(table.Begin(), table.End(), isSix)->key, "2");
    EXPECT_EQ(std::find_if(constTable.Begin(), constTable.End(), isSix)->key, "2");
    EXPECT_EQ(std::count(array.Begin(), array.End(), 4), 1);
}

TEST(XInteropTest, EqualStringsAreOneKeyOfAnUnorderedSet)
{
    std::unordered_set<XString> set{"a", "ab"};
    EXPECT_FALSE(set.insert(XString("xab").Substring(1)).second);
    EXPECT_TRUE(set.insert("AB").second);
}

}  // namespace
