#include "Support/HeardMessages.h"
#include "Support/Random.h"
#include "Threads/SystemThread.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include <atomic>
#include <chrono>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// Strings held by a terminated thread are leaked by design.
void AllowLosses()
{
#if defined(__SANITIZE_ADDRESS__)
    __lsan_disable();
#endif
}

char g_LongText[201];

class TerminationThreadTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!SystemStopsThreads()) {
            GTEST_SKIP() << "the system does not deliver the last real-time signal";
        }
        alarm(120);  // a lock that a terminated thread has kept would be waited for without end
    }

    void TearDown() override { alarm(0); }
};

/// Functions that take the library's own locks and use the heap only inside them.
const struct {
    const char* name;
    void (*use)();
} kUses[] = {
    {"short strings",
     [] {
         XString text("a text");
         text << "and more of it";
     }},
    {"long strings", [] { XString text(g_LongText); }},
    {"pools",
     [] {
         ZmAllocator& allocator = ZmAllocator::Instance();
         allocator.ReleasePool(40, allocator.AllocatePool(40));
     }},
    {"scratch",
     [] {
         ZmAllocator& allocator = ZmAllocator::Instance();
         allocator.ReleaseScratch(allocator.AllocateScratch(5000));
     }},
    {"the log", [] { ZmLog::GetLog().SetInformationMT(2, ZmLog::LEVEL_INFO, 1, "file").PrintMT("%5d", 1); }},
    {"the registry", [] { ZmThread::GetCurrentZmThread(); }},
    {"the environment", [] { ZmGetEnvironmentVariable("ZMMATH_NO_VARIABLE", nullptr, 0); }},
};

std::atomic<bool> g_Runs{false};

unsigned int UseForEver(void* use)
{
    for (AllowLosses();;) {
        (*static_cast<void (*const*)()>(use))();
        g_Runs = true;
    }
}

TEST_F(TerminationThreadTest, ThreadsThatAreTerminatedLeaveTheLocksOfTheLibrary)
{
    Random random(1);
    memset(g_LongText, 'x', sizeof(g_LongText) - 1);
    for (const auto& row : kUses) {
        SCOPED_TRACE(row.name);
        for (int round = 0; round < 100; ++round) {
            ZmThread thread;
            const unsigned int given = unsigned(round);
            unsigned int code = 0;
            g_Runs = false;
            ASSERT_EQ(thread.CreateThread(UseForEver, const_cast<void (**)()>(&row.use)), 1);
            while (!g_Runs) {
                usleep(1);
            }
            const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(random.Int(0, 100));
            while (std::chrono::steady_clock::now() < until) {
            }
            ASSERT_EQ(thread.Terminate(&given), 1);
            ASSERT_EQ(thread.Wait(&code, 0), 53);
            ASSERT_EQ(code, given);
            thread.Close();
            row.use();
        }
    }
}

TEST_F(TerminationThreadTest, AThreadMayBeTerminatedBeforeItBegins)
{
    for (unsigned int given = 1000; given < 1300; ++given) {
        ZmThread thread;
        unsigned int code = 0;
        ASSERT_EQ(thread.CreateThread(UseForEver, const_cast<void (**)()>(&kUses[0].use)), 1);
        ASSERT_EQ(thread.Terminate(&given), 1);
        ASSERT_EQ(thread.Wait(&code, 0), 53);
        ASSERT_EQ(code, given);
        thread.Close();
    }
}

TEST_F(TerminationThreadTest, TheSignalStopsNothingUnlessTheLibrarySendsIt)
{
    unsigned int code = 0;
    ZmThread thread;
    ASSERT_EQ(thread.CreateThread([](void*) { return unsigned(raise(SIGRTMAX)); }, nullptr), 1);
    EXPECT_EQ(thread.Wait(&code, 0), 53);
    EXPECT_EQ(code, 0u);
    thread.Close();
    EXPECT_EQ(raise(SIGRTMAX), 0);
}

std::atomic<bool> g_Open{false};
std::atomic<int> g_Heard{0};

TEST_F(TerminationThreadTest, AStopInsideTheLogWaitsForTheEndOfTheMessage)
{
    HeardMessages heard;
    heard.Listen("slow", 2);
    heard.m_Answer = [](const HeardMessage&) {
        for (g_Heard += 1; !g_Open;) {
            usleep(100);
        }
        kUses[0].use();  // leaves a lock that is not the outermost: the thread goes on
    };
    g_Open = false;
    g_Heard = 0;
    ZmThread thread;
    ASSERT_EQ(thread.CreateThread(UseForEver, const_cast<void (**)()>(&kUses[4].use)), 1);
    while (g_Heard == 0) {
        usleep(100);
    }
    constexpr unsigned int given = 9;
    unsigned int code = 0;
    EXPECT_EQ(thread.Terminate(&given), 1);
    EXPECT_EQ(thread.Wait(&code, 20), 9) << "still inside";
    g_Open = true;
    EXPECT_EQ(thread.Wait(&code, 0), 53);
    EXPECT_EQ(code, 9u);
    EXPECT_EQ(g_Heard, 1) << "the message must be the last thing the thread does";
    thread.Close();
    heard.m_Answer = nullptr;
    kUses[4].use();
    EXPECT_EQ(heard.Take().size(), 2u);
}

ZmThread g_Self;

TEST_F(TerminationThreadTest, AListenerThatTerminatesItsThreadEndsItsMessageFirst)
{
    HeardMessages heard;
    heard.Listen("ends it", 2);
    heard.m_Answer = [](const HeardMessage&) {
        constexpr unsigned int code = 5;
        EXPECT_EQ(g_Self.Terminate(&code), 1);
    };
    unsigned int code = 0;
    ASSERT_EQ(g_Self.CreateThread(UseForEver, const_cast<void (**)()>(&kUses[4].use)), 1);
    EXPECT_EQ(g_Self.Wait(&code, 0), 53);
    EXPECT_EQ(code, 5u);
    g_Self.Close();
    heard.m_Answer = nullptr;
    kUses[4].use();
    EXPECT_EQ(heard.Take().size(), 2u);
}

}  // namespace
