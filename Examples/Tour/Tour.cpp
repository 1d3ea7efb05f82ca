// The tour. Its stages are listed in kStages below, in the order of the functions above it. Each stage shows one family
// of the library and returns false, with a reason in tour.Error, if it fails. The drawing and shading code is in
// Drawing/.

#include "Tour.h"

#include "Archive.h"
#include "Bake.h"
#include "Crowd.h"
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
    const std::string& folder = tour.asked.outputFolder;
    std::error_code code;
    std::filesystem::create_directories(folder, code);
    if (!std::filesystem::is_directory(folder, code)) {
        tour.error = folder + ": is not a folder and cannot become one";
        return false;
    }
    StartLog(folder);
    return true;
}

bool PackArchive(Tour& tour)
{
    tour.archive = (std::filesystem::path(tour.asked.outputFolder) / "tour.zmbg").string();
    return PackFiles(tour.archive, {tour.asked.scenePath, tour.asked.meshPath, tour.asked.pebblesPath}, tour.error);
}

bool LoadConfiguration(Tour& tour)
{
    std::string text;
    if (!ReadPacked(tour.archive, tour.asked.scenePath, text, tour.error) ||
        !ReadSettings(tour.asked.scenePath, text, tour.said, tour.error)) {
        return false;
    }
    if (tour.asked.width != 0) {
        tour.said.width = tour.asked.width;
        tour.said.height = tour.asked.height;
    }
    return true;
}

bool ChooseCamera(Tour& tour)
{
    tour.cameraOf = CameraSource::SCENE;
    if (tour.asked.camera) {
        tour.said.camera = *tour.asked.camera;
        tour.cameraOf = CameraSource::COMMAND_LINE;
    } else if (!tour.asked.sceneCamera && RecallCamera(tour.said.camera)) {
        tour.cameraOf = CameraSource::LAST_TOUR;
    }
    return true;
}

bool LoadMesh(Tour& tour)
{
    const std::string& path = tour.asked.meshPath;
    std::string text;
    if (!ReadPacked(tour.archive, path, text, tour.error)) {
        return false;
    }
    std::istringstream file(text);
    if (!ReadObj(file, tour.statue, tour.error)) {
        tour.error = path + ": " + tour.error;
        return false;
    }
    if (!PrepareMesh(tour.statue)) {
        tour.error = path + ": the mesh has no size";
        return false;
    }
    return true;
}

bool LoadImage(Tour& tour)
{
    std::string file;
    if (!ReadPacked(tour.archive, tour.asked.pebblesPath, file, tour.error)) {
        return false;
    }
    if (tour.pebbles.Load(file)) {
        return true;
    }
    tour.error = tour.asked.pebblesPath + ": is no PNG file of at most 4096 x 4096 pixels";
    return false;
}

bool PlaceModels(Tour& tour)
{
    BakeAmbientLight(tour.statue);
    BuildMeadow(tour.meadow, tour.statue, tour.said);
    return true;
}

bool CullModels(Tour& tour)
{
    tour.worldToClip = PerspectiveView(tour.meadow.camera);
    tour.visible = ModelsInView(tour.meadow, tour.worldToClip, tour.said.width, tour.said.height);
    return true;
}

// Draws a frame: the shadow maps, then the picture.
float DrawFrame(const Tour& tour, int threads, Picture& picture, DrawCounts& counts)
{
    ZmTimeProfiler clock;
    clock.Reset();
    const Shading shading(tour.meadow, tour.pebbles, threads);
    picture = DrawPicture(tour.meadow, tour.visible, tour.worldToClip, shading, tour.said.width, tour.said.height,
                          threads, counts);
    return clock.Current();
}

bool DrawOnAllProcessors(Tour& tour)
{
    tour.threads = tour.asked.threads != 0 ? tour.asked.threads : ProcessorCount();
    tour.frameOnAll = DrawFrame(tour, tour.threads, tour.drawn, tour.counts);
    return true;
}

bool DrawOnOneProcessor(Tour& tour)
{
    if (tour.threads == 1) {
        tour.frameOnOne = tour.frameOnAll;
        return true;
    }
    Picture picture;
    DrawCounts counts;
    tour.frameOnOne = DrawFrame(tour, 1, picture, counts);
    if (picture.pixels == tour.drawn.pixels) {
        return true;
    }
    tour.error = "one thread has drawn another picture than " + std::to_string(tour.threads);
    return false;
}

