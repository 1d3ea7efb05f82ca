// ZmMathBenchmarks [part of a name]... [--peers] [Google Benchmark's options]
//
// Without arguments runs everything, which takes a few minutes. "ZmMathBenchmarks Points/12to12" measures what contains
// that in its name (a regular expression); --peers shows every contender instead of only the best. The repetitions of
// all measurements are interleaved, so that a slow minute of the machine affects all of them alike.

#include "Registry.h"
#include "Report.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

void Measure(benchmark::State& state, const bench::Measurement& m)
{
    const bench::ChosenPath path(m.contender->role);
    const bench::Work w = bench::Prepare(*m.task, m.Count());
    m.entry->function(w);
    for (auto _ : state) {
        m.entry->function(w);
        benchmark::ClobberMemory();
    }
}

void Register()
{
    for (const bench::Measurement& m : bench::Measurements()) {
        benchmark::RegisterBenchmark(m.Name().c_str(), [&m](benchmark::State& state) {
            Measure(state, m);
        })->MeasureProcessCPUTime();
    }
}

/// Puts our defaults first, so that the user's options override them; plain words become the filter.
std::vector<std::string> Options(int argc, char** argv, bool& allPeers)
{
    std::vector<std::string> res = {argv[0], "--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=9",
                                    "--benchmark_min_time=0.02"};
    std::string filter;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--peers") == 0) {
            allPeers = true;
        } else if (argv[i][0] == '-') {
            res.push_back(argv[i]);
        } else {
            filter += (filter.empty() ? "" : "|") + std::string(argv[i]);
        }
    }
    if (!filter.empty()) {
        res.push_back("--benchmark_filter=" + filter);
    }
    return res;
}

}  // namespace

int main(int argc, char** argv)
{
    bool allPeers = false;
    std::vector<std::string> options = Options(argc, argv, allPeers);
    std::vector<char*> arguments;
    for (std::string& option : options) {
        arguments.push_back(option.data());
    }
    int count = int(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }

    bench::VerifyAll();
    Register();
    bench::Report report(allPeers);
    const size_t measured = benchmark::RunSpecifiedBenchmarks(&report);
    benchmark::Shutdown();
    return measured > 0 ? 0 : 1;
}
