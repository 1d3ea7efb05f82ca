#pragma once

#include "Platform/FeatureWord.h"
#include "ZmVector.h"

#include <emmintrin.h>
#include <float.h>
#include <math.h>

namespace zm {

/// v scaled to length 1, exact to rounding.
inline ZmVector NormalizedExactly(const ZmVector& v)
{
    return v * (1.0f / sqrtf(Dot(v, v)));
}

/// The result of ZmVector::Normalize. The vector path is approximate on purpose: callers trade accuracy for speed, so
/// no refinement step is added. Squared lengths below the normal floats take the exact path: the processor's
/// approximation treats them as 0.
inline ZmVector NormalizedApproximately(const ZmVector& v)
{
    const float square = Dot(v, v);
    if (UseSse() && square >= FLT_MIN) {
        return v * _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(square)));
    }
    return NormalizedExactly(v);
}

}  // namespace zm
