// Runs each scenario again and again, each time in a process of its own in which another call fails: every single call
// once in each way that it can fail, also together with all later calls of its kind or with the next one of another
// kind. Nothing may crash, hang, throw, leak or lie.
//
//     ZmFaults [--every N] [--from K] [name]    every N-th fault only, from K (0) on; scenarios whose names contain the
//                                               text

#include "Injection.h"
#include "Scenarios.h"
#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

/// How a process ends.
enum Outcome {
    FIRED = 0,
    NOT_FIRED = 1,
    WRONG = 2,
    NO_FILTER = 77
};

constexpr unsigned kMostSeconds = 20;

/// What a scenario does without faults; shared with its process, which fills it in.
struct Course {
    int result;
    unsigned calls[kMostFaultKinds];
};

std::string TextOf(const Fault& fault)
{
    return fault.kind == nullptr
               ? "no fault"
               : fault.kind->name + (" number " + std::to_string(fault.number)) + (fault.stays ? " and on" : "") +
                     (fault.next != nullptr ? std::string(", then ") + fault.next->name : "");
}

bool IsOf(const FaultKind* kind, const char* group)
{
    return kind != nullptr && strncmp(kind->name, group, strlen(group)) == 0;
}

size_t OpenFiles()
{
    return size_t(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
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

/// Runs the scenario under the fault. Returns what is wrong, or an empty text.
std::string Run(const Scenario& scenario, const Fault& fault, Course& course, unsigned& faults)
{
    const size_t filesBefore = OpenFiles();
    const long blocksBefore = LiveBlocks();
    int result = 0;
    ArmFault(fault);
    try {
        result = scenario.run();
        faults = DisarmFaults();
    } catch (const std::exception& exception) {
        DisarmFaults();
        return exception.what();
    }
    // What the library keeps for its next use has been allocated by then.
    const long kept = LiveBlocks() - blocksBefore;
    if (kept > 40) {
        return "blocks kept: " + std::to_string(kept);
    }
    if (OpenFiles() > filesBefore) {
        return "a file stayed open";
    }
    const bool mayLeave = IsOf(fault.kind, "unlink") || IsOf(fault.next, "unlink");
    if (!mayLeave && LeftNewFile()) {
        return "a new file was left behind";
    }
    if (const char* wrong = scenario.check(result)) {
        return std::string(wrong) + ", answer " + std::to_string(result);
    }
    if (fault.kind == nullptr) {
        course.result = result;
        for (size_t i = 0; i < kFaultKinds.size(); ++i) {
            course.calls[i] = CallsOf(kFaultKinds[i]);
        }
    } else if (fault.kind->effect == FaultKind::DOES_NO_HARM && result != course.result) {
        return "a call that does no harm taken for a failure, answer " + std::to_string(result);
    }
    return "";
}

int RunOnce(const Scenario& scenario, const Fault& fault, Course& course)
{
    SilenceLog();
    scenario.prepare();
    if (!InstallInjection()) {
        return NO_FILTER;
    }
    unsigned faults = 0;
    const std::string wrong = Run(scenario, fault, course, faults);
    if (!wrong.empty()) {
        fprintf(stderr, "%s: %s: %s\n", scenario.name, TextOf(fault).c_str(), wrong.c_str());
        return WRONG;
    }
    return faults >= (fault.next != nullptr ? 2 : 1) ? FIRED : NOT_FIRED;
}

/// The folder is made for the process and removed after it.
int RunInProcess(const Scenario& scenario, const Fault& fault, const std::string& folder, Course& course)
{
    fs::create_directory(folder);
    const pid_t child = fork();
    if (child == 0) {
        alarm(kMostSeconds);
        fs::current_path(folder);
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        setenv("TMPDIR", folder.c_str(), 1);
        exit(RunOnce(scenario, fault, course));
    }
    int status = 0;
    waitpid(child, &status, 0);
    fs::remove_all(folder);
    if (WIFSIGNALED(status)) {
        fprintf(stderr, "%s: %s: %s\n", scenario.name, TextOf(fault).c_str(), strsignal(WTERMSIG(status)));
        return WRONG;
    }
    return WEXITSTATUS(status);
}

/// The kinds of which a fault may be the second one: what the scenario calls, and the removal of files when it fails.
std::vector<const FaultKind*> Followers(const Course& course)
{
    std::vector<const FaultKind*> res;
    for (size_t i = 0; i < kFaultKinds.size(); ++i) {
        if (kFaultKinds[i].isTypical && (course.calls[i] != 0 || IsOf(&kFaultKinds[i], "unlink"))) {
            res.push_back(&kFaultKinds[i]);
        }
    }
    return res;
}

/// Every fault that the course of a scenario has a place for.
std::vector<Fault> FaultsOf(const Course& course)
{
    static const std::vector<const FaultKind*> kNone;
    const std::vector<const FaultKind*> followers = Followers(course);
    std::vector<Fault> res;
    for (size_t i = 0; i < kFaultKinds.size(); ++i) {
        const FaultKind& kind = kFaultKinds[i];
        for (unsigned number = 1; number <= course.calls[i]; ++number) {
            res.push_back({&kind, number, false, nullptr});
            res.push_back({&kind, number, true, nullptr});
            for (const FaultKind* next : kind.isTypical ? followers : kNone) {
                if (next != &kind) {
                    res.push_back({&kind, number, false, next});
                }
            }
        }
    }
    return res;
}

class Runner {
public:
    Runner(unsigned every, unsigned from) : m_Every(every), m_From(from)
    {
        void* shared = mmap(nullptr, sizeof(Course), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_Course = static_cast<Course*>(shared);
    }

    void Run(const Scenario& scenario)
    {
        m_Scenarios += 1;
        if (!Run(scenario, Fault())) {
            return;
        }
        for (const Fault& fault : FaultsOf(*m_Course)) {
            if (m_Planned++ % m_Every == m_From) {
                Run(scenario, fault);
            }
        }
    }

    int Report() const
    {
        if (!m_HasFilter) {
            puts("skipped: the system filters no calls");
            return NO_FILTER;
        }
        printf("%u scenarios, %u runs with faults, %u wrong\n", m_Scenarios, m_Fired, m_Wrong);
        return m_Wrong != 0;
    }

private:
    bool Run(const Scenario& scenario, const Fault& fault)
    {
        const int outcome = RunInProcess(scenario, fault, m_Folder / "work", *m_Course);
        m_HasFilter = m_HasFilter && outcome != NO_FILTER;
        m_Wrong += outcome == WRONG;
        m_Fired += outcome == FIRED;
        return outcome == FIRED || outcome == NOT_FIRED;
    }

    const TemporaryFolder m_Folder{TemporaryFolder::IN_MEMORY};  // the scenarios wait for the disk often
    const unsigned m_Every, m_From;
    unsigned m_Planned = 0, m_Scenarios = 0, m_Fired = 0, m_Wrong = 0;
    bool m_HasFilter = true;
    Course* m_Course;
};

}  // namespace

int main(int argc, char** argv)
{
    unsigned every = 1, from = 0;
    const char* name = "";
    for (int i = 1; i < argc; ++i) {
        if (strcmp(argv[i], "--every") == 0 && i + 1 < argc) {
            every = unsigned(atoi(argv[++i]));
        } else if (strcmp(argv[i], "--from") == 0 && i + 1 < argc) {
            from = unsigned(atoi(argv[++i]));
        } else {
            name = argv[i];
        }
    }
    Runner runner(every, from);
    for (const Scenario& scenario : AllScenarios()) {
        if (strstr(scenario.name, name) != nullptr) {
            runner.Run(scenario);
        }
    }
    return runner.Report();
}
