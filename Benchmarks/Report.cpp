#include "Report.h"

#include "ZmProcessor.h"

#include <algorithm>
#include <cstdio>

namespace bench {

bool Report::ReportContext(const Context& context)
{
    std::fprintf(stderr, "%s, %g GHz; load average %.2f\n", GetProcessorBrand(), GetProcessorFrequency() / 1000.0,
                 context.cpu_info.load_avg.empty() ? 0 : context.cpu_info.load_avg.front());
    std::fprintf(stderr, "Measuring; the table comes at the end\n");
    return true;
}

void Report::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
            // Processor time: other programs may be running.
            m_Times[run.run_name.function_name].push_back(run.cpu_accumulated_time * 1e9 / double(run.iterations));
        }
    }
}

void Report::Finalize()
{
    std::printf("\n%-34s %8s %-14s %9s  %-28s %9s %6s %5s\n", "case", "N", "", "ns", "best peer", "ns", "ratio",
                "goal");
    Group group;
    for (const Measurement& m : Measurements()) {
        if (!group.empty() &&
            (group.front()->task != m.task || group.front()->size != m.size || group.front()->column != m.column)) {
            PrintGroup(group);
            group.clear();
        }
        group.push_back(&m);
    }
    PrintGroup(group);
}

double Report::Median(const Measurement& m) const
{
    const auto found = m_Times.find(m.Name());
    if (found == m_Times.end()) {
        return 0;
    }
    std::vector<double> times = found->second;
    const auto middle = times.begin() + std::ptrdiff_t(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle / m.Count();
}

const Measurement* Report::Best(const Group& group, Role role) const
{
    const Measurement* best = nullptr;
    for (const Measurement* m : group) {
        if (m->contender->role == role && !m->entry->aside && Median(*m) > 0 && (!best || Median(*m) < Median(*best))) {
            best = m;
        }
    }
    return best;
}

void Report::PrintGroup(const Group& group) const
{
    if (const Measurement* ours = Best(group, Role::OURS)) {
        PrintRow(*ours, Best(group, Role::PEER), ours->Goal());
    }
    if (const Measurement* ours = Best(group, Role::OURS_SCALAR)) {
        PrintRow(*ours, Best(group, Role::PLAIN_PEER), kScalarGoal);
    }
    if (m_AllPeers) {
        for (const Measurement* m : group) {
            if (m->contender->role >= Role::PEER && Median(*m) > 0) {
                std::printf("%69s%-28s %9.3f%s\n", "", m->Who().c_str(), Median(*m),
                            m->entry->aside ? "  (aside)" : "");
            }
        }
    }
}

void Report::PrintRow(const Measurement& ours, const Measurement* peer, double goal) const
{
    std::printf("%-34s %8d %-14s %9.3f", ours.TaskName().c_str(), ours.Count(), ours.Who().c_str(), Median(ours));
    if (peer) {
        const double ratio = Median(ours) / Median(*peer);
        std::printf("  %-28s %9.3f %6.2f", peer->Who().c_str(), Median(*peer), ratio);
        if (goal > 0) {
            std::printf(" %5.2f%s", goal, ratio <= goal ? "" : "  missed");
        }
    }
    std::printf("\n");
}

}  // namespace bench
