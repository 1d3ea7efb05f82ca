#include "Relief.h"

#include "Png.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kTileSize = 1.9f;       // on the ground
constexpr float kHeightOfTile = 0.02f;  // from black to white, relative to the tile size
constexpr float kFullDetail = 5;        // maximum distance of the first level; it doubles with each further level

Relief::Point Decode(const Image& level, int x, int y)
{
    const int width = level.desc.Width, height = level.desc.Height;
    const unsigned char* pixel =
        level.desc.Pixels + (y % height + height) % height * level.desc.BytesPerLine + (x % width + width) % width * 4;
    const auto signedByte = [](unsigned char byte) { return float(int(byte ^ 0x80) - 0x80) / 127; };
    return {float(pixel[2]) / 255, signedByte(pixel[0]), signedByte(pixel[1])};
}

Relief::Point Mix(const Relief::Point& a, const Relief::Point& b, float t)
{
    return {a.height + (b.height - a.height) * t, a.slopeX + (b.slopeX - a.slopeX) * t,
            a.slopeZ + (b.slopeZ - a.slopeZ) * t};
}

}  // namespace

// Averages heights and derives slopes from them: averaging the slopes of a step pattern would cancel them out.
bool Relief::Load(const std::string& png)
{
    int width, height;
    std::vector<unsigned char> rgb;
    if (!ReadPng(png, width, height, rgb)) {
        return false;
    }
    Image file(width, height), heights(width, height, ZM_PF_32_RGB888);
    file.pixels.swap(rgb);
    file.desc.Pixels = file.pixels.data();
    ZmDoBlit(file.desc, heights.desc);
    m_Levels.clear();
    for (;;) {
        m_Levels.emplace_back(width, height, ZM_PF_BUMP_L8V8U8);
        ZmConvertToBumpMap(heights.desc, m_Levels.back().desc, heights.desc.RedMask, kHeightOfTile * float(width));
        if (width == 1 && height == 1) {
            return true;
        }
        width = std::max(width / 2, 1);
        height = std::max(height / 2, 1);
        Image smaller(width, height, ZM_PF_32_RGB888);
        ZmGenerateMipMap(heights.desc, smaller.desc);
        heights = std::move(smaller);
    }
}

Relief::Point Relief::At(float x, float z, float distance) const
{
    const int wanted = distance > kFullDetail ? std::ilogb(distance / kFullDetail) : 0;
    const Image& level = m_Levels[std::min(size_t(wanted), m_Levels.size() - 1)];
    const float u = x / kTileSize * float(level.desc.Width), v = z / kTileSize * float(level.desc.Height);
    const float left = std::floor(u), top = std::floor(v);
    const int column = int(left), row = int(top);
    const Point upper = Mix(Decode(level, column, row), Decode(level, column + 1, row), u - left);
    const Point lower = Mix(Decode(level, column, row + 1), Decode(level, column + 1, row + 1), u - left);
    return Mix(upper, lower, v - top);
}
