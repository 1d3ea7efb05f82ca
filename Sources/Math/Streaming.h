#pragma once

#include <stddef.h>
#include <stdint.h>

namespace zm {
namespace {

// Stores that bypass the caches save reading the destination before it is overwritten, but cost a
// multiple when the data would have stayed in a cache or is the source itself.

const ptrdiff_t kStreamingBytes = 32 << 20;  // more than a last-level cache leaves to one array

/// Whether `bytes` tight bytes of results from `out` on are worth streaming. They must start at a
/// multiple of 4, so that some 4-byte word of them starts at a multiple of 16.
inline bool WorthStreaming(const void* out, ptrdiff_t bytes)
{
    return bytes >= kStreamingBytes && uintptr_t(out) % 4 == 0;
}

inline bool Overlap(const void* a, ptrdiff_t aBytes, const void* b, ptrdiff_t bBytes)
{
    return uintptr_t(a) < uintptr_t(b) + uintptr_t(bBytes) && uintptr_t(b) < uintptr_t(a) + uintptr_t(aBytes);
}

/// How many elements of 12 bytes come before the first that starts at a multiple of `alignment`, 16 or
/// 32, from a multiple of 4 on: the n for which words + 3n is a multiple of 4 or 8, where -1/3 is 5.
inline ptrdiff_t ElementsToAlignment(const char* p, uintptr_t alignment)
{
    const uintptr_t words = uintptr_t(p) / 4;
    return ptrdiff_t(5 * words & (alignment / 4 - 1));
}

}  // namespace
}  // namespace zm
