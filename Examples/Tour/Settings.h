#pragma once

#include "ZmMath.h"

#include <string>
#include <vector>

/// A copy of the mesh: where it stands, and which of the colours it has.
struct Spot {
    float X, Z, Size, Heading;
    size_t Color;
};

struct CameraSettings {
    float EyeHeight, LookDown, FieldOfView;
};

/// What the scene file says; Data/tour.cfg explains it.
struct Settings {
    int Width, Height;
    CameraSettings Camera;
    ZmVector TowardsSun, SunColor;
    int MostTriangles;
    std::vector<ZmVector> Colors;
    std::vector<Spot> Front;
};

const int kMinSize = 64;
const int kMaxSize = 8192;

/// Three numbers with commas between them, in the order of the record and within the limits of scene files. False when
/// `text` is something else.
bool ReadCamera(const char* text, CameraSettings& res);

/// What ReadCamera() reads back to the same bits.
std::string CameraText(const CameraSettings& camera);

/// Reads the text of a scene file. False with a message in `error`, which begins with the file's path and the line,
/// when something is missing, unknown or makes no sense.
bool ReadSettings(const std::string& path, const std::string& text, Settings& settings, std::string& error);
