#include "XStringTokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const struct {
    const char* name;
    const char* text;
    const char* delimiters;
    std::vector<std::string> tokens;
    const char* left;  ///< the text afterwards, '0' for NUL
} kTokens[] = {
    {"several in a row and one last", "a,,b,", ",", {"a", "b"}, "a0,b0"},
    {"first ones", ",,a", ",", {"a"}, ",,a"},
    {"two kinds", "set x\t12", " \t", {"set", "x", "12"}, "set0x012"},
    {"a token of one letter last", "ab c", " ", {"ab", "c"}, "ab0c"},
    {"only delimiters", ",;,", ",;", {}, ",;,"},
    {"none of them", "abc", ",", {"abc"}, "abc"},
    {"no delimiters", "a,b", "", {"a,b"}, "a,b"},
    {"null for delimiters", "a,b", nullptr, {"a,b"}, "a,b"},
    {"empty", "", ",", {}, ""},
};

TEST(XStringTokenizerTest, SplitsInPlace)
{
    for (const auto& row : kTokens) {
        SCOPED_TRACE(row.name);
        XString string(row.text);
        const int capacity = string.Capacity();
        XStringTokenizer tokenizer(string, row.delimiters);
        std::vector<std::string> tokens;
        for (const char* token = nullptr; (token = tokenizer.NextToken(token)) != nullptr;) {
            EXPECT_TRUE(token >= string.Text() && token < string.Text() + string.Length());
            tokens.push_back(token);
            ASSERT_LE(tokens.size(), row.tokens.size());
        }
        EXPECT_EQ(tokens, row.tokens);
        std::string left(string.Text(), string.Length());
        for (char& c : left) {
            c = c == 0 ? '0' : c;
        }
        EXPECT_EQ(left, row.left);
        EXPECT_EQ(string.Capacity(), capacity);
    }
}

TEST(XStringTokenizerTest, AStrangerIsNoToken)
{
    XString string("a,b");
    XStringTokenizer tokenizer(string, ",");
    EXPECT_EQ(tokenizer.NextToken("stranger"), nullptr);
    EXPECT_STREQ(tokenizer.NextToken(nullptr), "a");
    EXPECT_EQ(tokenizer.NextToken(string.Text() + string.Length() + 1), nullptr);
}

}  // namespace
