#include "Report.h"

#include "View.h"

#include <algorithm>
#include <cstdio>

namespace {

const int kRounds = 20;
const size_t kBenchVertices = 32768;
const int kRepeats = 24;

// Puts the feature word back, whatever happened to it meanwhile.
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
    for (; *text != '\0'; ++text)
        if (*text != ' ' || (!result.empty() && result.back() != ' '))
            result += *text;
    if (!result.empty() && result.back() == ' ')
        result.pop_back();
    return result;
}

// Millions of vertices a second through the transform that draws the picture: best of
// several rounds, since other programs can only slow a round down.
double MeasureTransform(const Mesh& mesh, const ZmMatrix& matrix, std::vector<ZmVector4>& results)
{
    const ZmStridedData source = Positions(mesh), destination(results.data(), sizeof(ZmVector4));
    const int count = int(mesh.Vertices.size());
    ZmTimeProfiler clock;
    float best = 1e30f;
    for (int round = 0; round < kRounds; ++round) {
        clock.Reset();
        for (int i = 0; i < kRepeats; ++i)
            Zm3DMultiplyMatrixVector4Strided(&destination, &source, matrix, count);
        best = std::min(best, clock.Current());
    }
    return double(count) * kRepeats / (double(std::max(best, 1e-3f)) * 1000);
}

void PrintTransformSpeed(const Mesh& statue, const ZmMatrix& matrix)
{
    Mesh many;
    while (many.Vertices.size() < kBenchVertices)
        many.Vertices.push_back(statue.Vertices[many.Vertices.size() % statue.Vertices.size()]);
    std::vector<ZmVector4> results(many.Vertices.size());

    const FeatureGuard guard;
    ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE);
    const double scalar = MeasureTransform(many, matrix, results);
    std::printf("Bulk transform, %zu vertices, 32-byte stride, one thread:\n", many.Vertices.size());
    std::printf("  scalar path  %7.0f million vertices/s\n", scalar);
    if (!guard.HasSse()) {
        std::printf("  vector path  not available on this processor\n");
        return;
    }
    ModifyProcessorFeatures(ZMPROCESSOR_FEATURE_SSE, 0);
    const double vector = MeasureTransform(many, matrix, results);
    std::printf("  vector path  %7.0f million vertices/s, %.1f times as fast\n", vector, vector / scalar);
}

}  // namespace

void PrintReport(const Mesh& statue, const Scene& scene, size_t visibleModels, const Picture& picture,
                 const DrawCounts& counts, const PickedTriangle& picked, const StageTimes& times,
                 const std::string& path)
{
    const size_t tested = scene.Models.size();
    const auto isStatue = [](const Model& model) { return model.Made == Material::Statue; };
    const auto copies = std::count_if(scene.Models.begin(), scene.Models.end(), isStatue);
    std::printf("Processor   %s\n", WithSingleSpaces(GetProcessorDescription()).c_str());
    std::printf("Mesh        %zu vertices, %zu triangles, %td copies\n", statue.Vertices.size(), statue.TriangleCount(),
                copies);
    std::printf("Boxes       %zu tested, %zu culled\n", tested, tested - visibleModels);
    std::printf("Drawn       %zu triangles, %zu vertices transformed\n", counts.Triangles, counts.Vertices);
    if (picked.Of)
        std::printf("Picked      triangle %zu of %zu, %.2f units away\n", picked.Triangle,
                    picked.Of->Shape->TriangleCount(), double(picked.Distance));
    else
        std::printf("Picked      nothing but sky\n");
    std::printf("Time        load %.0f ms, scene %.0f ms, shadows %.0f ms, picture %.0f ms, picking %.1f ms, lines "
                "%.1f ms, files %.0f ms\n",
                double(times.Load), double(times.Build), double(times.Shadows), double(times.Draw), double(times.Pick),
                double(times.Overlay), double(times.Save));
    PrintTransformSpeed(statue, PerspectiveView(scene.Camera));
    std::printf("Picture     %dx%d, %s\n", picture.Width, picture.Height, path.c_str());
}
