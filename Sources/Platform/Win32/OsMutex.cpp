#include "Platform/OsMutex.h"

#include <stdlib.h>
#include <windows.h>

namespace zm {

void* NewLock()
{
    CRITICAL_SECTION* lock = static_cast<CRITICAL_SECTION*>(malloc(sizeof(CRITICAL_SECTION)));
    if (lock != nullptr) {
        InitializeCriticalSection(lock);
    }
    return lock;
}

void DeleteLock(void* lock)
{
    if (lock != nullptr) {
        DeleteCriticalSection(static_cast<CRITICAL_SECTION*>(lock));
        free(lock);
    }
}

void EnterLock(void* lock)
{
    EnterCriticalSection(static_cast<CRITICAL_SECTION*>(lock));
}

bool TryEnterLock(void* lock)
{
    return TryEnterCriticalSection(static_cast<CRITICAL_SECTION*>(lock)) != 0;
}

void LeaveLock(void* lock)
{
    LeaveCriticalSection(static_cast<CRITICAL_SECTION*>(lock));
}

// TerminateThread() cannot be delayed, so this is the same.
void EnterOwnLock(void* lock)
{
    EnterLock(lock);
}

void LeaveOwnLock(void* lock)
{
    LeaveLock(lock);
}

}  // namespace zm
