#pragma once

#include "ZmProcessor.h"

#include <gtest/gtest.h>

#include <vector>

/// A way through the library's dispatch.
struct Path {
    const char* name;
    bool sse;
    bool avx2;
};

/// The paths that this program can choose on this processor. Through the shared library there are two,
/// and the vector path is the widest one that the processor has; the program of internals has them all.
const std::vector<Path>& AllPaths();

/// Takes a path while it lives and restores the one before.
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
    const unsigned long bit = ZMPROCESSOR_FEATURE_SSE;
    ModifyProcessorFeatures(sse ? bit : 0, sse ? 0 : bit);
}

template <class Test>
void OnEachPath(Test test)
{
    for (const Path& path : AllPaths()) {
        SCOPED_TRACE(path.name);
        const PathGuard guard(path);
        test();
    }
}
