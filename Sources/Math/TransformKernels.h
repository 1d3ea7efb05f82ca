#pragma once

#include "Math/Lanes.h"
#include "Math/Streaming.h"
#include "Math/Transforms.h"

// Vectors through matrices, one formula over any lanes. `m` is always sixteen floats, row by row.

namespace zm {
namespace {

// The grouping is part of the results, which are the same bits on every path. Pairs first: it
// shortens the chain of a single transform.
template <class L>
inline L Blend(L x, L row0, L y, L row1, L z, L row2)
{
    return (x * row0 + y * row1) + z * row2;
}

template <class L>
inline L Blend(L x, L row0, L y, L row1, L z, L row2, L row3)
{
    return (x * row0 + y * row1) + (z * row2 + row3);
}

enum Kind { kRotate, kPoint };

/// A matrix with one register a row, for vectors one at a time.
template <class L>
struct RowMatrix {
    L row0, row1, row2, row3;

    explicit RowMatrix(const float* m)
        : row0(L::Load4(m)), row1(L::Load4(m + 4)), row2(L::Load4(m + 8)), row3(L::Load4(m + 12))
    {
    }

    template <Kind kind>
    L Apply(const void* p) const
    {
        float v[3];
        memcpy(v, p, sizeof v);
        const L x = L::Splat(v[0]), y = L::Splat(v[1]), z = L::Splat(v[2]);
        return kind == kPoint ? Blend(x, row0, y, row1, z, row2, row3) : Blend(x, row0, y, row1, z, row2);
    }
};

/// A matrix with one register an element, for several vectors at a time.
template <class L>
struct ElementMatrix {
    L e[4][3];

    explicit ElementMatrix(const float* m)
    {
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 3; ++j) {
                e[i][j] = L::Splat(m[4 * i + j]);
            }
        }
    }

    template <Kind kind>
    L Apply(L x, L y, L z, int j) const
    {
        return kind == kPoint ? Blend(x, e[0][j], y, e[1][j], z, e[2][j], e[3][j])
                              : Blend(x, e[0][j], y, e[1][j], z, e[2][j]);
    }
};

inline void Advance(Span& span, ptrdiff_t n)
{
    span.out += n * span.outStride;
    span.in += n * span.inStride;
    span.count -= n;
}

/// As many whole groups of L::kCount elements as there are; `span` keeps the rest. Groups of more
/// than one lie tight, 12 bytes an element.
template <class L, Kind kind, bool Stream = false>
inline void TransformGroups(Span& span, const float* m)
{
    const ElementMatrix<L> matrix(m);
    for (; span.count >= L::kCount; Advance(span, L::kCount)) {
        L x, y, z;
        L::LoadPoints(span.in, x, y, z);
        L::template StorePoints<Stream>(span.out, matrix.template Apply<kind>(x, y, z, 0),
                                        matrix.template Apply<kind>(x, y, z, 1),
                                        matrix.template Apply<kind>(x, y, z, 2));
    }
}

/// Streaming is for results that lie tight and are not their own source.
inline bool WorthStreaming(const Span& span)
{
    const ptrdiff_t outBytes = span.outStride * span.count;
    return WorthStreaming(span.out, outBytes) && !Overlap(span.out, outBytes, span.in, span.inStride * span.count);
}

/// Tight arrays, 12 bytes an element on both sides.
template <class L, Kind kind>
inline void TransformTight(Span span, const float* m)
{
    if (WorthStreaming(span)) {
        Span head = span;
        head.count = ElementsToAlignment(span.out);
        Advance(span, head.count);
        TransformGroups<SingleLane, kind>(head, m);
        TransformGroups<L, kind, true>(span, m);
        _mm_sfence();
    } else {
        TransformGroups<L, kind>(span, m);
    }
    TransformGroups<SingleLane, kind>(span, m);
}

/// Three-component results at any strides, a vector a register.
template <class L, Kind kind>
inline void TransformRows(Span span, const float* m)
{
    const RowMatrix<L> matrix(m);
    for (; span.count > 0; Advance(span, 1)) {
        matrix.template Apply<kind>(span.in).Store3(span.out);
    }
}

/// Four-component results at any strides.
template <class L>
inline void TransformRows4(Span span, const float* m)
{
    const RowMatrix<L> matrix(m);
    for (; span.count > 0; Advance(span, 1)) {
        matrix.template Apply<kPoint>(span.in).Store4(span.out);
    }
}

inline bool IsTight(const Span& span)
{
    return span.inStride == 12 && span.outStride == 12;
}

}  // namespace
}  // namespace zm
