#include "Canvas.h"

#include "../Tour/Png.h"
#include "Glyphs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kScale = 4;

Zm2DVector Plus(const Zm2DVector& a, const Zm2DVector& b, float factor = 1)
{
    return {a.x + b.x * factor, a.y + b.y * factor};
}

float DistanceOf(const Zm2DVector& a, const Zm2DVector& b)
{
    return std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
}

/// The unit vector from a to b.
Zm2DVector Towards(const Zm2DVector& a, const Zm2DVector& b)
{
    const float length = DistanceOf(a, b);
    return {(b.x - a.x) / length, (b.y - a.y) / length};
}

}  // namespace

ZmImageDescEx Describe(ZM_PIXELFORMAT format, int width, int height, void* pixels)
{
    ZmImageDescEx desc = {};
    ZmPixelFormat2ImageDesc(format, desc);
    desc.Width = width;
    desc.Height = height;
    desc.BytesPerLine = width * desc.BitsPerPixel / 8;
    desc.Pixels = static_cast<unsigned char*>(pixels);
    return desc;
}

Canvas::Canvas(int width, int height)
    : m_Width(width), m_Height(height), m_Pixels(size_t(width * kScale) * size_t(height * kScale), kWhite)
{
}

void Canvas::Span(int y, float left, float right, uint32_t colour)
{
    const int width = m_Width * kScale;
    const int first = std::max(int(std::ceil(left - 0.5f)), 0), last = std::min(int(std::ceil(right - 0.5f)), width);
    for (int x = first; x < last; ++x) {
        m_Pixels[size_t(y) * size_t(width) + size_t(x)] = colour;
    }
}

void Canvas::Fill(const std::vector<Zm2DVector>& corners, uint32_t colour)
{
    float top = corners[0].y, bottom = top;
    for (const Zm2DVector& corner : corners) {
        top = std::min(top, corner.y);
        bottom = std::max(bottom, corner.y);
    }
    const int end = std::min(int(bottom * kScale) + 1, m_Height * kScale);
    for (int y = std::max(int(top * kScale), 0); y < end; ++y) {
        const float middle = (float(y) + 0.5f) / kScale;
        std::vector<float> crossings;
        for (size_t i = 0; i < corners.size(); ++i) {
            const Zm2DVector &a = corners[i], &b = corners[(i + 1) % corners.size()];
            if ((a.y <= middle) != (b.y <= middle)) {
                crossings.push_back((a.x + (b.x - a.x) * ((middle - a.y) / (b.y - a.y))) * kScale);
            }
        }
        std::sort(crossings.begin(), crossings.end());
        for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
            Span(y, crossings[i], crossings[i + 1], colour);
        }
    }
}

void Canvas::Rectangle(float left, float top, float right, float bottom, uint32_t colour)
{
    Fill({{left, top}, {right, top}, {right, bottom}, {left, bottom}}, colour);
}

void Canvas::Disc(const Zm2DVector& centre, float radius, uint32_t colour)
{
    std::vector<Zm2DVector> corners;
    for (int angle = 0; angle < 16384; angle += 16384 / 32) {
        corners.push_back({centre.x + radius * Tcos(angle), centre.y + radius * Tsin(angle)});
    }
    Fill(corners, colour);
}

void Canvas::Line(const Zm2DVector& from, const Zm2DVector& to, uint32_t colour, float width)
{
    Disc(from, width / 2, colour);
    if (DistanceOf(from, to) == 0) {
        return;
    }
    Disc(to, width / 2, colour);
    const Zm2DVector along = Towards(from, to), aside(-along.y, along.x);
    Fill({Plus(from, aside, width / 2), Plus(to, aside, width / 2), Plus(to, aside, -width / 2),
          Plus(from, aside, -width / 2)},
         colour);
}

void Canvas::Path(const std::vector<Zm2DVector>& points, uint32_t colour, float width)
{
    for (size_t i = 0; i + 1 < points.size(); ++i) {
        Line(points[i], points[i + 1], colour, width);
    }
}

void Canvas::Arrow(const std::vector<Zm2DVector>& points, uint32_t colour, float width)
{
    const float head = 4.5f * width;
    // The head lies along the chord of the last part of the path; the shaft ends inside it.
    std::vector<Zm2DVector> shaft = points;
    const Zm2DVector tip = points.back();
    while (shaft.size() > 1 && DistanceOf(shaft.back(), tip) < head * 0.8f) {
        shaft.pop_back();
    }
    const Zm2DVector from = shaft.back();
    if (DistanceOf(from, tip) < 1) {
        return;
    }
    const Zm2DVector along = Towards(from, tip), aside(-along.y, along.x), neck = Plus(tip, along, -head);
    if (DistanceOf(from, tip) > head * 0.9f) {
        shaft.push_back(Plus(neck, along, head * 0.1f));
    }
    Path(shaft, colour, width);
    Fill({tip, Plus(neck, aside, 0.42f * head), Plus(neck, aside, -0.42f * head)}, colour);
}

void Canvas::Text(const Zm2DVector& at, const std::string& text, uint32_t colour, float height, Align align)
{
    int width = 0;
    for (const char character : text) {
        width += AdvanceOf(character);
    }
    const float unit = height / kCapitals;
    float x = at.x;
    if (align != Align::LEFT) {
        x -= float(width - kGap) * unit * (align == Align::CENTRE ? 0.5f : 1.0f);
    }

    std::vector<std::vector<Zm2DVector>> strokes;
    for (const char character : text) {
        for (const Stroke& stroke : StrokesOf(character)) {
            strokes.emplace_back();
            for (const Zm2DVector& point : stroke) {
                strokes.back().push_back({x + point.x * unit, at.y - point.y * unit});
            }
        }
        x += float(AdvanceOf(character)) * unit;
    }
    const float pen = height * 0.14f;
    Strokes(strokes, kWhite, pen + 6);
    Strokes(strokes, colour, pen);
}

void Canvas::Strokes(const std::vector<std::vector<Zm2DVector>>& strokes, uint32_t colour, float width)
{
    for (const std::vector<Zm2DVector>& points : strokes) {
        Path(points, colour, width);
        if (points.size() == 1) {
            Disc(points[0], width * 0.7f, colour);
        }
    }
}

bool Canvas::Save(const char* path) const
{
    std::vector<uint32_t> small(size_t(m_Width) * size_t(m_Height));
    std::vector<unsigned char> bytes(small.size() * 3);
    auto* large = const_cast<uint32_t*>(m_Pixels.data());
    const ZmImageDescEx smallDesc = Describe(ZM_PF_32_ARGB8888, m_Width, m_Height, small.data());
    return ZmResizeImage32(Describe(ZM_PF_32_ARGB8888, m_Width * kScale, m_Height * kScale, large), smallDesc) &&
           ZmDoBlit(smallDesc, Describe(ZM_PF_24_BGR888, m_Width, m_Height, bytes.data())) &&
           WritePng(path, m_Width, m_Height, bytes.data());
}
