#include "Imaging/FilterAxis.h"

#include "Imaging/FilterShape.h"

#include <algorithm>
#include <limits.h>
#include <math.h>

namespace zm {
namespace {

int64_t Modulo(int64_t x, int64_t size)
{
    const int64_t rest = x % size;
    return rest < 0 ? rest + size : rest;
}

/// Rounds weights so that their sum is 1: what rounding adds or takes goes to the largest, where it matters least.
void Round(float* res, const double* weights, int count)
{
    double sum = 0, left = 1;
    int largest = 0;
    for (int i = 0; i < count; ++i) {
        sum += weights[i];
    }
    for (int i = 0; i < count; ++i) {
        res[i] = float(weights[i] / sum);
        left -= double(res[i]);
        largest = weights[i] > weights[largest] ? i : largest;
    }
    res[largest] = float(double(res[largest]) + left);
}

}  // namespace

bool FilterAxis::Prepare(int from, int to, ZMFILTER filter, ZMEDGES edges)
{
    m_From = from;
    m_To = to;
    m_IsBox = filter == ZMFILTER_BOX || (filter == ZMFILTER_DEFAULT && to < from);
    m_Edges = edges;
    m_Stretch = to < from ? double(from) / to : 1;
    m_Shape = ShapeOf(filter).at;
    m_Radius = ShapeOf(filter).radius * m_Stretch;
    if (!Measure()) {
        return false;
    }
    const int64_t all = int64_t(to) * m_Count;
    const HeapArray<double> scratch = NewArray<double>(m_Count);
    m_First = NewArray<int>(to);
    m_Weights = NewArray<float>(all);
    if (scratch == nullptr || m_First == nullptr || m_Weights == nullptr) {
        return false;
    }
    std::fill_n(m_Weights.get(), all, 0.0f);
    for (int i = 0; i < to; ++i) {
        Fill(i, scratch.get());
    }
    return true;
}

int FilterAxis::PixelAt(int place) const
{
    return int(Modulo(int64_t(place) - m_Before, m_From));
}

/// The source pixels under a result pixel.
FilterAxis::Span FilterAxis::Covered(int i) const
{
    const int64_t from = m_From, to = m_To;
    if (m_IsBox) {
        return {from * i / to, (from * (i + 1) + to - 1) / to};
    }
    const double centre = double(from * (2 * int64_t(i) + 1) - to) / double(2 * to);
    return {int64_t(floor(centre - m_Radius)) + 1, int64_t(ceil(centre + m_Radius))};
}

double FilterAxis::Weight(int i, int64_t pixel) const
{
    const int64_t from = m_From, to = m_To;
    if (m_IsBox) {
        return double(std::min(from * (i + 1), (pixel + 1) * to) - std::max(from * i, pixel * to));
    }
    return m_Shape(double(2 * to * pixel - from * (2 * int64_t(i) + 1) + to) / double(2 * to) / m_Stretch);
}

/// Where the weight of a pixel goes. A span that wraps stays as it is unless it meets itself.
int64_t FilterAxis::Folded(const Span& span, int64_t pixel) const
{
    const int64_t last = int64_t(m_From) - 1;
    if (m_Edges == ZMEDGES_WRAP) {
        return span.end - span.begin <= m_From ? pixel : Modulo(pixel, m_From);
    }
    if (m_Edges == ZMEDGES_MIRROR) {
        const int64_t place = Modulo(pixel, 2 * int64_t(m_From));
        return std::min(place, 2 * last + 1 - place);
    }
    return std::clamp<int64_t>(pixel, 0, last);
}

FilterAxis::Span FilterAxis::Folded(const Span& span) const
{
    if (span.begin >= 0 && span.end <= m_From) {
        return span;
    }
    if (m_Edges == ZMEDGES_WRAP) {
        return span.end - span.begin <= m_From ? span : Span{0, m_From};
    }
    Span res = {Folded(span, span.begin), Folded(span, span.begin) + 1};
    for (int64_t pixel = span.begin; pixel < span.end; ++pixel) {
        const int64_t place = Folded(span, pixel);
        res = {std::min(res.begin, place), std::max(res.end, place + 1)};
    }
    return res;
}

/// Finds out how many weights each result pixel needs, and how many pixels around the source. Returns false if they
/// are too many to be counted.
bool FilterAxis::Measure()
{
    int64_t most = 2, before = 0, after = 0;
    for (int i = 0; i < m_To; ++i) {
        const Span span = Folded(Covered(i));
        most = std::max(most, span.end - span.begin);
        before = std::max(before, -span.begin);
        after = std::max(after, span.end - m_From);
    }
    most += most % 2;
    const int64_t places = std::max(before + m_From + after, most);
    m_Count = int(most);
    m_Before = int(before);
    m_Places = int(places);
    return places <= INT_MAX;
}

void FilterAxis::Fill(int i, double* weights)
{
    const Span covered = Covered(i), span = Folded(covered);
    std::fill_n(weights, m_Count, 0.0);
    for (int64_t pixel = covered.begin; pixel < covered.end; ++pixel) {
        weights[Folded(covered, pixel) - span.begin] += Weight(i, pixel);
    }
    // Near the end, pixels of no weight come first.
    const int first = int(span.begin) + m_Before, left = std::min(first, m_Places - m_Count);
    m_First[size_t(i)] = left;
    Round(m_Weights.get() + ptrdiff_t(i) * m_Count + (first - left), weights, int(span.end - span.begin));
}

}  // namespace zm
