#include "Platform/OsMutex.h"

#include "Platform/Posix/StopDelays.h"

#include <pthread.h>
#include <stdlib.h>

namespace zm {

void* NewLock()
{
    pthread_mutex_t* lock = static_cast<pthread_mutex_t*>(malloc(sizeof(pthread_mutex_t)));
    if (lock == nullptr) {
        return nullptr;
    }
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(lock, &recursive);
    pthread_mutexattr_destroy(&recursive);
    return lock;
}

void DeleteLock(void* lock)
{
    if (lock != nullptr) {
        pthread_mutex_destroy(static_cast<pthread_mutex_t*>(lock));
        free(lock);
    }
}

void EnterLock(void* lock)
{
    pthread_mutex_lock(static_cast<pthread_mutex_t*>(lock));
}

bool TryEnterLock(void* lock)
{
    return pthread_mutex_trylock(static_cast<pthread_mutex_t*>(lock)) == 0;
}

void LeaveLock(void* lock)
{
    pthread_mutex_unlock(static_cast<pthread_mutex_t*>(lock));
}

void EnterOwnLock(void* lock)
{
    BeginStopDelay();
    EnterLock(lock);
}

void LeaveOwnLock(void* lock)
{
    LeaveLock(lock);
    EndStopDelay();
}

}  // namespace zm
