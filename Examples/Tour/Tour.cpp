// The tour: a mesh is loaded, copied over a meadow, culled, transformed, lit, drawn
// and written as a PNG file. The stages follow each other in RunTour().

#include "Archive.h"
#include "Bake.h"
#include "Images.h"
#include "Log.h"
#include "Meadow.h"
#include "ObjReader.h"
#include "Options.h"
#include "Overlay.h"
#include "Picture.h"
#include "Report.h"
#include "View.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace {

bool LoadScene(const std::string& archive, const Options& options, Settings& settings, std::string& error)
{
    std::string text;
    if (!ReadPacked(archive, options.ScenePath, text, error) || !ReadSettings(options.ScenePath, text, settings, error))
        return false;
    if (options.Width != 0) {
        settings.Width = options.Width;
        settings.Height = options.Height;
    }
    return true;
}

bool LoadStatue(const std::string& archive, const std::string& path, Mesh& mesh, std::string& error)
{
    std::string text;
    if (!ReadPacked(archive, path, text, error))
        return false;
    std::istringstream file(text);
    if (!ReadObj(file, mesh, error)) {
        error = path + ": " + error;
        return false;
    }
    if (!PrepareMesh(mesh)) {
        error = path + ": the mesh has no size";
        return false;
    }
    BakeAmbientLight(mesh);
    return true;
}

bool MakeFolder(const std::string& folder, std::string& error)
{
    std::error_code code;
    std::filesystem::create_directories(folder, code);
    if (std::filesystem::is_directory(folder, code))
        return true;
    error = folder + ": is not a folder and cannot become one";
    return false;
}

// Milliseconds since the last call.
float Lap(ZmTimeProfiler& clock)
{
    const float time = clock.Current();
    clock.Reset();
    return time;
}

bool RunTour(const Options& options, std::string& error)
{
    ZmTimeProfiler clock;
    StageTimes times{};
    clock.Reset();
    Settings settings;
    Mesh statue;
    if (!MakeFolder(options.OutputFolder, error))
        return false;
    StartLog(options.OutputFolder);
    const std::string archive = (std::filesystem::path(options.OutputFolder) / "tour.zmbg").string();
    if (!PackFiles(archive, {options.ScenePath, options.MeshPath}, error) ||
        !LoadScene(archive, options, settings, error) || !LoadStatue(archive, options.MeshPath, statue, error))
        return false;
    times.Load = Lap(clock);
    Info(__LINE__).PrintMT("%s: %d vertices, loaded and baked in %.1f ms", options.MeshPath.c_str(),
                           int(statue.Vertices.size()), double(times.Load));

    Scene scene;
    BuildMeadow(scene, statue, settings);
    const ZmMatrix worldToClip = PerspectiveView(scene.Camera);
    const std::vector<VisibleModel> visible = CullModels(scene, worldToClip, settings.Width, settings.Height);
    times.Build = Lap(clock);
    Info(__LINE__).PrintMT("%d of the models are in view", int(visible.size()));

    const Shading shading(scene);
    times.Shadows = Lap(clock);

    DrawCounts counts;
    Picture picture = DrawPicture(scene, visible, worldToClip, shading, settings.Width, settings.Height, counts);
    times.Draw = Lap(clock);
    Info(__LINE__).PrintMT("drawn in %.1f ms", double(times.Draw));

    const ZmRay mouse = RayThrough(scene.Camera, options.MouseX * float(settings.Width),
                                   options.MouseY * float(settings.Height), settings.Width, settings.Height);
    const PickedTriangle picked = Pick(visible, mouse);
    times.Pick = Lap(clock);
    DrawOverlay(picture, scene, worldToClip, mouse, picked);
    times.Overlay = Lap(clock);

    std::vector<std::string> paths;
    if (!SaveImages(picture, options.OutputFolder, paths, error))
        return false;
    times.Save = Lap(clock);
    for (const std::string& path : paths)
        Info(__LINE__).PrintMT("%s is written", path.c_str());

    PrintReport(statue, scene, visible.size(), picture, counts, picked, times, paths.front());
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    Options options;
    std::string error;
    if (!ParseOptions(argc, argv, options, error)) {
        std::fprintf(stderr, "ZmTour: %s\n\n%s", error.c_str(), Usage());
        return 2;
    }
    if (options.Help) {
        std::fputs(Usage(), stdout);
        return 0;
    }
    try {
        if (RunTour(options, error))
            return 0;
    } catch (const std::exception& exception) {
        error = exception.what();
    }
    Error(__LINE__).PrintMT("%s", error.c_str());
    std::fprintf(stderr, "ZmTour: %s\n", error.c_str());
    return 1;
}
