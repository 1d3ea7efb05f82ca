// The tour. Its stages are listed in kStages below, in the order of the functions above it. Each stage shows one family
// of the library and returns false, with a reason in tour.Error, if it fails. The drawing and shading code is in
// Drawing/.

#include "Tour.h"

#include "Archive.h"
#include "Bake.h"
#include "Images.h"
#include "LastCamera.h"
#include "Log.h"
#include "Meadow.h"
#include "ObjReader.h"
#include "Overlay.h"
#include "Report.h"
#include "View.h"
#include "Workers.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace {

bool OpenLog(Tour& tour)
{
    const std::string& folder = tour.Asked.OutputFolder;
    std::error_code code;
    std::filesystem::create_directories(folder, code);
    if (!std::filesystem::is_directory(folder, code)) {
        tour.Error = folder + ": is not a folder and cannot become one";
        return false;
    }
    StartLog(folder);
    return true;
}

bool PackArchive(Tour& tour)
{
    tour.Archive = (std::filesystem::path(tour.Asked.OutputFolder) / "tour.zmbg").string();
    return PackFiles(tour.Archive, {tour.Asked.ScenePath, tour.Asked.MeshPath, tour.Asked.PebblesPath}, tour.Error);
}

bool LoadConfiguration(Tour& tour)
{
    std::string text;
    if (!ReadPacked(tour.Archive, tour.Asked.ScenePath, text, tour.Error) ||
        !ReadSettings(tour.Asked.ScenePath, text, tour.Said, tour.Error)) {
        return false;
    }
    if (tour.Asked.Width != 0) {
        tour.Said.Width = tour.Asked.Width;
        tour.Said.Height = tour.Asked.Height;
    }
    return true;
}

bool ChooseCamera(Tour& tour)
{
    tour.CameraOf = CameraSource::SCENE;
    if (tour.Asked.Camera) {
        tour.Said.Camera = *tour.Asked.Camera;
        tour.CameraOf = CameraSource::COMMAND_LINE;
    } else if (!tour.Asked.SceneCamera && RecallCamera(tour.Said.Camera)) {
        tour.CameraOf = CameraSource::LAST_TOUR;
    }
    return true;
}

bool LoadMesh(Tour& tour)
{
    const std::string& path = tour.Asked.MeshPath;
    std::string text;
    if (!ReadPacked(tour.Archive, path, text, tour.Error)) {
        return false;
    }
    std::istringstream file(text);
    if (!ReadObj(file, tour.Statue, tour.Error)) {
        tour.Error = path + ": " + tour.Error;
        return false;
    }
    if (!PrepareMesh(tour.Statue)) {
        tour.Error = path + ": the mesh has no size";
        return false;
    }
    return true;
}

bool LoadImage(Tour& tour)
{
    std::string file;
    if (!ReadPacked(tour.Archive, tour.Asked.PebblesPath, file, tour.Error)) {
        return false;
    }
    if (tour.Pebbles.Load(file)) {
        return true;
    }
    tour.Error = tour.Asked.PebblesPath + ": is no PNG file of at most 4096 x 4096 pixels";
    return false;
}

bool PlaceModels(Tour& tour)
{
    BakeAmbientLight(tour.Statue);
    BuildMeadow(tour.Meadow, tour.Statue, tour.Said);
    return true;
}

bool CullModels(Tour& tour)
{
    tour.WorldToClip = PerspectiveView(tour.Meadow.Camera);
    tour.Visible = ModelsInView(tour.Meadow, tour.WorldToClip, tour.Said.Width, tour.Said.Height);
    return true;
}

// Draws a frame: the shadow maps, then the picture.
float DrawFrame(const Tour& tour, int threads, Picture& picture, DrawCounts& counts)
{
    ZmTimeProfiler clock;
    clock.Reset();
    const Shading shading(tour.Meadow, tour.Pebbles, threads);
    picture = DrawPicture(tour.Meadow, tour.Visible, tour.WorldToClip, shading, tour.Said.Width, tour.Said.Height,
                          threads, counts);
    return clock.Current();
}

bool DrawOnAllProcessors(Tour& tour)
{
    tour.Threads = tour.Asked.Threads != 0 ? tour.Asked.Threads : ProcessorCount();
    tour.FrameOnAll = DrawFrame(tour, tour.Threads, tour.Drawn, tour.Counts);
    return true;
}