bool PickTriangle(Tour& tour)
{
    const int width = tour.said.width, height = tour.said.height;
    tour.mouse = RayThrough(tour.meadow.camera, tour.asked.mouseX * float(width), tour.asked.mouseY * float(height),
                            width, height);
    tour.picked = Pick(tour.meadow, tour.mouse);
    return true;
}

bool DrawBoxes(Tour& tour)
{
    DrawOverlay(tour.drawn, tour.meadow, tour.worldToClip, tour.mouse, tour.picked);
    return true;
}

bool WriteImages(Tour& tour)
{
    return SaveImages(tour.drawn, tour.asked.outputFolder, tour.files, tour.error);
}

// Four moments of a dance, each a quarter of the picture's size.
bool DrawCrowd(Tour& tour)
{
    constexpr int kMoments = 4, kColumns = 2;
    const int width = tour.said.width / kColumns, height = tour.said.height / kColumns;
    Scene floor;
    BuildLandscape(floor, tour.said);
    Crowd crowd(floor, tour.statue, tour.said);
    std::vector<Picture> moments;
    for (int i = 0; i < kMoments; ++i) {
        ZmTimeProfiler clock;
        clock.Reset();
        crowd.Pose(float(i) / kMoments);
        tour.posing = clock.Current();
        const Shading shading(floor, tour.pebbles, tour.threads);
        DrawCounts counts;
        moments.push_back(DrawPicture(floor, ModelsInView(floor, tour.worldToClip, width, height), tour.worldToClip,
                                      shading, width, height, tour.threads, counts));
    }
    tour.dancers = crowd.Size();
    tour.skinned = crowd.Size() * tour.statue.vertices.size();
    return SaveSheet(moments, kColumns, tour.asked.outputFolder, tour.files, tour.error);
}

// Stores the camera in the user's settings for the next tour. The scene's own camera is not stored, so that later
// changes to the scene take effect.
bool KeepCamera(Tour& tour)
{
    RememberCamera(tour.cameraOf == CameraSource::SCENE ? nullptr : &tour.said.camera);
    return true;
}

bool WriteReport(Tour& tour)
{
    PrintReport(tour);
    return true;
}

const struct {
    const char* name;
    bool (*Run)(Tour& tour);
} kStages[] = {
    {"log", OpenLog},                                // ZmLog, ZmFileListener: Log.cpp
    {"archive", PackArchive},                        // ZmBigFile: Archive.cpp
    {"configuration", LoadConfiguration},            // ZmConfiguration: Settings.cpp
    {"camera", ChooseCamera},                        // ZmConfig: LastCamera.cpp
    {"mesh", LoadMesh},                              // ZmSubFile: Archive.cpp, ObjReader.cpp
    {"image", LoadImage},                            // ZmConvertToBumpMap, mipmaps: Drawing/Relief.cpp
    {"models", PlaceModels},                         // quaternions, ZmMatrix, ZmBbox: Drawing/Meadow.cpp, Scene.cpp
    {"culling", CullModels},                         // ZmCullBoxes, ZmTransformBox2D: View.cpp, Scene.cpp
    {"frame", DrawOnAllProcessors},                  // ZmThread, ZmMutex, strided arrays: Workers.cpp, Transform.cpp
    {"frame on one processor", DrawOnOneProcessor},  // ZmTimeProfiler
    {"picking", PickTriangle},                       // ZmRayBoxes, ZmRayMesh: Pick.cpp
    {"boxes", DrawBoxes},                            // ZmComputeBestFitBBox, ZmIntersect: Overlay.cpp
    {"pictures", WriteImages},                       // ZmDoBlit, pixel formats, palettes: Images.cpp
    {"crowd", DrawCrowd},                            // key frames, hierarchies, skinning: Drawing/Crowd.cpp
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
        tour.times.push_back({stage.name, clock.Current()});
        Info(__LINE__).PrintMT("%s: %.1f ms", stage.name, double(tour.times.back().milliseconds));
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    Tour tour;
    if (!ParseOptions(argc, argv, tour.asked, tour.error)) {
        std::fprintf(stderr, "ZmTour: %s\n\n%s", tour.error.c_str(), Usage());
        return 2;
    }
    if (tour.asked.help) {
        std::fputs(Usage(), stdout);
        return 0;
    }
    try {
        if (Run(tour)) {
            return 0;
        }
    } catch (const std::exception& exception) {
        tour.error = exception.what();
    }
    Error(__LINE__).PrintMT("%s", tour.error.c_str());
    std::fprintf(stderr, "ZmTour: %s\n", tour.error.c_str());
    return 1;
}
