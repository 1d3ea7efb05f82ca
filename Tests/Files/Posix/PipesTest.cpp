#include "Support/HeardMessages.h"
#include "Support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace {

/// Pipes without a reader or writer, a device and a folder. A test that waits for the other end of a pipe is killed.
class PipesTest : public testing::Test {
protected:
    PipesTest()
    {
        EXPECT_EQ(mkfifo(m_Pipe.c_str(), 0600), 0);
        alarm(60);
    }
    ~PipesTest() override { alarm(0); }

    const TemporaryFolder m_Folder;
    const std::string m_Pipe = m_Folder / "pipe";
    const std::string m_NoFiles[3] = {m_Pipe, "/dev/null", m_Folder.Path()};
};

TEST_F(PipesTest, WhatSeeksRefusesThemWithoutWaiting)
{
    for (const std::string& path : m_NoFiles) {
        SCOPED_TRACE(path);
        EXPECT_EQ(ZmMemoryMappedFile(path.c_str()).GetErrorType(), ZmMMF_FileOpen);
        for (int access = ZmFile::READONLY; access <= ZmFile::APPENDREAD; ++access) {
            for (const int mode : {access, access | ZmFile::TEXT}) {
                ZmCachedFile cached;
                EXPECT_EQ(cached.Open(path.c_str(), ZmFile::OpenMode(mode)), 0);
                ZmFile file;
                if (access == ZmFile::READWRITE || access == ZmFile::APPENDREAD) {
                    EXPECT_EQ(file.Open(path.c_str(), ZmFile::OpenMode(mode)), 0);
                }
            }
        }
        ZmConfiguration tree(0);
        XString error;
        int line = 42;
        EXPECT_EQ(tree.BuildFromFile(path.c_str(), line, error), 0);
        EXPECT_EQ(error.Text(), "can't open file : " + path);
        EXPECT_EQ(line, 42);
    }
}

TEST_F(PipesTest, ArchivesRefuseThemWithoutWaiting)
{
    MakeFile(m_Folder / "file", "bytes");
    ZmBigFile archive;
    for (const std::string& path : m_NoFiles) {
        SCOPED_TRACE(path);
        EXPECT_EQ(archive.Open(path.c_str(), 1) + archive.OpenExisting(path.c_str()), 0);
        EXPECT_EQ(archive.Append("now", path.c_str(), 0, 1) + archive.Append("later", path.c_str(), 1, 1), 0);
    }
    ASSERT_EQ(archive.Append("file", (m_Folder / "file").c_str(), 1, 0), 1);
    std::filesystem::rename(m_Pipe, m_Folder / "file");
    EXPECT_EQ(archive.Save((m_Folder / "other").c_str(), nullptr), 1);
    EXPECT_EQ(BytesOf(m_Folder / "other").substr(BytesOf(m_Folder / "other").size() - 5), std::string(5, '\0'));
}

TEST_F(PipesTest, PlainReadingAndWritingGoThroughThem)
{
    std::thread writer([this] {
        ZmFile file;
        EXPECT_EQ(file.Open(m_Pipe.c_str(), ZmFile::WRITEONLY), 1);
        EXPECT_EQ(file.Write("one\ntwo\n", 8), 8u);
    });
    ZmFile file;
    char buffer[8];
    EXPECT_EQ(file.Open(m_Pipe.c_str(), ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT)), 1);
    EXPECT_EQ(file.Size(), 0u);
    EXPECT_EQ(file.IsValid(), 1) << "that it has no size is no failure";
    EXPECT_EQ(file.GetString(buffer, 8), 1);
    EXPECT_STREQ(buffer, "one\n");
    EXPECT_EQ(file.Read(buffer, 4), 4u);
    writer.join();
    EXPECT_EQ(file.Read(buffer, 1), 0u);
    for (const int mode : {ZmFile::READONLY, ZmFile::WRITEONLY, ZmFile::APPEND}) {
        EXPECT_EQ(file.Open("/dev/null", ZmFile::OpenMode(mode)), 1);
    }
}

void OnSignal(int) {}

TEST_F(PipesTest, SignalsDoNotEndTheWaiting)
{
    struct sigaction action = {}, before;
    action.sa_handler = OnSignal;  // without SA_RESTART
    sigaction(SIGUSR1, &action, &before);
    std::thread reader([this] {
        ZmFile file;
        char buffer[8] = "";
        EXPECT_EQ(file.Open(m_Pipe.c_str(), ZmFile::READONLY), 1);
        EXPECT_EQ(file.Read(buffer, 7), 7u);
        EXPECT_STREQ(buffer, "one two");
        EXPECT_EQ(file.IsValid(), 1);
    });
    const auto interrupt = [&] {
        for (int i = 0; i < 20; ++i) {
            pthread_kill(reader.native_handle(), SIGUSR1);
            usleep(1000);
        }
    };
    interrupt();
    const int pipe = open(m_Pipe.c_str(), O_WRONLY);
    EXPECT_EQ(write(pipe, "one ", 4), 4);
    interrupt();
    EXPECT_EQ(write(pipe, "two", 3), 3);
    close(pipe);
    reader.join();
    sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