bool DrawOnOneProcessor(Tour& tour)
{
    if (tour.Threads == 1) {
        tour.FrameOnOne = tour.FrameOnAll;
        return true;
    }
    Picture picture;
    DrawCounts counts;
    tour.FrameOnOne = DrawFrame(tour, 1, picture, counts);
    if (picture.Pixels == tour.Drawn.Pixels) {
        return true;
    }
    tour.Error = "one thread has drawn another picture than " + std::to_string(tour.Threads);
    return false;
}

bool PickTriangle(Tour& tour)
{
    const int width = tour.Said.Width, height = tour.Said.Height;
    tour.Mouse = RayThrough(tour.Meadow.Camera, tour.Asked.MouseX * float(width), tour.Asked.MouseY * float(height),
                            width, height);
    tour.Picked = Pick(tour.Visible, tour.Mouse);
    return true;
}

bool DrawBoxes(Tour& tour)
{
    DrawOverlay(tour.Drawn, tour.Meadow, tour.WorldToClip, tour.Mouse, tour.Picked);
    return true;
}

bool WriteImages(Tour& tour)
{
    return SaveImages(tour.Drawn, tour.Asked.OutputFolder, tour.Files, tour.Error);
}

// Stores the camera in the user's settings for the next tour. The scene's own camera is not stored, so that later
// changes to the scene take effect.
bool KeepCamera(Tour& tour)
{
    RememberCamera(tour.CameraOf == CameraSource::SCENE ? nullptr : &tour.Said.Camera);
    return true;
}

bool WriteReport(Tour& tour)
{
    PrintReport(tour);
    return true;
}

const struct {
    const char* Name;
    bool (*Run)(Tour& tour);
} kStages[] = {
    {"log", OpenLog},                                // ZmLog, ZmFileListener: Log.cpp
    {"archive", PackArchive},                        // ZmBigFile: Archive.cpp
    {"configuration", LoadConfiguration},            // ZmConfiguration: Settings.cpp
    {"camera", ChooseCamera},                        // ZmConfig: LastCamera.cpp
    {"mesh", LoadMesh},                              // ZmSubFile: Archive.cpp, ObjReader.cpp
    {"image", LoadImage},                            // ZmConvertToBumpMap, mipmaps: Drawing/Relief.cpp
    {"models", PlaceModels},                         // quaternions, ZmMatrix, ZmBbox: Drawing/Meadow.cpp, Scene.cpp
    {"culling", CullModels},                         // ZmFrustum, ZmTransformBox2D: View.cpp, Scene.cpp
    {"frame", DrawOnAllProcessors},                  // ZmThread, ZmMutex, strided arrays: Workers.cpp, Transform.cpp
    {"frame on one processor", DrawOnOneProcessor},  // ZmTimeProfiler
    {"picking", PickTriangle},                       // ZmIntersect, ZmRay: Pick.cpp
    {"boxes", DrawBoxes},                            // ZmComputeBestFitBBox, ZmIntersect: Overlay.cpp
    {"pictures", WriteImages},                       // ZmDoBlit, pixel formats, palettes: Images.cpp
    {"settings", KeepCamera},                        // ZmConfig: LastCamera.cpp
    {"report", WriteReport},                         // the processor and its features: Report.cpp
};

bool Run(Tour& tour)
{
    ZmTimeProfiler clock;
    for (const auto& stage : kStages) {
        clock.Reset();
        if (!stage.Run(tour)) {
            return false;
        }
        tour.Times.push_back({stage.Name, clock.Current()});
        Info(__LINE__).PrintMT("%s: %.1f ms", stage.Name, double(tour.Times.back().Milliseconds));
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    Tour tour;
    if (!ParseOptions(argc, argv, tour.Asked, tour.Error)) {
        std::fprintf(stderr, "ZmTour: %s\n\n%s", tour.Error.c_str(), Usage());
        return 2;
    }
    if (tour.Asked.Help) {
        std::fputs(Usage(), stdout);
        return 0;
    }
    try {
        if (Run(tour)) {
            return 0;
        }
    } catch (const std::exception& exception) {
        tour.Error = exception.what();
    }
    Error(__LINE__).PrintMT("%s", tour.Error.c_str());
    std::fprintf(stderr, "ZmTour: %s\n", tour.Error.c_str());
    return 1;
}
