#pragma once

#include "ZmMath.h"

#include <string>
#include <vector>

/// A copy of the mesh: its position and the index of its colour.
struct Spot {
    float x, z, size, heading;
    size_t colour;
};

struct CameraSettings {
    float eyeHeight, lookDown, fieldOfView;
};

/// The contents of the scene file; Data/tour.cfg explains them.
struct Settings {
    int width, height;
    CameraSettings camera;
    ZmVector towardsSun, sunColour;
    int mostTriangles;
    std::vector<ZmVector> colours;
    std::vector<Spot> front;
};

constexpr int kMinSize = 64;
constexpr int kMaxSize = 8192;

/// Parses three comma-separated numbers, in the order of the record and within the limits of scene files. Returns false
/// if `text` is anything else.
bool ReadCamera(const char* text, CameraSettings& res);

/// A text that ReadCamera() reads back to the same bits.
std::string CameraText(const CameraSettings& camera);

/// Parses the text of a scene file. Returns false if something is missing, unknown or invalid, with a message in
/// `error` that begins with the file's path and the line.
bool ReadSettings(const std::string& path, const std::string& text, Settings& settings, std::string& error);
