#include "Noise.h"

#include <algorithm>
#include <cmath>

namespace {

uint32_t Scramble(uint32_t v)
{
    v = (v ^ (v >> 16)) * 0x7feb352du;
    v = (v ^ (v >> 15)) * 0x846ca68bu;
    return v ^ (v >> 16);
}

// Uses the upper 24 bits, which a float represents exactly.
float ToUnit(uint32_t v)
{
    return float(v >> 8) * (1.0f / 16777216.0f);
}

}  // namespace

float Random::Next()
{
    m_State += 0x9e3779b9u;
    return ToUnit(Scramble(m_State));
}

float Hash(int x, int y)
{
    return ToUnit(Scramble(uint32_t(x) * 0x8da6b343u + Scramble(uint32_t(y))));
}

float Noise(float x, float y)
{
    const float floorX = std::floor(x), floorY = std::floor(y);
    const int ix = int(floorX), iy = int(floorY);
    const float u = SmoothStep(0, 1, x - floorX), v = SmoothStep(0, 1, y - floorY);
    const float low = Hash(ix, iy) + (Hash(ix + 1, iy) - Hash(ix, iy)) * u;
    const float high = Hash(ix, iy + 1) + (Hash(ix + 1, iy + 1) - Hash(ix, iy + 1)) * u;
    return low + (high - low) * v;
}

float Turbulence(float x, float y, int octaves)
{
    float sum = 0, weights = 0, weight = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * Noise(x, y);
        weights += weight;
        weight *= 0.5f;
        // Rotated as well as scaled, so that the grids of the octaves never align.
        const float turned = 1.6f * x - 1.2f * y + 17.3f;
        y = 1.2f * x + 1.6f * y + 5.9f;
        x = turned;
    }
    return sum / weights;
}

float SmoothStep(float low, float high, float value)
{
    const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}
