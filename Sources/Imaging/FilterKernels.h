#pragma once

#include "Imaging/FilterLines.h"
#include "Imaging/LightLanes.h"

// The kernels of FilterLines.h as templates over the lanes of ResizeLanes.h.

namespace zm {
namespace {

template <class Pixels, bool Light>
inline int WidenPixels(float* res, const uint8_t* pixels, int from, int width, bool weighted)
{
    int x = from;
    for (; x + Pixels::kPixels <= width; x += Pixels::kPixels) {
        Pixels wide;
        if constexpr (Light) {
            LoadLight(wide, pixels + ptrdiff_t(x) * 4, g_LightTables);
        } else {
            wide = Pixels::FromBytes(pixels + ptrdiff_t(x) * 4);
        }
        (weighted ? wide.Premultiplied() : wide).Store(res + ptrdiff_t(x) * 4);
    }
    return x;
}

template <class Pixels, class One, bool Light>
inline void WidenBy(float* res, const uint8_t* pixels, int width, bool weighted)
{
    const int done = WidenPixels<Pixels, Light>(res, pixels, 0, width, weighted);
    WidenPixels<One, Light>(res, pixels, done, width, weighted);
}

template <class Pixels, bool Light>
inline int NarrowPixels(uint8_t* res, const float* pixels, int from, int width, bool weighted)
{
    int x = from;
    for (; x + Pixels::kPixels <= width; x += Pixels::kPixels) {
        const Pixels wide = Pixels::Load(pixels + ptrdiff_t(x) * 4);
        const Pixels colour = (weighted ? wide.Straight() : wide).AtLeastZero();
        if constexpr (Light) {
            StoreLight(colour, res + ptrdiff_t(x) * 4, g_LightTables);
        } else {
            colour.ToBytes(res + ptrdiff_t(x) * 4);
        }
    }
    return x;
}

template <class Pixels, class One, bool Light>
inline void NarrowBy(uint8_t* res, const float* pixels, int width, bool weighted)
{
    const int done = NarrowPixels<Pixels, Light>(res, pixels, 0, width, weighted);
    NarrowPixels<One, Light>(res, pixels, done, width, weighted);
}

/// The weighted sum of pixels: those at even places, plus those at odd ones. `Count` other than 0 is their number.
template <class Pair, int Count>
inline typename Pair::Pixel SumOfPairs(const float* pixels, const float* weights, int count)
{
    Pair sum = Pair::Product(pixels, weights);
    for (int i = 2; i < (Count != 0 ? Count : count); i += 2) {
        sum = sum + Pair::Product(pixels + ptrdiff_t(i) * 4, weights + i);
    }
    return sum.Total();
}

/// Long sums are made of partial sums, which limits rounding errors.
template <class Pair, int Count>
inline typename Pair::Pixel SumOfPixels(const float* pixels, const float* weights, int count)
{
    constexpr int kMost = FilteredSum::kMost;
    typename Pair::Pixel sum = SumOfPairs<Pair, Count>(pixels, weights, count < kMost ? count : kMost);
    for (int done = kMost; Count == 0 && done < count; done += kMost) {
        const int left = count - done;
        sum = sum + SumOfPairs<Pair, 0>(pixels + ptrdiff_t(done) * 4, weights + done, left < kMost ? left : kMost);
    }
    return sum;
}

template <class Pair, int Count>
inline void FilterPixels(float* res, const float* pixels, const FilterTable& table, int width)
{
    const FilterTable t = table;
    for (int x = 0; x < width; ++x) {
        SumOfPixels<Pair, Count>(pixels + ptrdiff_t(t.first[x]) * 4, t.weights + ptrdiff_t(x) * t.count, t.count)
            .Store(res + ptrdiff_t(x) * 4);
    }
}

/// Dispatches on small counts, so that the compiler unrolls the loop.
template <class Pair>
inline void FilterLineBy(float* res, const float* pixels, const FilterTable& table, int width)
{
    switch (table.count) {
    case 2: FilterPixels<Pair, 2>(res, pixels, table, width); break;
    case 4: FilterPixels<Pair, 4>(res, pixels, table, width); break;
    case 6: FilterPixels<Pair, 6>(res, pixels, table, width); break;
    case 8: FilterPixels<Pair, 8>(res, pixels, table, width); break;
    default: FilterPixels<Pair, 0>(res, pixels, table, width); break;
    }
}

template <class Pixels>
inline void MixLinesOf(float* res, const FilteredSum& sum, ptrdiff_t floats)
{
    constexpr int kEach = Pixels::kPixels * 4, kRegisters = 4;
    static_assert(kMixedFloats % (kEach * kRegisters) == 0, "whole steps");
    for (ptrdiff_t at = 0; at < floats; at += kEach * kRegisters) {
        Pixels mixed[kRegisters];
        for (int i = 0; i < kRegisters; ++i) {
            mixed[i] = Pixels::Load(sum.line[0] + at + i * kEach) * sum.weight[0];
        }
        for (int k = 1; k < sum.count; ++k) {
            for (int i = 0; i < kRegisters; ++i) {
                mixed[i] = mixed[i] + Pixels::Load(sum.line[k] + at + i * kEach) * sum.weight[k];
            }
        }
        for (int i = 0; i < kRegisters; ++i) {
            mixed[i].Store(res + at + i * kEach);
        }
    }
}

/// Two adjacent pixels, in registers of one.
template <class Single>
struct PixelPair {
    using Pixel = Single;

    Single even, odd;

    static PixelPair Product(const float* pixels, const float* weights)
    {
        return {Single::Load(pixels) * weights[0], Single::Load(pixels + 4) * weights[1]};
    }
    PixelPair operator+(PixelPair o) const { return {even + o.even, odd + o.odd}; }
    Single Total() const { return even + odd; }
};

}  // namespace
}  // namespace zm
