#include "ZmThread.h"

#include "Platform/OsThread.h"
#include "Platform/OwnMutexHolder.h"
#include "Threads/ThreadStart.h"
#include "XHashTable.h"

#include <iterator>
#include <new>

namespace {

enum Flag : uint32_t {
    MAIN = 1,
    CREATED = 2,
    STARTED = 4,
    JOINABLE = 8
};

/// System priorities by ZmThread::Priority.
constexpr int kSystemPriorities[] = {0, 1, -1, 2, -2, -15, 15};

struct HandleHash {
    uint32_t operator()(void* handle) const { return uint32_t(reinterpret_cast<uintptr_t>(handle) >> 8); }
};

/// Thread objects by handle. Close() does not remove the entry of its handle. If the system reuses the handle, the
/// entry is replaced; until then it may point to an object that no longer exists. So only the entry of the main thread,
/// whose handle is never reused, is dereferenced.
struct Registry {
    ZmMutex mutex;
    XHashTable<ZmThread*, void*, HandleHash> threads;

    void Enter(void* handle, ZmThread* thread)
    {
        const auto entry = threads.Insert(handle, thread);
        if (entry.position != threads.End()) {
            entry.position->value = thread;
        }
    }
};

Registry* g_Registry = nullptr;
ZmThread* g_MainThread = nullptr;

uint32_t Load(const uint32_t& flags)
{
    return __atomic_load_n(&flags, __ATOMIC_ACQUIRE);
}

void Store(uint32_t& flags, uint32_t value)
{
    __atomic_store_n(&flags, value, __ATOMIC_RELEASE);
}

void Add(uint32_t& flags, Flag flag)
{
    __atomic_fetch_or(&flags, flag, __ATOMIC_ACQ_REL);
}

}  // namespace

void ZmThreadStart::WrapMainThread()
{
    g_Registry = new (std::nothrow) Registry;
    g_MainThread = new (std::nothrow) ZmThread;
    if (g_Registry == nullptr || g_MainThread == nullptr) {
        return;
    }
    g_MainThread->m_Name = "QRNMAINTHREAD";
    g_MainThread->m_Handle = zm::CallingThread();
    g_MainThread->m_Id = zm::CallingThreadId();
    g_MainThread->m_Flags = MAIN | CREATED;
    g_Registry->Enter(g_MainThread->m_Handle, g_MainThread);
}

void ZmThreadStart::ForgetMainThread()
{
    if (zm::ThreadsOutliveExit()) {
        return;
    }
    // Clears the registry first: a thread that was killed at process exit may hold its lock.
    Registry* registry = g_Registry;
    g_Registry = nullptr;
    delete g_MainThread;
    g_MainThread = nullptr;
    delete registry;
}

unsigned int ZmThreadStart::Run(void* thread)
{
    if (thread == nullptr) {
        return ZmThread::CODE_NO_THREAD;
    }
    ZmThread& self = *static_cast<ZmThread*>(thread);
    Add(self.m_Flags, STARTED);
    const unsigned int code = self.m_Function != nullptr ? self.m_Function(self.m_Argument) : self.Run();
    Store(self.m_Flags, 0);
    return code;
}

ZmThread::ZmThread()
    : m_Handle(nullptr), m_Id(0), m_Flags(JOINABLE), m_Priority(PRIORITY_NORMAL), m_Function(nullptr),
      m_Argument(nullptr)
{
}

ZmThread::~ZmThread()
{
    if (g_Registry != nullptr && m_Handle != nullptr) {
        const zm::OwnMutexHolder holder(g_Registry->mutex);
        g_Registry->threads.Remove(m_Handle);
    }
}

unsigned int ZmThread::Run()
{
    return CODE_SUCCESS;
}

// Releases the thread only after all members are set, so that it finds its own name and number. After that the object
// may already be gone.
int ZmThread::CreateThread(Function function, void* argument)
{
    if (IsCreated()) {
        return 1;
    }
    m_Function = function;
    m_Argument = argument;
    unsigned int id = 0;
    void* handle = zm::NewThread(ZmThreadStart::Run, this, id);
    m_Handle = handle;
    m_Id = id;
    if (handle == nullptr) {
        return 0;
    }
    if (m_Name.IsEmpty()) {
        m_Name.Format("THREAD_%llu", static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(handle)));
    }
    if (g_Registry != nullptr) {
        const zm::OwnMutexHolder holder(g_Registry->mutex);
        g_Registry->Enter(handle, this);
    }
    if (m_Priority < std::size(kSystemPriorities)) {
        zm::PrioritiseThread(handle, kSystemPriorities[m_Priority]);
    }
    zm::NameThread(handle, m_Name.Text());
    Add(m_Flags, CREATED);
    zm::StartThread(handle);
    return 1;
}

int ZmThread::Wait(unsigned int* exitCode, unsigned int timeout)
{
    switch (zm::WaitForThread(m_Handle, timeout != 0 ? timeout : zm::kWaitForEver)) {
    case zm::ThreadWait::TIME_OVER: return CODE_TIMEOUT;
    case zm::ThreadWait::FAILED: return CODE_WAIT_FAILED;
    case zm::ThreadWait::ENDED: break;
    }
    return exitCode == nullptr || GetExitCode(*exitCode) ? CODE_SUCCESS : CODE_NO_EXIT_CODE;
}

int ZmThread::GetExitCode(unsigned int& code)
{
    if (!zm::ThreadExitCode(m_Handle, code)) {
        return 0;
    }
    if (code == zm::kThreadRuns) {
        code = CODE_RUNNING;
    }
    return 1;
}

int ZmThread::Terminate(const unsigned int* exitCode)
{
    return zm::StopThread(m_Handle, exitCode != nullptr ? *exitCode : 0);
}

// Keeps the function and the argument: a thread that has just been released may not have read them yet.
void ZmThread::Close()
{
    if (m_Handle != nullptr) {
        zm::CloseThread(m_Handle);
    }
    m_Handle = nullptr;
    m_Id = 0;
    m_Priority = PRIORITY_NORMAL;
    Store(m_Flags, 0);
}

void ZmThread::SetName(const char* name)
{
    if (!IsCreated()) {
        m_Name = name;
    }
}

void ZmThread::SetPriority(unsigned int priority)
{
    if (!IsCreated()) {
        m_Priority = priority;
    }
}

int ZmThread::IsMainThread() const
{
    return int(Load(m_Flags) & MAIN);
}

int ZmThread::IsCreated() const
{
    return int(Load(m_Flags) & CREATED);
}

int ZmThread::IsStarted() const
{
    return int(Load(m_Flags) & STARTED);
}

int ZmThread::IsJoinable() const
{
    return int(Load(m_Flags) & JOINABLE);
}

// CallingThread() is one value for all threads, so this always finds the main thread's object. Callers depend on it
// (ZmThreadTest, EveryThreadGetsTheMainThread).
ZmThread* ZmThread::GetCurrentZmThread()
{
    if (g_Registry == nullptr) {
        return nullptr;
    }
    const zm::OwnMutexHolder holder(g_Registry->mutex);
    ZmThread* const* thread = g_Registry->threads.LookUp(zm::CallingThread());
    return thread != nullptr ? *thread : nullptr;
}

unsigned int ZmThread::GetCurrentZmThreadId()
{
    return zm::CallingThreadId();
}
