#pragma once

#include "Math/MatrixFloats.h"
#include "ZmBbox.h"

namespace zm {

inline ZmVector Center(const ZmBbox& box)
{
    return (box.Max + box.Min) * 0.5f;
}

inline ZmVector HalfSize(const ZmBbox& box)
{
    return (box.Max - box.Min) * 0.5f;
}

/// A box placed by an affine matrix: its centre, its axes, and the half-sizes along them.
struct PlacedBox {
    ZmVector centre;
    ZmVector axis[3];  ///< with the length that the matrix gives them
    ZmVector half;     ///< in units of the axes

    explicit PlacedBox(const ZmBbox& box)
        : centre(Center(box)), axis{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, half(HalfSize(box))
    {
    }
    PlacedBox(const ZmBbox& box, const ZmMatrix& matrix)
        : axis{Row(matrix, 0), Row(matrix, 1), Row(matrix, 2)}, half(HalfSize(box))
    {
        const ZmVector local = Center(box);
        Zm3DMultiplyMatrixVector(&centre, matrix, &local);
    }
};

/// The ends of the box diagonal that is best aligned with a normal: along the normal no corner lies before the first
/// end or beyond the second.
struct Diagonal {
    ZmVector first, last;

    Diagonal(const ZmBbox& box, const ZmVector& normal) : first(box.Min), last(box.Max)
    {
        for (int i = 0; i < 3; ++i) {
            if (normal[i] < 0) {
                first[i] = box.Max[i];
                last[i] = box.Min[i];
            }
        }
    }
};

}  // namespace zm
