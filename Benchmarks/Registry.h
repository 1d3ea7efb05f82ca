#pragma once

#include "Harness.h"

#include <string>
#include <vector>

namespace bench {

/// One contender's way of doing one task at one size.
struct Measurement {
    const Task* task;
    const Contender* contender;
    const Entry* entry;
    int size;  ///< which of task->counts

    int Count() const { return task->counts[size]; }
    std::string Who() const;
    /// group/case/count/who, with '-' for spaces: the name that filters see.
    std::string Name() const;
};

/// Everything that this machine can measure, in the order of the report. Ends the program with
/// a message when an entry names a task that does not exist.
const std::vector<Measurement>& Measurements();

/// While it lives the library takes the path of that role.
class ChosenPath {
public:
    explicit ChosenPath(Role role);
    ~ChosenPath();
    ChosenPath(const ChosenPath&) = delete;
    ChosenPath& operator=(const ChosenPath&) = delete;

private:
    unsigned long m_Removed;  ///< bits of the feature word
};

/// The task's inputs and memory for its results, for `count` elements.
Work Prepare(const Task& task, int count);

/// Compares the results of all contenders with ours; ends the program with a message that names
/// the task and the contender when they differ.
void VerifyAll();

}  // namespace bench
