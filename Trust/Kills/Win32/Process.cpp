#include "Kills/Process.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

Progress* g_Progress = nullptr;

namespace {

constexpr char kWorker[] = "--worker";
constexpr UINT kKilledCode = 0x4B494C4C;  // no program exits with it

std::string g_MemoryName;

HANDLE HandleOf(std::intptr_t id)
{
    return reinterpret_cast<HANDLE>(id);
}

void ShareProgress()
{
    const HANDLE memory =
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Progress), g_MemoryName.c_str());
    g_Progress = static_cast<Progress*>(MapViewOfFile(memory, FILE_MAP_WRITE, 0, 0, 0));
    if (g_Progress == nullptr) {
        puts("memory cannot be shared");
        exit(2);
    }
}

bool Start(std::string& line, PROCESS_INFORMATION& res)
{
    STARTUPINFOA start = {};
    start.cb = sizeof(start);
    return CreateProcessA(nullptr, &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &res) != 0;
}

}  // namespace

Process Process::Run(const std::vector<std::string>& command)
{
    std::string line;
    for (const std::string& argument : command) {
        line += '"' + argument + "\" ";
    }
    PROCESS_INFORMATION process;
    // Wine now and then fails so after others have been killed, and succeeds a moment later.
    constexpr int kMostTries = 20;
    for (int tries = 1; !Start(line, process); ++tries) {
        if (GetLastError() != ERROR_INTERNAL_ERROR || tries == kMostTries) {
            printf("%s cannot be started: error %lu\n", command[0].c_str(), GetLastError());
            exit(2);
        }
        Sleep(100);
    }
    CloseHandle(process.hThread);
    return Process(reinterpret_cast<std::intptr_t>(process.hProcess));
}

Process Process::StartWorker(int number)
{
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof(program));
    return Run({program, kWorker, g_MemoryName, std::to_string(number)});
}

void Process::Kill() const
{
    TerminateProcess(HandleOf(m_Id), kKilledCode);
}

int Process::Wait() const
{
    WaitForSingleObject(HandleOf(m_Id), INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(HandleOf(m_Id), &code);
    CloseHandle(HandleOf(m_Id));
    return code == kKilledCode ? kKilled : int(code);
}

void PrepareWorkers(int argc, char** argv, int (*work)(int number))
{
    const bool isWorker = argc == 4 && strcmp(argv[1], kWorker) == 0;
    g_MemoryName = isWorker ? argv[2] : "ZmKills-" + std::to_string(GetCurrentProcessId());
    ShareProgress();
    if (isWorker) {
        exit(work(atoi(argv[3])));
    }
}
