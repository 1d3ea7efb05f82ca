#include "Imaging/LineSums.h"

#include <algorithm>
#include <math.h>

namespace zm {
namespace {

uint16_t InParts(double weight, int parts)
{
    return uint16_t(floor(weight * parts + 0.5));
}

}  // namespace

bool ColumnLine::Prepare(int width, int more)
{
    const int64_t each = (int64_t(width) + more) * 2;
    m_Numbers = NewArray<uint16_t>(2 * each);
    if (m_Numbers == nullptr) {
        return false;
    }
    m_Columns = {m_Numbers.get(), m_Numbers.get() + each};
    std::fill_n(m_Columns.blueRed + ptrdiff_t(width) * 2, more * 2, uint16_t(0));
    std::fill_n(m_Columns.greenAlpha + ptrdiff_t(width) * 2, more * 2, uint16_t(0));
    return true;
}

bool LineSums::Prepare(int from, int to, int width, int more)
{
    m_Width = width;
    if (!m_Columns.Prepare(width, more) || !m_Sums.Prepare(width, 0) || !m_Axis.Prepare(from, to)) {
        return false;
    }
    m_Shift = 0;
    const int64_t inner = std::max(m_Axis.MostTaps() - 2, 1);
    while (255 * inner << (m_Shift + 1) <= 65535) {
        ++m_Shift;
    }
    m_InnerWeight = to < from ? InParts(double(to) / from, 1 << (16 + kFraction - m_Shift)) : uint16_t(0);
    return true;
}

const Columns& LineSums::Sum(PictureLines& lines, int y)
{
    const Taps& taps = m_Axis.AllTaps()[y];
    const float* const weights = m_Axis.Weights() + taps.weight;
    Band band = {};
    AddInner(band, lines, taps.first + 1, std::max(taps.count - 2, 0));
    band.edge[0] = lines.Read(taps.first, Band::kMost);
    band.edge[1] = lines.Read(taps.first + taps.count - 1, Band::kMost + 1);
    band.edgeWeight[0] = InParts(weights[0], 256 << kFraction);
    band.edgeWeight[1] = taps.count > 1 ? InParts(weights[taps.count - 1], 256 << kFraction) : uint16_t(0);
    band.shift = m_Shift;
    band.innerWeight = m_InnerWeight;
    KernelsForLines().weighLines(m_Columns.Get(), band, m_Width);
    return m_Columns.Get();
}

void LineSums::AddInner(Band& band, PictureLines& lines, int first, int count)
{
    band.count = count;
    band.sums = m_Sums.Get();
    for (int done = 0; done < count; done += Band::kMost) {
        const int some = std::min(count - done, Band::kMost);
        for (int i = 0; i < some; ++i) {
            band.inner[i] = lines.Read(first + done + i, i);
        }
        if (count > Band::kMost) {
            KernelsForLines().addLines(band.sums, band.inner, some, m_Width, done > 0);
        }
    }
}

}  // namespace zm
