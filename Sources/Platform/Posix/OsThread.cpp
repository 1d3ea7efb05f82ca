#include "Platform/OsThread.h"

#include "Platform/Posix/StopDelays.h"

#include <atomic>
#include <chrono>
#include <errno.h>
#include <linux/futex.h>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <setjmp.h>
#include <signal.h>
#include <stdint.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/single_threaded.h>
#include <sys/syscall.h>
#include <thread>
#include <time.h>
#include <unistd.h>

namespace zm {

ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopDelays = 0;
ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopWaits = 0;

namespace {

enum State : unsigned {
    HALTED,
    RUNNING,
    ENDED
};

/// What a handle points to. Owned by the handle's owner and the thread itself; the last of them frees it. It has no
/// condition variable: one whose waiting thread was stopped could never be destroyed.
struct Thread {
    Thread(unsigned (*f)(void*), void* a) : function(f), argument(a) {}

    unsigned (*function)(void*);
    void* argument;
    pthread_t system = {};
    unsigned id = 0;
    std::atomic<unsigned> state{HALTED};
    std::atomic<unsigned> exitCode{0};
    std::atomic<int> owners{2};
    char name[16] = "";  ///< the system's limit

    pthread_mutex_t endLock = PTHREAD_MUTEX_INITIALIZER;  ///< while it is held, the thread cannot end
    bool isGivenBack = false;  ///< guarded by endLock: the thread is being joined, or will detach itself
    std::atomic<bool> stopWanted{false};
    std::atomic<unsigned> stopCode{0};
    std::atomic<bool> isStoppable{false};  ///< set by the thread itself while its function runs
    std::atomic<bool> wasStopped{false};
    sigjmp_buf beforeFunction;
};

thread_local Thread* t_Self = nullptr;

void LetGo(Thread& thread)
{
    if (thread.owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete &thread;
    }
}

/// Sleeps until the word differs from `value`, or until `end` on the monotonic clock; null waits for ever. Returns
/// false on timeout.
bool AwaitChange(std::atomic<unsigned>& word, unsigned value, const timespec* end)
{
    static_assert(sizeof(word) == sizeof(unsigned) && sizeof(timespec) == 2 * sizeof(long), "as the kernel has them");
    while (word.load(std::memory_order_acquire) == value) {
        constexpr int kWait = FUTEX_WAIT_BITSET | FUTEX_PRIVATE_FLAG;
        if (syscall(SYS_futex, &word, kWait, value, end, nullptr, FUTEX_BITSET_MATCH_ANY) != 0 && errno == ETIMEDOUT) {
            return word.load(std::memory_order_acquire) != value;
        }
    }
    return true;
}

void Change(std::atomic<unsigned>& word, unsigned value)
{
    word.store(value, std::memory_order_release);
    syscall(SYS_futex, &word, FUTEX_WAKE | FUTEX_PRIVATE_FLAG, INT32_MAX, nullptr, nullptr, 0);
}

[[noreturn]] void StopSelf(Thread& self, unsigned exitCode)
{
    self.stopCode = exitCode;
    siglongjmp(self.beforeFunction, 1);
}

void StopIfWanted()
{
    Thread* self = t_Self;
    if (self != nullptr && self->stopWanted && self->isStoppable) {
        StopSelf(*self, self->stopCode);
    }
}

void OnStopSignal(int)
{
    if (t_StopDelays != 0) {
        t_StopWaits = 1;
    } else {
        StopIfWanted();
    }
}

/// Finds an unused real-time signal and installs the handler; 0 if there is none.
int TakeSignal()
{
    for (int number = SIGRTMAX; number >= SIGRTMIN; --number) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) == 0 &&
            (action.sa_handler == SIG_DFL || action.sa_handler == SIG_IGN)) {
            action.sa_handler = OnStopSignal;
            action.sa_flags = SA_RESTART;
            return sigaction(number, &action, nullptr) == 0 ? number : 0;
        }
    }
    return 0;
}

/// The signal that stops threads. It is ignored when the library is unloaded, so that a pending one does no harm.
struct StopSignalOwner {
    const int number = TakeSignal();
    ~StopSignalOwner()
    {
        if (number != 0) {
            signal(number, SIG_IGN);
        }
    }
};

int StopSignal()
{
    static const StopSignalOwner owner;
    return owner.number;
}

