#include "Platform/OsFault.h"

#include <pthread.h>
#include <setjmp.h>
#include <signal.h>

namespace zm {
namespace {

constexpr int kSignals[] = {SIGILL, SIGSEGV, SIGFPE, SIGBUS};
constexpr int kSignalCount = sizeof(kSignals) / sizeof(kSignals[0]);

sigjmp_buf g_Recovery;
pthread_t g_Guarded;
struct sigaction g_Previous[kSignalCount];

void RestoreHandlers()
{
    for (int i = 0; i < kSignalCount; ++i) {
        sigaction(kSignals[i], &g_Previous[i], nullptr);
    }
}

void OnFault(int)
{
    if (pthread_equal(g_Guarded, pthread_self())) {
        siglongjmp(g_Recovery, 1);
    }
    // A fault of another thread: returning repeats it under the original handlers.
    RestoreHandlers();
}

}  // namespace

bool RunCatchingFaults(void (*work)(void*), void* argument)
{
    g_Guarded = pthread_self();
    if (sigsetjmp(g_Recovery, 1) != 0) {
        RestoreHandlers();
        return false;
    }
    struct sigaction action = {};
    action.sa_handler = OnFault;
    sigemptyset(&action.sa_mask);
    for (int i = 0; i < kSignalCount; ++i) {
        sigaction(kSignals[i], &action, &g_Previous[i]);
    }
    work(argument);
    RestoreHandlers();
    return true;
}

}  // namespace zm
