#include "Imaging/ResizeAxis.h"

#include <algorithm>
#include <numeric>

namespace zm {

bool ResizeAxis::Prepare(int from, int to)
{
    // An area covers from / to source pixels, plus up to two partial ones.
    const int64_t most = to < from ? int64_t(from) + 2 * int64_t(to) : 2 * int64_t(to);
    m_Taps = NewArray<Taps>(to);
    m_Weights = NewArray<float>(most);
    if (m_Taps == nullptr || m_Weights == nullptr) {
        return false;
    }
    m_Used = m_MostTaps = 0;
    for (int i = 0; i < to; ++i) {
        m_Taps[size_t(i)] = to < from ? Area(i, from, to) : Between(i, from, to);
        m_MostTaps = std::max(m_MostTaps, m_Taps[size_t(i)].count);
    }
    m_Parts = to < from ? from / std::gcd(from, to) : 2 * int64_t(to);
    return true;
}

// In units of 1 / to of a source pixel, result pixel i covers from * i to from * (i + 1).
Taps ResizeAxis::Area(int i, int from, int to)
{
    const int64_t begin = int64_t(from) * i, end = begin + from;
    const Taps res = {int(begin / to), int((end + to - 1) / to - begin / to), m_Used};
    for (int64_t place = res.first; place < res.first + res.count; ++place) {
        const int64_t left = place * to > begin ? place * to : begin;
        const int64_t right = (place + 1) * to < end ? (place + 1) * to : end;
        Add(double(right - left) / from);
    }
    return res;
}

// In units of half a result pixel, the centre of result pixel i lies from * (2 * i + 1) - to behind the centre of
// the first source pixel, and source pixels are 2 * to apart.
Taps ResizeAxis::Between(int i, int from, int to)
{
    const int64_t apart = 2 * int64_t(to), centre = int64_t(from) * (2 * int64_t(i) + 1) - to;
    const int64_t place = centre < 0 ? 0 : centre / apart;
    const double share = centre < 0 ? 0 : double(centre % apart) / double(apart);
    const Taps res = {int(place), share > 0 && place + 1 < from ? 2 : 1, m_Used};
    if (res.count == 1) {
        Add(1);
    } else {
        Add(1 - share);
        Add(share);
    }
    return res;
}

}  // namespace zm
