#pragma once

#include "ZmMath.h"

#include <math.h>

/// Random inputs with the same bits on every platform (splitmix64; + - * / and square roots only). Draw into named
/// variables or braced lists: the evaluation order of function arguments differs between compilers.
class Random {
public:
    explicit Random(uint64_t seed) : m_State(seed) {}

    uint32_t Bits()
    {
        m_State += 0x9E3779B97F4A7C15u;
        uint64_t z = m_State;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return uint32_t((z ^ z >> 31) >> 32);
    }

    /// A number from low to high, both included.
    int Int(int low, int high) { return low + int(Bits() % uint32_t(high - low + 1)); }

    float Float(float low, float high) { return low + (high - low) * (float(Bits() >> 8) * 0x1p-24f); }
    float Float(float range) { return Float(-range, range); }
    ZmVector Vector(float range = 10) { return {Float(range), Float(range), Float(range)}; }
    ZmVector4 Vector4(float range = 10) { return {Float(range), Float(range), Float(range), Float(range)}; }

    /// Unit vectors and unit quaternions.
    ZmVector UnitVector()
    {
        const ZmQuaternion q = UnitOf({Float(1), Float(1), Float(1), 0});
        return {q.x, q.y, q.z};
    }
    ZmQuaternion Rotation() { return UnitOf({Float(1), Float(1), Float(1), Float(1)}); }

    /// A matrix of sixteen random elements, or of twelve and the fourth column (0, 0, 0, 1).
    ZmMatrix Matrix(float range = 10)
    {
        ZmMatrix m;
        for (int i = 0; i < 16; ++i) {
            m[i / 4][i % 4] = Float(range);
        }
        return m;
    }
    ZmMatrix Affine(float range = 10) { return {Vector(range), Vector(range), Vector(range), Vector(range)}; }

private:
    static ZmQuaternion UnitOf(const ZmQuaternion& q)
    {
        const float square = q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w, f = 1 / sqrtf(square);
        return square < 1e-6f ? ZmQuaternion(1, 0, 0, 0) : ZmQuaternion(q.x * f, q.y * f, q.z * f, q.w * f);
    }

    uint64_t m_State;
};
