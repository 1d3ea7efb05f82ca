#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

/// What a worker reports, in memory that it shares with the process that started it. All zero at first.
struct Progress {
    std::atomic<int> isReady;  ///< it has started and begins to work
    std::atomic<int> done;     ///< the last version that is complete
};

extern Progress* g_Progress;

/// Another process. It must be waited for.
class Process {
public:
    static constexpr int kKilled = -1;

    /// Runs a program. Its path comes first; no argument ends with a backslash or contains a quotation mark.
    static Process Run(const std::vector<std::string>& command);

    /// A worker runs the function given to PrepareWorkers() with this number, and exits with its result.
    static Process StartWorker(int number);

    /// Ends it wherever it is, unless it has ended before.
    void Kill() const;

    /// Waits for its end and returns its exit code, or kKilled.
    int Wait() const;

private:
    explicit Process(std::intptr_t id) : m_Id(id) {}

    std::intptr_t m_Id;
};

/// Call it first in main(). Workers are copies of the process; where a system cannot copy one, it starts this program
/// anew as a worker, and the call does not return there.
void PrepareWorkers(int argc, char** argv, int (*work)(int number));
