#pragma once

#include "Foundations/StringStorage.h"
#include "XArray.h"

#include <string>

namespace zm {

/// The figures that ZmAllocator::DumpStats() prints.
struct AllocatorFigures {
    struct Pool {
        int blockSize;
        int chunks;
        int bytes;
        int occupation;  ///< percent
    };

    ZmAllocator::Stats stats;
    TextPages textPages = {};
    XArray<Pool> pools;
    uint64_t scratchBytes = 0;
    int scratchCount = 0;
};

std::string AllocatorReport(const AllocatorFigures& figures);

}  // namespace zm
