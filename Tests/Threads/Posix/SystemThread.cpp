#include "Threads/SystemThread.h"

#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>

int SystemPriority()
{
    return getpriority(PRIO_PROCESS, 0);
}

std::string SystemThreadName()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof(name));
    return name;
}

bool SystemStopsThreads()
{
    sigset_t last, before;
    sigemptyset(&last);
    sigaddset(&last, SIGRTMAX);
    pthread_sigmask(SIG_BLOCK, &last, &before);
    const bool delivered = pthread_kill(pthread_self(), SIGRTMAX) == 0 && sigwaitinfo(&last, nullptr) == SIGRTMAX;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return delivered;
}
