#include "Support/ReplaceFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using zm::Replacement;

namespace {

TEST(ReplacementLinksTest, LinksStayAndWhatTheyLeadToIsReplaced)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    MakeFile(folder / "sub/file", "old");
    fs::create_symlink("sub/second", folder / "first");
    fs::create_symlink("file", folder / "sub/second");
    fs::create_symlink("sub/none", folder / "dangling");
    fs::create_symlink("circle", folder / "circle");
    EXPECT_TRUE(Replace(WithBackslashes(folder / "first"), "new"));
    EXPECT_TRUE(Replace(folder / "dangling", "new"));
    EXPECT_FALSE(Replace(folder / "circle", "new"));
    EXPECT_EQ(BytesOf(folder / "sub/file") + BytesOf(folder / "sub/none"), "newnew");
    for (const char* link : {"first", "sub/second", "dangling", "circle"}) {
        EXPECT_TRUE(fs::is_symlink(folder / link)) << link;
    }
}

TEST(ReplacementLinksTest, OwnerAndPermissionsStay)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file";
    MakeFile(path);
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    const bool isRoot = chown(path.c_str(), 1234, 2345) == 0;
    EXPECT_TRUE(Replace(path, "new"));
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    EXPECT_TRUE(!isRoot || (status.st_uid == 1234 && status.st_gid == 2345));
    EXPECT_TRUE(Replace(folder / "private", "new", Replacement::PRIVATE));
    ASSERT_EQ(stat((folder / "private").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST(ReplacementLinksTest, AFileWithTwoNamesIsReplacedUnderOneOrNotAtAll)
{
    const TemporaryFolder folder;
    MakeFile(folder / "one", "old");
    fs::create_hard_link(folder / "one", folder / "two");
    EXPECT_FALSE(Replace(folder / "one", "new"));
    EXPECT_TRUE(Replace(folder / "one", "new", Replacement::CLOSEST));
    EXPECT_EQ(BytesOf(folder / "one") + BytesOf(folder / "two"), "newold");
}

// A colon is part of the name here, not the end of a drive's.
TEST(ReplacementLinksTest, NamesWithColonsAreCutAndTheirLeftoversFound)
{
    const TemporaryFolder folder;
    const std::string name = "a:" + std::string(253, 'n');
    MakeFile(folder / (name.substr(0, 242) + ".0123abcd.tmp"), "left");
    EXPECT_TRUE(Replace(folder / name, "new"));
    EXPECT_EQ(folder.Files(), std::vector<std::string>{name});
}

TEST(ReplacementLinksTest, NamesThatAreNoTextAreCutAndOnlyFilesAreLeftovers)
{
    const TemporaryFolder folder;
    const std::string name(255, '\x80'), pipe = ".0123abcd.tmp", link = ".4567abcd.tmp";
    ASSERT_EQ(mkfifo((folder / pipe).c_str(), 0600), 0);
    const int reader = open((folder / pipe).c_str(), O_RDONLY | O_NONBLOCK);
    fs::create_symlink(name, folder / link);
    EXPECT_TRUE(Replace(folder / name, "new"));
    EXPECT_EQ(folder.Files(), (std::vector<std::string>{pipe, link, name}));
    close(reader);
}

// Each of them removes what it takes for leftovers of the others.
TEST(ReplacementLinksTest, ProcessesDoNotDisturbEachOther)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file";
    constexpr int kProcesses = 3, kRounds = 200;
    pid_t children[kProcesses];
    for (pid_t& child : children) {
        child = fork();
        if (child == 0) {
            int failed = 0;
            for (int round = 0; round < kRounds; ++round) {
                failed += !Replace(path, "new", Replacement::CLOSEST);
            }
            _exit(failed);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(folder.Files(), std::vector<std::string>{"file"});
    EXPECT_EQ(BytesOf(path), "new");
}

}  // namespace