// A thread inherits its creator's signal mask, which may block everything.
void AllowStopSignal()
{
    sigset_t set;
    sigemptyset(&set);
    if (StopSignal() != 0) {
        sigaddset(&set, StopSignal());
    }
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

/// Locks a thread's endLock. A stop of the calling thread is delayed meanwhile: the lock would stay held.
class EndLockHolder {
public:
    explicit EndLockHolder(Thread& thread) : m_Thread(thread)
    {
        BeginStopDelay();
        pthread_mutex_lock(&m_Thread.endLock);
    }
    ~EndLockHolder()
    {
        pthread_mutex_unlock(&m_Thread.endLock);
        EndStopDelay();
    }
    EndLockHolder(const EndLockHolder&) = delete;
    EndLockHolder& operator=(const EndLockHolder&) = delete;

private:
    Thread& m_Thread;
};

// The signal handler of a stopped thread jumps back here, past all frames of the thread's function. The stop signal
// then stays blocked: the thread only has to end.
unsigned RunUnlessStopped(Thread& self)
{
    if (sigsetjmp(self.beforeFunction, 0) == 0) {
        self.isStoppable = true;
        if (!self.stopWanted) {
            const unsigned code = self.function(self.argument);
            self.isStoppable = false;
            return code;
        }
    }
    self.isStoppable = false;
    self.wasStopped = true;
    return self.stopCode;
}

/// Publishes the end of the calling thread, also when its function leaves by pthread_exit().
class Ending {
public:
    explicit Ending(Thread& self) : m_Self(self) {}
    ~Ending()
    {
        m_Self.isStoppable = false;
        {
            const EndLockHolder holder(m_Self);
            // A stopped thread may hang on a lock that it still holds, so it detaches itself: joining it could block.
            if (m_Self.isGivenBack || m_Self.wasStopped) {
                m_Self.isGivenBack = true;
                pthread_detach(pthread_self());
            }
            Change(m_Self.state, ENDED);
        }
        t_Self = nullptr;
        LetGo(m_Self);
    }
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

private:
    Thread& m_Self;
};

void* RunThread(void* parameter)
{
    Thread& self = *static_cast<Thread*>(parameter);
    t_Self = &self;
    AllowStopSignal();
    AwaitChange(self.state, HALTED, nullptr);
    if (self.name[0] != 0) {
        pthread_setname_np(pthread_self(), self.name);
    }
    const Ending ending(self);
    self.exitCode = RunUnlessStopped(self);
    return nullptr;
}

// Joins a thread that has ended, so that its stack is free and its code no longer runs. A running thread later detaches
// itself: in current C libraries, pthread_detach() may read the memory of a thread that ends at the same moment.
void GiveBack(Thread& thread)
{
    bool joins = false;
    {
        const EndLockHolder holder(thread);
        joins = !thread.isGivenBack && thread.state == ENDED;
        thread.isGivenBack = true;
    }
    if (joins) {
        pthread_join(thread.system, nullptr);
    }
}

/// The system's number of a new thread, without waiting for it to run. The C library only exposes it through the
/// thread's clock id, whose format is fixed by the kernel.
unsigned NumberOf(pthread_t thread)
{
    clockid_t clock;
    return pthread_getcpuclockid(thread, &clock) == 0 ? ~unsigned(clock >> 3) : 0;
}

timespec After(unsigned milliseconds)
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    const long nanoseconds = time.tv_nsec + long(milliseconds % 1000) * 1000000;
    time.tv_sec += time_t(milliseconds / 1000) + nanoseconds / 1000000000;
    time.tv_nsec = nanoseconds % 1000000000;
    return time;
}

}  // namespace

// On Linux, "process" 0 in these calls is the calling thread.
int RaiseThreadPriority()
{
    errno = 0;
    const int previous = getpriority(PRIO_PROCESS, 0);
    if (errno == 0) {
        setpriority(PRIO_PROCESS, 0, -20);
    }
    return previous;
}

void RestoreThreadPriority(int previous)
{
    setpriority(PRIO_PROCESS, 0, previous);
}

void YieldThread()
{
    sched_yield();
}

