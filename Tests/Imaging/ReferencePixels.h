#pragma once

// What the conversions of pixels give, computed plainly and one pixel at a time.

#include "ZmPixelFormat.h"

#include <math.h>
#include <string.h>

#include <algorithm>

/// The formats whose channels are bits of a pixel.
constexpr uint32_t kWithMasks[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 24, 25, 26, 27};

/// The fields of a pixel as numbers, red, green, blue and alpha, and how many bits each has.
struct Fields {
    uint32_t value[4];
    int bits[4];
};

inline Fields FieldsOf(const ZmImageDescEx& desc, uint32_t pixel)
{
    const uint32_t masks[4] = {desc.RedMask, desc.GreenMask, desc.BlueMask, desc.AlphaMask};
    Fields res = {};
    for (int c = 0; c < 4; ++c) {
        for (int bit = 31; bit >= 0; --bit) {
            if (masks[c] >> bit & 1) {
                res.value[c] = res.value[c] << 1 | (pixel >> bit & 1);
                ++res.bits[c];
            }
        }
    }
    return res;
}

/// Rescales a number from one bit count to another: bits repeated, or rounded to nearest.
inline uint32_t Rescaled(uint32_t value, int from, int to)
{
    if (to > from) {
        uint32_t res = 0;
        for (int i = 0; i < to; ++i) {
            res = res << 1 | (value >> (from - 1 - i % from) & 1);
        }
        return res;
    }
    return uint32_t(floor(double(value) * (pow(2, to) - 1) / (pow(2, from) - 1) + 0.5));
}

/// A pixel of another image's layout.
inline uint32_t Converted(const ZmImageDescEx& src, uint32_t pixel, const ZmImageDescEx& dst)
{
    const Fields from = FieldsOf(src, pixel), to = FieldsOf(dst, 0);
    const uint32_t masks[4] = {dst.RedMask, dst.GreenMask, dst.BlueMask, dst.AlphaMask};
    uint32_t res = 0;
    for (int c = 0; c < 4; ++c) {
        const bool given = from.bits[c] != 0;
        const uint32_t value = given ? Rescaled(from.value[c], from.bits[c], to.bits[c]) : c == 3 ? ~0u : 0;
        res |= uint32_t(uint64_t(value) << GetBitShift(masks[c])) & masks[c];
    }
    return res;
}

/// A pixel of ARGB8888 over another, both with straight alpha, computed in doubles.
inline uint32_t Composed(uint32_t over, uint32_t under)
{
    const double a = (over >> 24) / 255.0, b = (under >> 24) / 255.0 * (1 - a), sum = a + b;
    if (sum == 0) {
        return under;
    }
    uint32_t res = uint32_t(floor(sum * 255 + 0.5)) << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const double colour = ((over >> shift & 255) * a + (under >> shift & 255) * b) / sum;
        res |= uint32_t(floor(colour + 0.5 + 1e-9)) << shift;
    }
    return res;
}

/// Pixel `i` of a compressed block of 4 x 4 as ARGB8888, decoded in doubles.
inline uint32_t Decoded(const uint8_t* block, uint32_t format, int i)
{
    const uint8_t* const colours = block + (format == ZM_PF_DXT1 ? 0 : 8);
    const int end[2] = {colours[0] + 256 * colours[1], colours[2] + 256 * colours[3]};
    const int choice = colours[4 + i / 4] >> (i % 4 * 2) & 3;
    const bool three = format == ZM_PF_DXT1 && end[0] <= end[1];
    constexpr double shares[2][4] = {{0, 1, 1 / 3.0, 2 / 3.0}, {0, 1, 0.5, 0}};
    const double share = shares[three][choice];
    double alpha = three && choice == 3 ? 0 : 255;
    if (format == ZM_PF_DXT2 || format == ZM_PF_DXT3) {
        alpha = (block[i / 2] >> (i % 2 * 4) & 15) * 17;
    } else if (format >= ZM_PF_DXT4) {
        uint64_t bits = 0;
        memcpy(&bits, block, 8);
        const int a = block[0], b = block[1], way = int(bits >> (16 + 3 * i) & 7);
        const double steps = a > b ? 7 : 5;
        alpha = way < 2 ? block[way] : way - 1 < steps ? a + (b - a) * (way - 1) / steps : (way == 7) * 255;
    }
    uint32_t res = uint32_t(floor(alpha + 0.5)) << 24;
    const int shifts[3] = {11, 5, 0}, bits[3] = {5, 6, 5};
    for (int c = 0; c < 3 && !(three && choice == 3); ++c) {
        double ends[2];
        for (int e = 0; e < 2; ++e) {
            ends[e] = Rescaled(uint32_t(end[e] >> shifts[c]) & ((1u << bits[c]) - 1), bits[c], 8);
        }
        res |= uint32_t(floor(ends[0] + (ends[1] - ends[0]) * share + 0.5 + 1e-9)) << (16 - 8 * c);
    }
    return res;
}

/// The weight of source pixel `at` in result pixel `i`, in doubles.
inline double ReferenceWeight(int i, int at, int from, int to)
{
    const double scale = double(from) / to;
    if (to < from) {
        return std::max(0.0, std::min((i + 1) * scale, at + 1.0) - std::max(i * scale, double(at))) / scale;
    }
    const double place = std::min(std::max((i + 0.5) * scale - 0.5, 0.0), from - 1.0);
    return std::max(0.0, 1 - fabs(place - at));
}
