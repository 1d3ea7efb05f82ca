#pragma once

#include <errno.h>
#include <stdint.h>
#include <sys/file.h>

namespace zm {

// A handle is the descriptor plus one, so that descriptor 0 is not null.
inline void* HandleOf(int file)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): never dereferenced
    return reinterpret_cast<void*>(intptr_t(file) + 1);
}

inline int FileOf(void* handle)
{
    return int(reinterpret_cast<intptr_t>(handle) - 1);
}

/// Makes a system call, again if a signal of the program interrupts it. Not for close(): even when interrupted it has
/// closed the file, and the number may be another thread's by then.
template <class Call>
int Repeated(Call call)
{
    int result;
    do {
        result = call();
    } while (result == -1 && errno == EINTR);
    return result;
}

/// Waits for the file's lock, which lasts until the file is closed. Each opening has its own, so that threads exclude
/// each other as well. Returns false where locks do not work.
inline bool LockFile(int file)
{
    return Repeated([&] { return flock(file, LOCK_EX); }) == 0;
}

}  // namespace zm
