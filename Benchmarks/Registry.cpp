#include "Registry.h"

#include "Columns.h"
#include "Families.h"
#include "Inputs.h"
#include "Peers.h"

#include "ZmProcessor.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace bench {

// The build file generates Peers.h from the peers it has found: X(Glm) X(Eigen) ...
#define ZM_DECLARE_PEER(name) extern const Contender k##name;
ZM_BENCHMARK_PEERS(ZM_DECLARE_PEER)

#define ZM_DECLARE_COLUMN(name) extern const Column k##name;
ZM_BENCHMARK_COLUMNS(ZM_DECLARE_COLUMN)

namespace {

constexpr const Tasks* kTasks[] = {&kPointTasks,         &kArrayTasks,  &kSingleTasks,      &kAnimationTasks,
                                   &kRotationTasks,      &kQueryTasks,  &kCullingTasks,     &kPickingTasks,
                                   &kFoundationTasks,    &kFileTasks,   &kArchiveTasks,     &kImagingTasks,
                                   &kConfigurationTasks, &kThreadTasks, &kTrigonometryTasks};

#define ZM_LIST_PEER(name) &k##name,
constexpr const Contender* kContenders[] = {&kPoints,
                                            &kScalarPoints,
                                            &kArrays,
                                            &kSingles,
                                            &kAnimation,
                                            &kAnimationSingly,
                                            &kRotations,
                                            &kRotationsSingly,
                                            &kQueries,
                                            &kQueriesSingly,
                                            &kCulling,
                                            &kCullingSingly,
                                            &kPicking,
                                            &kPickingSingly,
                                            &kFoundations,
                                            &kFiles,
                                            &kArchives,
                                            &kImaging,
                                            &kStoredImaging,
                                            &kConfiguration,
                                            &kThreads,
                                            &kTrigonometry,
                                            ZM_BENCHMARK_PEERS(ZM_LIST_PEER)};

#define ZM_LIST_COLUMN(name) &k##name,
constexpr const Column* kColumns[] = {ZM_BENCHMARK_COLUMNS(ZM_LIST_COLUMN) nullptr};

bool MachineHasAvx2()
{
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

bool CanRun(const Contender& contender)
{
    static const bool avx2 = MachineHasAvx2();
    return contender.role != Role::PEER || avx2;
}

void AddEntries(std::vector<Measurement>& res, const Contender& contender, const Task& task, int size,
                const Column* column)
{
    for (const Entry& entry : contender) {
        if (std::strcmp(entry.task, task.name) == 0) {
            res.push_back({&task, &contender, &entry, size, column});
        }
    }
}

void AddMeasurements(std::vector<Measurement>& res, const Task& task)
{
    for (int size = 0; size < 3 && task.counts[size] != 0; ++size) {
        for (const Contender* contender : kContenders) {
            if (CanRun(*contender)) {
                AddEntries(res, *contender, task, size, nullptr);
            }
        }
    }
}

void AddColumn(std::vector<Measurement>& res, const Column& column)
{
    for (const Tasks* tasks : {&kInlineTasks, &kInlineQueryTasks}) {
        for (const Task& task : *tasks) {
            for (const Contender* contender : column) {
                AddEntries(res, *contender, task, 0, &column);
            }
        }
    }
}

void CheckEntries()
{
    for (const Contender* contender : kContenders) {
        for (const Entry& entry : *contender) {
            const auto named = [&](const Task& task) { return std::strcmp(entry.task, task.name) == 0; };
            if (std::none_of(kInlineTasks.begin(), kInlineTasks.end(), named) &&
                std::none_of(std::begin(kTasks), std::end(kTasks),
                             [&](const Tasks* tasks) { return std::any_of(tasks->begin(), tasks->end(), named); })) {
                std::fprintf(stderr, "%s has an entry for %s, which is no task\n", contender->name, entry.task);
                std::exit(1);
            }
        }
    }
}

}  // namespace

std::string Measurement::Who() const
{
    return *entry->variant ? std::string(contender->name) + " " + entry->variant : contender->name;
}

std::string Measurement::Name() const
{
    std::string who = Who();
    std::replace(who.begin(), who.end(), ' ', '-');
    return TaskName() + "/" + std::to_string(Count()) + "/" + who;
}

std::string Measurement::TaskName() const
{
    return column != nullptr ? std::string(column->name) + "/" + task->name : task->name;
}

const std::vector<Measurement>& Measurements()
{
    static const std::vector<Measurement> all = [] {
        CheckEntries();
        if (!MachineHasAvx2()) {
            std::fprintf(stderr, "This processor lacks AVX2 or FMA: most peers are left out\n");
        }
        std::vector<Measurement> res;
        for (const Tasks* tasks : kTasks) {
            for (const Task& task : *tasks) {
                AddMeasurements(res, task);
            }
        }
        for (const Column* const* column = kColumns; *column != nullptr; ++column) {
            if (MachineHasAvx2() || !(*column)->isWide) {
                AddColumn(res, **column);
            }
        }
        return res;
    }();
    return all;
}

ChosenPath::ChosenPath(Role role)
    : m_Removed(role == Role::OURS_SCALAR ? GetProcessorFeatures() & ZMPROCESSOR_FEATURE_SSE : 0)
{
    ModifyProcessorFeatures(0, m_Removed);
}

ChosenPath::~ChosenPath()
{
    ModifyProcessorFeatures(m_Removed, 0);
}

Work Prepare(const Task& task, int count)
{
    Work w{};
    w.count = count;
    w.dstStride = task.dstStride;
    w.srcStride = task.srcStride;
    w.dst = ResultMemory(size_t(count) * size_t(task.dstStride));
    task.prepare(w);
    return w;
}

}  // namespace bench
