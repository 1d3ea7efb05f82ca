#pragma once

#include <stdint.h>
#include <string.h>

namespace zm {

/// Writes `value` to `res` if `chosen`. Branch-free: with hits as likely as one in two, mispredicted branches would
/// cost more than the test itself.
template <class T>
inline void StoreIf(bool chosen, T& res, const T& value)
{
    constexpr int kWords = sizeof(T) / 4;
    uint32_t kept[kWords], fresh[kWords];
    memcpy(kept, &res, sizeof(T));
    memcpy(fresh, &value, sizeof(T));
    const uint32_t mask = 0u - uint32_t(chosen);
    for (int i = 0; i < kWords; ++i) {
        kept[i] ^= (kept[i] ^ fresh[i]) & mask;
    }
    memcpy(&res, kept, sizeof(T));
}

}  // namespace zm