void SleepMilliseconds(unsigned milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void* NewThread(unsigned (*function)(void*), void* argument, unsigned& id)
{
    Thread* thread = new (std::nothrow) Thread(function, argument);
    if (thread == nullptr) {
        return nullptr;
    }
    StopSignal();  // reserves the signal no later than the first thread is created
    if (pthread_create(&thread->system, nullptr, RunThread, thread) != 0) {
        delete thread;
        return nullptr;
    }
    id = thread->id = NumberOf(thread->system);
    return thread;
}

void StartThread(void* thread)
{
    Change(static_cast<Thread*>(thread)->state, RUNNING);
}

// Only stores the name: the thread sets it itself, which is far cheaper than doing it from outside through a file.
// Never cuts a UTF-8 character in the middle.
void NameThread(void* thread, const char* name)
{
    char(&res)[16] = static_cast<Thread*>(thread)->name;
    size_t length = strnlen(name, sizeof(res));
    if (length == sizeof(res)) {
        for (--length; length != 0 && (name[length] & 0xC0) == 0x80;) {
            --length;
        }
    }
    memcpy(res, name, length);
}

// The main thread's nice value is the normal priority of the process.
void PrioritiseThread(void* thread, int priority)
{
    constexpr int kCritical = 15, kNiceSteps = 5, kIdle = 19, kHighest = -20;
    int nice = getpriority(PRIO_PROCESS, id_t(getpid())) - kNiceSteps * priority;
    if (priority == kCritical || priority == -kCritical) {
        nice = priority == kCritical ? kHighest : kIdle;
    }
    setpriority(PRIO_PROCESS, static_cast<Thread*>(thread)->id, nice);
}

ThreadWait WaitForThread(void* thread, unsigned timeoutMs)
{
    if (thread == nullptr) {
        return ThreadWait::FAILED;
    }
    const timespec end = After(timeoutMs);
    const timespec* until = timeoutMs != kWaitForEver ? &end : nullptr;
    if (thread == CallingThread()) {
        std::atomic<unsigned> never{RUNNING};
        AwaitChange(never, RUNNING, until);
        return ThreadWait::TIME_OVER;
    }
    Thread& awaited = *static_cast<Thread*>(thread);
    if (!AwaitChange(awaited.state, RUNNING, until)) {
        return ThreadWait::TIME_OVER;
    }
    GiveBack(awaited);
    return ThreadWait::ENDED;
}

bool ThreadExitCode(void* thread, unsigned& code)
{
    if (thread == nullptr) {
        return false;
    }
    // The exit code is stored before the state becomes ENDED.
    const bool runs = thread == CallingThread() || static_cast<Thread*>(thread)->state != ENDED;
    code = runs ? kThreadRuns : static_cast<Thread*>(thread)->exitCode.load();
    return true;
}

bool StopThread(void* thread, unsigned exitCode)
{
    if (thread == nullptr) {
        return false;
    }
    if (thread == CallingThread() || thread == t_Self) {
        if (t_Self != nullptr && t_StopDelays != 0) {
            t_Self->stopCode = exitCode;
            t_Self->stopWanted = true;
            t_StopWaits = 1;
            return true;
        }
        if (t_Self != nullptr) {
            StopSelf(*t_Self, exitCode);
        }
        for (;;) {
            syscall(SYS_exit, exitCode);  // a thread that this library did not create
        }
    }
    Thread& stopped = *static_cast<Thread*>(thread);
    const EndLockHolder holder(stopped);
    if (stopped.state == ENDED) {
        return true;
    }
    if (StopSignal() == 0) {
        return false;
    }
    stopped.stopCode = exitCode;
    stopped.stopWanted = true;
    return pthread_kill(stopped.system, StopSignal()) == 0;
}

void StopAfterDelays()
{
    t_StopWaits = 0;
    StopIfWanted();
}

void StopDelay::End()
{
    EndStopDelay();
}

bool StopDelay::BeginUnlessAlone()
{
    const bool othersRun = __libc_single_threaded == 0;
    if (othersRun) {
        BeginStopDelay();
    }
    return othersRun;
}

bool ThreadsOutliveExit()
{
    return __libc_single_threaded == 0;
}

void CloseThread(void* thread)
{
    if (thread != CallingThread()) {
        GiveBack(*static_cast<Thread*>(thread));
        LetGo(*static_cast<Thread*>(thread));
    }
}

void* CallingThread()
{
    static char s_Address;
    return &s_Address;
}

unsigned CallingThreadId()
{
    return unsigned(gettid());
}

}  // namespace zm
