#include "Platform/OsThread.h"

#include <new>
#include <string.h>
#include <windows.h>

namespace zm {

namespace {

struct Start {
    unsigned (*function)(void*);
    void* argument;
};

constexpr int kMaxThreadName = 255;

/// Converts a name from a code page; a name that is too long is cut.
bool ToWide(const char* name, UINT codePage, DWORD flags, wchar_t (&res)[kMaxThreadName + 1])
{
    const int bytes = int(strnlen(name, kMaxThreadName));
    const int length = MultiByteToWideChar(codePage, flags, name, bytes, res, kMaxThreadName);
    res[length] = 0;
    return length != 0;
}

// Adapts the calling convention: the system's differs from the compiler's default.
DWORD WINAPI RunStart(void* parameter)
{
    Start* start = static_cast<Start*>(parameter);
    const Start copy = *start;
    delete start;
    return copy.function(copy.argument);
}

}  // namespace

int RaiseThreadPriority()
{
    const int previous = GetThreadPriority(GetCurrentThread());
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL);
    return previous;
}

void RestoreThreadPriority(int previous)
{
    if (previous != THREAD_PRIORITY_ERROR_RETURN) {
        SetThreadPriority(GetCurrentThread(), previous);
    }
}

void YieldThread()
{
    SwitchToThread();
}

void SleepMilliseconds(unsigned milliseconds)
{
    Sleep(milliseconds);
}

void* NewThread(unsigned (*function)(void*), void* argument, unsigned& id)
{
    Start* start = new (std::nothrow) Start{function, argument};
    if (start == nullptr) {
        return nullptr;
    }
    DWORD number = 0;
    HANDLE thread = CreateThread(nullptr, 0, RunStart, start, CREATE_SUSPENDED, &number);
    if (thread == nullptr) {
        delete start;
        return nullptr;
    }
    id = number;
    return thread;
}

void StartThread(void* thread)
{
    ResumeThread(thread);
}

// SetThreadDescription() is looked up at run time: older supported systems lack it.
void NameThread(void* thread, const char* name)
{
    typedef HRESULT(WINAPI * Function)(HANDLE, const wchar_t*);
    const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "SetThreadDescription");
    wchar_t description[kMaxThreadName + 1];
    if (found != nullptr &&
        (ToWide(name, CP_UTF8, MB_ERR_INVALID_CHARS, description) || ToWide(name, CP_ACP, 0, description))) {
        reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found))(thread, description);
    }
}

void PrioritiseThread(void* thread, int priority)
{
    SetThreadPriority(thread, priority);
}

ThreadWait WaitForThread(void* thread, unsigned timeoutMs)
{
    switch (WaitForSingleObject(thread, timeoutMs)) {
    case WAIT_OBJECT_0: return ThreadWait::ENDED;
    case WAIT_TIMEOUT: return ThreadWait::TIME_OVER;
    default: return ThreadWait::FAILED;
    }
}

bool ThreadExitCode(void* thread, unsigned& code)
{
    DWORD value;
    if (!GetExitCodeThread(thread, &value)) {
        return false;
    }
    code = value;
    return true;
}

// Checks first whether the thread has ended: Wine would replace its exit code.
bool StopThread(void* thread, unsigned exitCode)
{
    if (WaitForSingleObject(thread, 0) == WAIT_OBJECT_0) {
        return true;
    }
    return TerminateThread(thread, exitCode) != 0;
}

void StopDelay::End() {}

bool StopDelay::BeginUnlessAlone()
{
    return true;  // the system does not say whether there are other threads
}

// The system ends them first.
bool ThreadsOutliveExit()
{
    return false;
}

void CloseThread(void* thread)
{
    CloseHandle(thread);
}

void* CallingThread()
{
    return GetCurrentThread();
}

unsigned CallingThreadId()
{
    return GetCurrentThreadId();
}

}  // namespace zm
