#pragma once

#include "Image.h"

#include <string>

/// A picture of heights, laid over the ground again and again: its heights and slopes for every distance.
class Relief {
public:
    struct Point {
        float Height;          ///< 0 to 1
        float SlopeX, SlopeZ;  ///< -1 to 1
    };

    /// From a PNG file in memory; bright is high. False when it is none.
    bool Load(const std::string& png);

    /// At a place in the world that is seen from so far away.
    Point At(float x, float z, float distance) const;

private:
    std::vector<Image> m_Levels;  // ZM_PF_BUMP_L8V8U8, each half as large as the one before
};
