#pragma once

#include "ZmApi.h"

namespace zm {
class OwnMutexHolder;
}

/// Recursive lock: the thread that holds it may enter again and must leave as often as it entered. This is the only
/// lock type of the library. Uncontended, entering and leaving need no system call.
class ZmMutex {
public:
    ZM_API ZmMutex();

    /// The mutex must not be held or waited for.
    ZM_API ~ZmMutex();

    ZmMutex(const ZmMutex&) = delete;
    ZmMutex& operator=(const ZmMutex&) = delete;

    /// Waits until no other thread holds the mutex and acquires it. Returns 1, or 0 at once if the mutex could not be
    /// created because memory ran out; it then protects nothing.
    ZM_API int EnterMutex();

    /// Releases one EnterMutex() of the calling thread, which must hold the mutex. Returns 1, or 0 as above.
    ZM_API int LeaveMutex();

    /// Acquires the mutex if no other thread holds it. Returns 1, or 0 if another thread holds it, or as above.
    ZM_API int TryEnterMutex();

    /// The same three for std::lock_guard, std::unique_lock and std::scoped_lock.
    void lock() { EnterMutex(); }
    bool try_lock() { return TryEnterMutex() != 0; }
    void unlock() { LeaveMutex(); }

    /// `mutex++` enters, `mutex--` leaves.
    int operator++(int) { return EnterMutex(); }
    int operator--(int) { return LeaveMutex(); }

private:
    friend class zm::OwnMutexHolder;

    void* m_Lock;  ///< the operating system's lock, in a separate block
};

/// Holds a mutex for the lifetime of the object.
class ZmMutexHolder {
public:
    /// Waits for the mutex.
    explicit ZmMutexHolder(ZmMutex& mutex) : m_Mutex(mutex) { m_Mutex.EnterMutex(); }
    ~ZmMutexHolder() { m_Mutex.LeaveMutex(); }
    ZmMutexHolder(const ZmMutexHolder&) = delete;
    ZmMutexHolder& operator=(const ZmMutexHolder&) = delete;

private:
    ZmMutex& m_Mutex;
};
