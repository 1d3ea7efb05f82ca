#pragma once

#include "Imaging/FilterLines.h"
#include "Imaging/HeapArray.h"
#include "ZmImageOptions.h"

namespace zm {

/// One direction of a filter: the weights of the source pixels that contribute to each result pixel. A source that
/// wraps has pixels before and after it repeated, as far as they contribute; other edges are in the weights.
class FilterAxis {
public:
    /// Returns false if out of memory.
    bool Prepare(int from, int to, ZMFILTER filter, ZMEDGES edges);

    FilterTable Table() const { return {m_First.get(), m_Weights.get(), m_Count}; }
    /// The pixels of the source with what is repeated around it, or more: those beyond have no weight.
    int Places() const { return m_Places; }
    /// How many of them lie before the source.
    int Before() const { return m_Before; }
    /// The source pixel at a place of weight.
    int PixelAt(int place) const;

private:
    /// Contiguous pixels, which may lie beyond the edges.
    struct Span {
        int64_t begin, end;
    };

    Span Covered(int i) const;
    double Weight(int i, int64_t pixel) const;
    int64_t Folded(const Span& span, int64_t pixel) const;
    Span Folded(const Span& span) const;
    bool Measure();
    void Fill(int i, double* weights);

    int m_From = 0, m_To = 0, m_Count = 0, m_Places = 0, m_Before = 0;
    bool m_IsBox = false;
    ZMEDGES m_Edges = ZMEDGES_CLAMP;
    double m_Radius = 0, m_Stretch = 1;
    double (*m_Shape)(double x) = nullptr;
    HeapArray<int> m_First;
    HeapArray<float> m_Weights;
};

}  // namespace zm
