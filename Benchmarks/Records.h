#pragma once

#include "QueryInputs.h"

#include "ZmFrustum.h"

// Inputs as records of the library. Internal to each file, as in Each.h.
namespace bench {
namespace {

template <class T>
inline const T& Record(const float* floats)
{
    return *reinterpret_cast<const T*>(floats);
}

inline ZmFrustum FrustumOf(const QueryInputs& in)
{
    ZmFrustum frustum(Record<ZmVector>(in.origin), Record<ZmVector>(in.right), Record<ZmVector>(in.up),
                      Record<ZmVector>(in.direction), 1, 20, 1, 1);
    frustum.HalfWidth = frustum.HalfHeight = 1;
    frustum.Update();
    return frustum;
}

}  // namespace
}  // namespace bench
