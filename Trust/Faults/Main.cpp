// Runs each scenario again and again, each time in a process of its own in which another call fails: the first one, the
// second one, and so on until the scenario ends before the fault. Nothing may crash, hang, throw, leak or lie.
//
//     ZmFaults [--every N] [name]    every N-th call only; scenarios whose names contain the text

#include "Injection.h"
#include "Scenarios.h"
#include "ZmLog.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <map>
#include <string>

namespace fs = std::filesystem;

namespace {

/// How a process ends.
enum Outcome {
    FIRED = 0,
    NOT_FIRED = 1,
    WRONG = 2,
    WRONG_WITHOUT_FAULT = 3,
    NO_FILTER = 77
};

constexpr unsigned kMostSeconds = 20;

size_t OpenFiles()
{
    return size_t(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

int Wrong(const char* what, bool fired = true)
{
    fprintf(stderr, "%s; ", what);
    return fired ? WRONG : WRONG_WITHOUT_FAULT;
}

bool LeftNewFile()
{
    for (const auto& entry : fs::directory_iterator(".")) {
        if (entry.path().extension() == ".tmp") {
            return true;
        }
    }
    return false;
}

int RunOnce(const Scenario& scenario, const FaultKind& kind, unsigned count, bool stays)
{
    ZmLog::GetLog().UnregisterListener("ZmMath");
    ZmLog::GetLog().UnregisterListener("OUTPUTDEBUG LISTENER");
    scenario.prepare();
    if (!InstallInjection()) {
        return NO_FILTER;
    }
    const size_t filesBefore = OpenFiles();
    const long blocksBefore = LiveBlocks();
    int result = 0;
    unsigned faults = 0;
    ArmFault(kind, count, stays);
    try {
        result = scenario.run();
        faults = DisarmFaults();
    } catch (const std::exception& exception) {
        DisarmFaults();
        return Wrong(exception.what());
    }
    // What the library keeps for its next use has been allocated by then.
    const long kept = LiveBlocks() - blocksBefore;
    if (kept > 40) {
        return Wrong(("blocks kept: " + std::to_string(kept)).c_str(), faults != 0);
    }
    if (OpenFiles() > filesBefore) {
        return Wrong("a file stayed open");
    }
    const bool mayLeave = strcmp(kind.name, "unlink") == 0;
    if (!mayLeave && LeftNewFile()) {
        return Wrong("a new file was left behind", faults != 0);
    }
    if (const char* wrong = scenario.check(result)) {
        return Wrong((std::string(wrong) + ", answer " + std::to_string(result)).c_str(), faults != 0);
    }
    return faults != 0 ? FIRED : NOT_FIRED;
}

int RunInProcess(const Scenario& scenario, const FaultKind& kind, unsigned count, bool stays)
{
    const fs::path folder = fs::temp_directory_path() / ("ZmFaults-" + std::to_string(getpid()));
    fs::create_directory(folder);
    const pid_t child = fork();
    if (child == 0) {
        alarm(kMostSeconds);
        fs::current_path(folder);
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        setenv("TMPDIR", folder.c_str(), 1);
        _exit(RunOnce(scenario, kind, count, stays));
    }
    int status = 0;
    waitpid(child, &status, 0);
    fs::remove_all(folder);
    if (WIFSIGNALED(status)) {
        return Wrong((std::string("signal ") + strsignal(WTERMSIG(status))).c_str());
    }
    return WEXITSTATUS(status);
}

struct Totals {
    unsigned faults = 0, wrong = 0;
};

void RunAll(const Scenario& scenario, unsigned every, Totals& totals)
{
    for (size_t i = 0; i < kFaultKindCount; ++i) {
        const FaultKind& kind = kFaultKinds[i];
        for (const bool stays : {false, true}) {
            for (unsigned count = 1;; count += every) {
                const int outcome = RunInProcess(scenario, kind, count, stays);
                if (outcome == NOT_FIRED) {
                    break;
                }
                if (outcome == NO_FILTER) {
                    puts("skipped: the system filters no calls");
                    exit(NO_FILTER);
                }
                totals.faults += outcome != WRONG_WITHOUT_FAULT;
                if (outcome != FIRED) {
                    totals.wrong += 1;
                    fprintf(stderr, "%s: %s number %u%s\n", scenario.name, kind.name, count, stays ? " and on" : "");
                }
                if (outcome == WRONG_WITHOUT_FAULT) {
                    return;
                }
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    unsigned every = 1;
    const char* name = "";
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--every") == 0 && i + 1 < argc) {
            every = unsigned(atoi(argv[++i]));
        } else {
            name = argv[i];
        }
    }
    Totals totals;
    unsigned scenarios = 0;
    for (const std::vector<Scenario>* table : {&kArchiveScenarios, &kFileScenarios, &kConfigurationScenarios,
                                               &kLogScenarios, &kMemoryScenarios, &kSystemScenarios}) {
        for (const Scenario& scenario : *table) {
            if (strstr(scenario.name, name) != nullptr) {
                scenarios += 1;
                RunAll(scenario, every, totals);
            }
        }
    }
    printf("%u scenarios, %u faults, %u wrong\n", scenarios, totals.faults, totals.wrong);
    return totals.wrong != 0;
}
