#pragma once

#include "ZmApi.h"

/// `size` bytes at an address that is a multiple of `alignment`, a power of two, from the global allocation
/// operators. Null without memory, for a negative size, and for an alignment that is no power of two. The pointer
/// that was really allocated stands just below the block. Any thread.
ZM_API void* ZmNewAligned(int size, int alignment);

/// Frees a block of ZmNewAligned(); null does nothing.
ZM_API void ZmDeleteAligned(void* block);

/// Whether the block comes from ZmNewAligned() with this alignment: 1 or 0. Looks at the pointer-sized word below
/// the block, which must be readable; a block of another origin is almost always told apart. 0 for null.
ZM_API int ZmIsAllocatedByNewAligned(void* block, int alignment);
