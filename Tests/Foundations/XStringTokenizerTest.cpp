#include "XStringTokenizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

const struct {
    const char* name;
    std::string text;
    const char* delimiters;
    std::vector<std::string> tokens;
    const char* left;  ///< the text afterwards, '0' for NUL
} kTokens[] = {
    {"several in a row and one last", "a,,b,", ",", {"a", "b"}, "a0,b0"},
    {"first ones", ",,a", ",", {"a"}, ",,a"},
    {"two kinds", "set x\t12", " \t", {"set", "x", "12"}, "set0x012"},
    {"only delimiters", ",;,", ",;", {}, ",;,"},
    {"no delimiters", "a,b", "", {"a,b"}, "a,b"},
    {"null for delimiters", "a,b", nullptr, {"a,b"}, "a,b"},
    {"empty", "", ",", {}, ""},
    {"a NUL where a token would begin", std::string("a,\0b", 4), ",", {"a"}, "a00b"},
};

void Split(const std::string& text, const char* delimiters, XString& string, std::vector<std::string>& tokens)
{
    if (!text.empty()) {
        string.Create(text.data(), int(text.size()));
    }
    XStringTokenizer tokenizer(string, delimiters);
    for (const char* token = nullptr; tokens.size() < 9 && (token = tokenizer.NextToken(token)) != nullptr;) {
        EXPECT_TRUE(token >= string.Text() && token < string.Text() + string.Length());
        tokens.push_back(token);
    }
}

TEST(XStringTokenizerTest, SplitsInPlaceAndReadsNothingBehind)
{
    for (const auto& row : kTokens) {
        for (const char* before : {"", "older and longer text"}) {
            SCOPED_TRACE(std::string(row.name) + before);
            XString string(before);
            std::vector<std::string> tokens;
            string = "";
            Split(row.text, row.delimiters, string, tokens);
            EXPECT_EQ(tokens, row.tokens);
            std::string left(string.Text(), string.Length());
            std::replace(left.begin(), left.end(), '\0', '0');
            EXPECT_EQ(left, row.left);
        }
    }
}

TEST(XStringTokenizerTest, AStrangerIsNoToken)
{
    static constexpr char stranger[] = "x\0yyy";
    XString string("a,b");
    XStringTokenizer tokenizer(string, ",");
    EXPECT_EQ(tokenizer.NextToken(stranger), nullptr);
    EXPECT_STREQ(tokenizer.NextToken(nullptr), "a");
    EXPECT_EQ(tokenizer.NextToken(string.Text() + string.Length() + 1), nullptr);
}

}  // namespace
