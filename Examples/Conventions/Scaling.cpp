#include "Canvas.h"
#include "Pictures.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <utility>

namespace {

/// An image of ARGB8888 with its memory.
struct Picture {
    Picture(int width, int height)
        : pixels(size_t(width) * size_t(height)), desc(Describe(ZM_PF_32_ARGB8888, width, height, pixels.data()))
    {
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    uint32_t& At(int x, int y) { return pixels[size_t(y) * size_t(desc.Width) + size_t(x)]; }

    std::vector<uint32_t> pixels;
    ZmImageDescEx desc;
};

uint32_t Grey(int level)
{
    return 0xFF000000 | uint32_t(level) * 0x010101;
}

/// Draws each pixel as a square.
void DrawPixels(Canvas& canvas, float left, float top, Picture& picture, int size)
{
    for (int y = 0; y < picture.desc.Height; ++y) {
        for (int x = 0; x < picture.desc.Width; ++x) {
            const float u = left + float(x * size), v = top + float(y * size);
            canvas.Rectangle(u, v, u + float(size), v + float(size), picture.At(x, y));
        }
    }
}

/// Rings that become finer outwards: at the border two per pixel of a result of a quarter of the size, twice what it
/// can show.
void DrawZonePlate(Picture& picture)
{
    const int size = picture.desc.Width;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const int u = 2 * x + 1 - size, v = 2 * y + 1 - size;
            picture.At(x, y) = Grey(int(std::floor(128 + 127 * Tcos((u * u + v * v) * 2 % 16384))));
        }
    }
}

/// A bar and a disc without smooth edges.
void DrawShapes(Picture& picture)
{
    for (int y = 0; y < picture.desc.Height; ++y) {
        for (int x = 0; x < picture.desc.Width; ++x) {
            const int u = x - 5, v = y - 14;
            const bool isBar = x + y / 3 >= 13 && x + y / 3 < 16;
            picture.At(x, y) = u * u + v * v < 15 || isBar ? kBlue : kPale;
        }
    }
}

/// Domes on flat ground of height 0.
void DrawDomes(Picture& heights)
{
    for (int y = 0; y < heights.desc.Height; ++y) {
        for (int x = 0; x < heights.desc.Width; ++x) {
            const int u = x % 64 - 32, v = y % 64 - 32;
            heights.At(x, y) = Grey(std::max(0, 200 - (u * u + v * v) / 3));
        }
    }
}

/// What a normal map looks like in light from the top left.
void DrawLit(Canvas& canvas, float left, float top, Picture& normals, int size)
{
    Picture lit(normals.desc.Width, normals.desc.Height);
    for (size_t i = 0; i < lit.pixels.size(); ++i) {
        float sum = 0;
        for (const auto& axis : {std::pair<int, float>{16, -0.5f}, {8, -0.5f}, {0, 0.7071f}}) {
            sum += (float(normals.pixels[i] >> axis.first & 255) / 127.5f - 1) * axis.second;
        }
        lit.pixels[i] = Grey(int(std::max(sum, 0.0f) * 220 + 20));
    }
    DrawPixels(canvas, left, top, lit, size);
}

/// Two colours and black and white, in turn from pixel to pixel.
void DrawCheckers(Picture& picture)
{
    const uint32_t pairs[4][2] = {
        {0xFFFFFFFF, 0xFF000000}, {0xFFFF0000, 0xFF00FF00}, {0xFF0000FF, 0xFFFFFF00}, {0xFFFF00FF, 0xFF00C000}};
    const int width = picture.desc.Width, height = picture.desc.Height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.At(x, y) = pairs[y * 4 / height][(x + y) % 2];
        }
    }
}

}  // namespace

bool DrawFilters()
{
    const struct {
        const char* name;
        ZMFILTER filter;
    } kFilters[] = {{"box", ZMFILTER_BOX},
                    {"bilinear", ZMFILTER_BILINEAR},
                    {"Mitchell", ZMFILTER_MITCHELL},
                    {"Catmull-Rom", ZMFILTER_CATMULL_ROM},
                    {"Lanczos 3", ZMFILTER_LANCZOS3},
                    {"Kaiser", ZMFILTER_KAISER}};
    constexpr int kSize = 124;
    Picture rings(4 * kSize, 4 * kSize), shapes(20, 20), result(kSize, kSize);
    DrawZonePlate(rings);
    DrawShapes(shapes);
    Canvas canvas(800, 310);
    float left = 8;
    for (const auto& row : kFilters) {
        ZmImageOptions options;
        options.Filter = row.filter;
        canvas.Text({left + kSize / 2, 26}, row.name, kInk, 12, Align::CENTRE);
        ZmResizeImage32(rings.desc, result.desc, options);
        DrawPixels(canvas, left, 40, result, 1);
        ZmResizeImage32(shapes.desc, result.desc, options);
        DrawPixels(canvas, left, 176, result, 1);
        left += kSize + 8;
    }
    return canvas.Save("filters.png");
}

bool DrawNormalLevels()
{
    constexpr int kSize = 128;
    Canvas canvas(800, 330);
    canvas.Text({12, 100}, "normals", kInk, 17);
    canvas.Text({12, 246}, "colour", kInk, 17);
    Picture heights(kSize, kSize), normals(kSize, kSize);
    DrawDomes(heights);
    ZmConvertToNormalMap(heights.desc, normals.desc, 0xFF, 40);
    for (const ZMCHANNELS channels : {ZMCHANNELS_NORMALS, ZMCHANNELS_COLOR}) {
        ZmImageOptions options;
        options.Channels = channels;
        const float top = channels == ZMCHANNELS_NORMALS ? 36 : 180;
        std::deque<Picture> levels;
        for (int i = 0, size = kSize / 2; i < 4; ++i, size /= 2) {
            levels.emplace_back(size, size);
            ZmGenerateMipMap(i == 0 ? normals.desc : levels[size_t(i) - 1].desc, levels.back().desc, options);
            DrawLit(canvas, 130 + float(i) * 164, top, levels.back(), kSize / size);
        }
    }
    return canvas.Save("normal-levels.png");
}

bool DrawLight()
{
    constexpr int kSize = 192;
    Picture checkers(kSize, kSize), half(kSize / 2, kSize / 2);
    DrawCheckers(checkers);
    Canvas canvas(800, 250);
    canvas.Text({160, 30}, "image", kInk, 17, Align::CENTRE);
    DrawPixels(canvas, 160 - kSize / 2, 44, checkers, 1);
    for (const ZMLIGHT light : {ZMLIGHT_LINEAR, ZMLIGHT_STORED}) {
        ZmImageOptions options;
        options.Light = light;
        ZmGenerateMipMap(checkers.desc, half.desc, options);
        const float middle = light == ZMLIGHT_LINEAR ? 400 : 640;
        canvas.Text({middle, 30}, light == ZMLIGHT_LINEAR ? "linear light" : "stored numbers", kInk, 17, Align::CENTRE);
        DrawPixels(canvas, middle - kSize / 2, 44, half, 2);
    }
    return canvas.Save("light.png");
}
