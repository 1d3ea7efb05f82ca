#pragma once

#include "Transform.h"

#include <algorithm>
#include <cmath>

/// A corner of a triangle in clip space, with the values interpolated over it.
struct Corner {
    ZmVector4 position;
    ZmVector normal;
    float sky;
    float ground;
};

/// A sample whose centre a triangle covers.
struct Sample {
    int x, y;
    float depth;       ///< z / w
    float inverseW;    ///< 1 / w
    float weights[3];  ///< of the corners, perspective-correct; they add up to 1
    const Corner* corners;
};

/// A grid of samples and the part of it to draw; right and bottom are exclusive.
struct RasterTarget {
    int width, height;
    RKRECT window;
};

/// Nine would suffice without rounding: a thin triangle may zigzag along a side, and each of the six sides may then
/// increase the number of corners by half.
constexpr int kMostCorners = 28;

/// Clips a triangle at the sides in `flags`. Writes the corners of the rest as a fan and returns their number; fewer
/// than 3 means that nothing is left.
int ClipTriangle(Corner res[kMostCorners], const Corner triangle[3], uint32_t flags);

/// A triangle with its corners on a grid of 1/256 of a sample, so that edges are computed exactly: neighbours leave no
/// gap and share no sample.
class GridTriangle {
public:
    static constexpr int kUnit = 256;

    GridTriangle(const Corner corners[3], const RasterTarget& target);

    /// Twice the area; positive if the front is visible.
    int64_t Area() const { return m_Area; }
    void Flip();

    /// Calls plot(sample) for each covered sample. Area() must be positive.
    template <class Plot>
    void Fill(const Corner corners[3], const RKRECT& window, Plot&& plot) const;

private:
    // Twice the area of edge and sample point, and its increments per sample.
    struct EdgeFunction {
        int64_t value, stepX, stepY;
        int64_t bias;  // samples exactly on an edge belong to the triangle right of or below it
    };
    EdgeFunction MakeEdge(int from, int to, int startX, int startY) const;

    int64_t m_X[3], m_Y[3];
    int64_t m_Area;
};

template <class Plot>
void GridTriangle::Fill(const Corner corners[3], const RKRECT& window, Plot&& plot) const
{
    const auto middleAfter = [](int64_t v) { return int((v + kUnit / 2 - 1) >> 8); };
    const int left = std::max(window.left, middleAfter(std::min({m_X[0], m_X[1], m_X[2]})));
    const int top = std::max(window.top, middleAfter(std::min({m_Y[0], m_Y[1], m_Y[2]})));
    const int right = std::min(window.right, middleAfter(std::max({m_X[0], m_X[1], m_X[2]})) + 1);
    const int bottom = std::min(window.bottom, middleAfter(std::max({m_Y[0], m_Y[1], m_Y[2]})) + 1);

    EdgeFunction edges[3] = {MakeEdge(1, 2, left, top), MakeEdge(2, 0, left, top), MakeEdge(0, 1, left, top)};
    float inverseW[3], depth[3];
    for (int i = 0; i < 3; ++i) {
        inverseW[i] = 1 / corners[i].position.w;
        depth[i] = corners[i].position.z * inverseW[i];
    }
    const float inverseArea = 1 / float(m_Area);

    Sample sample;
    sample.corners = corners;
    for (sample.y = top; sample.y < bottom; ++sample.y) {
        int64_t e0 = edges[0].value, e1 = edges[1].value, e2 = edges[2].value;
        for (sample.x = left; sample.x < right; ++sample.x) {
            if (((e0 + edges[0].bias) | (e1 + edges[1].bias) | (e2 + edges[2].bias)) >= 0) {
                const float w0 = float(e0) * inverseArea, w1 = float(e1) * inverseArea, w2 = float(e2) * inverseArea;
                sample.depth = w0 * depth[0] + w1 * depth[1] + w2 * depth[2];
                sample.inverseW = w0 * inverseW[0] + w1 * inverseW[1] + w2 * inverseW[2];
                const float w = 1 / sample.inverseW;
                sample.weights[0] = w0 * inverseW[0] * w;
                sample.weights[1] = w1 * inverseW[1] * w;
                sample.weights[2] = w2 * inverseW[2] * w;
                plot(sample);
            }
            e0 += edges[0].stepX;
            e1 += edges[1].stepX;
            e2 += edges[2].stepX;
        }
        for (EdgeFunction& edge : edges) {
            edge.value += edge.stepY;
        }
    }
}

/// Draws a triangle that lies entirely in clip space.
template <class Plot>
void FillTriangle(Corner (&corners)[3], bool bothSides, const RasterTarget& target, Plot&& plot)
{
    GridTriangle triangle(corners, target);
    if (triangle.Area() < 0 && bothSides) {
        std::swap(corners[1], corners[2]);
        triangle.Flip();
        for (Corner& corner : corners) {
            corner.normal = -corner.normal;
        }
    }
    if (triangle.Area() > 0) {
        triangle.Fill(corners, target.window, plot);
    }
}

/// Draws all triangles of a mesh whose vertices have been transformed. `bothSides` also draws back faces, with reversed
/// normals.
template <class Plot>
void DrawMesh(const Mesh& mesh, const TransformedMesh& transformed, bool bothSides, const RasterTarget& target,
              Plot&& plot)
{
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        Corner corners[3];
        uint32_t andFlags = ZMCLIP_ALL, orFlags = 0;
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t v = mesh.indices[i + k];
            andFlags &= transformed.flags[v];
            orFlags |= transformed.flags[v];
            const ZmVector normal = transformed.normals.empty() ? ZmVector::axis0() : transformed.normals[v];
            corners[k] = {transformed.clip[v], normal, mesh.vertices[v].sky, mesh.vertices[v].ground};
        }
        if (andFlags != 0) {
            continue;
        }
        if (orFlags == 0) {
            FillTriangle(corners, bothSides, target, plot);
            continue;
        }
        Corner rest[kMostCorners];
        const int count = ClipTriangle(rest, corners, orFlags);
        for (int k = 2; k < count; ++k) {
            Corner piece[3] = {rest[0], rest[k - 1], rest[k]};
            FillTriangle(piece, bothSides, target, plot);
        }
    }
}
