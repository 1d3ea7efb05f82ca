#include "Support/ReplaceFile.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using zm::Replacement;

namespace {

void MakeOldFile(const std::string& path)
{
    MakeFile(path, "left");
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::minutes(5));
}

TEST(ReplacementTest, TheOldFileStaysUntilTheCommit)
{
    const TemporaryFolder folder;
    const std::string path = folder / "a";
    for (const char* bytes : {"first", "second"}) {
        EXPECT_TRUE(Replace(path, bytes));
        EXPECT_EQ(BytesOf(path), bytes);
    }
    {
        Replacement abandoned;
        ASSERT_TRUE(abandoned.Begin(path.c_str(), Replacement::EXACT));
        MakeFile(abandoned.Path(), "third");
        EXPECT_EQ(BytesOf(path), "second");
        EXPECT_EQ(folder.Files().size(), 2u);
    }
    EXPECT_EQ(BytesOf(path), "second");
    EXPECT_EQ(folder.Files(), Names{"a"});
    EXPECT_FALSE(Replace(folder.Path(), "a folder"));
    EXPECT_FALSE(Replace(path + "/below", "in a file"));
    EXPECT_FALSE(Replace(folder / "no/such/folder", ""));
    EXPECT_FALSE(Replacement().Commit()) << "of nothing";
}

TEST(ReplacementTest, OtherThreadsAlwaysFindTheFile)
{
    const TemporaryFolder folder;
    const std::string path = folder / "a";
    MakeFile(path);
    std::atomic<bool> hasEnded = false;
    int missing = 0;
    std::thread watcher([&] {
        while (!hasEnded) {
            std::error_code ignored;
            missing += !fs::exists(path, ignored);
        }
    });
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(Replace(path, "new"));
    }
    hasEnded = true;
    watcher.join();
    EXPECT_EQ(missing, 0);
}

TEST(ReplacementTest, NamesOfAnyLengthAreReplaced)
{
    const TemporaryFolder folder;
    const size_t longest = fs::path::preferred_separator == '/' ? 255 : 150;  // Windows counts the whole path
    for (const size_t length : {size_t(1), longest - 13, longest - 12, longest}) {
        const std::string path = folder / std::string(length, 'n');
        EXPECT_TRUE(Replace(path, "new")) << length;
        EXPECT_EQ(BytesOf(path), "new") << length;
    }
    EXPECT_EQ(folder.Files().size(), 4u);
}

TEST(ReplacementTest, OnlyWhatDeadProcessesHaveLeftIsRemoved)
{
    const TemporaryFolder folder;
    const std::string path = folder / "a";
    const Names others = {"a.0123abcd",    "a.0123abcd.TMP", "a.0123abcd.tmp.tmp", "a.0123abcg.tmp",
                          "a.123abcd.tmp", "a.tmp",          "b.0123abcd.tmp"};
    for (const std::string& name : others) {
        MakeOldFile(folder / name);
    }
    MakeOldFile(folder / "a.0123abcd.tmp");
    Replacement held;
    ASSERT_TRUE(held.Begin(path.c_str(), Replacement::EXACT));
    fs::last_write_time(held.Path(), fs::file_time_type::clock::now() - std::chrono::minutes(5));
    EXPECT_TRUE(Replace(path, "other"));
    MakeFile(held.Path(), "held");
    EXPECT_TRUE(held.Commit());
    EXPECT_EQ(BytesOf(path), "held");
    Names expected = others;
    expected.push_back("a");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(folder.Files(), expected);
}

}  // namespace
