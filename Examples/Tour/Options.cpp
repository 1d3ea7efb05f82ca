#include "Options.h"

#include "Settings.h"

#include <cstdio>

namespace {

bool ParseSize(const std::string& text, Options& options)
{
    int used = 0;
    const int found = std::sscanf(text.c_str(), "%5dx%5d%n", &options.Width, &options.Height, &used);
    const auto fits = [](int size) { return size >= kMinSize && size <= kMaxSize; };
    return found == 2 && used == int(text.size()) && fits(options.Width) && fits(options.Height);
}

bool ParseMouse(const std::string& text, Options& options)
{
    int used = 0;
    const int found = std::sscanf(text.c_str(), "%7f,%7f%n", &options.MouseX, &options.MouseY, &used);
    const auto fits = [](float part) { return part >= 0 && part <= 1; };
    return found == 2 && used == int(text.size()) && fits(options.MouseX) && fits(options.MouseY);
}

}  // namespace

bool ParseOptions(int argc, char** argv, Options& options, std::string& error)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool takesValue =
            argument == "--output" || argument == "--scene" || argument == "--size" || argument == "--mouse";
        if (takesValue && i + 1 == argc) {
            error = argument + " needs a value";
        } else if (argument == "--help" || argument == "-h") {
            options.Help = true;
        } else if (argument == "--output") {
            options.OutputFolder = argv[++i];
        } else if (argument == "--scene") {
            options.ScenePath = argv[++i];
        } else if (argument == "--size") {
            if (!ParseSize(argv[++i], options))
                error = std::string("--size takes WIDTHxHEIGHT, each from 64 to 8192, not ") + argv[i];
        } else if (argument == "--mouse") {
            if (!ParseMouse(argv[++i], options))
                error = std::string("--mouse takes X,Y, each from 0 to 1, not ") + argv[i];
        } else if (argument.empty() || argument[0] == '-') {
            error = "unknown option '" + argument + "'";
        } else if (!options.MeshPath.empty()) {
            error = "more than one mesh given: " + options.MeshPath + " and " + argument;
        } else {
            options.MeshPath = argument;
        }
        if (!error.empty())
            return false;
    }
    if (options.MeshPath.empty())
        options.MeshPath = ZMTOUR_DEFAULT_MESH;
    if (options.ScenePath.empty())
        options.ScenePath = ZMTOUR_DEFAULT_SCENE;
    return true;
}

const char* Usage()
{
    return "Usage: ZmTour [mesh.obj] [--scene tour.cfg] [--output folder] [--size WxH] [--mouse X,Y]\n"
           "\n"
           "Draws a meadow with many copies of a mesh, using ZmMath for all of its geometry,\n"
           "writes tour.png and prints a short report.\n"
           "\n"
           "  mesh.obj         any Wavefront OBJ file; without it, the bunny of the examples\n"
           "  --scene tour.cfg camera, sun, models and size of the picture; without it, those of the examples\n"
           "  --output folder  where tour.png goes, created if missing (default: here)\n"
           "  --size WxH       size of the picture in pixels (default: what the scene says)\n"
           "  --mouse X,Y      the point to pick at, in parts of width and height (default: 0.258,0.81)\n"
           "  --help           this text\n";
}
