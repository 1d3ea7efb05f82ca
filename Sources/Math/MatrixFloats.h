#pragma once

#include "ZmMatrix.h"

namespace zm {

/// The sixteen floats of a matrix, row by row, as the kernels expect them.
inline float* FloatsOf(ZmMatrix& m)
{
    return reinterpret_cast<float*>(&m);
}

inline const float* FloatsOf(const ZmMatrix& m)
{
    return reinterpret_cast<const float*>(&m);
}

/// The first three elements of row i.
inline ZmVector Row(const ZmMatrix& m, int i)
{
    return {m[i][0], m[i][1], m[i][2]};
}

}  // namespace zm
