#pragma once

// The parts of a measurement: plain data only. The peers' files, which are compiled for wider processors, include this
// header: the linker would merge a function defined here with their version of it.

namespace bench {

/// The work of one call.
struct Work {
    int count;          ///< elements
    int dstStride;      ///< bytes from one result to the next
    int srcStride;      ///< the same for `src` if that is an array of elements, else 0
    void* dst;          ///< count * dstStride bytes for the results
    const void* src;    ///< inputs, set by the task
    const void* extra;  ///< second input, if the task has one
};

using Function = void (*)(const Work&);

/// A task that several libraries can perform.
struct Task {
    const char* name;  ///< group/case
    int dstStride;
    int srcStride;
    /// Sets `src` and `extra`; everything else is already set. Not timed.
    void (*prepare)(Work&);
    int counts[3];   ///< sizes to measure, 0 for none
    double goal[3];  ///< for each size: our time relative to the best peer's, at most; 0 for none
    /// How far peers' results may differ, relative to the largest float of a result. 0: the bytes must be equal.
    /// Negative: peers produce something else, and nothing is compared.
    double tolerance = 1e-4;
    /// Converts a result to a canonical form, where several results are correct.
    void (*canonical)(float* result) = nullptr;
};

/// How one contender performs one task.
struct Entry {
    const char* task;
    Function function;
    const char* variant = "";  ///< appended to the contender's name if it has several ways
    /// Converts a result from the contender's conventions to ours. Not timed.
    void (*decode)(float* result) = nullptr;
    /// Shown among the peers but never counted as the best: it delivers less (fewer digits, say), or the goal is not
    /// set against it.
    bool aside = false;
};

enum class Role {
    OURS,         ///< compared with every PEER
    OURS_SCALAR,  ///< the SSE feature bit off, compared with every PLAIN_PEER; the goal is kScalarGoal
    PEER,         ///< built for AVX2 and FMA
    PLAIN_PEER    ///< built with the library's own flags
};

/// The scalar path must not be slower than a plain loop.
constexpr double kScalarGoal = 1.0;

/// A table of tasks.
struct Tasks {
    const Task* first;
    int count;

    template <int Count>
    constexpr Tasks(const Task (&tasks)[Count]) : first(tasks), count(Count)
    {
    }
    const Task* begin() const { return first; }
    const Task* end() const { return first + count; }
};

struct Contender {
    const char* name;
    Role role;
    const Entry* first;
    int count;

    template <int Count>
    constexpr Contender(const char* who, Role what, const Entry (&entries)[Count])
        : name(who), role(what), first(entries), count(Count)
    {
    }
    const Entry* begin() const { return first; }
    const Entry* end() const { return first + count; }
};

/// Contenders that are all inline, compiled with the same flags: a program's, as its user builds it.
struct Column {
    const char* name;
    double goal;  ///< for each task
    bool isWide;  ///< compiled for AVX2 and FMA
    const Contender* const* first;
    int count;

    const Contender* const* begin() const { return first; }
    const Contender* const* end() const { return first + count; }
};

}  // namespace bench
