#include "Platform/OsThread.h"

#include <errno.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/single_threaded.h>
#include <time.h>

namespace zm {

// On Linux the "process" 0 of these calls is the calling thread.
int RaiseThreadPriority()
{
    errno = 0;
    const int previous = getpriority(PRIO_PROCESS, 0);
    if (errno == 0) {
        setpriority(PRIO_PROCESS, 0, -20);
    }
    return previous;
}

void RestoreThreadPriority(int previous)
{
    setpriority(PRIO_PROCESS, 0, previous);
}

bool IsOnlyThread()
{
    return __libc_single_threaded != 0;
}

void YieldThread()
{
    sched_yield();
}

void SleepMilliseconds(unsigned milliseconds)
{
    timespec rest = {time_t(milliseconds / 1000), long(milliseconds % 1000) * 1000000};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

}  // namespace zm
