#pragma once

#include "XFixedSizeAllocator.h"
#include "ZmAllocator.h"

#include <string>

namespace zm {

/// What ZmAllocator::DumpStats() tells.
struct AllocatorFigures {
    struct Pool {
        int blockSize;
        int chunks;
        int bytes;
        int occupation;  ///< percent
    };

    ZmAllocator::Stats stats;
    XArray<Pool> pools;
    uint64_t scratchBytes = 0;
    int scratchCount = 0;
};

std::string AllocatorReport(const AllocatorFigures& figures);

}  // namespace zm
