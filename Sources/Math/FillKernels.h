#pragma once

#include <stddef.h>

namespace zm {

/// Bytes of a pattern that is filled in: a multiple of the element sizes 4, 8, 12, 16, 24 and 48.
const size_t kPatternBytes = 48;

namespace avx2 {

/// Repeats `pattern` over `bytes` bytes, a multiple of twice the pattern. Ordinary stores: bypassing the
/// caches gains nothing for a fill, however long.
void FillPatterns(char* dst, size_t bytes, const char* pattern);

}  // namespace avx2
}  // namespace zm
