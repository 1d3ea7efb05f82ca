#include "Platform/OsThread.h"

#include <windows.h>

namespace zm {

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

bool IsOnlyThread()
{
    return false;  // the system does not tell
}

void YieldThread()
{
    SwitchToThread();
}

void SleepMilliseconds(unsigned milliseconds)
{
    Sleep(milliseconds);
}

}  // namespace zm
