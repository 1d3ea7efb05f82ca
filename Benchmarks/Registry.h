#pragma once

#include "Harness.h"

#include <string>
#include <vector>

namespace bench {

/// One contender's way to perform one task at one size.
struct Measurement {
    const Task* task;
    const Contender* contender;
    const Entry* entry;
    int size;  ///< index into task->counts
    const Column* column = nullptr;

    int Count() const { return task->counts[size]; }
    std::string Who() const;
    double Goal() const { return column != nullptr ? column->goal : task->goal[size]; }
    /// The task's name, behind that of the column.
    std::string TaskName() const;
    /// group/case/count/who, with '-' for spaces: the name that filters match.
    std::string Name() const;
};

/// All measurements possible on this machine, in the order of the report. Exits with a message if an entry names a task
/// that does not exist.
const std::vector<Measurement>& Measurements();

/// While it lives, the library uses the path of the given role.
class ChosenPath {
public:
    explicit ChosenPath(Role role);
    ~ChosenPath();
    ChosenPath(const ChosenPath&) = delete;
    ChosenPath& operator=(const ChosenPath&) = delete;

private:
    unsigned long m_Removed;  ///< the bits removed from the feature word
};

/// Prepares the task's inputs and the memory for its results, for `count` elements.
Work Prepare(const Task& task, int count);

/// Compares the results of all contenders with ours. Exits with a message that names the task and the contender if they
/// differ.
void VerifyAll();

}  // namespace bench
