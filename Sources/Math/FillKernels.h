#pragma once

#include <stddef.h>

namespace zm {

/// Bytes after which every filling pattern repeats: a multiple of the element sizes 4, 8, 12, 16, 24,
/// 32 and 48 as well as of the registers that store it.
const size_t kPatternBytes = 96;

namespace avx2 {

/// Repeats `pattern`, of kPatternBytes, over as many whole patterns as fit into `bytes` from `dst` on.
/// With `stream`, dst is a multiple of 16 and the stores bypass the caches.
void FillPatterns(char* dst, size_t bytes, const char* pattern, bool stream);

}  // namespace avx2
}  // namespace zm
