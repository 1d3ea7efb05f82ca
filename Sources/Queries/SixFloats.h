#pragma once

#include "Math/Lanes.h"

namespace zm {
namespace {

/// A record of two vectors, a box or a ray, in two registers. Reads exactly its 24 bytes; the fourth lanes are
/// meaningless.
template <class L>
struct SixFloats {
    L first, second;

    explicit SixFloats(const void* record)
        : first(L::Load4(record)), second(L::Load4(static_cast<const char*>(record) + 8).template Spread<1, 2, 3, 0>())
    {
    }
};

/// A mask of the lanes of a vector.
constexpr unsigned kThreeLanes = 7;

}  // namespace
}  // namespace zm
