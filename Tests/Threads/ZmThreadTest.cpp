#include "ZmThread.h"
#include "ZmSystem.h"

#include "Threads/SystemThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace {

/// Runs a given function. Its thread has ended when it is destroyed.
struct Worker : ZmThread {
    explicit Worker(std::function<unsigned()> work = nullptr) : m_Work(work) {}
    ~Worker() override
    {
        m_Open = true;
        Wait(nullptr, 0);
        Close();
    }
    unsigned int Run() override { return m_Work ? m_Work() : ZmThread::Run(); }
    int Start() { return CreateThread(nullptr, nullptr); }
    unsigned Code()
    {
        unsigned int code = 0;
        EXPECT_EQ(Wait(&code, 0), 53);
        return code;
    }

    /// A function that runs until m_Open is set.
    unsigned Stay()
    {
        for (m_Entered = true; !m_Open;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return 7;
    }
    int StartStay()
    {
        m_Work = [this] { return Stay(); };
        const int started = Start();
        while (started && !m_Entered) {
            std::this_thread::yield();
        }
        return started;
    }

    std::function<unsigned()> m_Work;
    std::atomic<bool> m_Open{false}, m_Entered{false};
};

TEST(ZmThreadTest, TheResultOfTheFunctionOrOfRunIsTheExitCode)
{
    constexpr unsigned int rows[][2] = {{0, 0}, {9, 9}, {0xFFFFFFFF, 0xFFFFFFFF}, {259, 1000000}};
    for (const auto& row : rows) {
        unsigned int result = row[0];
        Worker thread;
        ASSERT_EQ(thread.CreateThread([](void* number) { return *static_cast<unsigned*>(number); }, &result), 1);
        EXPECT_EQ(thread.Code(), row[1]);
    }
    Worker idle;
    ASSERT_EQ(idle.Start(), 1);
    EXPECT_EQ(idle.Code(), 53u);
}

TEST(ZmThreadTest, StatesFollowTheThread)
{
    Worker thread;
    unsigned int code = 1;
    EXPECT_EQ(thread.Wait(&code, 1), 51) << "before";
    EXPECT_EQ(thread.GetExitCode(code) + thread.Terminate(nullptr), 0);
    EXPECT_TRUE(!thread.IsCreated() && !thread.IsStarted() && thread.IsJoinable());

    ASSERT_EQ(thread.StartStay(), 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(thread.Wait(&code, 10), 9);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(9));
    EXPECT_TRUE(thread.GetExitCode(code) == 1 && code == 1000000);
    EXPECT_TRUE(thread.IsCreated() && thread.IsStarted() && thread.IsJoinable() && !thread.IsMainThread());
    void* handle = thread.GetHandle();
    EXPECT_TRUE(thread.Start() == 1 && thread.GetHandle() == handle) << "does nothing";

    thread.m_Open = true;
    EXPECT_TRUE(thread.Wait(nullptr, 0) == 53 && thread.Code() == 7);
    EXPECT_TRUE(!thread.IsCreated() && !thread.IsStarted() && !thread.IsJoinable());
    thread.Close();
    EXPECT_TRUE(thread.GetHandle() == nullptr && thread.GetID() == 0);
    EXPECT_EQ(thread.Wait(&code, 0), 51);

    EXPECT_TRUE(thread.Start() == 1 && thread.Code() == 7) << "and again";
}

TEST(ZmThreadTest, NameAndPriorityAreThoseOfTheCreation)
{
    Worker named, unnamed;
    named.SetName("loader");
    named.SetPriority(ZmThread::PRIORITY_BELOW_NORMAL);
    ASSERT_EQ(named.StartStay() + unnamed.Start(), 2);
    named.SetName("late");
    named.SetPriority(ZmThread::PRIORITY_LOWEST);
    EXPECT_TRUE(named.GetName() == "loader" && named.GetPriority() == ZmThread::PRIORITY_BELOW_NORMAL);
    EXPECT_EQ(unnamed.GetName().Text(), "THREAD_" + std::to_string(uintptr_t(unnamed.GetHandle())));
    named.m_Open = true;
    EXPECT_EQ(named.Code(), 7u);
    named.Close();
    EXPECT_EQ(named.GetPriority(), ZmThread::PRIORITY_NORMAL);
}

TEST(ZmThreadTest, NamesReachTheSystem)
{
    const bool windows = ZmGetPlatform() == ZM_PLATFORM_WINDOWS;
    const std::string accents = "\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9", before = SystemThreadName();
    const struct {
        std::string name, onLinux;
    } kRows[] = {{"loader", "loader"},
                 {"fifteen letters", "fifteen letters"},
                 {"sixteen letters!", "sixteen letters"},
                 {accents, accents.substr(0, 14)},
                 {"a" + accents, "a" + accents.substr(0, 14)}};
    std::string seen;
    for (const auto& row : kRows) {
        Worker thread([&] { return seen = SystemThreadName(), 0u; });
        thread.SetName(row.name.c_str());
        ASSERT_EQ(thread.Start(), 1);
        thread.Code();
        EXPECT_TRUE(seen == (windows ? row.name : row.onLinux) || seen == "?") << seen;
    }
    Worker unnamed([&] { return seen = SystemThreadName(), 0u; });
    ASSERT_EQ(unnamed.Start(), 1);
    unnamed.Code();
    const std::string given = unnamed.GetName().Text();
    EXPECT_TRUE(seen == (windows ? given : given.substr(0, 15)) || seen == "?") << seen;
    if (!windows) {
        Worker noText([&] { return seen = SystemThreadName(), 0u; });
        noText.SetName(std::string(16, '\x80').c_str());
        ASSERT_EQ(noText.Start(), 1);
        noText.Code();
        EXPECT_EQ(seen, before) << "where no character begins a name cannot be cut";
    }
    EXPECT_EQ(SystemThreadName(), before) << "the program's own thread keeps its name";
}

TEST(ZmThreadTest, PrioritiesReachTheSystem)
{
    const int own = SystemPriority();
    constexpr int onWindows[] = {0, 1, -1, 2, -2, -15, 15, 0};
    const int onLinux[] = {own, own - 5, own + 5, own - 10, own + 10, 19, -20, own};
    for (unsigned int priority = 0; priority < 8; ++priority) {
        Worker thread([] { return unsigned(SystemPriority()); });
        thread.SetPriority(priority);
        ASSERT_EQ(thread.Start(), 1);
        const int got = int(thread.Code());
        if (ZmGetPlatform() == ZM_PLATFORM_WINDOWS) {
            EXPECT_EQ(got, onWindows[priority]) << priority;
        } else if (onLinux[priority] >= own || got != own) {  // the system may refuse a higher priority than its own
            EXPECT_EQ(got, std::min(onLinux[priority], 19)) << priority;
        }
    }
}

TEST(ZmThreadTest, EveryThreadGetsTheMainThread)
{
    ZmThread* const main = ZmThread::GetCurrentZmThread();
    ASSERT_NE(main, nullptr);
    EXPECT_TRUE(main->GetName() == "QRNMAINTHREAD" && main->GetID() == ZmThread::GetCurrentZmThreadId());
    EXPECT_TRUE(main->IsMainThread() && main->IsCreated() && !main->IsStarted() && !main->IsJoinable());
    unsigned int code = 0;
    EXPECT_EQ(main->Wait(nullptr, 2), 9);
    EXPECT_TRUE(main->GetExitCode(code) == 1 && code == 1000000);

    ZmThread* seen = nullptr;
    Worker other([&] { return (seen = ZmThread::GetCurrentZmThread())->GetCurrentZmThreadId(); });
    ASSERT_EQ(other.Start(), 1);
    EXPECT_EQ(other.Code(), other.GetID());
    EXPECT_TRUE(seen == main && other.GetID() != main->GetID());
}

TEST(ZmThreadTest, TerminatedWhereverItStands)
{
    if (!SystemStopsThreads()) {
        GTEST_SKIP() << "the system does not deliver the last real-time signal";
    }
    unsigned int given = 77;
    Worker sleeps, waits([&] { return unsigned(sleeps.Wait(nullptr, 0)); });
    Worker endsItself([&] { return unsigned(endsItself.Terminate(&given)); });
    Worker endsByTheMain([&] { return unsigned(ZmThread::GetCurrentZmThread()->Terminate(&given)); });
    ASSERT_EQ(sleeps.StartStay() + waits.Start() + endsItself.Start() + endsByTheMain.Start(), 4);
    EXPECT_EQ(endsItself.Code(), 77u);
    EXPECT_EQ(endsByTheMain.Code(), 77u) << "the main thread's object stands for the calling thread";
    EXPECT_EQ(waits.Terminate(&given) + sleeps.Terminate(nullptr), 2);
    EXPECT_EQ(waits.Code(), 77u);
    EXPECT_EQ(sleeps.Code(), 0u);
    EXPECT_TRUE(sleeps.IsCreated() && sleeps.IsStarted()) << "it never reached its end";

    Worker returned;
    ASSERT_TRUE(returned.Start() == 1 && returned.Code() == 53);
    EXPECT_EQ(returned.Terminate(&given) + waits.Terminate(nullptr), 2) << "both have already ended";
    EXPECT_TRUE(returned.Code() == 53 && waits.Code() == 77) << "and keep their codes";
}

// The sanitizers count leaks. Every other handle is closed at once; then nothing shows when the object may be freed, so
// those objects are kept.
TEST(ZmThreadTest, ThousandsLeaveNothing)
{
    constexpr int kMakers = 4, kPairs = 500;
    static ZmThread s_Closed[kMakers * kPairs];
    std::atomic<int> next{0};
    static std::atomic<int> s_Ran{0};
    s_Ran = 0;
    const ZmThread::Function count = [](void*) { return unsigned(++s_Ran); };
    const auto make = [&]() -> unsigned {
        for (int i = 0; i < kPairs; ++i) {
            ZmThread awaited, &closed = s_Closed[next++];
            EXPECT_EQ(awaited.CreateThread(count, nullptr) + closed.CreateThread(count, nullptr), 2);
            closed.Close();
            EXPECT_EQ(awaited.Wait(nullptr, 0), 53);
            awaited.Close();
        }
        return 0;
    };
    {
        Worker makers[kMakers];
        for (Worker& maker : makers) {
            maker.m_Work = make;
            ASSERT_EQ(maker.Start(), 1);
        }
    }
    while (s_Ran < 2 * kMakers * kPairs) {
        std::this_thread::yield();
    }
}

}  // namespace
