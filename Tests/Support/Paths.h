#pragma once

#include "Support/Random.h"

#include <gtest/gtest.h>

#include <vector>

/// A path through the library's dispatch.
struct Path {
    const char* name;
    bool sse, avx2;
};

/// The paths that this program can choose on this processor. Programs that use the shared library have two, and the
/// vector path is the widest that the processor supports; the test program of internals has all of them.
const std::vector<Path>& AllPaths();

/// Selects a path while it lives, and restores the previous one.
class PathGuard {
public:
    explicit PathGuard(const Path& path);
    ~PathGuard();
    PathGuard(const PathGuard&) = delete;
    PathGuard& operator=(const PathGuard&) = delete;

private:
    Path m_Previous;
};

/// Whether the SSE feature bit is set.
inline bool OnVectorPath()
{
    return (GetProcessorFeatures() & ZMPROCESSOR_FEATURE_SSE) != 0;
}

inline void ChooseVectorPath(bool sse)
{
    constexpr unsigned long bit = ZMPROCESSOR_FEATURE_SSE;
    ModifyProcessorFeatures(sse ? bit : 0, sse ? 0 : bit);
}

/// Runs test(random) `count` times on each path, with the same random inputs.
template <class Test>
void OnEachPath(int rounds, Test test)
{
    for (const Path& path : AllPaths()) {
        const PathGuard guard(path);
        Random random(1);
        for (int round = 0; round < rounds; ++round) {
            SCOPED_TRACE(testing::Message() << path.name << ", round " << round);
            test(random);
        }
    }
}
