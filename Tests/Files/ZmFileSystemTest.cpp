#include "ZmFileSystem.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits.h>

namespace fs = std::filesystem;

namespace {

TEST(ZmFileSystemTest, FilesAreFoundRenamedAndDeleted)
{
    const TemporaryFolder folder;
    const std::string a = folder / "a", b = folder / "b";
    MakeFile(a, "bytes");
    EXPECT_EQ(ZmFileExist(a.c_str()), 1);
    EXPECT_EQ(ZmFileExist(folder.Path().c_str()), 1);
    EXPECT_EQ(ZmFileExist(b.c_str()), 0);
    EXPECT_EQ(ZmRenameFile(a.c_str(), WithBackslashes(b).c_str()), 1);
    EXPECT_EQ(BytesOf(b), "bytes");
    EXPECT_EQ(ZmRenameFile(a.c_str(), b.c_str()), 0);
    EXPECT_EQ(ZmDeleteFile(a.c_str()), 0);
    EXPECT_EQ(ZmDeleteFile(folder.Path().c_str()), 0) << "a folder is no file";
    EXPECT_EQ(ZmDeleteFile(WithBackslashes(b).c_str()), 1);
    EXPECT_FALSE(fs::exists(b));
}

TEST(ZmFileSystemTest, FoldersAreMadeOneByOneAndRemovedWhenEmpty)
{
    const TemporaryFolder folder;
    const std::string outer = folder / "outer", inner = WithBackslashes(outer + "/inner");
    EXPECT_EQ(ZmMakeDirectory(inner.c_str()), 0);
    EXPECT_EQ(ZmMakeDirectory(outer.c_str()), 1);
    EXPECT_EQ(ZmMakeDirectory(outer.c_str()), 0);
    EXPECT_EQ(ZmMakeDirectory(inner.c_str()), 1);
    EXPECT_TRUE(fs::is_directory(folder / "outer/inner"));
    EXPECT_EQ(ZmRemoveDirectory(outer.c_str()), 0);
    EXPECT_EQ(ZmRemoveDirectory(inner.c_str()), 1);
    EXPECT_EQ(ZmRemoveDirectory(outer.c_str()), 1);
    EXPECT_TRUE(fs::is_empty(folder.Path()));
}

TEST(ZmFileSystemTest, AFileTreeIsMadeUpToTheLastSeparator)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ZmCreateFileTree((folder / "a/b\\c.txt").c_str()), 1);
    EXPECT_TRUE(fs::is_directory(folder / "a/b"));
    EXPECT_TRUE(fs::is_empty(folder / "a/b"));
    EXPECT_EQ(ZmCreateFileTree((WithBackslashes(folder / "a/b/d") + '\\').c_str()), 1);
    EXPECT_TRUE(fs::is_directory(folder / "a/b/d"));
    EXPECT_EQ(ZmCreateFileTree((folder / "a/b/d/e").c_str()), 1) << "all there already";
    EXPECT_EQ(ZmCreateFileTree((folder / "a//f\\\\g.txt").c_str()), 1) << "doubled separators";
    EXPECT_TRUE(fs::is_directory(folder / "a/f"));
    MakeFile(folder / "file");
    EXPECT_EQ(ZmCreateFileTree((folder / "file/a/b").c_str()), 0);
    EXPECT_EQ(ZmCreateFileTree((folder / std::string(5000, 'x') + "/a").c_str()), 0);
    EXPECT_EQ(ZmCreateFileTree(""), 1);
}

/// Changes the current folder while it lives.
class CurrentFolder {
public:
    explicit CurrentFolder(const std::string& path) : m_Old(fs::current_path()) { fs::current_path(path); }
    ~CurrentFolder() { fs::current_path(m_Old); }

private:
    const fs::path m_Old;
};

