#include "ZmThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace {

/// Does what it is told; what it started has ended and is closed when it is destroyed.
class Worker : public ZmThread {
public:
    explicit Worker(std::function<unsigned()> work = nullptr) : m_Work(work) {}
    ~Worker() override
    {
        m_Open = true;
        Wait(nullptr, 0);
        Close();
    }
    unsigned int Run() override { return m_Work ? m_Work() : ZmThread::Run(); }

    int Start() { return CreateThread(nullptr, nullptr); }

    /// Work that lasts until Open().
    unsigned Stay()
    {
        m_Entered = true;
        while (!m_Open) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return 7;
    }
    void Open() { m_Open = true; }
    void AwaitEntered()
    {
        while (!m_Entered) {
            std::this_thread::yield();
        }
    }

private:
    std::function<unsigned()> m_Work;
    std::atomic<bool> m_Open{false}, m_Entered{false};
};

unsigned int Dereference(void* number)
{
    return *static_cast<unsigned int*>(number);
}

TEST(ZmThreadTest, TheResultOfTheFunctionIsTheExitCode)
{
    const struct {
        unsigned int result, code;
    } rows[] = {{0, 0}, {9, 9}, {0xFFFFFFFF, 0xFFFFFFFF}, {259, 1000000}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.result);
        unsigned int result = row.result, code = 1;
        ZmThread thread;
        ASSERT_EQ(thread.CreateThread(Dereference, &result), 1);
        EXPECT_EQ(thread.Wait(&code, 0), 53);
        EXPECT_EQ(code, row.code);
        EXPECT_EQ(thread.GetExitCode(code), 1);
        EXPECT_EQ(code, row.code);
        thread.Close();
    }
}

TEST(ZmThreadTest, WithoutAFunctionItRuns)
{
    Worker idle, busy([] { return 11u; });
    unsigned int code = 0;
    ASSERT_EQ(idle.Start() + busy.Start(), 2);
    EXPECT_EQ(idle.Wait(&code, 0), 53);
    EXPECT_EQ(code, 53u);
    EXPECT_EQ(busy.Wait(&code, 0), 53);
    EXPECT_EQ(code, 11u);
}

TEST(ZmThreadTest, StatesFollowTheThread)
{
    Worker thread([&] { return thread.Stay(); });
    unsigned int code = 1;
    EXPECT_EQ(thread.Wait(&code, 1), 51) << "before";
    EXPECT_EQ(thread.GetExitCode(code), 0);
    EXPECT_EQ(thread.Terminate(nullptr), 0);
    EXPECT_EQ(code, 1u);
    EXPECT_TRUE(!thread.IsCreated() && !thread.IsStarted() && thread.IsJoinable() && !thread.IsMainThread());

    ASSERT_EQ(thread.Start(), 1);
    thread.AwaitEntered();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(thread.Wait(&code, 10), 9);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(9));
    EXPECT_EQ(thread.GetExitCode(code), 1);
    EXPECT_EQ(code, 1000000u);
    EXPECT_TRUE(thread.IsCreated() && thread.IsStarted() && thread.IsJoinable() && !thread.IsMainThread());
    void* handle = thread.GetHandle();
    EXPECT_EQ(thread.CreateThread(Dereference, nullptr), 1) << "does nothing, or it would crash";
    EXPECT_EQ(thread.GetHandle(), handle);

    thread.Open();
    EXPECT_EQ(thread.Wait(nullptr, 0), 53);
    EXPECT_EQ(thread.Wait(&code, 1), 53) << "as often as one likes";
    EXPECT_EQ(code, 7u);
    EXPECT_TRUE(!thread.IsCreated() && !thread.IsStarted() && !thread.IsJoinable());
    thread.Close();
    EXPECT_EQ(thread.GetHandle(), nullptr);
    EXPECT_EQ(thread.GetID(), 0u);
    EXPECT_EQ(thread.Wait(&code, 0), 51);
    thread.Close();

    ASSERT_EQ(thread.Start(), 1) << "and again";
    EXPECT_EQ(thread.Wait(&code, 0), 53);
}

