#pragma once

#include <stddef.h>

namespace zm {

/// The size of the heap block behind a pointer from malloc(): at least the requested size, and the same at each call. 0
/// for null.
size_t HeapBlockSize(void* block);

/// Frees the memory that the C++ run time keeps, if it is linked into this module. Call at the very end of unloading.
void FreeRuntimeMemory();

}  // namespace zm
