#pragma once

#include "XMemory.h"

#include <memory>
#include <stdint.h>

namespace zm {

struct FreeBlock {
    void operator()(void* block) const { DeleteBlock(block); }
};

/// An owned array of plain values, uninitialised.
template <class T>
using HeapArray = std::unique_ptr<T[], FreeBlock>;

/// Returns null if out of memory. `count` must not be negative.
template <class T>
HeapArray<T> NewArray(int64_t count)
{
    return HeapArray<T>(static_cast<T*>(NewBlock(uint64_t(count) * sizeof(T))));
}

}  // namespace zm
