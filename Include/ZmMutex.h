#pragma once

#include "ZmApi.h"

namespace zm {
class OwnMutexHolder;
}

/// A recursive lock: the thread that holds it may enter again, and leaves as many times as it
/// entered. The one lock of the library. Uncontended, entering and leaving stay in the process.
class ZmMutex {
public:
    ZM_API ZmMutex();

    /// Nobody may hold the mutex or wait for it.
    ZM_API ~ZmMutex();

    ZmMutex(const ZmMutex&) = delete;
    ZmMutex& operator=(const ZmMutex&) = delete;

    /// Waits until no other thread holds the mutex, and takes it. 1; or 0 at once where the mutex
    /// could not be made for want of memory and so protects nothing.
    ZM_API int EnterMutex();

    /// Gives back one EnterMutex() of the calling thread. 1, or 0 as above. A thread that does not
    /// hold the mutex must not call this.
    ZM_API int LeaveMutex();

    /// Takes the mutex if no other thread holds it. 1, or 0 if one does, or as above.
    ZM_API int TryEnterMutex();

    /// The names by which std::lock_guard, std::unique_lock and std::scoped_lock know the three.
    void lock() { EnterMutex(); }
    bool try_lock() { return TryEnterMutex() != 0; }
    void unlock() { LeaveMutex(); }

    /// `mutex++` enters, `mutex--` leaves.
    int operator++(int) { return EnterMutex(); }
    int operator--(int) { return LeaveMutex(); }

private:
    friend class zm::OwnMutexHolder;

    void* m_Lock;  ///< the operating system's lock, in a block of its own
};

/// Holds a mutex while it lives.
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
