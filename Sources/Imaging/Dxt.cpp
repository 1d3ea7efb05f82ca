#include "Imaging/Dxt.h"

#include "ZmPixelFormat.h"

#include <string.h>

namespace zm {
namespace {

struct Rgb {
    uint32_t channel[3];
};

Rgb FromRgb565(uint32_t colour)
{
    const uint32_t r = colour >> 11, g = colour >> 5 & 63, b = colour & 31;
    return {{r << 3 | r >> 2, g << 2 | g >> 4, b << 3 | b >> 2}};
}

uint32_t Packed(const Rgb& c)
{
    return c.channel[0] << 16 | c.channel[1] << 8 | c.channel[2];
}

/// (a * weightA + b * weightB) / (weightA + weightB), rounded to nearest, halves up.
uint32_t Mixed(const Rgb& a, uint32_t weightA, const Rgb& b, uint32_t weightB)
{
    const uint32_t sum = weightA + weightB;
    Rgb res;
    for (int c = 0; c < 3; ++c) {
        res.channel[c] = (2 * (a.channel[c] * weightA + b.channel[c] * weightB) + sum) / (2 * sum);
    }
    return Packed(res);
}

/// With `transparent`, blocks may have three colours and a transparent black; only DXT1 uses them.
void DecodeColours(uint32_t (&res)[16], const uint8_t* block, bool transparent)
{
    uint16_t ends[2];
    uint32_t choices;
    memcpy(ends, block, 4);
    memcpy(&choices, block + 4, 4);
    const Rgb a = FromRgb565(ends[0]), b = FromRgb565(ends[1]);
    const bool three = transparent && ends[0] <= ends[1];
    const uint32_t opaque = transparent ? 0xFF000000u : 0;
    const uint32_t colours[4] = {Packed(a) | opaque, Packed(b) | opaque,
                                 (three ? Mixed(a, 1, b, 1) : Mixed(a, 2, b, 1)) | opaque,
                                 three ? 0 : Mixed(a, 1, b, 2) | opaque};
    for (int i = 0; i < 16; ++i) {
        res[i] = colours[choices >> (2 * i) & 3];
    }
}

/// Explicit alpha, four bits per pixel.
void AddAlpha(uint32_t (&res)[16], const uint8_t* block)
{
    for (int i = 0; i < 16; ++i) {
        const uint32_t four = block[i / 2] >> (i % 2 * 4) & 15u;
        res[i] |= four * 17 << 24;
    }
}

/// Interpolated alpha: two values, six or four between them, and a 3-bit index per pixel.
void AddMixedAlpha(uint32_t (&res)[16], const uint8_t* block)
{
    const uint32_t a = block[0], b = block[1], steps = a > b ? 7 : 5;
    uint32_t alphas[8] = {a, b, 0, 0, 0, 0, 0, 255};
    for (uint32_t i = 1; i < steps; ++i) {
        alphas[i + 1] = (2 * (a * (steps - i) + b * i) + steps) / (2 * steps);
    }
    uint64_t choices = 0;
    memcpy(&choices, block + 2, 6);
    for (int i = 0; i < 16; ++i) {
        res[i] |= alphas[choices >> (3 * i) & 7] << 24;
    }
}

}  // namespace

void DecodeBlock(uint32_t (&res)[16], const uint8_t* block, uint32_t format)
{
    if (format == ZM_PF_DXT1) {
        DecodeColours(res, block, true);
        return;
    }
    DecodeColours(res, block + 8, false);
    if (format <= ZM_PF_DXT3) {
        AddAlpha(res, block);
    } else {
        AddMixedAlpha(res, block);
    }
}

}  // namespace zm
