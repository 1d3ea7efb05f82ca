#pragma once

#include "Platform/FeatureWord.h"
#include "ZmVector.h"

#include <emmintrin.h>
#include <float.h>
#include <math.h>

namespace zm {

/// v with a length of 1, exact to rounding.
inline ZmVector NormalizedExactly(const ZmVector& v)
{
    return v * (1.0f / sqrtf(Dot(v, v)));
}

/// v as ZmVector::Normalize leaves it. The vector path is approximate on purpose: callers trade
/// accuracy for speed, so no refinement step is added. Squares below the normal floats go the exact way:
/// the processor's approximation takes them for 0.
inline ZmVector Normalized(const ZmVector& v)
{
    const float square = Dot(v, v);
    if (UseSse() && square >= FLT_MIN) {
        return v * _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(square)));
    }
    return NormalizedExactly(v);
}

}  // namespace zm
