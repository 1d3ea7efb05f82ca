// Every fault scenario in turn, again and again and without faults, in one process, which must not grow.
//
//     ZmSoak [minutes]    default 60

#include "Faults/Injection.h"
#include "Faults/Scenarios.h"
#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>

namespace {

/// What must not grow.
struct Usage {
    long blocks, bytes, pages;
    size_t files, threads;
};

size_t CountIn(const char* folder)
{
    return size_t(std::distance(std::filesystem::directory_iterator(folder), {}));
}

Usage UsageNow()
{
    long total = 0, resident = 0;
    if (FILE* file = fopen("/proc/self/statm", "r")) {
        if (fscanf(file, "%ld %ld", &total, &resident) != 2) {
            resident = -1;
        }
        fclose(file);
    }
    return {LiveBlocks(), LiveBytes(), resident, CountIn("/proc/self/fd"), CountIn("/proc/self/task")};
}

/// The standard output as it was. The scenarios' own messages go nowhere.
FILE* QuietOutput()
{
    FILE* report = fdopen(dup(STDOUT_FILENO), "w");
    if (report == nullptr || freopen("/dev/null", "w", stdout) == nullptr) {
        exit(2);
    }
    setvbuf(report, nullptr, _IONBF, 0);  // a buffer would count as growth
    return report;
}

void Print(FILE* report, unsigned long rounds, const Usage& usage)
{
    fprintf(report, "%lu rounds, %ld blocks of %ld bytes, %ld pages, %zu files, %zu threads\n", rounds, usage.blocks,
            usage.bytes, usage.pages, usage.files, usage.threads);
}

/// Runs each scenario once, in an empty working directory. Returns false if one of them fails.
bool RunRound(const std::string& folder)
{
    static const std::vector<Scenario> scenarios = AllScenarios();
    bool good = true;
    for (const Scenario& scenario : scenarios) {
        std::filesystem::create_directory(folder);
        std::filesystem::current_path(folder);
        scenario.prepare();
        if (const char* wrong = scenario.check(scenario.run())) {
            fprintf(stderr, "%s: %s\n", scenario.name, wrong);
            good = false;
        }
        std::filesystem::current_path("/");
        std::filesystem::remove_all(folder);
    }
    return good;
}

}  // namespace

int main(int argc, char** argv)
{
    using Clock = std::chrono::steady_clock;
    const double minutes = argc > 1 ? atof(argv[1]) : 60;
    const auto end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(60 * minutes));
    SilenceLog();
    FILE* const report = QuietOutput();
    const TemporaryFolder folder(TemporaryFolder::IN_MEMORY);
    const std::string work = folder / "work";
    setenv("XDG_CONFIG_HOME", work.c_str(), 1);
    constexpr unsigned long kWarmUp = 10;
    unsigned long rounds = 0;
    Usage before = {}, after = {};
    bool good = true;
    auto lastReport = Clock::now();
    do {
        good = RunRound(work) && good;
        rounds += 1;
        after = UsageNow();
        if (rounds == kWarmUp) {
            before = after;
        }
        if (rounds == kWarmUp || Clock::now() - lastReport > std::chrono::minutes(1)) {
            Print(report, rounds, after);
            lastReport = Clock::now();
        }
    } while (good && (rounds <= kWarmUp || Clock::now() < end));
    Print(report, rounds, after);
    // The heap rounds sizes up and arranges its pages anew, but not without bound.
    constexpr long kBytes = 4096, kPages = 256;
    const bool grew = after.blocks > before.blocks || after.bytes > before.bytes + kBytes ||
                      after.pages > before.pages + kPages || after.files > before.files ||
                      after.threads > before.threads;
    return !good || grew;
}
