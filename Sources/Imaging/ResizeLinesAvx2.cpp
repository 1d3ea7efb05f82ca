#include "Imaging/ResizeKernels.h"

// Compiled for AVX2; nothing but the functions of zm::avx2 may be visible outside this file.

namespace zm {
namespace avx2 {

void SumLines(float* sums, const WeightedLines& lines, int width, bool add)
{
    SumLinesBy<Avx2PixelFloats, SsePixelFloats>(sums, lines, width, add);
}

void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width, bool opaque)
{
    int x = 0;
    for (; x + 2 <= width; x += 2) {
        const Avx2PixelFloats both = Avx2PixelFloats::Both(Reduced<SsePixelFloats>(sums, taps[x], weights),
                                                           Reduced<SsePixelFloats>(sums, taps[x + 1], weights));
        (opaque ? both : both.Straight()).ToBytes(res + ptrdiff_t(x) * 4);
    }
    ReducePixels<SsePixelFloats>(res, sums, taps, weights, x, width, opaque);
}

void StretchLine(int16_t* res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    StretchLineBy<Avx2PixelWords>(res, line, neighbours, width);
}

void MixLines(uint8_t* res, const int16_t* upper, const int16_t* lower, int share, int width)
{
    MixLinesBy<Avx2PixelWords>(res, upper, lower, share, width);
}

void HalveLines(uint8_t* res, const uint8_t* upper, const uint8_t* lower, int width)
{
    HalveLinesBy<Avx2PixelWords>(res, upper, lower, width);
}

}  // namespace avx2
}  // namespace zm
