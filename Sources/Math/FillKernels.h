#pragma once

#include <stddef.h>

namespace zm {

/// Bytes of a fill pattern: a multiple of the element sizes 4, 8, 12, 16, 24 and 48.
constexpr size_t kPatternBytes = 48;

namespace avx2 {

/// Repeats `pattern` over `bytes` bytes, which must be a multiple of twice the pattern. Uses ordinary stores: bypassing
/// the caches gains nothing for a fill of any length.
void FillPatterns(char* dst, size_t bytes, const char* pattern);

}  // namespace avx2
}  // namespace zm
