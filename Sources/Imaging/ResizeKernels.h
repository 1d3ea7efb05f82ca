#pragma once

#include "Imaging/ResizeLanes.h"
#include "Imaging/ResizeLines.h"

#include <stddef.h>

// The functions of ResizeLines.h over lanes. Those with a `from` go as far as whole registers do, and return how far.

namespace zm {
namespace {

/// Lines are read in short bursts, and by themselves processors fetch them too late. An address without memory does
/// nothing.
inline void FetchAhead(const uint8_t* line, ptrdiff_t bytes)
{
    __builtin_prefetch(line + bytes);
}

template <class Pixels, bool Opaque, int Count>
inline int SumPixels(float* sums, const WeightedLines& lines, int from, int width, bool add)
{
    const WeightedLines l = lines;
    int x = from;
    for (; x + Pixels::kPixels <= width; x += Pixels::kPixels) {
        const ptrdiff_t at = ptrdiff_t(x) * 4;
        Pixels sum = add ? Pixels::Load(sums + at) : Pixels::Zero();
        for (int i = 0; i < Count; ++i) {
            const Pixels bytes = Pixels::FromBytes(l.line[i] + at);
            sum = sum + (Opaque ? bytes : bytes.Premultiplied()) * l.weight[i];
        }
        sum.Store(sums + at);
    }
    return x;
}

template <class Pixels, int Count>
inline int SumSome(float* sums, const WeightedLines& lines, int from, int width, bool add)
{
    return lines.opaque ? SumPixels<Pixels, true, Count>(sums, lines, from, width, add)
                        : SumPixels<Pixels, false, Count>(sums, lines, from, width, add);
}

template <class Pixels>
inline int SumAll(float* sums, const WeightedLines& lines, int from, int width, bool add)
{
    switch (lines.count) {
    case 1: return SumSome<Pixels, 1>(sums, lines, from, width, add);
    case 2: return SumSome<Pixels, 2>(sums, lines, from, width, add);
    case 3: return SumSome<Pixels, 3>(sums, lines, from, width, add);
    default: return SumSome<Pixels, 4>(sums, lines, from, width, add);
    }
}

template <class Pixels, class One>
inline void SumLinesBy(float* sums, const WeightedLines& lines, int width, bool add)
{
    SumAll<One>(sums, lines, SumAll<Pixels>(sums, lines, 0, width, add), width, add);
}

template <class Pixel>
inline Pixel Reduced(const float* sums, const Taps& taps, const float* weights)
{
    const float* const from = sums + ptrdiff_t(taps.first) * 4;
    Pixel sum = Pixel::Load(from) * weights[taps.weight];
    for (int i = 1; i < taps.count; ++i) {
        sum = sum + Pixel::Load(from + ptrdiff_t(i) * 4) * weights[taps.weight + i];
    }
    return sum;
}

template <class Pixel>
inline void ReducePixels(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int from, int width,
                         bool opaque)
{
    for (int x = from; x < width; ++x) {
        const Pixel sum = Reduced<Pixel>(sums, taps[x], weights);
        (opaque ? sum : sum.Straight()).ToBytes(res + ptrdiff_t(x) * 4);
    }
}

template <class Words>
inline int StretchPixels(int16_t* res, const uint8_t* line, const Neighbours& neighbours, int from, int width)
{
    constexpr ptrdiff_t kAhead = 8192;  // measured: half of it, or twice as much, is no better
    int x = from;
    for (; x + Words::kPixels <= width; x += Words::kPixels) {
        FetchAhead(line + ptrdiff_t(neighbours.left[x]) * 4, kAhead);
        Words middle, half;
        Words::LoadNeighbours(middle, half, line, neighbours.left + x);
        const Words share = Words::Load(neighbours.shares + ptrdiff_t(x) * 4);
        (middle + half.Share(share)).Store(res + ptrdiff_t(x) * 4);
    }
    return x;
}

template <class Words>
inline int MixPixels(const ResultLine& res, const int16_t* upper, const int16_t* lower, int share, int from)
{
    const Words shares = Words::Splat(share);
    const ResultLine r = res;
    int x = from;
    for (; x + Words::kPixels <= r.width; x += Words::kPixels) {
        const Words above = Words::Load(upper + ptrdiff_t(x) * 4), below = Words::Load(lower + ptrdiff_t(x) * 4);
        (above + (below - above).Share(shares)).template ToBytes<kFraction>(r.pixels + ptrdiff_t(x) * 4, r.alpha);
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

template <class Words>
inline void MixLinesBy(const ResultLine& res, const int16_t* upper, const int16_t* lower, int share)
{
    MixPixels<ScalarPixelWords>(res, upper, lower, share, MixPixels<Words>(res, upper, lower, share, 0));
}

template <class Words>
inline void HalveLinesBy(const ResultLine& res, const uint8_t* upper, const uint8_t* lower)
{
    HalvePixels<ScalarPixelWords>(res, upper, lower, HalvePixels<Words>(res, upper, lower, 0));
}

}  // namespace
}  // namespace zm
