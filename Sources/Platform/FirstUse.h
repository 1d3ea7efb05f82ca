#pragma once

#include "Platform/OsThread.h"

#include <atomic>
#include <new>

namespace zm {

/// A process-wide object that its first user constructs while other threads wait. For static storage, where it needs no
/// initialiser. Never destroys the object: if that is needed, `make` registers it with atexit().
///
/// A local static would do the same, but its guard makes the Windows run time allocate memory and handles per thread,
/// which leak when a program unloads the DLL.
template <class T>
class FirstUse {
public:
    constexpr FirstUse() = default;

    /// `make` constructs the object in the given memory. It must not call Get() of this object.
    T& Get(void (*make)(void* memory))
    {
        if (m_State.load(std::memory_order_acquire) != MADE) {
            Make(make);
        }
        return *std::launder(reinterpret_cast<T*>(m_Memory));
    }

private:
    enum State {
        NEW,
        BEGUN,
        MADE
    };

    __attribute__((cold, noinline)) void Make(void (*make)(void*))
    {
        const StopDelay delay;
        State expected = NEW;
        if (m_State.compare_exchange_strong(expected, BEGUN, std::memory_order_acquire)) {
            make(m_Memory);
            m_State.store(MADE, std::memory_order_release);
        }
        while (m_State.load(std::memory_order_acquire) != MADE) {
            YieldThread();
        }
    }

    std::atomic<State> m_State{NEW};
    alignas(T) unsigned char m_Memory[sizeof(T)] = {};
};

}  // namespace zm
