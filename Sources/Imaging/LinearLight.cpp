#include "Imaging/LinearLight.h"

#include <stddef.h>

namespace zm {
namespace {

/// For numbers from 0 to 1. Newton's method from above falls until it has converged.
constexpr double FifthRoot(double x)
{
    double root = (x + 4) / 5;
    for (;;) {
        const double four = root * root * root * root, next = root - (root * four - x) / (5 * four);
        if (!(next < root)) {
            return root;
        }
        root = next;
    }
}

constexpr double LightOf(double byte)
{
    const double stored = byte / 255, square = (stored + 0.055) / 1.055 * ((stored + 0.055) / 1.055);
    return 255 * (stored <= 0.04045 ? stored / 12.92 : square * FifthRoot(square));
}

/// The smallest float that is not below a number.
constexpr float RoundedUp(double x)
{
    const float nearest = float(x);
    return double(nearest) < x ? float(double(nearest) * (1 + 0x1.001p-24)) : nearest;
}

/// Bytes change at irrational lights, at most one of them in each sixteenth.
constexpr int kParts = 16;

struct LightTables {
    float light[256];
    float begin[257];                 ///< the smallest light of each byte; beyond the last one, of none
    uint8_t first[255 * kParts + 1];  ///< the byte at the beginning of each part
};

constexpr LightTables MakeTables()
{
    LightTables res = {};
    for (int i = 0; i < 256; ++i) {
        res.light[i] = float(LightOf(i));
        res.begin[i] = i == 0 ? 0 : RoundedUp(LightOf(i - 0.5));
    }
    res.begin[256] = 256;
    int byte = 0;
    for (int i = 0; i <= 255 * kParts; ++i) {
        byte += float(i) / kParts >= res.begin[byte + 1];
        res.first[i] = uint8_t(byte);
    }
    return res;
}

constexpr LightTables kTables = MakeTables();

uint8_t ByteOf(float light)
{
    const float clamped = light > 0 ? (light < 255 ? light : 255) : 0;
    const int first = kTables.first[int(clamped * kParts)];
    return uint8_t(first + (clamped >= kTables.begin[first + 1]));
}

}  // namespace

void LightOfPixels(float* res, const uint8_t* pixels, int width, bool weighted)
{
    for (ptrdiff_t i = 0; i < ptrdiff_t(width) * 4; i += 4) {
        const float alpha = pixels[i + 3], weight = weighted ? alpha : 1;
        for (int c = 0; c < 3; ++c) {
            res[i + c] = kTables.light[pixels[i + c]] * weight;
        }
        res[i + 3] = alpha;
    }
}

void PixelsOfLight(uint8_t* res, const float* light, int width)
{
    for (ptrdiff_t i = 0; i < ptrdiff_t(width) * 4; i += 4) {
        const float alpha = light[i + 3];
        for (int c = 0; c < 3; ++c) {
            res[i + c] = ByteOf(light[i + c]);
        }
        res[i + 3] = uint8_t((alpha > 0 ? (alpha < 255 ? alpha : 255) : 0) + 0.5f);
    }
}

}  // namespace zm
