#pragma once

#include <stdint.h>

namespace zm {

/// sRGB bytes and the light that they stand for, from 0 to 255.
struct LightTables {
    /// Light is split into this many bits: whole parts, in each of which the byte changes at most once, and the rest.
    static constexpr int kBits = 23, kRestBits = 19;
    static constexpr int kParts = 255 << (kBits - kRestBits);

    /// The light of each byte, rounded to nearest; then the bytes themselves, for alpha.
    float light[512];
    /// For each part, a number to which the rest is added: the bits above the rest are then the byte. Rounds the exact
    /// byte to nearest, but for two millionths.
    uint32_t byte[kParts + 1];
};

extern const LightTables g_LightTables;

}  // namespace zm
