#pragma once

#include "ZmTrigonometry.h"

#include <algorithm>
#include <vector>

// Each result of the functions that give both, as a function of its own.

inline float SineOfBoth(float x)
{
    float sine, cosine;
    ZmSinCos(x, &sine, &cosine);
    return sine;
}

inline float CosineOfBoth(float x)
{
    float sine, cosine;
    ZmSinCos(x, &sine, &cosine);
    return cosine;
}

inline void SinesOfBoth(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    std::vector<float> cosines(size_t(std::max(count, 0)));
    ZmSinCosStrided(res, {cosines.data(), 4}, src, count);
}

inline void CosinesOfBoth(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    std::vector<float> sines(size_t(std::max(count, 0)));
    ZmSinCosStrided({sines.data(), 4}, res, src, count);
}
