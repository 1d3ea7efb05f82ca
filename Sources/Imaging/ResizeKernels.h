#pragma once

#include "Imaging/ResizeLanes.h"
#include "Imaging/ResizeLines.h"

#include <stddef.h>

// The kernels of ResizeLines.h as templates over lanes. Those with a `from` process whole registers from there on and
// return the index of the first pixel that is left. Structures passed by reference are copied first: the compiler would
// reload them after each store, which might alias them.

namespace zm {
namespace {

/// Prefetches a later part of a line: lines are read in short bursts, for which the hardware prefetches too late. An
/// invalid address has no effect.
inline void FetchAhead(const uint8_t* line, ptrdiff_t bytes)
{
    __builtin_prefetch(line + bytes);
}

template <class Pixels, int Count>
inline int SumPixels(float* sums, const WeightedLines& lines, int from, int width, bool add)
{
    const WeightedLines l = lines;
    int x = from;
    for (; x + Pixels::kPixels <= width; x += Pixels::kPixels) {
        const ptrdiff_t at = ptrdiff_t(x) * 4;
        Pixels sum = add ? Pixels::Load(sums + at) : Pixels::Zero();
        for (int i = 0; i < Count; ++i) {
            sum = sum + Pixels::FromBytes(l.line[i] + at).Premultiplied() * l.weight[i];
        }
        sum.Store(sums + at);
    }
    return x;
}

/// Dispatches on the number of lines, so that the compiler unrolls the loop over them.
template <class Pixels>
inline int SumAll(float* sums, const WeightedLines& lines, int from, int width, bool add)
{
    switch (lines.count) {
    case 1: return SumPixels<Pixels, 1>(sums, lines, from, width, add);
    case 2: return SumPixels<Pixels, 2>(sums, lines, from, width, add);
    case 3: return SumPixels<Pixels, 3>(sums, lines, from, width, add);
    default: return SumPixels<Pixels, 4>(sums, lines, from, width, add);
    }
}

template <class Pixels, class One>
inline void SumLinesBy(float* sums, const WeightedLines& lines, int width, bool add)
{
    const int done = SumAll<Pixels>(sums, lines, 0, width, add);
    if constexpr (Pixels::kPixels > 1) {
        SumAll<One>(sums, lines, done, width, add);
    }
}

template <class Pixel>
inline Pixel WeightedSum(const float* pixels, const float* weights, int count)
{
    Pixel sum = Pixel::Load(pixels) * weights[0];
    for (int i = 1; i < count; ++i) {
        sum = sum + Pixel::Load(pixels + ptrdiff_t(i) * 4) * weights[i];
    }
    return sum;
}

/// Adds partial sums of kMostFloats products each, to limit rounding errors.
template <class Pixel>
inline Pixel Reduced(const float* sums, const Taps& taps, const float* weights)
{
    const float *pixels = sums + ptrdiff_t(taps.first) * 4, *weight = weights + taps.weight;
    int left = taps.count;
    Pixel sum = WeightedSum<Pixel>(pixels, weight, left < kMostFloats ? left : kMostFloats);
    while ((left -= kMostFloats) > 0) {
        pixels += ptrdiff_t(kMostFloats) * 4;
        weight += kMostFloats;
        sum = sum + WeightedSum<Pixel>(pixels, weight, left < kMostFloats ? left : kMostFloats);
    }
    return sum;
}

template <class Pixel>
inline void ReducePixels(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int from, int width)
{
    for (int x = from; x < width; ++x) {
        Reduced<Pixel>(sums, taps[x], weights).Straight().ToBytes(res + ptrdiff_t(x) * 4);
    }
}

template <class Lanes>
inline int AddPixels(const Columns& sums, const uint8_t* const* lines, int count, int from, int width, bool add)
{
    int x = from;
    for (; x + Lanes::kPixels <= width; x += Lanes::kPixels) {
        Lanes sum = add ? Lanes::Load(sums, x) : Lanes::Splat(0);
        for (int i = 0; i < count; ++i) {
            sum = sum + Lanes::FromBytes(lines[i] + ptrdiff_t(x) * 4);
        }
        sum.Store(sums, x);
    }
    return x;
}

/// The sum of `Count` inner lines; if there are more than Band::kMost, the sum that AddLinesBy() has stored.
template <class Lanes, int Count>
inline Lanes SumOfInner(const Band& band, int x)
{
    if constexpr (Count > Band::kMost) {
        return Lanes::Load(band.sums, x);
    } else if constexpr (Count > 0) {
        return SumOfInner<Lanes, Count - 1>(band, x) + Lanes::FromBytes(band.inner[Count - 1] + ptrdiff_t(x) * 4);
    } else {
        return Lanes::Splat(0);
    }
}

template <class Lanes, int Count>
inline int WeighPixels(const Columns& res, const Band& band, int from, int width)
{
    const Columns r = res;
    const Band b = band;
    const ptrdiff_t nextBand = b.edge[1] - b.edge[0];
    const Lanes inner = Lanes::Splat(b.innerWeight), first = Lanes::Splat(b.edgeWeight[0]),
                last = Lanes::Splat(b.edgeWeight[1]);
    int x = from;
    for (; x + Lanes::kPixels <= width; x += Lanes::kPixels) {
        const ptrdiff_t at = ptrdiff_t(x) * 4;
        FetchAhead(b.edge[1] + at, nextBand);
        const Lanes sum = SumOfInner<Lanes, Count>(b, x);
        const Lanes edges =
            Lanes::FromHighBytes(b.edge[0] + at).Share(first) + Lanes::FromHighBytes(b.edge[1] + at).Share(last);
        ((sum << b.shift).Share(inner) + edges).Store(r, x);
    }
    return x;
}

template <class Lanes>
inline int WeighAll(const Columns& res, const Band& band, int from, int width)
{
    switch (band.count) {
    case 0: return WeighPixels<Lanes, 0>(res, band, from, width);
    case 1: return WeighPixels<Lanes, 1>(res, band, from, width);
    case 2: return WeighPixels<Lanes, 2>(res, band, from, width);
    case 3: return WeighPixels<Lanes, 3>(res, band, from, width);
    case 4: return WeighPixels<Lanes, 4>(res, band, from, width);
    default: return WeighPixels<Lanes, Band::kMost + 1>(res, band, from, width);
    }
}

template <class Lanes>
inline void AddLinesBy(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add)
{
    const int done = AddPixels<Lanes>(sums, lines, count, 0, width, add);
    AddPixels<ScalarColumns>(sums, lines, count, done, width, add);
}

template <class Lanes>
inline void WeighLinesBy(const Columns& res, const Band& band, int width)
{
    WeighAll<ScalarColumns>(res, band, WeighAll<Lanes>(res, band, 0, width), width);
}

template <class Sums, int Fours>
inline int ReduceSums(const ResultLine& res, const Columns& columns, const WeightTable& table, int from)
{
    const ResultLine r = res;
    const Columns c = columns;
    const WeightTable s = table;
    int x = from;
    for (; x + Sums::kPixels <= r.width; x += Sums::kPixels) {
        Sums::template Of<Fours>(c, s, x).ToBytes(r.pixels + ptrdiff_t(x) * 4, s.scale, s.bias, r.alpha);
    }
    return x;
}

/// A single group of four columns needs no loop.
template <class Sums>
inline int ReduceAll(const ResultLine& res, const Columns& columns, const WeightTable& table, int from)
{
    return table.fours == 1 ? ReduceSums<Sums, 1>(res, columns, table, from)
                            : ReduceSums<Sums, 0>(res, columns, table, from);
}

template <class Sums>
inline void ReduceColumnsBy(const ResultLine& res, const Columns& columns, const WeightTable& table)
{
    ReduceAll<ScalarSums>(res, columns, table, ReduceAll<Sums>(res, columns, table, 0));
}

template <class Lanes>
inline int StretchPixels(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int from, int width)
{
    constexpr ptrdiff_t kAhead = 8192;  // measured: half or twice this distance is no better
    // 128 rounds to nearest; 2 returns half of what four rounded-down products can lose, here and in MixPixels().
    const Lanes bias = Lanes::Splat(128 + 2);
    const Columns r = res;
    const Neighbours n = neighbours;
    const int end = width - Lanes::kPixels;
    int x = from;
#pragma GCC unroll 2
    for (; x <= end; x += Lanes::kPixels) {
        FetchAhead(line + ptrdiff_t(n.left[x]) * 4, kAhead);
        Lanes left, right;
        Lanes::LoadNeighbours(left, right, line, n.left + x);
        const Lanes weight = Lanes::LoadWeights(n.weights + ptrdiff_t(x) * 2);
        (left.Share(-weight) + right.Share(weight) + bias).Store(r, x);
    }
    return x;
}

template <class Lanes>
inline int MixPixels(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight, int from)
{
    constexpr ptrdiff_t kAhead = 4096;  // a store reads its cache line first
    const Lanes below = Lanes::Splat(weight), above = -below;
    const ResultLine r = res;
    const Columns u = upper, l = lower;
    const int end = r.width - Lanes::kPixels;
    int x = from;
#pragma GCC unroll 2
    for (; x <= end; x += Lanes::kPixels) {
        FetchAhead(r.pixels + ptrdiff_t(x) * 4, kAhead);
        const Lanes sum = Lanes::Load(u, x).Share(above) + Lanes::Load(l, x).Share(below);
        sum.HighToBytes(r.pixels + ptrdiff_t(x) * 4, r.alpha);
    }
    return x;
}

template <class Words>
inline int HalvePixels(const ResultLine& res, const uint8_t* upper, const uint8_t* lower, int from)
{
    const ResultLine r = res;
    const ptrdiff_t nextTwo = 2 * (lower - upper);
    int x = from;
    for (; x + Words::kPixels <= r.width; x += Words::kPixels) {
        const ptrdiff_t at = ptrdiff_t(x) * 8;
        FetchAhead(upper + at, nextTwo);
        FetchAhead(lower + at, nextTwo);
        Words::SumOfFour(upper + at, lower + at).template ToBytes<2>(r.pixels + ptrdiff_t(x) * 4, r.alpha);
    }
    return x;
}

template <class Lanes>
inline void MixLinesBy(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight)
{
    MixPixels<ScalarColumns>(res, upper, lower, weight, MixPixels<Lanes>(res, upper, lower, weight, 0));
}

template <class Words>
inline void HalveLinesBy(const ResultLine& res, const uint8_t* upper, const uint8_t* lower)
{
    HalvePixels<ScalarPixelWords>(res, upper, lower, HalvePixels<Words>(res, upper, lower, 0));
}

}  // namespace
}  // namespace zm
