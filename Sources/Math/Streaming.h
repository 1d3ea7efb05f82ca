#pragma once

#include <stddef.h>
#include <stdint.h>

namespace zm {
namespace {

// Stores that bypass the caches avoid reading the destination before it is overwritten, but are several times slower if
// the data would have stayed in a cache or the destination is also the source.

constexpr ptrdiff_t kStreamingBytes = 32 << 20;  // more than one array can expect of a last-level cache

/// Whether to stream `bytes` contiguous bytes of results to `out`. They must start at a multiple of 4, so that one of
/// their 4-byte words starts at a multiple of 16.
inline bool WorthStreaming(const void* out, ptrdiff_t bytes)
{
    return bytes >= kStreamingBytes && uintptr_t(out) % 4 == 0;
}

inline bool Overlap(const void* a, ptrdiff_t aBytes, const void* b, ptrdiff_t bBytes)
{
    return uintptr_t(a) < uintptr_t(b) + uintptr_t(bBytes) && uintptr_t(b) < uintptr_t(a) + uintptr_t(aBytes);
}

/// The number of 12-byte elements before the first that starts at a multiple of `alignment` (16 or 32); p must be a
/// multiple of 4. This is the n for which words + 3n is a multiple of 4 or 8; modulo both, -1/3 is 5.
inline ptrdiff_t ElementsToAlignment(const char* p, uintptr_t alignment)
{
    const uintptr_t words = uintptr_t(p) / 4;
    return ptrdiff_t(5 * words & (alignment / 4 - 1));
}

}  // namespace
}  // namespace zm
