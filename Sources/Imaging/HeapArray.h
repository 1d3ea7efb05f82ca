#pragma once

#include "XMemory.h"

#include <memory>
#include <stdint.h>

namespace zm {

struct FreeBlock {
    void operator()(void* block) const { DeleteBlock(block); }
};

/// Plain values in a block that frees itself; uninitialised.
template <class T>
using HeapArray = std::unique_ptr<T[], FreeBlock>;

/// Null without memory. `count` is not negative.
template <class T>
HeapArray<T> NewArray(int64_t count)
{
    return HeapArray<T>(static_cast<T*>(NewBlock(uint64_t(count) * sizeof(T))));
}

}  // namespace zm
