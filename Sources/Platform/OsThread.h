#pragma once

namespace zm {

/// Gives the calling thread the highest priority that the system grants it and returns what
/// RestoreThreadPriority() needs to take that back. A refusal changes nothing.
int RaiseThreadPriority();
void RestoreThreadPriority(int previous);

/// Lets other threads run.
void YieldThread();

/// Sleeps for at least that long; signals do not cut it short.
void SleepMilliseconds(unsigned milliseconds);

/// A thread that waits for StartThread(). Its handle and its number in the system; null if there is none to be had.
void* NewThread(unsigned (*function)(void*), void* argument, unsigned& id);
void StartThread(void* thread);

/// Tells debuggers and process viewers a thread's name, as much of it as they take. Before StartThread().
void NameThread(void* thread, const char* name);

/// From -2 to 2, 0 for normal; -15 for idle and 15 for critical. What the system refuses changes nothing.
void PrioritiseThread(void* thread, int priority);

enum class ThreadWait {
    ENDED,
    TIME_OVER,
    FAILED
};
constexpr unsigned kWaitForEver = 0xFFFFFFFF;

/// Waits for the end of a thread. Fails for null.
ThreadWait WaitForThread(void* thread, unsigned timeoutMs);

/// The exit code, or kThreadRuns. False for null.
bool ThreadExitCode(void* thread, unsigned& code);
constexpr unsigned kThreadRuns = 259;

/// Ends a thread where it stands, without its destructors; it may be the calling one. One that has ended keeps its exit
/// code. False for null, and where the system refuses.
bool StopThread(void* thread, unsigned exitCode);

/// While one lives, the thread that made it is not stopped by StopThread(), but afterwards: for what must not be left
/// half done, such as everything under a lock of the library. Where the system itself ends threads, as Windows does, it
/// has no effect.
class StopDelay {
public:
    StopDelay() : m_OthersRun(BeginUnlessAlone()) {}
    ~StopDelay()
    {
        if (m_OthersRun) {
            End();
        }
    }
    StopDelay(const StopDelay&) = delete;
    StopDelay& operator=(const StopDelay&) = delete;

    /// Whether other threads can run; if not, nothing has to be locked. May say yes where it is not so. What is guarded
    /// must not start any.
    bool OthersRun() const { return m_OthersRun; }

private:
    static bool BeginUnlessAlone();
    static void End();

    const bool m_OthersRun;
};

/// Frees a handle. The thread may run on.
void CloseThread(void* thread);

/// What stands for the calling thread in place of a handle: one value for all threads. As a thread it never ends.
void* CallingThread();

/// The calling thread's number in the system.
unsigned CallingThreadId();

}  // namespace zm