TEST(ZmThreadTest, NameAndPriorityAreThoseOfTheCreation)
{
    Worker named([&] { return named.Stay(); }), unnamed([&] { return unnamed.GetName() == "late"; });
    named.SetName("loader");
    named.SetPriority(ZmThread::PRIORITY_BELOW_NORMAL);
    ASSERT_EQ(named.Start() + unnamed.Start(), 2);
    named.SetName("late");
    named.SetPriority(ZmThread::PRIORITY_LOWEST);
    EXPECT_STREQ(named.GetName().Text(), "loader");
    EXPECT_EQ(named.GetPriority(), 2u);
    const std::string number = std::to_string(reinterpret_cast<uintptr_t>(unnamed.GetHandle()));
    EXPECT_EQ(unnamed.GetName().Text(), "THREAD_" + number);
}

TEST(ZmThreadTest, EveryThreadGetsTheMainThread)
{
    ZmThread* const main = ZmThread::GetCurrentZmThread();
    ASSERT_NE(main, nullptr);
    EXPECT_STREQ(main->GetName().Text(), "QRNMAINTHREAD");
    EXPECT_EQ(main->GetID(), ZmThread::GetCurrentZmThreadId());
    EXPECT_TRUE(main->IsMainThread() && main->IsCreated() && !main->IsStarted() && !main->IsJoinable());
    unsigned int code = 0, id = 0;
    EXPECT_EQ(main->Wait(nullptr, 2), 9);
    EXPECT_EQ(main->GetExitCode(code), 1);
    EXPECT_EQ(code, 1000000u);

    ZmThread* seen = nullptr;
    Worker other([&] {
        seen = ZmThread::GetCurrentZmThread();
        id = ZmThread::GetCurrentZmThreadId();
        return 0u;
    });
    ASSERT_EQ(other.Start(), 1);
    EXPECT_EQ(other.Wait(nullptr, 0), 53);
    EXPECT_EQ(seen, main);
    EXPECT_EQ(other.GetID(), id);
    EXPECT_NE(main->GetID(), id);
}

TEST(ZmThreadTest, TerminatedWhereverItStands)
{
    unsigned int given = 77;
    Worker sleeps([&] { return sleeps.Stay(); });
    Worker waits([&] { return unsigned(sleeps.Wait(nullptr, 0)); });
    Worker endsItself([&] { return unsigned(endsItself.Terminate(&given)); });
    ASSERT_EQ(sleeps.Start() + waits.Start() + endsItself.Start(), 3);
    sleeps.AwaitEntered();

    unsigned int code = 0;
    EXPECT_EQ(endsItself.Wait(&code, 0), 53);
    EXPECT_EQ(code, 77u);
    EXPECT_EQ(waits.Terminate(&given), 1);
    EXPECT_EQ(waits.Wait(&code, 0), 53);
    EXPECT_EQ(code, 77u);
    EXPECT_EQ(sleeps.Terminate(nullptr), 1);
    EXPECT_EQ(sleeps.Wait(&code, 0), 53);
    EXPECT_EQ(code, 0u);
    EXPECT_TRUE(sleeps.IsCreated() && sleeps.IsStarted()) << "it never came to its end";
}

// The sanitizers count what stays behind. Every other handle is closed at once, and nothing tells then when the object
// may go: those stay.
TEST(ZmThreadTest, ThousandsLeaveNothing)
{
    constexpr int kMakers = 4, kPairs = 500;
    static ZmThread s_Closed[kMakers * kPairs];
    std::atomic<int> next{0};
    static std::atomic<int> s_Ran{0};
    s_Ran = 0;
    const auto make = [&]() -> unsigned {
        const ZmThread::Function count = [](void*) { return unsigned(++s_Ran); };
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
        Worker makers[kMakers] = {Worker(make), Worker(make), Worker(make), Worker(make)};
        for (Worker& maker : makers) {
            ASSERT_EQ(maker.Start(), 1);
        }
    }
    while (s_Ran < 2 * kMakers * kPairs) {
        std::this_thread::yield();
    }
    EXPECT_STREQ(ZmThread::GetCurrentZmThread()->GetName().Text(), "QRNMAINTHREAD");
}

}  // namespace
