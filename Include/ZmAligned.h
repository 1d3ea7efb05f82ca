#pragma once

#include "ZmApi.h"

/// Allocates `size` bytes, with the global allocation operators, at a multiple of `alignment`, a power of two. Returns
/// null if memory runs out, for a negative size, and for an alignment that is not a power of two. The pointer to the
/// underlying allocation is stored just below the block. Any thread may call.
ZM_API void* ZmNewAligned(int size, int alignment);

/// Frees a block of ZmNewAligned(); null does nothing.
ZM_API void ZmDeleteAligned(void* block);

/// Returns 1 if the block comes from ZmNewAligned() with this alignment, else 0; 0 for null. Reads the pointer-sized
/// word below the block, which must be readable; blocks from elsewhere are recognised almost always.
ZM_API int ZmIsAllocatedByNewAligned(void* block, int alignment);
