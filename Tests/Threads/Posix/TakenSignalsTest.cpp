#include "Threads/SystemThread.h"
#include "ZmThread.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

// What holds for a whole process: the signal that stops threads is chosen when the first one is created.

namespace {

bool g_Right = true;

void Check(bool holds, const char* what)
{
    if (!holds) {
        fprintf(stderr, "wrong: %s\n", what);
        g_Right = false;
    }
}

unsigned int ReturnSeven(void* waits)
{
    while (*static_cast<std::atomic<bool>*>(waits)) {
        std::this_thread::yield();
    }
    return 7;
}

/// Creates a thread and terminates it. Returns the answer; without success the thread ends by itself.
int Terminate()
{
    std::atomic<bool> waits{true};
    ZmThread thread;
    unsigned int code = 7;
    Check(thread.CreateThread(ReturnSeven, &waits) == 1, "a thread needs no signal");
    const int res = thread.Terminate(&code);
    waits = false;
    Check(thread.Wait(&code, 0) == ZmThread::CODE_SUCCESS && code == 7, "it ends");
    thread.Close();
    return res;
}

void InProcess(void (*check)())
{
    const pid_t child = fork();
    if (child == 0) {
        check();
        exit(g_Right ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    g_Right = g_Right && status == 0;
}

void UseIgnoredSignal()
{
    signal(SIGRTMAX, SIG_IGN);
    Check(Terminate() == 1, "a signal that is ignored is not taken");
}

void UseTakenSignals()
{
    for (int number = SIGRTMIN; number <= SIGRTMAX; ++number) {
        signal(number, [](int) {});
    }
    Check(Terminate() == 0, "no signal is left to stop it");
}

// The sanitizers would wait for ever for a thread that ends without the C library.
void UseMainThread()
{
    ZmThread* main = ZmThread::GetCurrentZmThread();
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    bool isBehind = false;
    std::thread([&] {
        const unsigned int code = 7;
        main->Terminate(&code);
        isBehind = true;
    }).join();
    Check(!isBehind, "the main thread's object stands for the thread that calls, whoever made it");
#endif
    main->Close();
    Check(main->GetHandle() == nullptr && !main->IsCreated(), "the main thread's object can be closed");
}

}  // namespace

int main()
{
    if (!SystemStopsThreads()) {
        puts("the system does not deliver the last real-time signal");
        return 77;
    }
    InProcess(UseIgnoredSignal);
    InProcess(UseTakenSignals);
    InProcess(UseMainThread);
    return g_Right ? 0 : 1;
}
