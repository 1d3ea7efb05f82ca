#include "Imaging/Conversion.h"

#include "Imaging/ConversionKernels.h"
#include "Platform/FeatureWord.h"

#include <algorithm>
#include <string.h>

namespace zm {
namespace {

struct Scale {
    int factor, bias, drop;
};

/// kNarrow[n][m] narrows n + 2 bits to m + 1: (value * factor + bias) >> drop is the nearest number for every value and
/// stays within 16 bits (ZmBlitTest, ChannelsOfAllWidthsConvert).
constexpr Scale kNarrow[7][7] = {
    {{1, 0, 1}},
    {{1, 0, 2}, {1, 0, 1}},
    {{1, 0, 3}, {3, 9, 4}, {1, 0, 1}},
    {{1, 0, 4}, {13, 50, 7}, {15, 23, 6}, {1, 0, 1}},
    {{1, 0, 5}, {3, 33, 6}, {7, 35, 6}, {61, 121, 8}, {1, 0, 1}},
    {{1, 0, 6}, {49, 970, 11}, {57, 454, 10}, {121, 504, 10}, {125, 252, 9}, {1, 0, 1}},
    {{1, 0, 7}, {3, 129, 8}, {225, 4060, 13}, {15, 135, 8}, {249, 1014, 11}, {253, 505, 10}, {1, 0, 1}},
};

/// Widens a value by repeating its bits until `to` bits are filled.
Scale Repeat(int from, int to)
{
    uint32_t factor = 1;
    int bits = from;
    while (bits < to) {
        factor = factor << from | 1;
        bits += from;
    }
    return {int(factor), 0, bits - to};
}

Scale ScaleOf(int from, int to)
{
    return from <= to ? Repeat(from, to) : kNarrow[from - 2][to - 1];
}

uint32_t MaskOf(int bits)
{
    return (1u << bits) - 1;
}

ChannelMove MoveOf(const Channel& from, const Channel& to)
{
    if (from.bits == 0 || to.bits == 0) {
        return {0, 0, 1, 0, 0, 0, 0};
    }
    if (from.bits == 16 && to.bits <= 8) {
        // (n + 32768 + (n + 32768) / 65536) / 65536 is n / 65535, rounded to nearest.
        return {from.shift, MaskOf(16), int(MaskOf(to.bits)), 32768, 16, to.shift, ~0u};
    }
    const Scale scale = ScaleOf(from.bits, to.bits);
    return {from.shift, MaskOf(from.bits), scale.factor, scale.bias, scale.drop, to.shift, 0};
}

Moves KindOf(const Channel& from, const Channel& to)
{
    const auto isAny = [](int bits) { return bits > 8 && bits != 16; };
    if (from.bits == 0 || to.bits == 0) {
        return Moves::PLACES;
    }
    if (isAny(from.bits) || isAny(to.bits)) {
        return Moves::ANY;
    }
    return from.bits == to.bits ? Moves::PLACES : std::max(from.bits, to.bits) > 8 ? Moves::WIDE : Moves::SCALED;
}

bool FillsPixel(const PixelLayout& layout)
{
    const Channel* const c = layout.channel;
    return c[0].bits + c[1].bits + c[2].bits + c[3].bits == 8 * layout.bytes;
}

uint32_t AnyChannel(uint32_t pixel, const Channel& from, const Channel& to)
{
    const uint64_t value = pixel >> from.shift & MaskOf(from.bits);
    if (from.bits <= to.bits) {
        uint64_t bits = value;
        int count = from.bits;
        for (; count < to.bits; count += from.bits) {
            bits = bits << from.bits | value;
        }
        return uint32_t(bits >> (count - to.bits));
    }
    const uint64_t whole = MaskOf(from.bits), most = MaskOf(to.bits);
    return uint32_t((2 * value * most + whole) / (2 * whole));
}

void ConvertAny(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    for (int i = 0; i < count; ++i, src += conversion.from.bytes, res += conversion.to.bytes) {
        uint32_t pixel = 0, converted = conversion.constant;
        memcpy(&pixel, src, size_t(conversion.from.bytes));
        for (int c = 0; c < 4; ++c) {
            const Channel &from = conversion.from.channel[c], &to = conversion.to.channel[c];
            if (from.bits != 0 && to.bits != 0) {
                converted |= AnyChannel(pixel, from, to) << to.shift;
            }
        }
        memcpy(res, &converted, size_t(conversion.to.bytes));
    }
}

}  // namespace

Conversion Convert(const PixelLayout& from, const PixelLayout& to)
{
    Conversion res = {};
    res.from = from;
    res.to = to;
    res.copy = memcmp(&from, &to, sizeof(from)) == 0 && FillsPixel(from);
    res.kind = Moves::PLACES;
    for (int c = 0; c < 4; ++c) {
        res.kind = std::max(res.kind, KindOf(from.channel[c], to.channel[c]));
    }
    const Channel alpha = to.channel[kAlpha];
    res.constant = from.channel[kAlpha].bits == 0 ? MaskOf(alpha.bits) << alpha.shift : 0;
    for (int c = 0; c < 4 && res.kind != Moves::ANY; ++c) {
        res.moves[c] = MoveOf(from.channel[c], to.channel[c]);
    }
    return res;
}

void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    if (conversion.copy) {
        memcpy(res, src, size_t(count) * size_t(conversion.from.bytes));
    } else if (conversion.kind == Moves::ANY) {
        ConvertAny(conversion, src, res, count);
    } else {
        DispatchWide(avx2::ConvertPixels, ConvertBy<SsePixels>, ConvertBy<ScalarPixel>, conversion, src, res, count);
    }
}

}  // namespace zm
