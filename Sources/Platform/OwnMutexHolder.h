#pragma once

#include "Platform/OsMutex.h"
#include "ZmMutex.h"

namespace zm {

/// Holds a mutex of the library's own while it lives. A thread that is terminated meanwhile goes on until it has left
/// it, or all others would wait for ever.
class OwnMutexHolder {
public:
    explicit OwnMutexHolder(ZmMutex& mutex) : m_Mutex(mutex) { Enter(m_Mutex); }
    ~OwnMutexHolder() { Leave(m_Mutex); }
    OwnMutexHolder(const OwnMutexHolder&) = delete;
    OwnMutexHolder& operator=(const OwnMutexHolder&) = delete;

    /// For a span that is no block.
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
