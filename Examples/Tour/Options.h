#pragma once

#include "Settings.h"

#include <optional>
#include <string>

/// What the command line asks for.
struct Options {
    std::string MeshPath, ScenePath, PebblesPath;
    std::string OutputFolder = ".";
    int Width = 0, Height = 0;              ///< 0: what the scene says
    float MouseX = 0.258f, MouseY = 0.81f;  ///< parts of the width and the height
    std::optional<CameraSettings> Camera;
    bool SceneCamera = false;  ///< without `Camera`: what the scene says, also if the last tour was given another one
    int Threads = 0;           ///< 0: as many as there are processors
    bool Help = false;
};

/// False with a message in `error` when the command line makes no sense.
bool ParseOptions(int argc, char** argv, Options& options, std::string& error);

/// What --help prints.
const char* Usage();
