#include "Support/TemporaryFolder.h"
#include "ZmMath.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <memory>

namespace fs = std::filesystem;

namespace {

class FullDiskTest : public testing::Test {
protected:
    FullDiskTest() { m_Listener->SetDirectory((m_Folder / "").c_str()); }

    void Write(const std::string& text) { m_Listener->Output(0, ZmLog::LEVEL_INFO, 1, "file", text.c_str()); }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "full.log";
    const std::unique_ptr<ZmFileListener> m_Listener{
        static_cast<ZmFileListener*>(ZmFileListener::ListenerFactory("full"))};
};

TEST_F(FullDiskTest, LinesAreLostWhileTheDeviceIsFull)
{
    fs::create_symlink("/dev/full", m_Path);
    for (int i = 0; i < 3; ++i) {
        Write("lost");
    }
    fs::remove(m_Path);
    Write("kept");
    EXPECT_EQ(BytesOf(m_Path), "[INFO] : kept\n");
}

TEST_F(FullDiskTest, WhatWasWrittenStaysWhenThereIsRoomAgain)
{
    Write("before");
    const auto old = signal(SIGXFSZ, SIG_IGN);
    for (const int lost : {1, 2}) {
        const std::string before = BytesOf(m_Path);
        rlimit limit, none;
        getrlimit(RLIMIT_FSIZE, &limit);
        none = limit;
        none.rlim_cur = before.size() + 4;  // files cannot grow further, as on a full disk
        setrlimit(RLIMIT_FSIZE, &none);
        for (int i = 0; i < lost; ++i) {
            Write("lost");
        }
        setrlimit(RLIMIT_FSIZE, &limit);
        Write("after");
        EXPECT_EQ(BytesOf(m_Path), before + "[INF\n[INFO] : after\n") << lost;
    }
    signal(SIGXFSZ, old);
}

}  // namespace
