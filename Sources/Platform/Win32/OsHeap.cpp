#include "Platform/OsHeap.h"

#include <malloc.h>

namespace zm {

size_t HeapBlockSize(void* block)
{
    return block != nullptr ? _msize(block) : 0;
}

}  // namespace zm
