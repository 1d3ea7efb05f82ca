#pragma once

#include "XString.h"

/// A system thread with a name, a priority and an exit code. It runs a function, or Run() of a derived class:
///
///     ZmThread thread;
///     thread.CreateThread(Work, &work);
///     unsigned int code;
///     thread.Wait(&code, 0);
///     thread.Close();
///
/// The object must live, and the library must stay loaded, until the thread has ended. The owner may use the object
/// from one thread at a time. The flags, Wait(), GetExitCode() and Terminate() may be called from any thread while the
/// handle is open.
///
/// After fork() in a process with threads the child must not use the library before exec(): another thread may have
/// held a lock of the library or of the C heap, which nobody will release in the child.
class ZM_API ZmThread {
public:
    /// Function that a thread runs; its result is the exit code.
    typedef unsigned int (*Function)(void* argument);

    /// Results of Wait(), and the exit codes set by the library itself.
    enum Code : int {
        CODE_SUCCESS = 53,       ///< the thread has ended
        CODE_TIMEOUT = 9,        ///< the thread has not ended within the given time
        CODE_NO_THREAD = 50,     ///< exit code: the thread was started without its object
        CODE_WAIT_FAILED = 51,   ///< there is no thread, or the handle is closed
        CODE_NO_EXIT_CODE = 52,  ///< the thread has ended, but the system does not report its exit code
        CODE_RUNNING = 1000000   ///< returned instead of an exit code while the thread runs
    };

    /// On Linux, offsets from the process's nice value. A priority that the system refuses is not applied, such as one
    /// above the process's own without the necessary rights.
    enum Priority : unsigned int {
        PRIORITY_NORMAL = 0,
        PRIORITY_ABOVE_NORMAL = 1,
        PRIORITY_BELOW_NORMAL = 2,
        PRIORITY_HIGHEST = 3,
        PRIORITY_LOWEST = 4,
        PRIORITY_IDLE = 5,
        PRIORITY_TIME_CRITICAL = 6
    };

    ZmThread();

    /// Neither stops the thread nor closes its handle: see Wait() and Close().
    virtual ~ZmThread();

    ZmThread(const ZmThread&) = delete;
    ZmThread& operator=(const ZmThread&) = delete;

    /// Runs in the thread if it has no function; the result is the exit code. The default implementation returns 53.
    virtual unsigned int Run();

    /// Starts a thread that runs the function, or Run() if it is null. Returns 1, or 0 if the system cannot create a
    /// thread. While an earlier thread of this object is running, does nothing and returns 1. An object without a name
    /// is named "THREAD_" followed by the number of the handle. Once its thread has ended, an object may start another
    /// one; Close() the old handle first.
    int CreateThread(Function function, void* argument);

    /// Waits until the thread ends, at most `timeout` milliseconds; 0 means no limit. Returns CODE_SUCCESS and stores
    /// the exit code in `exitCode` unless that is null, or returns another Code. A thread that waits for itself waits
    /// in vain.
    int Wait(unsigned int* exitCode, unsigned int timeout);

    /// Stores the exit code, or CODE_RUNNING, which also represents the exit code 259. Returns 1, or 0 without storing
    /// anything if there is no handle.
    int GetExitCode(unsigned int& code);

    /// Stops the thread immediately, with the given exit code, or 0 if that is null. Returns 1, also for a thread that
    /// has already ended (which keeps its exit code), or 0 if there is no handle or the system refuses. Only a last
    /// resort: the thread's destructors do not run, and whatever it holds (locks, memory, the heap's own lock) stays
    /// held for ever. The flags stay unchanged. The thread may still be running when this returns: call Wait().
    ///
    /// On Linux the thread is stopped by a real-time signal, which it must not block. It is not stopped while it holds
    /// a lock of the library itself: of strings, the allocator, the log (up to the end of PrintMT()), the registry of
    /// threads, environment variables and settings. Other threads may therefore continue to use all of these; a string
    /// that the thread was just changing is lost. **On Windows the system stops the thread at once, even inside the
    /// library**: any other thread that uses strings or the log may then wait for ever, and the only remedy is to end
    /// the process.
    int Terminate(const unsigned int* exitCode);

    /// Closes the handle and forgets the thread, which continues if it is running. Its end can then no longer be
    /// detected, so the object must not be destroyed. Afterwards the object is as new, except for its name and the
    /// joinable flag.
    void Close();

    /// Must be called before the thread is created; ignored afterwards. The system also receives the name, for
    /// debuggers and process viewers: its first 15 bytes on Linux, and on Windows if that version supports thread
    /// names.
    /// @{
    void SetName(const char* name);
    void SetPriority(unsigned int priority);  ///< a Priority; 7 and more leave the system's default
    /// @}

    /// The values set, or those the thread was given.
    const XString& GetName() const { return m_Name; }
    unsigned int GetPriority() const { return m_Priority; }

    /// The system's handle on Windows, elsewhere an opaque value; null without a handle.
    void* GetHandle() const { return m_Handle; }

    /// The system's thread id, as GetCurrentZmThreadId() returns it inside the thread; 0 without a thread.
    unsigned int GetID() const { return m_Id; }

    /// Flags: 0 or non-zero. A thread that has returned is neither created nor started nor joinable.
    /// @{
    int IsMainThread() const;
    int IsCreated() const;
    int IsStarted() const;
    int IsJoinable() const;
    /// @}

    /// Returns the object "QRNMAINTHREAD" of the thread that loaded the library, **whichever thread calls**. Its handle
    /// means "the calling thread".
    static ZmThread* GetCurrentZmThread();

    /// Returns the system's id of the calling thread.
    static unsigned int GetCurrentZmThreadId();

private:
    friend struct ZmThreadStart;

    XString m_Name;
    void* m_Handle;
    uint32_t m_Id;
    uint32_t m_Flags;
    uint32_t m_Priority;
    Function m_Function;
    void* m_Argument;
};
