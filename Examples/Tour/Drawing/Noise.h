#pragma once

#include <cstdint>

/// A random generator with the same results on every platform, unlike the standard distributions.
class Random {
public:
    explicit Random(uint32_t seed) : m_State(seed * 2654435769u + 1u) {}

    /// Uniform in [0, 1).
    float Next();
    float Between(float low, float high) { return low + (high - low) * Next(); }

private:
    uint32_t m_State;
};

/// A uniform value in [0, 1), fixed for each pair of integers.
float Hash(int x, int y);

/// Smooth noise over the plane, 0 to 1, with features about 1 unit in size.
float Noise(float x, float y);

/// Sum of `octaves` noises, 0 to 1; each octave has half the size and half the weight of the one before.
float Turbulence(float x, float y, int octaves);

/// 0 below `low`, 1 above `high`, smooth in between.
float SmoothStep(float low, float high, float value);
