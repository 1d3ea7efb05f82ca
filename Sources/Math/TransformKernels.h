#pragma once

#include "Math/Lanes.h"
#include "Math/Streaming.h"
#include "Math/Transforms.h"

// Vectors times matrices: one formula over any lane type. `m` is always sixteen floats, row by row.

namespace zm {
namespace {

// The grouping is part of the result, which has the same bits on every path. Adding in pairs shortens the dependency
// chain of a single transform.
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

enum Kind {
    ROTATE,
    POINT
};

/// A matrix with one row per register, repeated in both halves of wider registers: for one or two vectors at a time.
template <class L>
struct RowMatrix {
    L row0, row1, row2, row3;

    explicit RowMatrix(const float* m) : row0(L::Row(m)), row1(L::Row(m + 4)), row2(L::Row(m + 8)), row3(L::Row(m + 12))
    {
    }

    template <Kind kind>
    L Apply(L x, L y, L z) const
    {
        return kind == POINT ? Blend(x, row0, y, row1, z, row2, row3) : Blend(x, row0, y, row1, z, row2);
    }
    template <Kind kind>
    L Apply(const void* p) const
    {
        return Apply<kind>(L::SplatAt(p, 0), L::SplatAt(p, 1), L::SplatAt(p, 2));
    }
};

/// L::kCount contiguous vectors of 12 bytes each, processed in place as three registers, with the matrix elements
/// arranged in three registers to match.
template <class L, Kind kind>
struct GroupTransform {
    L rows[4][3];

    explicit GroupTransform(const float* m)
    {
        for (int i = 0; i < 4; ++i) {
            for (int part = 0; part < 3; ++part) {
                rows[i][part] = L::Repeat(m + 4 * i, part);
            }
        }
    }

    void Apply(const char* in, L (&res)[3]) const
    {
        L x[3], y[3], z[3];
        L::SpreadPoints(in, x, y, z);
        for (int r = 0; r < 3; ++r) {
            res[r] = kind == POINT ? Blend(x[r], rows[0][r], y[r], rows[1][r], z[r], rows[2][r], rows[3][r])
                                   : Blend(x[r], rows[0][r], y[r], rows[1][r], z[r], rows[2][r]);
        }
    }

    template <bool stream>
    static void Put(char* out, const L (&res)[3])
    {
        for (int r = 0; r < 3; ++r) {
            res[r].template Put<stream>(out + r * L::kCount * 4);
        }
    }

    /// Processes all whole groups.
    template <bool stream>
    void Run(StridedPair pair) const
    {
        for (; pair.count >= L::kCount; Advance(pair, L::kCount)) {
            L res[3];
            Apply(pair.src, res);
            Put<stream>(pair.res, res);
        }
    }
};

/// Streaming is only for contiguous results that do not overwrite their source.
inline bool WorthStreaming(const StridedPair& pair)
{
    const ptrdiff_t outBytes = pair.resStride * pair.count;
    return WorthStreaming(pair.res, outBytes) && !Overlap(pair.res, outBytes, pair.src, pair.srcStride * pair.count);
}

/// One vector at a time in plain floats, at any strides.
template <Kind kind>
inline void TransformSingly(const StridedPair& pair, const float* m)
{
    GroupTransform<SingleLane, kind>(m).template Run<false>(pair);
}

/// Contiguous arrays of 12-byte elements on both sides.
///
/// The first and the last group are computed in advance and stored at the end, over identical results of the loop. So
/// the loop can start where its stores fill whole registers (stores across cache lines cost more) and end anywhere,
/// also in place.
template <class L, Kind kind>
inline void TransformTight(StridedPair pair, const float* m)
{
    if (pair.count < 2 * L::kCount) {
        TransformSingly<kind>(pair, m);
        return;
    }
    const GroupTransform<L, kind> transform(m);
    const ptrdiff_t beforeLast = 12 * (pair.count - L::kCount);
    char* const out = pair.res;
    L first[3], last[3];
    transform.Apply(pair.src, first);
    transform.Apply(pair.src + beforeLast, last);
    if (uintptr_t(pair.res) % 4 == 0) {
        Advance(pair, ElementsToAlignment(pair.res, L::kCount * 4));
    }
    if (WorthStreaming(pair)) {
        transform.template Run<true>(pair);
        _mm_sfence();
    } else {
        transform.template Run<false>(pair);
    }
    transform.template Put<false>(out, first);
    transform.template Put<false>(out + beforeLast, last);
}

/// Results of kComponents floats at any strides: one vector per register, four vectors per step (a branch per vector
/// would cost a third of the work).
template <class L, Kind kind, int kComponents>
inline void TransformRows(StridedPair pair, const float* m)
{
    const RowMatrix<L> matrix(m);
    const auto transform = [&](ptrdiff_t i) {
        const L res = matrix.template Apply<kind>(pair.src + i * pair.srcStride);
        if (kComponents == 3) {
            res.Store3(pair.res + i * pair.resStride);
        } else {
            res.Store4(pair.res + i * pair.resStride);
        }
    };
    for (; pair.count >= 4; Advance(pair, 4)) {
        transform(0);
        transform(1);
        transform(2);
        transform(3);
    }
    for (; pair.count > 0; Advance(pair, 1)) {
        transform(0);
    }
}

inline bool IsTight(const StridedPair& pair)
{
    return pair.srcStride == 12 && pair.resStride == 12;
}

}  // namespace
}  // namespace zm
