#include "RKDirectoryParser.h"
#include "Support/TemporaryFolder.h"
#include "ZmFileSystem.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <set>

namespace fs = std::filesystem;

namespace {

std::set<std::string> Walk(const std::string& dir, bool lists)
{
    std::set<std::string> paths;
    RKDirectoryParser parser(dir.c_str(), "*", 1, lists);
    while (const char* path = parser.GetNextFile()) {
        EXPECT_TRUE(paths.insert(path + dir.size() + 1).second) << path << " twice";
    }
    return paths;
}

TEST(LinksTest, WalksDoNotEnterLinks)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    MakeFile(folder / "file");
    MakeFile(folder / "sub/file");
    fs::create_directory_symlink(folder.Path(), folder / "up");
    fs::create_symlink(folder / "file", folder / "toFile");
    fs::create_symlink(folder / "missing", folder / "broken");
    EXPECT_EQ(Walk(folder.Path(), false), (std::set<std::string>{"file", "toFile", "broken", "sub\\file"}));
    EXPECT_EQ(Walk(folder.Path(), true), (std::set<std::string>{"file", "toFile", "broken", "sub", "sub\\file", "up"}));
}

TEST(LinksTest, DeletingATreeLeavesWhatItsLinksPointTo)
{
    const TemporaryFolder folder;
    fs::create_directories(folder / "tree/sub");
    fs::create_directory(folder / "outside");
    MakeFile(folder / "outside/file", "bytes");
    fs::create_directory_symlink(folder / "outside", folder / "tree/sub/link");
    fs::create_symlink(folder / "outside/file", folder / "tree/toFile");
    fs::create_directory_symlink("..", folder / "tree/sub/up");
    fs::create_symlink("missing", folder / "tree/broken");
    EXPECT_EQ(ZmDeleteDirectory((folder / "tree").c_str()), 1);
    EXPECT_FALSE(fs::exists(folder / "tree"));
    EXPECT_EQ(BytesOf(folder / "outside/file"), "bytes");

    fs::create_directory_symlink(folder / "outside", folder / "link");
    EXPECT_EQ(ZmDeleteDirectory((folder / "link\\").c_str()), 1) << "the link itself";
    EXPECT_FALSE(fs::exists(fs::symlink_status(folder / "link")));
    EXPECT_EQ(BytesOf(folder / "outside/file"), "bytes");
}

/// Limits the number of open files while it lives.
class OpenFilesLimit {
public:
    explicit OpenFilesLimit(rlim_t limit)
    {
        getrlimit(RLIMIT_NOFILE, &m_Old);
        const rlimit lowered = {limit, m_Old.rlim_max};
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    ~OpenFilesLimit() { setrlimit(RLIMIT_NOFILE, &m_Old); }

private:
    rlimit m_Old;
};

TEST(LinksTest, TreesDeeperThanFilesMayBeOpenAreWalkedAndDeleted)
{
    const TemporaryFolder folder;
    std::string deep = folder / "tree";
    for (int i = 0; i < 150; ++i) {
        fs::create_directory(deep);
        deep += "/d";
    }
    MakeFile(folder / "tree/d/d/file");
    const OpenFilesLimit limit(50);
    EXPECT_EQ(Walk(folder / "tree", true).size(), 2u) << "the first folder of each is not listed below the first";
    EXPECT_EQ(Walk(folder / "tree", false), std::set<std::string>{"d\\d\\file"});
    EXPECT_EQ(ZmDeleteDirectory((folder / "tree").c_str()), 1);
    EXPECT_FALSE(fs::exists(folder / "tree"));
}

}  // namespace
