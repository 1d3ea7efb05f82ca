#include "Picture.h"

#include "Noise.h"
#include "Raster.h"
#include "View.h"
#include "Workers.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSamples = 3;  // per side: nine in each pixel
constexpr int kStripRows = 32;

// Some rows of the picture at sample resolution. Used by one thread, which reuses its memory for its next rows.
class Strip {
public:
    Strip(int width, int height) : m_Width(width * kSamples), m_Height(height * kSamples) {}

    void Begin(int firstRow, int endRow);
    void Draw(const VisibleModel& visible, const ZmMatrix& worldToClip);
    void Resolve(const Scene& scene, const Shading& shading, Picture& picture) const;

    size_t TransformedVertices() const { return m_Vertices; }

private:
    ZmVector PixelLight(const Scene& scene, const Shading& shading, int x, int y) const;

    int m_Width, m_Height;  // of the whole picture, in samples
    int m_Top = 0, m_Bottom = 0;
    size_t m_Vertices = 0;
    std::vector<Surface> m_Surfaces;
    TransformedMesh m_Scratch;
};

void Strip::Begin(int firstRow, int endRow)
{
    m_Top = firstRow * kSamples;
    m_Bottom = endRow * kSamples;
    m_Surfaces.assign(size_t(m_Width) * size_t(m_Bottom - m_Top), Surface{});
}

void Strip::Draw(const VisibleModel& visible, const ZmMatrix& worldToClip)
{
    const Model& model = *visible.shown;
    ZmMatrix modelToClip;
    Zm3DMultiplyMatrix4(modelToClip, worldToClip, model.world);
    m_Scratch.ToClipSpace(*model.shape, modelToClip);
    m_Scratch.TurnNormals(*model.shape, model.world);
    m_Vertices += model.shape->vertices.size();

    const RasterTarget target = {m_Width, m_Height, {0, m_Top, m_Width, m_Bottom}};
    DrawMesh(*model.shape, m_Scratch, model.HasTwoSides(), target, [&](const Sample& sample) {
        Surface& surface = m_Surfaces[size_t(sample.y - m_Top) * size_t(m_Width) + size_t(sample.x)];
        if (sample.inverseW <= surface.inverseDistance) {
            return;
        }
        surface = {sample.inverseW, ZmVector::axis0(), 0, 0, &model};
        for (int i = 0; i < 3; ++i) {
            const Corner& corner = sample.corners[i];
            surface.normal += corner.normal * sample.weights[i];
            surface.sky += corner.sky * sample.weights[i];
            surface.ground += corner.ground * sample.weights[i];
        }
    });
}

// Compresses light of any strength to below 1, as film does: more contrast in the mid-tones, less in the highlights.
ZmVector Develop(const ZmVector& light)
{
    const float contrast = 1.28f, middle = 0.42f, white = 4.0f;
    const auto curve = [&](float c) {
        const float e = 1.12f * middle * std::pow(c / middle, contrast);
        return std::min(1.0f, e * (1 + e / (white * white)) / (1 + e));
    };
    return {curve(light.x), curve(light.y), curve(light.z)};
}

float ToScreen(float linear)
{
    return linear <= 0.0031308f ? 12.92f * linear : 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
}

// Averages like the eye: tone-mapped, but still linear light.
ZmVector Strip::PixelLight(const Scene& scene, const Shading& shading, int x, int y) const
{
    ZmVector sum = ZmVector::axis0();
    for (int j = 0; j < kSamples; ++j) {
        for (int i = 0; i < kSamples; ++i) {
            const int sx = x * kSamples + i, sy = y * kSamples + j;
            const Surface& surface = m_Surfaces[size_t(sy - m_Top) * size_t(m_Width) + size_t(sx)];
            const ZmRay ray = RayThrough(scene.camera, float(sx), float(sy), m_Width, m_Height);
            sum += Develop(shading.Light(surface, ray.Direction, Hash(sx, sy)));
        }
    }
    return sum * (1.0f / (kSamples * kSamples));
}

void Strip::Resolve(const Scene& scene, const Shading& shading, Picture& picture) const
{
    for (int y = m_Top / kSamples; y < m_Bottom / kSamples; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const ZmVector light = PixelLight(scene, shading, x, y);
            // Noise of one 8-bit step hides banding in a smooth sky.
            const float noise = (Hash(x, ~y) - 0.5f) / 255;
            const auto channel = [&](float c) { return std::clamp(ToScreen(c) + noise, 0.0f, 1.0f); };
            const ZmColor colour(channel(light.x), channel(light.y), channel(light.z));
            const size_t at = size_t(y) * size_t(picture.width) + size_t(x);
            picture.pixels[at] = RGBAFTOCOLOR(&colour);
            const int middle = kSamples / 2, sx = x * kSamples + middle, sy = y * kSamples + middle;
            picture.nearness[at] = m_Surfaces[size_t(sy - m_Top) * size_t(m_Width) + size_t(sx)].inverseDistance;
        }
    }
}

}  // namespace

Picture DrawPicture(const Scene& scene, const std::vector<VisibleModel>& visible, const ZmMatrix& worldToClip,
                    const Shading& shading, int width, int height, int threads, DrawCounts& counts)
{
    const size_t pixels = size_t(width) * size_t(height);
    Picture picture = {width, height, std::vector<uint32_t>(pixels), std::vector<float>(pixels)};
    std::vector<Strip> strips(size_t(threads), Strip(width, height));
    ShareOut(threads, (height + kStripRows - 1) / kStripRows, [&](int worker, int item) {
        const int row = item * kStripRows, endRow = std::min(row + kStripRows, height);
        Strip& strip = strips[size_t(worker)];
        strip.Begin(row, endRow);
        for (const VisibleModel& model : visible) {
            if (model.firstRow < endRow && model.endRow > row) {
                strip.Draw(model, worldToClip);
            }
        }
        strip.Resolve(scene, shading, picture);
    });

    counts = {};
    for (const Strip& strip : strips) {
        counts.vertices += strip.TransformedVertices();
    }
    for (const VisibleModel& model : visible) {
        counts.triangles += model.shown->shape->TriangleCount();
    }
    return picture;
}
