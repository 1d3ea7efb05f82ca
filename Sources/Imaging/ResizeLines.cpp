#include "Imaging/ResizeLines.h"

#include "Imaging/ResizeKernels.h"
#include "Platform/FeatureWord.h"

namespace zm {
namespace {

template <class Pixel>
void ReduceLineBy(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width)
{
    ReducePixels<Pixel>(res, sums, taps, weights, 0, width);
}

template <class Lanes>
void StretchLineBy(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    StretchPixels<ScalarColumns>(res, line, neighbours, StretchPixels<Lanes>(res, line, neighbours, 0, width), width);
}

}  // namespace

void SumLines(float* sums, const WeightedLines& lines, int width, bool add)
{
    DispatchWide(avx2::SumLines, SumLinesBy<SsePixelFloats, SsePixelFloats>,
                 SumLinesBy<ScalarPixelFloats, ScalarPixelFloats>, sums, lines, width, add);
}

void ReduceLine(uint8_t* res, const float* sums, const Taps* taps, const float* weights, int width)
{
    DispatchWide(avx2::ReduceLine, ReduceLineBy<SsePixelFloats>, ReduceLineBy<ScalarPixelFloats>, res, sums, taps,
                 weights, width);
}

void AddLines(const Columns& sums, const uint8_t* const* lines, int count, int width, bool add)
{
    DispatchWide(avx2::AddLines, AddLinesBy<SseColumns>, AddLinesBy<ScalarColumns>, sums, lines, count, width, add);
}

void WeighLines(const Columns& res, const Band& band, int width)
{
    DispatchWide(avx2::WeighLines, WeighLinesBy<SseColumns>, WeighLinesBy<ScalarColumns>, res, band, width);
}

void ReduceColumns(const ResultLine& res, const Columns& columns, const WeightTable& table)
{
    DispatchWide(avx2::ReduceColumns, ReduceColumnsBy<SseSums>, ReduceColumnsBy<ScalarSums>, res, columns, table);
}

void StretchLine(const Columns& res, const uint8_t* line, const Neighbours& neighbours, int width)
{
    DispatchWide(avx2::StretchLine, StretchLineBy<SseColumns>, StretchLineBy<ScalarColumns>, res, line, neighbours,
                 width);
}

void MixLines(const ResultLine& res, const Columns& upper, const Columns& lower, uint16_t weight)
{
    DispatchWide(avx2::MixLines, MixLinesBy<SseColumns>, MixLinesBy<ScalarColumns>, res, upper, lower, weight);
}

void HalveLines(const ResultLine& res, const uint8_t* upper, const uint8_t* lower)
{
    DispatchWide(avx2::HalveLines, HalveLinesBy<SsePixelWords>, HalveLinesBy<ScalarPixelWords>, res, upper, lower);
}

}  // namespace zm
