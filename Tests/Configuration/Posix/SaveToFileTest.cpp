#include "Support/TemporaryFolder.h"
#include "ZmConfiguration.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

namespace fs = std::filesystem;

namespace {

class SaveToFileTest : public testing::Test {
protected:
    SaveToFileTest()
    {
        m_Tree.AddEntry(nullptr, "a", 1);
        MakeFile(m_Path, "old");
    }

    ZmConfiguration m_Tree{0};
    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "test.cfg";
};

TEST_F(SaveToFileTest, LinksAndPermissionsStay)
{
    fs::create_symlink("test.cfg", m_Folder / "link");
    ASSERT_EQ(chmod(m_Path.c_str(), 0640), 0);
    EXPECT_EQ(m_Tree.SaveToFile(WithBackslashes(m_Folder / "link").c_str()), 1);
    EXPECT_EQ(BytesOf(m_Path), "a = 1\n");
    EXPECT_EQ(int(fs::status(m_Path).permissions()), 0640);

    fs::create_hard_link(m_Path, m_Folder / "other name");
    m_Tree.AddEntry(nullptr, "b", 2);
    EXPECT_EQ(m_Tree.SaveToFile(m_Path.c_str()), 1);
    EXPECT_EQ(BytesOf(m_Folder / "other name"), "a = 1\nb = 2\n");
}

TEST_F(SaveToFileTest, ItFailsWhereNothingCanBeWritten)
{
    EXPECT_EQ(m_Tree.SaveToFile("/dev/full"), 0);
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    const struct {
        int levels;
        size_t length;
    } kTrees[] = {{1, 60000}, {80, 1}, {200, 1}};  // it fails in an entry, in an end tag and in another tag
    for (const auto& row : kTrees) {
        ZmConfiguration tree(60000);
        ZmConfigurationSection* section = tree.CreateSubSection(nullptr, "top");
        for (int i = 0; i < row.levels; ++i) {
            section = section->CreateSubSection("below");
        }
        const std::string text(row.length, 'x');
        section->AddEntry(text.c_str(), text.c_str());
        EXPECT_EQ(tree.SaveToFile("/dev/full"), 0) << row.levels;
    }
    EXPECT_EQ(m_Tree.SaveToFile("/dev/null"), 1);
    EXPECT_EQ(m_Tree.SaveToFile(m_Folder.Path().c_str()), 0);
    const std::string pipe = m_Folder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string heard;
    std::thread reader([&] { heard = BytesOf(pipe); });
    EXPECT_EQ(m_Tree.SaveToFile(pipe.c_str()), 1);
    reader.join();
    EXPECT_EQ(heard, "a = 1\n");
}

TEST_F(SaveToFileTest, AFullDiskLeavesTheOldFile)
{
    for (int i = 0; i < 10000; ++i) {
        m_Tree.AddEntry("section", std::to_string(i).c_str(), i);
    }
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {50000, 50000};
        setrlimit(RLIMIT_FSIZE, &small);
        _exit(m_Tree.SaveToFile(m_Path.c_str()));
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "the result of SaveToFile()";
    EXPECT_EQ(BytesOf(m_Path), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_Folder.Path()), {}), 1);
}

void* UseDeepTree(void* path)
{
    constexpr int kLevels = 1000000;
    std::string text;
    for (int i = 0; i < kLevels; ++i) {
        text += i % 2 == 0 ? "<a>\n" : "<b>\ne=1\n";
    }
    ZmConfiguration tree(0);
    int line;
    XString error;
    EXPECT_EQ(tree.BuildFromMemory((text + "\n").c_str(), line, error), 1);
    EXPECT_EQ(tree.GetNumberOfSubSectionsRecursive(), kLevels);
    EXPECT_EQ(tree.GetNumberOfEntriesRecursive(), kLevels / 2);
    EXPECT_EQ(tree.SaveToFile(static_cast<const char*>(path)), 1);
    EXPECT_EQ(tree.DeleteSection(nullptr, "a"), 1);
    return nullptr;
}

TEST_F(SaveToFileTest, DeepTreesNeedNoStack)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 1 << 20);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, UseDeepTree, const_cast<char*>(m_Path.c_str())), 0);
    pthread_join(thread, nullptr);
    EXPECT_EQ(fs::file_size(m_Path), 500000u * (4 + 5 + 4 + 6 + 5));
}

}  // namespace
