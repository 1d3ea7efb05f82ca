#include "Kills/Process.h"

#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

Progress* g_Progress = nullptr;

namespace {

int (*g_Work)(int number) = nullptr;

std::intptr_t Checked(int failure, pid_t child)
{
    if (failure != 0) {
        puts("a process cannot be started");
        exit(2);
    }
    return child;
}

}  // namespace

Process Process::Run(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    pid_t child = -1;
    const int failure = posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
    return Process(Checked(failure, child));
}

// A copy is there much sooner than a program has started.
Process Process::StartWorker(int number)
{
    const pid_t child = fork();
    if (child == 0) {
        _exit(g_Work(number));
    }
    return Process(Checked(child < 0, child));
}

void Process::Kill() const
{
    kill(pid_t(m_Id), SIGKILL);
}

int Process::Wait() const
{
    int status = 0;
    waitpid(pid_t(m_Id), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
}

void PrepareWorkers(int, char**, int (*work)(int number))
{
    g_Work = work;
    void* const memory = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    g_Progress = static_cast<Progress*>(memory);
}
