#include "ZmMath.h"

#include <stddef.h>

#include <type_traits>

// Engine modules share these records in memory and in files. All checks are done by the compiler.

namespace {

template <class T>
constexpr bool IsPlain(size_t size, size_t alignment = 4)
{
    return sizeof(T) == size && alignof(T) == alignment && std::is_trivially_copyable<T>::value &&
           std::is_standard_layout<T>::value;
}

static_assert(IsPlain<ZmVector>(12) && offsetof(ZmVector, y) == 4 && offsetof(ZmVector, z) == 8);
static_assert(IsPlain<ZmVector4>(16) && offsetof(ZmVector4, y) == 4 && offsetof(ZmVector4, w) == 12);
static_assert(IsPlain<Zm2DVector>(8) && offsetof(Zm2DVector, y) == 4);
static_assert(IsPlain<ZmCompressedVector>(4, 2) && offsetof(ZmCompressedVector, ya) == 2);
static_assert(IsPlain<ZmMatrix>(64));
static_assert(IsPlain<ZmQuaternion>(16) && offsetof(ZmQuaternion, y) == 4 && offsetof(ZmQuaternion, w) == 12);
static_assert(IsPlain<ZmStridedData>(2 * sizeof(void*), alignof(void*)) &&
              offsetof(ZmStridedData, Stride) == sizeof(void*));
static_assert(IsPlain<ZmColor>(16) && offsetof(ZmColor, g) == 4 && offsetof(ZmColor, a) == 12);

static_assert(IsPlain<ZmBbox>(24) && offsetof(ZmBbox, Max) == 0 && offsetof(ZmBbox, Min) == 12);
static_assert(IsPlain<ZmOBB>(60) && offsetof(ZmOBB, Axis) == 12 && offsetof(ZmOBB, Extent) == 48);
static_assert(IsPlain<ZmSphere>(16) && offsetof(ZmSphere, Radius) == 12);
static_assert(IsPlain<ZmPlane>(16) && offsetof(ZmPlane, D) == 12);
static_assert(IsPlain<ZmRay>(24) && offsetof(ZmRay, Direction) == 12);
static_assert(IsPlain<ZmRect>(16) && offsetof(ZmRect, top) == 4 && offsetof(ZmRect, right) == 8);
static_assert(IsPlain<RKRECT>(16) && offsetof(RKRECT, top) == 4 && offsetof(RKRECT, right) == 8);
static_assert(IsPlain<RKPOINT>(8) && offsetof(RKPOINT, y) == 4);

static_assert(IsPlain<ZmFrustum>(172) && offsetof(ZmFrustum, Right) == 12 && offsetof(ZmFrustum, Up) == 24);
static_assert(offsetof(ZmFrustum, Direction) == 36 && offsetof(ZmFrustum, HalfWidth) == 48);
static_assert(offsetof(ZmFrustum, HalfHeight) == 52 && offsetof(ZmFrustum, NearDistance) == 56);
static_assert(offsetof(ZmFrustum, FarDistance) == 60 && offsetof(ZmFrustum, FarNearRatio) == 64);
static_assert(offsetof(ZmFrustum, WidthFactor) == 68 && offsetof(ZmFrustum, HeightFactor) == 72);
static_assert(offsetof(ZmFrustum, Planes) == 76);

static_assert(sizeof(ZMCLIP_FLAGS) == 4 && sizeof(ProcessorsType) == 4 && ZMCLIP_ALL == 0x3F0);
static_assert(sizeof(ZmTimeProfiler) == 16 && sizeof(ZmRDTSCProfiler) == 16);

}  // namespace
