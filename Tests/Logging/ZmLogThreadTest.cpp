#include "Support/HeardMessages.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace {

constexpr int kThreads = 4, kLines = 300;

std::string TextOf(int thread, int line)
{
    return "thread " + std::to_string(thread) + std::string(size_t(line), '.') + std::to_string(line);
}

void PrintLines(int module, int thread)
{
    const std::string file = "file" + std::to_string(thread);
    for (int i = 0; i < kLines; ++i) {
        ZmLog::GetLog()
            .SetInformationMT(module, ZmLog::Level(1 << thread), i, file.c_str())
            .PrintMT("%s", TextOf(thread, i).c_str());
    }
}

TEST(ZmLogThreadTest, MessagesOfThreadsAreNotMixed)
{
    const TemporaryFolder folder;
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("log thread test");
    HeardMessages heard;
    heard.Listen("heard", module);
    auto* file = static_cast<ZmFileListener*>(log.RegisterListener(ZmFileListener::m_Guid, "threads", module));
    file->SetDirectory((folder / "").c_str());
    file->SetFlags(ZmLogListener::SOURCE_LINE);

    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back(PrintLines, module, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    log.UnregisterListener("threads");

    const std::vector<HeardMessage> messages = heard.Take();
    ASSERT_EQ(messages.size(), size_t(kThreads * kLines));
    std::ifstream lines(folder / "threads.log");
    std::vector<int> next(kThreads);
    for (const HeardMessage& message : messages) {
        const int thread = message.text[7] - '0', line = next.at(size_t(thread))++;
        EXPECT_EQ(message.text, TextOf(thread, line));
        EXPECT_EQ(message.level, 1 << thread);
        EXPECT_EQ(message.line, line);
        EXPECT_EQ(message.file, "file" + std::to_string(thread));
        std::string written;
        std::getline(lines, written);
        EXPECT_EQ(written, std::string("[log thread test] [") + ZmLog::GetLevelDesc(ZmLog::Level(1 << thread)) + "] [" +
                               message.file + ":" + std::to_string(line) + "] : " + message.text);
    }
    EXPECT_EQ(lines.peek(), EOF);
}

TEST(ZmLogThreadTest, TheLibrarysOwnWarningsStandBesideOtherMessages)
{
    HeardMessages heard;
    heard.Listen("heard", 1);
    std::thread warns([] {
        ZmCachedFile file(16);
        for (int i = 0; i < kLines; ++i) {
            file.Flush();
        }
    });
    PrintLines(1, 0);
    warns.join();
    int warnings = 0;
    for (const HeardMessage& message : heard.Take()) {
        warnings += message.file == "ZmCachedFile";
        EXPECT_EQ(message.text == "Flush : Not Cached", message.file == "ZmCachedFile");
    }
    EXPECT_EQ(warnings, kLines);
}

}  // namespace
