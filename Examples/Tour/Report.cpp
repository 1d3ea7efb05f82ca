#include "Report.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kRounds = 20;
constexpr size_t kBenchVertices = 32768;
constexpr int kRepeats = 24;

// Restores the feature word on destruction.
class FeatureGuard {
public:
    FeatureGuard() : m_Word(GetProcessorFeatures()) {}
    ~FeatureGuard() { ModifyProcessorFeatures(m_Word, ~m_Word); }
    FeatureGuard(const FeatureGuard&) = delete;
    FeatureGuard& operator=(const FeatureGuard&) = delete;

    bool HasSse() const { return (m_Word & ZMPROCESSOR_FEATURE_SSE) != 0; }

private:
    unsigned long m_Word;
};

std::string WithSingleSpaces(const char* text)
{
    std::string result;
    for (; *text != '\0'; ++text) {
        if (*text != ' ' || (!result.empty() && result.back() != ' ')) {
            result += *text;
        }
    }
    if (!result.empty() && result.back() == ' ') {
        result.pop_back();
    }
    return result;
}

// Millions of vertices per second through the transform that draws the picture: best of several rounds, since other
// programs can only slow a round down.
double MeasureTransform(const Mesh& mesh, const ZmMatrix& matrix, std::vector<ZmVector4>& results)
{
    const ZmStridedData source = Positions(mesh), destination(results.data(), sizeof(ZmVector4));
    const int count = int(mesh.vertices.size());
    ZmTimeProfiler clock;
    float best = 1e30f;
    for (int round = 0; round < kRounds; ++round) {
        clock.Reset();
        for (int i = 0; i < kRepeats; ++i) {
            Zm3DMultiplyMatrixVector4Strided(&destination, &source, matrix, count);
        }
        best = std::min(best, clock.Current());
    }
    return double(count) * kRepeats / (double(std::max(best, 1e-3f)) * 1000);
}

void PrintTransformSpeed(const Mesh& statue, const ZmMatrix& matrix)
{
    Mesh many;
    while (many.vertices.size() < kBenchVertices) {
        many.vertices.push_back(statue.vertices[many.vertices.size() % statue.vertices.size()]);
    }
    std::vector<ZmVector4> results(many.vertices.size());

    const FeatureGuard guard;
    ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE);
    const double scalar = MeasureTransform(many, matrix, results);
    std::printf("Bulk transform, %zu vertices, 32-byte stride, one thread:\n", many.vertices.size());
    std::printf("  scalar path  %7.0f million vertices/s\n", scalar);
    if (!guard.HasSse()) {
        std::printf("  vector path  not available on this processor\n");
        return;
    }
    ModifyProcessorFeatures(ZMPROCESSOR_FEATURE_SSE, 0);
    const double vector = MeasureTransform(many, matrix, results);
    std::printf("  vector path  %7.0f million vertices/s, %.1f times as fast\n", vector, vector / scalar);
}

const char* Described(CameraSource source)
{
    switch (source) {
    case CameraSource::SCENE: return "as the scene says";
    case CameraSource::COMMAND_LINE: return "as asked for";
    case CameraSource::LAST_TOUR: return "as in the last tour; --camera scene takes the scene's";
    }
    return "";
}

void PrintScene(const Tour& tour)
{
    const std::vector<Model>& models = tour.meadow.models;
    const auto isStatue = [](const Model& model) { return model.made == Material::STATUE; };
    std::printf("Mesh        %zu vertices, %zu triangles, %td copies\n", tour.statue.vertices.size(),
                tour.statue.TriangleCount(), std::count_if(models.begin(), models.end(), isStatue));
    const CameraSettings& camera = tour.said.camera;
    std::printf("Camera      %g,%g,%g, %s\n", double(camera.eyeHeight), double(camera.lookDown),
                double(camera.fieldOfView), Described(tour.cameraOf));
    std::printf("Boxes       %zu tested, %zu culled\n", models.size(), models.size() - tour.visible.size());
}

void PrintFrames(const Tour& tour)
{
    std::printf("Frames      %.2f a second on 1 thread", double(1000 / tour.frameOnOne));
    if (tour.threads > 1) {
        std::printf(", %.2f on %d, with the same pixels", double(1000 / tour.frameOnAll), tour.threads);
    }
    std::printf("\n");
}

void PrintPicked(const PickedTriangle& picked)
{
    if (picked.of) {
        std::printf("Picked      triangle %zu of %zu, %.2f units away\n", picked.triangle,
                    picked.of->shape->TriangleCount(), double(picked.distance));
    } else {
        std::printf("Picked      nothing but sky\n");
    }
}

void PrintCrowd(const Tour& tour)
{
    std::printf("Crowd       %zu dancers, %zu vertices posed in %.2f ms on one thread\n", tour.dancers, tour.skinned,
                double(tour.posing));
}

void PrintTimes(const std::vector<Tour::StageTime>& times)
{
    const char* before = "Time        ";
    for (const Tour::StageTime& time : times) {
        if (time.milliseconds < 0.5f) {
            continue;
        }
        std::printf("%s%s %.0f ms", before, time.stage, double(time.milliseconds));
        before = ", ";
    }
    std::printf("\n");
}

}  // namespace

void PrintReport(const Tour& tour)
{
    const bool hasBrand = *GetProcessorBrand() != '\0';
    std::printf("Processor   %s\n",
                WithSingleSpaces(hasBrand ? GetProcessorBrand() : GetProcessorDescription()).c_str());
    PrintScene(tour);
    std::printf("Drawn       %zu triangles, %zu vertices transformed\n", tour.counts.triangles, tour.counts.vertices);
    PrintFrames(tour);
    PrintPicked(tour.picked);
    PrintCrowd(tour);
    PrintTimes(tour.times);
    PrintTransformSpeed(tour.statue, tour.worldToClip);
    std::printf("Picture     %dx%d, %s\n", tour.drawn.width, tour.drawn.height, tour.files.front().c_str());
}
