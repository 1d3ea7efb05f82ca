#include "Imaging/ResizeKernels.h"

// Compiled for AVX2. Only the functions of zm::avx2 may be visible outside this file.

namespace zm {
namespace avx2 {

void SumLines(float* sums, const WeightedLines& lines, int width, bool add)
{
    SumLinesBy<Avx2PixelFloats, SsePixelFloats>(sums, lines, width, add);
}

void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width)
{
    int x = 0;
    for (; x + 2 <= width; x += 2) {
        const Avx2PixelFloats both = Avx2PixelFloats::Both(Reduced<SsePixelFloats>(sums, taps[x], weights),
                                                           Reduced<SsePixelFloats>(sums, taps[x + 1], weights));
        both.Straight().ToBytes(res + ptrdiff_t(x) * 4);
    }
    ReducePixels<SsePixelFloats>(res, sums, taps, weights, x, width);
}

void AddLines(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add)
{
    AddLinesBy<Avx2Columns>(sums, lines, count, width, add);
}

void WeighLines(const Columns& res, const Band& band, int width)
{
    WeighLinesBy<Avx2Columns>(res, band, width);
}

void ReduceColumns(const ResultLine& res, const Columns& columns, const WeightTable& table)
{
    ReduceColumnsBy<Avx2Sums>(res, columns, table);
}

void StretchLine(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    const int inner = StretchPixels<Avx2Columns>(res, line, neighbours, 0, neighbours.inner);
    const int done = StretchPixels<SseColumns>(res, line, neighbours, inner, width);
    StretchPixels<ScalarColumns>(res, line, neighbours, done, width);
}

void MixLines(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight)
{
    MixLinesBy<Avx2Columns>(res, upper, lower, weight);
}

void HalveLines(const ResultLine& res, const uint8_t* upper, const uint8_t* lower)
{
    HalveLinesBy<Avx2PixelWords>(res, upper, lower);
}

}  // namespace avx2
}  // namespace zm