TEST(ZmFileSystemTest, AFileTreeWithoutADriveIsMadeFromItsFirstFolder)
{
    const struct {
        const char *path, *made;
    } kRows[] = {{"d1/x.txt", "d1"}, {"a/b/c.txt", "a/b"}, {"q\\", "q"},       {"./e/f/x", "e/f"},
                 {"g/../h/x", "h"},  {"ab\\c/d", "ab/c"},  {"i//j//k", "i/j"}, {"l\\m", "l"}};
    const TemporaryFolder folder;
    {
        const CurrentFolder current(folder.Path());
        for (const auto& row : kRows) {
            EXPECT_EQ(ZmCreateFileTree(row.path), 1) << row.path;
            EXPECT_TRUE(fs::is_directory(row.made) && fs::is_empty(row.made)) << row.path;
        }
        for (const char* drive : {"C:", "C:\\", "C:\\x", "c:/x", "x", "/", "\\", "\\x"}) {
            EXPECT_EQ(ZmCreateFileTree(drive), 1) << drive;
        }
        EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 9) << "none for drives";
    }
}

TEST(ZmFileSystemTest, ASeparatorAtTheEndBelongsToFolders)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file");
    for (const char* end : {"/", "\\", "//"}) {
        EXPECT_EQ(ZmFileExist((folder.Path() + end).c_str()), 1) << end;
        EXPECT_EQ(ZmFileExist((folder / "file" + end).c_str()), 0) << end;
        EXPECT_EQ(ZmFileExist((folder / "missing" + end).c_str()), 0) << end;
    }
    EXPECT_EQ(ZmFileExist("/"), 1);
}

TEST(ZmFileSystemTest, AFolderIsDeletedWithItsContents)
{
    const TemporaryFolder folder;
    const std::string tree = folder / "tree", readOnly = tree + "/a/b/read only";
    for (const char* path : {"a/b", "a/.hidden", "c", "a/b c"}) {
        fs::create_directories(tree + '/' + path);
        MakeFile(tree + '/' + path + "/file", "bytes");
    }
    MakeFile(readOnly);
    fs::permissions(readOnly, fs::perms::owner_read);
    MakeFile(folder / "tree2");
    EXPECT_EQ(ZmDeleteDirectory((WithBackslashes(tree) + '\\').c_str()), 1);
    EXPECT_FALSE(fs::exists(tree));
    EXPECT_TRUE(fs::exists(folder / "tree2")) << "a neighbour stays";
    EXPECT_EQ(ZmDeleteDirectory(tree.c_str()), 0);
    EXPECT_EQ(ZmDeleteDirectory(""), 0);
}

TEST(ZmFileSystemTest, DiskSpaceIsComparedWithAllBits)
{
    const TemporaryFolder folder;
    const fs::space_info space = fs::space(folder.Path());
    EXPECT_EQ(ZmTestDiskSpace(folder.Path().c_str(), 0), 1);
    EXPECT_EQ(ZmTestDiskSpace(WithBackslashes(folder.Path()).c_str(), 1), space.available > 0);
    EXPECT_EQ(ZmTestDiskSpace((folder / "missing").c_str(), 0), 0);
    const uintmax_t half = space.available / 2, twice = space.available * 2;  // others may write meanwhile
    EXPECT_EQ(ZmTestDiskSpace(folder.Path().c_str(), static_cast<unsigned long>(half > ULONG_MAX ? ULONG_MAX : half)),
              1);
    if (twice <= ULONG_MAX) {
        EXPECT_EQ(ZmTestDiskSpace(folder.Path().c_str(), static_cast<unsigned long>(twice)), 0);
    }
}

TEST(ZmFileSystemTest, TheFolderForTemporaryFilesEndsWithASeparator)
{
    const std::string path = ZmGetTempPath().Text();
    ASSERT_FALSE(path.empty());
    EXPECT_TRUE(path.back() == '\\' || path.back() == '/') << path;
    EXPECT_EQ(path, (fs::temp_directory_path() / "").string());
}

TEST(ZmFileSystemTest, NullPathsAreRefused)
{
    EXPECT_EQ(ZmFileExist(nullptr), 0);
    EXPECT_EQ(ZmRenameFile(nullptr, "a"), 0);
    EXPECT_EQ(ZmRenameFile("a", nullptr), 0);
    EXPECT_EQ(ZmDeleteFile(nullptr), 0);
    EXPECT_EQ(ZmMakeDirectory(nullptr), 0);
    EXPECT_EQ(ZmRemoveDirectory(nullptr), 0);
    EXPECT_EQ(ZmDeleteDirectory(nullptr), 0);
    EXPECT_EQ(ZmCreateFileTree(nullptr), 0);
    EXPECT_EQ(ZmTestDiskSpace(nullptr, 0), 0);
}

}  // namespace
