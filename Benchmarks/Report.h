#pragma once

#include "Registry.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace bench {

/// Collects the times of all repetitions and at the end prints one line per task and size: our median, the best peer's,
/// their ratio and the goal.
class Report : public benchmark::BenchmarkReporter {
public:
    /// `allPeers`: also prints a line for every contender.
    explicit Report(bool allPeers) : m_AllPeers(allPeers) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    using Group = std::vector<const Measurement*>;

    /// Nanoseconds per element; 0 if it was not measured.
    double Median(const Measurement& m) const;
    const Measurement* Best(const Group& group, Role role) const;
    void PrintGroup(const Group& group) const;
    void PrintRow(const Measurement& ours, const Measurement* peer, double goal) const;

    bool m_AllPeers;
    std::map<std::string, std::vector<double>> m_Times;
};

}  // namespace bench
