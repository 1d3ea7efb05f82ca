#include "ZmNormalMap.h"

#include "Imaging/ImageView.h"

#include <algorithm>
#include <math.h>
#include <string.h>

namespace zm {
namespace {

/// The heights of a picture that repeats in both directions.
class HeightField {
public:
    HeightField(const ImageView& image, const Channel& channel, double scale)
        : m_Image(image), m_Channel(channel), m_Scale(scale)
    {
    }

    /// From 0 to 1.
    double Height(int x, int y) const
    {
        uint32_t pixel = 0;
        memcpy(&pixel, m_Image.Line(y) + ptrdiff_t(x) * m_Image.layout.bytes, size_t(m_Image.layout.bytes));
        const uint32_t most = (1u << m_Channel.bits) - 1;
        return double(pixel >> m_Channel.shift & most) / most;
    }
    double SlopeAlongU(int x, int y) const
    {
        return m_Scale / 2 * (Height(Next(x, m_Image.width), y) - Height(Previous(x, m_Image.width), y));
    }
    double SlopeAlongV(int x, int y) const
    {
        return m_Scale / 2 * (Height(x, Next(y, m_Image.height)) - Height(x, Previous(y, m_Image.height)));
    }

private:
    static int Next(int at, int size) { return at + 1 < size ? at + 1 : 0; }
    static int Previous(int at, int size) { return at > 0 ? at - 1 : size - 1; }

    const ImageView& m_Image;
    const Channel m_Channel;
    const double m_Scale;
};

/// Encodes a number from 0 to 1 in a channel.
uint32_t Field(double value, const Channel& channel)
{
    const uint32_t most = (1u << channel.bits) - 1;
    return uint32_t(floor(value * most + 0.5)) << channel.shift;
}

/// Encodes a number from -1 to 1; the highest bit of the field is the sign.
uint32_t SignedField(double value, const Channel& channel)
{
    const int most = (1 << (channel.bits - 1)) - 1;
    const int rounded = int(floor(std::clamp(value, -1.0, 1.0) * most + 0.5));
    return (uint32_t(rounded) & ((1u << channel.bits) - 1)) << channel.shift;
}

uint32_t Normal(const HeightField& heights, int x, int y, const Channel (&to)[4])
{
    const double u = -heights.SlopeAlongU(x, y), v = -heights.SlopeAlongV(x, y), length = sqrt(u * u + v * v + 1);
    const double normal[3] = {u / length, v / length, 1 / length};
    uint32_t res = Field(heights.Height(x, y), to[kAlpha]);
    for (int c = 0; c < 3; ++c) {
        res |= Field((normal[c] + 1) / 2, to[c]);
    }
    return res;
}

uint32_t Slopes(const HeightField& heights, int x, int y, const Channel (&to)[4])
{
    const double height = heights.Height(x, y);
    return SignedField(heights.SlopeAlongU(x, y), to[0]) | SignedField(heights.SlopeAlongV(x, y), to[1]) |
           Field(height, to[2]) | Field(height, to[kAlpha]);
}

using PixelOf = uint32_t (*)(const HeightField& heights, int x, int y, const Channel (&to)[4]);

ImageProblem ViewHeights(ImageView& from, ImageView& to, Channel& height, const ZmImageDescEx& src,
                         const ZmImageDescEx& dst, uint32_t heightMask, float scale)
{
    const ImageProblem problem = ViewBoth(from, to, src, dst, true);
    if (problem.what != nullptr) {
        return problem;
    }
    if (from.width != to.width || from.height != to.height) {
        return {nullptr, "the sizes differ"};
    }
    if (!ReadMask(height, heightMask, from.bits) || height.bits == 0) {
        return {"source", "the height mask is empty, or has a gap, more than 16 bits, or bits outside the pixel"};
    }
    if (!isfinite(scale)) {
        return {nullptr, "the scale is not finite"};
    }
    const bool hasSlopes = to.layout.channel[0].bits != 0 && to.layout.channel[1].bits != 0;
    return hasSlopes ? kNoProblem : ImageProblem{"destination", "slopes need red and green"};
}

int ConvertHeights(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale,
                   PixelOf pixelOf)
{
    ImageView from, to;
    Channel height;
    if (ViewHeights(from, to, height, src, dst, heightMask, scale).what != nullptr) {
        return 0;
    }
    const HeightField heights(from, height, scale);
    for (int y = 0; y < to.height; ++y) {
        uint8_t* res = to.Line(y);
        for (int x = 0; x < to.width; ++x, res += to.layout.bytes) {
            const uint32_t pixel = pixelOf(heights, x, y, to.layout.channel);
            memcpy(res, &pixel, size_t(to.layout.bytes));
        }
    }
    return 1;
}

}  // namespace
}  // namespace zm

int ZmConvertToNormalMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale)
{
    return zm::ConvertHeights(src, dst, heightMask, scale, zm::Normal);
}

int ZmConvertToBumpMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale)
{
    return zm::ConvertHeights(src, dst, heightMask, scale, zm::Slopes);
}

int ZmCanConvertHeights(const ZmImageDescEx& src, const ZmImageDescEx& dst, uint32_t heightMask, float scale,
                        XString& why)
{
    zm::ImageView from, to;
    zm::Channel height;
    return zm::Explain(zm::ViewHeights(from, to, height, src, dst, heightMask, scale), why);
}
