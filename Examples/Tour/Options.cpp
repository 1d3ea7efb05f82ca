#include "Options.h"

#include <cstdio>
#include <cstring>

namespace {

bool ParseFolder(const char* text, Options& options)
{
    options.outputFolder = text;
    return true;
}

bool ParseScene(const char* text, Options& options)
{
    options.scenePath = text;
    options.sceneCamera = true;
    return true;
}

bool ParseCamera(const char* text, Options& options)
{
    options.sceneCamera = std::strcmp(text, "scene") == 0;
    options.camera.reset();
    return options.sceneCamera || ReadCamera(text, options.camera.emplace());
}

bool ParseSize(const char* text, Options& options)
{
    int used = 0;
    const int found = std::sscanf(text, "%5dx%5d%n", &options.width, &options.height, &used);
    const auto fits = [](int size) { return size >= kMinSize && size <= kMaxSize; };
    return found == 2 && text[used] == '\0' && fits(options.width) && fits(options.height);
}

bool ParseMouse(const char* text, Options& options)
{
    int used = 0;
    const int found = std::sscanf(text, "%7f,%7f%n", &options.mouseX, &options.mouseY, &used);
    const auto fits = [](float part) { return part >= 0 && part <= 1; };
    return found == 2 && text[used] == '\0' && fits(options.mouseX) && fits(options.mouseY);
}

bool ParseThreads(const char* text, Options& options)
{
    int used = 0;
    const int found = std::sscanf(text, "%4d%n", &options.threads, &used);
    return found == 1 && text[used] == '\0' && options.threads >= 1 && options.threads <= 256;
}

const struct ValueOption {
    const char* name;
    bool (*Parse)(const char* text, Options& options);
    const char* takes;
} kValueOptions[] = {
    {"--output", ParseFolder, "a folder"},
    {"--scene", ParseScene, "a file"},
    {"--camera", ParseCamera, "HEIGHT,DOWN,VIEW, from 0.1 to 50, from -1 to 1 and from 0.1 to 2.5, or 'scene'"},
    {"--size", ParseSize, "WIDTHxHEIGHT, each from 64 to 8192"},
    {"--mouse", ParseMouse, "X,Y, each from 0 to 1"},
    {"--threads", ParseThreads, "a number from 1 to 256"},
};

const ValueOption* FindValueOption(const std::string& name)
{
    for (const ValueOption& option : kValueOptions) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

bool ParseArguments(int argc, char** argv, Options& options, std::string& error)
{
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (const ValueOption* option = FindValueOption(argument)) {
            if (++i == argc) {
                error = argument + " needs a value";
            } else if (!option->Parse(argv[i], options)) {
                error = argument + " takes " + option->takes + ", not " + argv[i];
            }
        } else if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument.empty() || argument[0] == '-') {
            error = "unknown option '" + argument + "'";
        } else if (!options.meshPath.empty()) {
            error = "more than one mesh given: " + options.meshPath + " and " + argument;
        } else {
            options.meshPath = argument;
        }
        if (!error.empty()) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool ParseOptions(int argc, char** argv, Options& options, std::string& error)
{
    if (!ParseArguments(argc, argv, options, error)) {
        return false;
    }
    if (options.meshPath.empty()) {
        options.meshPath = ZMTOUR_DATA "bunny.obj";
    }
    if (options.scenePath.empty()) {
        options.scenePath = ZMTOUR_DATA "tour.cfg";
    }
    options.pebblesPath = ZMTOUR_DATA "pebbles.png";
    return true;
}

const char* Usage()
{
    return "Usage: ZmTour [mesh.obj] [--scene tour.cfg] [--camera HEIGHT,DOWN,VIEW] [--output folder] [--size WxH]\n"
           "              [--mouse X,Y] [--threads N]\n"
           "\n"
           "Draws a meadow with many copies of a mesh, using ZmMath for all of its geometry,\n"
           "writes tour.png and prints a short report.\n"
           "\n"
           "  mesh.obj         any Wavefront OBJ file; without it, the bunny of the examples\n"
           "  --scene tour.cfg camera, sun, models and size of the picture; without it, those of the examples\n"
           "  --camera H,D,V   its height, how far it looks down, how wide its view is; later tours begin with it,\n"
           "                   until one is given a scene or --camera scene, which takes the scene's own again\n"
           "  --output folder  where tour.png goes, created if missing (default: here)\n"
           "  --size WxH       size of the picture in pixels (default: what the scene says)\n"
           "  --mouse X,Y      the point to pick at, in parts of width and height (default: 0.258,0.81)\n"
           "  --threads N      how many draw (default: as many as there are processors)\n"
           "  --help           this text\n";
}
