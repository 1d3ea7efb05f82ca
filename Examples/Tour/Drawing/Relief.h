#pragma once

#include "Image.h"

#include <string>

/// A height map tiled over the ground: heights and slopes for every viewing distance.
class Relief {
public:
    struct Point {
        float height;          ///< 0 to 1
        float slopeX, slopeZ;  ///< -1 to 1
    };

    /// Loads a PNG file from memory; bright is high. Returns false if it is not a PNG file.
    bool Load(const std::string& png);

    /// The relief at a world position seen from `distance`.
    Point At(float x, float z, float distance) const;

private:
    std::vector<Image> m_Levels;  // ZM_PF_BUMP_L8V8U8, each half the size of the one before
};
