#pragma once

// What a measurement is made of: plain data and nothing else. The peers' files,
// which are compiled for wider processors, include this; a function here would be
// merged by the linker with their version of it.

namespace bench {

/// One call's worth of work.
struct Work {
    int count;          ///< elements
    int dstStride;      ///< bytes from one result to the next
    int srcStride;      ///< the same for `src` where that is an array of elements, else 0
    void* dst;          ///< count * dstStride bytes for the results
    const void* src;    ///< inputs, set by the task
    const void* extra;  ///< second input, if the task has one
};

using Function = void (*)(const Work&);

/// Something to do that several libraries can do.
struct Task {
    const char* name;  ///< group/case
    int dstStride;
    int srcStride;
    /// Sets `src` and `extra`; everything else is set already. Not timed.
    void (*prepare)(Work&);
    int counts[3];   ///< sizes to measure, 0 for none
    double goal[3];  ///< for each size: our time at most so much of the best peer's; 0 for none
    /// Peers' results may differ by so much of the largest float of a result; 0 for the same bytes,
    /// less where peers deliver something else and nothing is compared.
    double tolerance = 1e-4;
    /// Brings a result into the one form that all must agree in, where several are right.
    void (*canonical)(float* result) = nullptr;
};

/// How one contender does one task.
struct Entry {
    const char* task;
    Function function;
    const char* variant = "";  ///< added to the contender's name where it has several ways
    /// Converts a result from the contender's conventions to ours. Not timed.
    void (*decode)(float* result) = nullptr;
    /// Shown among the peers and never the best: it delivers less (digits, say), or the goal is not set against it.
    bool aside = false;
};

enum class Role {
    Ours,        ///< against all of Peer
    OursScalar,  ///< the SSE feature bit off, against all of PlainPeer; the goal is kScalarGoal
    Peer,        ///< built for AVX2 and FMA
    PlainPeer    ///< built with the library's own flags
};

/// The scalar path is not slower than a plain loop.
constexpr double kScalarGoal = 1.0;

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

}  // namespace bench
