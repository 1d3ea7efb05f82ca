#pragma once

namespace zm {

/// Raises the calling thread to the highest priority that the system grants. Returns what RestoreThreadPriority() needs
/// to undo it. If the system refuses, nothing changes.
int RaiseThreadPriority();
void RestoreThreadPriority(int previous);

/// Yields the processor to other threads.
void YieldThread();

/// Sleeps for at least that long; signals do not shorten it.
void SleepMilliseconds(unsigned milliseconds);

/// Creates a thread that waits for StartThread(). Returns its handle and, in `id`, the system's thread number; null on
/// failure.
[[nodiscard]] void* NewThread(unsigned (*function)(void*), void* argument, unsigned& id);
void StartThread(void* thread);

/// Sets the name that debuggers and process viewers show, cut to the length the system allows. Call before
/// StartThread().
void NameThread(void* thread, const char* name);

/// `priority` is -2 to 2, with 0 for normal, -15 for idle or 15 for critical. If the system refuses, nothing changes.
void PrioritiseThread(void* thread, int priority);

enum class ThreadWait {
    ENDED,
    TIME_OVER,
    FAILED
};
constexpr unsigned kWaitForEver = 0xFFFFFFFF;

/// Waits for a thread to end. Fails for null.
[[nodiscard]] ThreadWait WaitForThread(void* thread, unsigned timeoutMs);

/// The exit code, or kThreadRuns. Returns false for null.
[[nodiscard]] bool ThreadExitCode(void* thread, unsigned& code);
constexpr unsigned kThreadRuns = 259;

/// Ends a thread, which may be the calling one, without running its destructors. A thread that has already ended keeps
/// its exit code. Returns false for null, or if the system refuses.
[[nodiscard]] bool StopThread(void* thread, unsigned exitCode);

/// While an instance lives, StopThread() on the thread that created it is delayed until the last instance is gone. For
/// operations that must not be left half done, such as everything under a lock of the library. Has no effect where the
/// system itself ends threads, as on Windows.
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

    /// Whether other threads may be running; if not, no lock is needed. May be true for a single thread. The guarded
    /// code must not start threads.
    bool OthersRun() const { return m_OthersRun; }

private:
    static bool BeginUnlessAlone();
    static void End();

    const bool m_OthersRun;
};

/// Whether threads may still run while the library's objects are destroyed, as at the end of a process on POSIX systems.
/// May be true for a single thread.
[[nodiscard]] bool ThreadsOutliveExit();

/// Frees a handle. The thread continues to run.
void CloseThread(void* thread);

/// The pseudo-handle of the calling thread: one value for all threads. Waiting for it never succeeds.
[[nodiscard]] void* CallingThread();

/// The system's number of the calling thread.
[[nodiscard]] unsigned CallingThreadId();

}  // namespace zm
