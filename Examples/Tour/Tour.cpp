// The tour: a mesh is loaded, copied over a meadow, culled, transformed, lit, drawn
// and written as a PNG file. The stages follow each other in RunTour().

#include "Archive.h"
#include "Bake.h"
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

// Packs the mesh into the tour's archive and reads it from there.
bool LoadStatue(const std::string& path, const std::string& folder, Mesh& mesh, std::string& error)
{
    const std::string archive = (std::filesystem::path(folder) / "tour.zmbg").string();
    std::string text;
    if (!PackFiles(archive, {path}, error) || !ReadPacked(archive, path, text, error))
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
    if (!ReadSettings(options.ScenePath, settings, error))
        return false;
    if (options.Width != 0) {
        settings.Width = options.Width;
        settings.Height = options.Height;
    }
    if (!LoadStatue(options.MeshPath, options.OutputFolder, statue, error))
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

    const std::string path = (std::filesystem::path(options.OutputFolder) / "tour.png").string();
    if (!SavePicture(picture, path, error))
        return false;
    times.Save = Lap(clock);
    Info(__LINE__).PrintMT("%s: %d x %d pixels", path.c_str(), settings.Width, settings.Height);

    PrintReport(statue, scene, visible.size(), picture, counts, picked, times, path);
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
