#pragma once

#include "ZmStridedData.h"

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

/// The colour of a packed one, each component a byte / 255 to rounding. Packing it again gives the same word.
inline ZmColor ZmUnpackedColor(uint32_t packed)
{
    const auto component = [packed](int bit) { return float(packed >> bit & 0xFF) / 255.0f; };
    return {component(16), component(8), component(0), component(24)};
}

// Arrays of ZmColor and of packed colours (4 bytes), at any stride and alignment; nothing but their own bytes is read
// and written. The results must not overlap the sources. A count below 1 does nothing.

/// RGBAFTOCOLOR(const ZmColor*) of each colour, with the same bits on each path.
ZM_API void ZmPackColorsStrided(const ZmStridedData& res, const ZmStridedData& colours, int count);

/// ZmUnpackedColor() of each packed colour.
ZM_API void ZmUnpackColorsStrided(const ZmStridedData& res, const ZmStridedData& packed, int count);
