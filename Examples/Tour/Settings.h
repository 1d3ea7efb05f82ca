#pragma once

#include "ZmMath.h"

#include <string>
#include <vector>

/// A copy of the mesh: where it stands, and which of the colours it has.
struct Spot {
    float X, Z, Size, Heading;
    size_t Color;
};

/// What the scene file says; Data/tour.cfg explains it.
struct Settings {
    int Width, Height;
    float EyeHeight, LookDown, FieldOfView;
    ZmVector TowardsSun, SunColor;
    int MostTriangles;
    std::vector<ZmVector> Colors;
    std::vector<Spot> Front;
};

const int kMinSize = 64;
const int kMaxSize = 8192;

/// Reads the text of a scene file. False with a message in `error`, which begins with the file's path and the line,
/// when something is missing, unknown or makes no sense.
bool ReadSettings(const std::string& path, const std::string& text, Settings& settings, std::string& error);
