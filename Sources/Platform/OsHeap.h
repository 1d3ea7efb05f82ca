#pragma once

#include <stddef.h>

namespace zm {

/// Bytes that the C heap holds for a block of malloc(): at least what was asked for, the same at
/// each call. 0 for null.
size_t HeapBlockSize(void* block);

/// Gives back what the C++ run time keeps, where that is a part of this module and not of the process. For the very
/// end of unloading.
void FreeRuntimeMemory();

}  // namespace zm
