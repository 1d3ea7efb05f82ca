#include "Wire.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kFaint = 0.22f;  // strength of a hidden line

// Signed distances from the six sides of clip space; positive inside.
void Distances(const ZmVector4& p, float (&res)[6])
{
    const float inside[6] = {p.w + p.x, p.w - p.x, p.w + p.y, p.w - p.y, p.z, p.w - p.z};
    std::copy(inside, inside + 6, res);
}

// Clips a line; the visible part is given as parameters. Returns false if nothing is visible.
bool Clip(const ZmVector4& from, const ZmVector4& to, float& first, float& last)
{
    float a[6], b[6];
    Distances(from, a);
    Distances(to, b);
    first = 0;
    last = 1;
    for (int i = 0; i < 6; ++i) {
        if (a[i] < 0 && b[i] < 0) {
            return false;
        }
        if (a[i] < 0) {
            first = std::max(first, a[i] / (a[i] - b[i]));
        }
        if (b[i] < 0) {
            last = std::min(last, a[i] / (a[i] - b[i]));
        }
    }
    return first < last;
}

// A point on the screen; Nearness is 1 / distance.
struct Spot {
    float x, y, nearness;
};

Spot ToScreen(const ZmVector4& from, const ZmVector4& to, float t, const RKRECT& window)
{
    const float x = from.x + (to.x - from.x) * t, y = from.y + (to.y - from.y) * t, w = from.w + (to.w - from.w) * t;
    const float width = float(window.right - window.left), height = float(window.bottom - window.top);
    return {float(window.left) + (0.5f + 0.5f * x / w) * width - 0.5f,
            float(window.top) + (0.5f - 0.5f * y / w) * height - 0.5f, 1 / w};
}

}  // namespace

void Blend(uint32_t& pixel, const ZmColor& colour)
{
    const auto mix = [&](int shift, float channel) {
        const float old = float(pixel >> shift & 255) / 255;
        return old + (channel - old) * colour.a;
    };
    const ZmColor mixed(mix(16, colour.r), mix(8, colour.g), mix(0, colour.b));
    pixel = RGBAFTOCOLOR(&mixed);
}

void Wire::Dot(int x, int y, float nearness, float weight, const ZmColor& colour)
{
    if (x < m_Window.left || x >= m_Window.right || y < m_Window.top || y >= m_Window.bottom) {
        return;
    }
    const size_t at = size_t(y) * size_t(m_Picture.width) + size_t(x);
    const bool hidden = m_Hides && m_Picture.nearness[at] > nearness * 1.01f;
    Blend(m_Picture.pixels[at], ZmColor(colour.r, colour.g, colour.b, colour.a * weight * (hidden ? kFaint : 1)));
}

// Draws two dots per step, weighted by their distance from the line.
void Wire::Line(const ZmVector& from, const ZmVector& to, const ZmColor& colour)
{
    ZmVector4 a, b;
    Zm3DMultiplyMatrixVector4(&a, m_WorldToClip, &from);
    Zm3DMultiplyMatrixVector4(&b, m_WorldToClip, &to);
    float first, last;
    if (!Clip(a, b, first, last)) {
        return;
    }
    const Spot start = ToScreen(a, b, first, m_Window), end = ToScreen(a, b, last, m_Window);
    const float dx = end.x - start.x, dy = end.y - start.y;
    const bool steep = std::fabs(dy) > std::fabs(dx);
    const int steps = int(std::ceil(std::max(std::fabs(dx), std::fabs(dy))));
    for (int i = 0; i < steps; ++i) {
        const float t = float(i) / float(steps), nearness = start.nearness + (end.nearness - start.nearness) * t;
        const float x = start.x + dx * t, y = start.y + dy * t;
        const int column = int(std::floor(x)), row = int(std::floor(y));
        const float share = steep ? x - float(column) : y - float(row);
        Dot(column, row, nearness, 1 - share, colour);
        Dot(steep ? column + 1 : column, steep ? row : row + 1, nearness, share, colour);
    }
}

void Wire::Box(const ZmVector (&corners)[8], const ZmColor& colour)
{
    for (int corner = 0; corner < 8; ++corner) {
        for (const int bit : {1, 2, 4}) {
            if ((corner & bit) == 0) {
                Line(corners[corner], corners[corner | bit], colour);
            }
        }
    }
}
