#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Colour of four floats, nominally 0 to 1.
struct ZmColor {
    /// Red, green, blue and alpha.
    float r, g, b, a;

    /// Leaves the components undefined; sets them, opaque by default.
    ZmColor() = default;
    constexpr ZmColor(float red, float green, float blue, float alpha = 1.0f) : r(red), g(green), b(blue), a(alpha) {}
};

// Packed colours have alpha in bits 24 to 31, red in 16 to 23, green in 8 to 15 and blue in 0 to 7. Both forms round in
// the processor's current mode, need no static storage and may be called from any thread.

/// Packs without clamping. Alpha and blue are scaled by 255, red and green directly to their bit positions (by 0xFF0000
/// and 0xFF00), so that 0.5 gives blue 0x80 but red 0x7F. Values outside 0 to 1 wrap. Stored images depend on both.
ZM_API uint32_t RGBAFTOCOLOR(float r, float g, float b, float a);

/// Packs with each component scaled by 255, rounded and clamped. Values above 1 give 255. Values below 0 give 255 on
/// the scalar path and 0 with the SSE feature bit set. `c` must not be null.
ZM_API uint32_t RGBAFTOCOLOR(const ZmColor* c);
