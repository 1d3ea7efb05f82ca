#include "Files/WildcardPattern.h"

#include "Platform/OsFiles.h"
#include "Support/Random.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(WildcardPatternTest, StarDotStarIsEveryName)
{
    for (const char* name : {"a.b", "noext", ".dot", ""}) {
        EXPECT_TRUE(zm::MatchesPattern(name, "*.*", false)) << name;
    }
    EXPECT_FALSE(zm::MatchesPattern("noext", "*.**", false));
    EXPECT_FALSE(zm::MatchesPattern("a.txt", "*.TXT", false));
}

TEST(WildcardPatternTest, DotStarAtTheEndIsNoExtensionToo)
{
    const struct {
        const char *name, *pattern;
        bool matches;
    } kRows[] = {{"readme", "readme.*", true},
                 {"readme.txt", "readme.*", true},
                 {"readme.", "readme.*", true},
                 {"readme2", "readme.*", false},
                 {"readme", "readme.?", false},
                 {"readme", "readme.", false},
                 {"a.b", "a.b.*", true},
                 {"xaa", "x*a.*", true},
                 {"xab", "x*a.*", false},
                 {"readme", "readme.*.*", false},
                 {"ab", "?.*", false},
                 {"a", "?.*", true},
                 {"readme.a.b", "readme.*", true},
                 {"readme", "*m?.*", true},
                 {"readme", "readme.*t", false}};
    for (const auto& row : kRows) {
        EXPECT_EQ(zm::MatchesPattern(row.name, row.pattern, false), row.matches) << row.name << " by " << row.pattern;
    }
}

TEST(WildcardPatternTest, OnlyLettersOfAsciiIgnoreTheCase)
{
    EXPECT_TRUE(zm::MatchesPattern("ReadMe.TXT", "readme.*t", true));
    EXPECT_FALSE(zm::MatchesPattern("[", "{", true));
    EXPECT_FALSE(zm::MatchesPattern("\xe9", "\xc9", true));
    EXPECT_EQ(zm::MatchesPattern("A", "a"), zm::kFileNamesIgnoreCase);
}

bool MatchesByTrying(const char* name, const char* pattern)
{
    if (*pattern == 0) {
        return *name == 0;
    }
    if (*pattern == '*' && MatchesByTrying(name, pattern + 1)) {
        return true;
    }
    return *name != 0 &&
           (*pattern == '*' ? MatchesByTrying(name + 1, pattern)
                            : (*pattern == '?' || *pattern == *name) && MatchesByTrying(name + 1, pattern + 1));
}

std::string RandomText(Random& random, const char* letters, int count)
{
    std::string text;
    for (int i = random.Int(0, 7); i > 0; --i) {
        text += letters[random.Int(0, count - 1)];
    }
    return text;
}

TEST(WildcardPatternTest, AgreesWithTryingEverything)
{
    Random random(1);
    int matches = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = RandomText(random, "ab", 2), pattern = RandomText(random, "ab?*", 4);
        const bool expected = MatchesByTrying(name.c_str(), pattern.c_str());
        matches += expected;
        ASSERT_EQ(zm::MatchesPattern(name.c_str(), pattern.c_str(), false), expected) << name << " by " << pattern;
    }
    EXPECT_GT(matches, 1000);
}

TEST(WildcardPatternTest, ManyStarsTakeNoLongTime)
{
    std::string pattern;
    for (int i = 0; i < 200; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(zm::MatchesPattern(std::string(5000, 'a').c_str(), (pattern + "b").c_str(), false));
}

}  // namespace
