#pragma once

#include <stdint.h>

// sRGB bytes and the light that they stand for, from 0 to 255. Both directions give the formula's value, rounded to
// nearest.

namespace zm {

/// Widens pixels of four bytes to floats: light in the first three, and the fourth as it is, which multiplies the light
/// if `weighted`.
void LightOfPixels(float* res, const uint8_t* pixels, int width, bool weighted);

/// The reverse, clamped to bytes.
void PixelsOfLight(uint8_t* res, const float* light, int width);

}  // namespace zm
