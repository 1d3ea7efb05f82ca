// Plain loops with strides and sizes known at compile time, for AVX2 and FMA: what an engine would write by hand for
// its own vertex formats.

#include "../Each.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace bench {
namespace {

struct Vector3 {
    float x, y, z;
};
struct Vector4 {
    float x, y, z, w;
};
struct Matrix {
    float m[4][4];
};

template <int Bytes>
using Vertex = Slot<Vector3, Bytes>;
using Vertex4 = Slot<Vector4, 16>;

inline Vector3 Rotated(const Matrix& a, const Vector3& v)
{
    return {v.x * a.m[0][0] + v.y * a.m[1][0] + v.z * a.m[2][0], v.x * a.m[0][1] + v.y * a.m[1][1] + v.z * a.m[2][1],
            v.x * a.m[0][2] + v.y * a.m[1][2] + v.z * a.m[2][2]};
}

inline Vector3 Transformed(const Matrix& a, const Vector3& v)
{
    return {v.x * a.m[0][0] + v.y * a.m[1][0] + v.z * a.m[2][0] + a.m[3][0],
            v.x * a.m[0][1] + v.y * a.m[1][1] + v.z * a.m[2][1] + a.m[3][1],
            v.x * a.m[0][2] + v.y * a.m[1][2] + v.z * a.m[2][2] + a.m[3][2]};
}

inline Vector4 Projected(const Matrix& a, const Vector3& v)
{
    const Vector3 p = Transformed(a, v);
    return {p.x, p.y, p.z, v.x * a.m[0][3] + v.y * a.m[1][3] + v.z * a.m[2][3] + a.m[3][3]};
}

template <int Bytes>
void Points(const Work& w)
{
    const Matrix a = *static_cast<const Matrix*>(w.extra);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Vector3& v) { return Transformed(a, v); });
}

void PointsInPlace(const Work& w)
{
    const Matrix a = *static_cast<const Matrix*>(w.extra);
    TransformInPlace<Vertex<12>>(w, [=](const Vector3& v) { return Transformed(a, v); });
}

template <int Bytes>
void Points4(const Work& w)
{
    const Matrix a = *static_cast<const Matrix*>(w.extra);
    Transform<Vertex4, Vertex<Bytes>>(w, [=](const Vector3& v) { return Projected(a, v); });
}

template <int Bytes>
void Rotates(const Work& w)
{
    const Matrix a = *static_cast<const Matrix*>(w.extra);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Vector3& v) { return Rotated(a, v); });
}

void RotatesInPlace(const Work& w)
{
    const Matrix a = *static_cast<const Matrix*>(w.extra);
    TransformInPlace<Vertex<12>>(w, [=](const Vector3& v) { return Rotated(a, v); });
}

template <int Size>
void Fill(const Work& w)
{
    char value[Size];
    std::memcpy(value, w.src, Size);
    char* dst = static_cast<char*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i, dst += Size) {
        std::memcpy(dst, value, Size);
    }
}

template <int Size, int Stride>
void Copy(const Work& w)
{
    const char* src = static_cast<const char*>(w.src);
    char* dst = static_cast<char*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i, src += Stride, dst += Size) {
        std::memcpy(dst, src, Size);
    }
}

template <int Size>
void Gather(const Work& w)
{
    const char* src = static_cast<const char*>(w.src);
    const int* indices = static_cast<const int*>(w.extra);
    char* dst = static_cast<char*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i, dst += Size) {
        std::memcpy(dst, src + Size * static_cast<long>(indices[i]), Size);
    }
}

/// Rounded like our own: to nearest, and clamped.
void PackColours(const Work& w)
{
    const float(*src)[4] = static_cast<const float(*)[4]>(w.src);
    uint32_t* dst = static_cast<uint32_t*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i) {
        const auto byte = [](float c) { return uint32_t(std::clamp(int(c * 255.0f + 0.5f), 0, 255)); };
        const float* c = src[i];
        dst[i] = byte(c[3]) << 24 | byte(c[0]) << 16 | byte(c[1]) << 8 | byte(c[2]);
    }
}

void UnpackColours(const Work& w)
{
    const uint32_t* src = static_cast<const uint32_t*>(w.src);
    float(*dst)[4] = static_cast<float(*)[4]>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i) {
        const uint32_t packed = src[i];
        for (int k = 0; k < 4; ++k) {
            const int bit = k == 3 ? 24 : 16 - 8 * k;
            dst[i][k] = float(int(packed >> bit & 0xFF)) / 255.0f;
        }
    }
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Points<12>},
    {"Points/12to12-in-place", PointsInPlace},
    {"Points/32to32", Points<32>},
    {"Points/12to16", Points4<12>},
    {"Points/16to16", Points4<16>},
    {"Rotates/12to12", Rotates<12>},
    {"Rotates/12to12-in-place", RotatesInPlace},
    {"Rotates/32to32", Rotates<32>},
    {"Fill/4", Fill<4>},
    {"Fill/8", Fill<8>},
    {"Fill/12", Fill<12>},
    {"Fill/16", Fill<16>},
    {"Fill/20", Fill<20>},
    {"Copy/32to4", Copy<4, 32>},
    {"Copy/32to8", Copy<8, 32>},
    {"Copy/32to12", Copy<12, 32>},
    {"Copy/32to16", Copy<16, 32>},
    {"Copy/32to20", Copy<20, 32>},
    {"Gather/12", Gather<12>},
    {"Colours/pack", PackColours},
    {"Colours/unpack", UnpackColours},
};

}  // namespace

extern const Contender kLoops;
constexpr Contender kLoops{"loop", Role::PEER, kEntries};

}  // namespace bench
