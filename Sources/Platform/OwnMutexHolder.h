#pragma once

#include "Platform/OsMutex.h"
#include "ZmMutex.h"

namespace zm {

/// Locks a mutex of the library itself while it lives. If the thread is terminated meanwhile, it first leaves the
/// mutex; otherwise all others would wait for ever.
class OwnMutexHolder {
public:
    explicit OwnMutexHolder(ZmMutex& mutex) : m_Mutex(mutex) { Enter(m_Mutex); }
    ~OwnMutexHolder() { Leave(m_Mutex); }
    OwnMutexHolder(const OwnMutexHolder&) = delete;
    OwnMutexHolder& operator=(const OwnMutexHolder&) = delete;

    /// For regions that are not a scope.
    /// @{
    static void Enter(ZmMutex& mutex)
    {
        if (mutex.m_Lock != nullptr) {
            EnterOwnLock(mutex.m_Lock);
        }
    }
    static void Leave(ZmMutex& mutex)
    {
        if (mutex.m_Lock != nullptr) {
            LeaveOwnLock(mutex.m_Lock);
        }
    }
    /// @}

private:
    ZmMutex& m_Mutex;
};

}  // namespace zm
