#pragma once

#include "Settings.h"

#include <optional>
#include <string>

/// The options of the command line.
struct Options {
    std::string MeshPath, ScenePath, PebblesPath;
    std::string OutputFolder = ".";
    int Width = 0, Height = 0;              ///< 0: taken from the scene
    float MouseX = 0.258f, MouseY = 0.81f;  ///< relative to the width and the height
    std::optional<CameraSettings> Camera;
    bool SceneCamera = false;  ///< without `Camera`: use the scene's camera even if the last tour used another one
    int Threads = 0;           ///< 0: one per processor
    bool Help = false;
};

/// Returns false, with a message in `error`, if the command line is invalid.
bool ParseOptions(int argc, char** argv, Options& options, std::string& error);

/// The text of --help.
const char* Usage();
