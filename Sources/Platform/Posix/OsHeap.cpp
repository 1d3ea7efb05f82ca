#include "Platform/OsHeap.h"

#include <malloc.h>

namespace zm {

size_t HeapBlockSize(void* block)
{
    return malloc_usable_size(block);
}

void FreeRuntimeMemory() {}

}  // namespace zm
