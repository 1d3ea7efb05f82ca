#pragma once

#include "XString.h"

/// A thread of the system, with a name, a priority and an exit code. It runs a function, or the Run() of a derived
/// class:
///
///     ZmThread thread;
///     thread.CreateThread(Work, &work);
///     unsigned int code;
///     thread.Wait(&code, 0);
///     thread.Close();
///
/// The object must live until its thread has ended, and the library must stay loaded as long. Its owner may use it
/// from one thread at a time; the flags, Wait(), GetExitCode() and Terminate() may be asked of any thread while the
/// handle is open.
class ZM_API ZmThread {
public:
    /// What a thread runs; the result is its exit code.
    typedef unsigned int (*Function)(void* argument);

    /// What Wait() gives, and the exit codes that the library itself gives to threads.
    enum Code : int {
        CODE_SUCCESS = 53,       ///< the thread has ended
        CODE_TIMEOUT = 9,        ///< it has not, in the time that was given
        CODE_NO_THREAD = 50,     ///< exit code: the thread was started without its object
        CODE_WAIT_FAILED = 51,   ///< there is no thread, or the handle is closed
        CODE_NO_EXIT_CODE = 52,  ///< the thread has ended, but the system does not tell how
        CODE_RUNNING = 1000000   ///< instead of an exit code
    };

    /// On Linux, steps of the thread's nice value from that of the process. What the system refuses, such as more than
    /// the process's own without the right to it, is not applied.
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

    /// What the thread does if it has no function; the result is its exit code. This one returns 53.
    virtual unsigned int Run();

    /// Starts a thread on the function, or on Run() for null. 1; 0 if the system has no thread to give. While an
    /// earlier thread of this object runs, does nothing and returns 1. An object without a name gets "THREAD_" and the
    /// number of the handle. An object whose thread has ended may start another one; Close() the old handle before.
    int CreateThread(Function function, void* argument);

    /// Waits for the end of the thread, at most `timeout` milliseconds, or for ever for 0. CODE_SUCCESS, with the exit
    /// code in `exitCode` unless that is null, or another Code. A thread that waits for itself never sees its end.
    int Wait(unsigned int* exitCode, unsigned int timeout);

    /// The exit code, or CODE_RUNNING, which also stands for the exit code 259. 1; 0 and no code without a handle.
    int GetExitCode(unsigned int& code);

    /// Ends the thread where it stands, with that exit code or 0 for null. 1, also for a thread that has ended already,
    /// which keeps its exit code; 0 without a handle, or if the system did not do it. Only a last resort: no destructor
    /// of the thread runs, and what it holds (locks, memory, the heap's own lock) stays held for ever. The flags stay
    /// as they were. It may not have ended yet when this returns: Wait().
    ///
    /// On Linux it is stopped by a real-time signal, which it must not block, and not before it has left the locks of
    /// the library itself: those of strings, the allocator, the log (up to the end of PrintMT()), the registry of
    /// threads, environment variables and settings. So others may go on with all of these; a string that it was just
    /// changing is lost. **On Windows the system ends it at once, also inside the library**: then strings or the log
    /// may make every other thread wait for ever, and all that is left to do is to end the process.
    int Terminate(const unsigned int* exitCode);

    /// Gives the handle back and forgets the thread, which goes on if it runs; nothing tells its end then, so the
    /// object must stay. After that it is as new, but for its name and the joinable flag.
    void Close();

    /// Before the thread is created; afterwards ignored. The name is also the system's, for debuggers and process
    /// viewers: its first 15 bytes on Linux, on Windows where the system has names for threads.
    /// @{
    void SetName(const char* name);
    void SetPriority(unsigned int priority);  ///< a Priority; 7 and more leave the thread as the system makes it
    /// @}

    /// As set, or as the thread got it.
    const XString& GetName() const { return m_Name; }
    unsigned int GetPriority() const { return m_Priority; }

    /// The system's handle on Windows, elsewhere an opaque value; null without one.
    void* GetHandle() const { return m_Handle; }

    /// The system's number of the thread, as GetCurrentZmThreadId() gives it inside; 0 without one.
    unsigned int GetID() const { return m_Id; }

    /// Flags: 0, or another value for yes. A thread that has returned is neither created nor started nor joinable.
    /// @{
    int IsMainThread() const;
    int IsCreated() const;
    int IsStarted() const;
    int IsJoinable() const;
    /// @}

    /// The object "QRNMAINTHREAD" of the thread that loaded the library, **in whatever thread it is asked**. That is
    /// the contract, do not repair it (ZmThreadTest, EveryThreadGetsTheMainThread). Its handle means "the calling
    /// thread".
    static ZmThread* GetCurrentZmThread();

    /// The system's number of the calling thread.
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
