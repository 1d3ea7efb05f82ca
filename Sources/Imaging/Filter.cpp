#include "Imaging/Filter.h"

#include "Imaging/FilterAxis.h"
#include "Imaging/FloatLines.h"

#include <algorithm>
#include <functional>

namespace zm {
namespace {

ptrdiff_t FloatsOf(int width)
{
    return (ptrdiff_t(width) * 4 + kMixedFloats - 1) / kMixedFloats * kMixedFloats;
}

HeapArray<float> NewZeros(int64_t count)
{
    HeapArray<float> res = NewArray<float>(count);
    if (res != nullptr) {
        std::fill_n(res.get(), count, 0.0f);
    }
    return res;
}

/// The lines of the source, each filtered to the result's width. The last ones are kept.
class FilteredLines {
public:
    bool Prepare(const ImageView& src, const ImageView& dst, const FloatForm& form, const ZmImageOptions& options,
                 int kept)
    {
        m_From = src.width;
        m_To = dst.width;
        m_Kept = kept;
        m_Floats = FloatsOf(dst.width);
        m_Numbers = NewArray<int>(kept);
        if (m_Numbers == nullptr || !m_Source.Prepare(src, form) ||
            !m_Across.Prepare(src.width, dst.width, options.Filter, options.Edges)) {
            return false;
        }
        std::fill_n(m_Numbers.get(), kept, -1);
        m_Line = NewZeros(int64_t(m_Across.Places()) * 4);
        m_Lines = NewZeros(kept * int64_t(m_Floats));
        return m_Line != nullptr && m_Lines != nullptr;
    }

    /// Line y of the source, which is the one at `place`. Stays valid for the next places of which lines are kept.
    const float* Line(int place, int y)
    {
        const int slot = place % m_Kept;
        float* const res = m_Lines.get() + slot * m_Floats;
        if (m_Numbers[size_t(slot)] != place) {
            m_Numbers[size_t(slot)] = place;
            m_Source.Read(y, m_Line.get() + ptrdiff_t(m_Across.Before()) * 4);
            Repeat();
            KernelsForFilters().filterLine(res, m_Line.get(), m_Across.Table(), m_To);
        }
        return res;
    }

private:
    /// Copies the pixels that are repeated around the line.
    void Repeat()
    {
        const int before = m_Across.Before();
        float* const line = m_Line.get();
        for (int place = 0; place < before; ++place) {
            std::copy_n(line + ptrdiff_t(before + m_Across.PixelAt(place)) * 4, 4, line + ptrdiff_t(place) * 4);
        }
        for (int place = before + m_From; place < m_Across.Places(); ++place) {
            std::copy_n(line + ptrdiff_t(before + m_Across.PixelAt(place)) * 4, 4, line + ptrdiff_t(place) * 4);
        }
    }

    int m_From = 0, m_To = 0, m_Kept = 0;
    ptrdiff_t m_Floats = 0;
    FloatSource m_Source;
    FilterAxis m_Across;
    HeapArray<float> m_Line, m_Lines;
    HeapArray<int> m_Numbers;
};

/// Mixes filtered lines to lines of the result.
class MixedLines {
public:
    bool Prepare(const ImageView& src, const ImageView& dst, const FloatForm& form, const ZmImageOptions& options)
    {
        m_Floats = FloatsOf(dst.width);
        m_Sums = NewArray<float>(m_Floats);
        m_Part = NewArray<float>(m_Floats);
        return m_Sums != nullptr && m_Part != nullptr &&
               m_Down.Prepare(src.height, dst.height, options.Filter, options.Edges) &&
               m_Lines.Prepare(src, dst, form, options, std::min(m_Down.Table().count, FilteredSum::kMost));
    }

    float* Line(int y)
    {
        const FilterTable table = m_Down.Table();
        const float* const weights = table.weights + ptrdiff_t(y) * table.count;
        bool first = true;
        for (int done = 0; done < table.count; done += FilteredSum::kMost) {
            Gather(table.first[y] + done, weights + done, std::min(table.count - done, FilteredSum::kMost));
            if (m_Sum.count != 0) {
                KernelsForFilters().mixLines(first ? m_Sums.get() : m_Part.get(), m_Sum, m_Floats);
            }
            if (m_Sum.count != 0 && !first) {
                std::transform(m_Sums.get(), m_Sums.get() + m_Floats, m_Part.get(), m_Sums.get(), std::plus<float>());
            }
            first = first && m_Sum.count == 0;
        }
        return m_Sums.get();
    }

private:
    /// Lists the lines that have a weight.
    void Gather(int place, const float* weights, int count)
    {
        m_Sum.count = 0;
        for (int i = 0; i < count; ++i) {
            if (weights[i] != 0) {
                m_Sum.line[m_Sum.count] = m_Lines.Line(place + i, m_Down.PixelAt(place + i));
                m_Sum.weight[m_Sum.count] = weights[i];
                ++m_Sum.count;
            }
        }
    }

    ptrdiff_t m_Floats = 0;
    FilterAxis m_Down;
    FilteredLines m_Lines;
    FilteredSum m_Sum;
    HeapArray<float> m_Sums, m_Part;
};

}  // namespace

bool Filter(const ImageView& src, const ImageView& dst, const ZmImageOptions& options)
{
    const FloatForm form = FormOf(src, dst, options);
    MixedLines lines;
    FloatResult result;
    if (!lines.Prepare(src, dst, form, options) || !result.Prepare(dst, form, src.hasSlopes)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        result.Write(y, lines.Line(y));
    }
    return true;
}

}  // namespace zm
