#pragma once

#include "Settings.h"

#include <optional>
#include <string>

/// The options of the command line.
struct Options {
    std::string meshPath, scenePath, pebblesPath;
    std::string outputFolder = ".";
    int width = 0, height = 0;              ///< 0: taken from the scene
    float mouseX = 0.258f, mouseY = 0.81f;  ///< relative to the width and the height
    std::optional<CameraSettings> camera;
    bool sceneCamera = false;  ///< without `camera`: use the scene's camera even if the last tour used another one
    int threads = 0;           ///< 0: one per processor
    bool help = false;
};

/// Returns false, with a message in `error`, if the command line is invalid.
bool ParseOptions(int argc, char** argv, Options& options, std::string& error);

/// The text of --help.
const char* Usage();
