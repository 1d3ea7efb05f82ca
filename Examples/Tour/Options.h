#pragma once

#include <string>

/// What the command line asks for.
struct Options {
    std::string MeshPath;
    std::string OutputFolder = ".";
    std::string ScenePath;
    int Width = 0, Height = 0;              ///< 0: what the scene says
    float MouseX = 0.258f, MouseY = 0.81f;  ///< parts of the width and the height
    bool Help = false;
};

/// False with a message in `error` when the command line makes no sense.
bool ParseOptions(int argc, char** argv, Options& options, std::string& error);

/// What --help prints.
const char* Usage();
