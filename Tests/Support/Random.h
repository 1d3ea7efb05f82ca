#pragma once

#include "ZmMath.h"

#include <math.h>

/// Random inputs, the same bits on every platform (splitmix64; + - * / and square roots only).
/// Draw into named variables or braced lists: the order of function arguments differs by compiler.
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

    /// From low to high, high excluded but for rounding.
    float Float(float low, float high) { return low + (high - low) * (float(Bits() >> 8) * 0x1p-24f); }

    /// From low to high, both included.
    int Int(int low, int high) { return low + int(Bits() % uint32_t(high - low + 1)); }

    ZmVector Vector(float range = 10) { return {Float(-range, range), Float(-range, range), Float(-range, range)}; }

    ZmVector4 Vector4(float range = 10)
    {
        return {Float(-range, range), Float(-range, range), Float(-range, range), Float(-range, range)};
    }

    ZmVector UnitVector()
    {
        for (;;) {
            const ZmVector v = Vector(1);
            const float square = SquareLength(v);
            if (square > 0.01f && square <= 1) {
                return v * (1 / sqrtf(square));
            }
        }
    }

    /// A unit quaternion.
    ZmQuaternion Rotation()
    {
        for (;;) {
            const ZmVector4 v = Vector4(1);
            const float square = v.x * v.x + v.y * v.y + v.z * v.z + v.w * v.w;
            if (square > 0.01f && square <= 1) {
                const float f = 1 / sqrtf(square);
                return {v.x * f, v.y * f, v.z * f, v.w * f};
            }
        }
    }

    /// Sixteen free elements.
    ZmMatrix Matrix(float range = 10)
    {
        ZmMatrix m;
        for (int i = 0; i < 16; ++i) {
            m[i / 4][i % 4] = Float(-range, range);
        }
        return m;
    }

    /// The same with a fourth column of (0, 0, 0, 1).
    ZmMatrix Affine(float range = 10)
    {
        const ZmVector x = Vector(range), y = Vector(range), z = Vector(range), translation = Vector(range);
        return {x, y, z, translation};
    }

private:
    uint64_t m_State;
};
