#include "Imaging/IntegerWeights.h"

#include <algorithm>
#include <math.h>

namespace zm {

bool IntegerWeights::Prepare(int from, int to)
{
    if (!m_Axis.Prepare(from, to)) {
        return false;
    }
    if (!Fits()) {
        return true;
    }
    m_Fours = (m_Axis.MostTaps() + 3) / 4;
    m_First = NewArray<int>(to);
    m_Weights = NewArray<int16_t>(int64_t(to) * m_Fours * 8);
    if (m_First == nullptr || m_Weights == nullptr) {
        return false;
    }
    std::fill_n(m_Weights.get(), ptrdiff_t(to) * m_Fours * 8, int16_t(0));
    for (int x = 0; x < to; ++x) {
        const Taps& taps = m_Axis.AllTaps()[x];
        m_First[size_t(x)] = taps.first;
        for (int i = 0; i < taps.count; ++i) {
            Set(x, i, m_Axis.Weights()[taps.weight + i]);
        }
    }
    return true;
}

WeightTable IntegerWeights::Table() const
{
    // Each sum contains up to three products rounded down: the bias returns half of what they can lose.
    constexpr float kBias = 1.5f / (1 << kFraction) + 0.5f;
    return {m_First.get(), m_Weights.get(), m_Fours, 1 / (float(m_Axis.Parts()) * (1 << kFraction)), kBias};
}

void IntegerWeights::Set(int x, int i, double weight)
{
    int16_t* const res = m_Weights.get() + ptrdiff_t(x) * m_Fours * 8 + i / 2 * 4 + i % 2;
    res[0] = res[2] = int16_t(floor(weight * double(m_Axis.Parts()) + 0.5));
}

}  // namespace zm
