// Operations that combine neighbouring pixels, beside their definitions in doubles: resizing, mipmaps, normal maps and
// bump maps.

#include "Imaging/ReferenceFilter.h"
#include "Input.h"
#include "ZmNormalMap.h"
#include "ZmPixelFormat.h"
#include "ZmResize.h"

#include <math.h>

#include <vector>

namespace {

struct Image {
    Image(int format, int width, int height) : pixels(size_t(width * height))
    {
        ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT(format), desc);
        desc.Width = width;
        desc.Height = height;
        desc.BytesPerLine = 4 * width;
        desc.Pixels = reinterpret_cast<unsigned char*>(pixels.data());
    }
    /// The pixel as a number; the image repeats.
    uint32_t At(int x, int y) const
    {
        return pixels[size_t((y + desc.Height) % desc.Height * desc.Width + (x + desc.Width) % desc.Width)];
    }
    /// Red, green, blue or alpha; opaque without alpha.
    uint32_t Channel(int x, int y, int channel) const
    {
        const uint32_t mask = Mask(channel);
        return mask != 0 ? (At(x, y) & mask) >> GetBitShift(mask) : 255;
    }
    uint32_t Mask(int channel) const
    {
        const uint32_t masks[4] = {desc.RedMask, desc.GreenMask, desc.BlueMask, desc.AlphaMask};
        return masks[channel];
    }

    std::vector<uint32_t> pixels;
    ZmImageDescEx desc = {};
};

void CompareResized(const Image& src, const Image& dst, int x, int y)
{
    constexpr double kRounding = 0.525;
    double sums[4] = {};
    for (int v = 0; v < src.desc.Height; ++v) {
        for (int u = 0; u < src.desc.Width; ++u) {
            const double weight = ReferenceWeight(x, u, src.desc.Width, dst.desc.Width) *
                                  ReferenceWeight(y, v, src.desc.Height, dst.desc.Height) * src.Channel(u, v, 3);
            for (int c = 0; c < 3 && weight != 0; ++c) {
                sums[c] += weight * src.Channel(u, v, c);
            }
            sums[3] += weight;
        }
    }
    for (int c = 0; c < 4; ++c) {
        const double expected = c == 3 ? sums[3] : sums[3] > 0 ? sums[c] / sums[3] : 0;
        Demand(dst.Mask(c) == 0 || fabs(dst.Channel(x, y, c) - expected) <= kRounding);
    }
}

struct Heights {
    double At(int x, int y) const { return double(image.At(x, y) & mask) / mask; }
    double U(int x, int y) const { return (At(x + 1, y) - At(x - 1, y)) / 2 * scale; }
    double V(int x, int y) const { return (At(x, y + 1) - At(x, y - 1)) / 2 * scale; }

    const Image& image;
    uint32_t mask;
    double scale;
};

constexpr double kHalf = 0.5 + 1e-9;  // rounded to nearest

void CompareNormal(const Heights& heights, const Image& dst, int x, int y)
{
    const double u = -heights.U(x, y), v = -heights.V(x, y), length = sqrt(u * u + v * v + 1);
    const double expected[4] = {(u / length + 1) / 2, (v / length + 1) / 2, (1 / length + 1) / 2, heights.At(x, y)};
    for (int c = 0; c < 4; ++c) {
        Demand(dst.Mask(c) == 0 || fabs(dst.Channel(x, y, c) - expected[c] * 255) <= kHalf);
    }
}

void CompareSlopes(const Heights& heights, const Image& dst, int x, int y)
{
    const double slopes[2] = {heights.U(x, y), heights.V(x, y)};
    for (int c = 0; c < 4; ++c) {
        const double expected = c < 2 ? std::min(1.0, std::max(-1.0, slopes[c])) * 127 : heights.At(x, y) * 255;
        const int value = int(dst.Channel(x, y, c));
        Demand(dst.Mask(c) == 0 || fabs((c < 2 ? int8_t(value) : value) - expected) <= kHalf);
    }
}

/// Scaling with any options, valid or not.
void CompareFiltered(Input& input)
{
    constexpr uint32_t kFormats[] = {ZM_PF_32_ARGB8888, ZM_PF_32_RGB888,   ZM_PF_32_RGBA8888,
                                     ZM_PF_32_ABGR8888, ZM_PF_BUMP_V16U16, ZM_PF_BUMP_L8V8U8};
    constexpr int kLargest = 11;
    const ZmImageOptions options = {ZMCHANNELS(input.UpTo(4)), ZMLIGHT(input.UpTo(2)), ZMFILTER(input.UpTo(7)),
                                    ZMEDGES(input.UpTo(3))};
    const uint32_t from = kFormats[input.UpTo(5)], to = from >= ZM_PF_BUMP_V16U16 ? from : kFormats[input.UpTo(3)];
    const int width = 1 + input.UpTo(kLargest), height = 1 + input.UpTo(kLargest);
    const int newWidth = 1 + input.UpTo(kLargest), newHeight = 1 + input.UpTo(kLargest);
    TestImage src(from, width, height, input.UpTo(4), input.UpTo(1) != 0), dst(to, newWidth, newHeight);
    for (int y = 0; y < height; ++y) {
        input.Fill(src.Line(y), size_t(width) * 4);
    }
    const bool isValid = options.Channels <= ZMCHANNELS_NORMALS && options.Light <= ZMLIGHT_LINEAR &&
                         options.Filter <= ZMFILTER_KAISER && options.Edges <= ZMEDGES_MIRROR;
    Demand(ZmResizeImage32(src.desc, dst.desc, options) == isValid);
    Demand(isValid ? dst.MarginsUntouched() : dst.Untouched());
    const bool isCopy = width == newWidth && height == newHeight && options.Filter != ZMFILTER_MITCHELL;
    constexpr double kRounding = 0.525;  // in integers, without options
    Demand(!isValid || isCopy || WorstError(src, dst, options) <= kRounding);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr int kFormats[] = {ZM_PF_32_ARGB8888, ZM_PF_32_RGB888, ZM_PF_32_ABGR8888, ZM_PF_32_BGRA8888};
    constexpr int kLargest = 5;
    Input input(data, size);
    const int choice = input.UpTo(255), operation = choice % 4;
    if (choice >= 192) {
        CompareFiltered(input);
        return 0;
    }
    const int from = kFormats[input.UpTo(3)], to = kFormats[input.UpTo(3)];
    const int width = 1 + input.UpTo(kLargest), height = 1 + input.UpTo(kLargest);
    const int bits = 1 + input.UpTo(15), shift = input.UpTo(32 - bits);
    const uint32_t mask = ((1u << bits) - 1) << shift;
    const float scale = input.As<float>();
    const int newWidth = operation == 0 ? 1 + input.UpTo(kLargest) : operation == 1 ? std::max(1, width / 2) : width;
    const int newHeight = operation == 0 ? 1 + input.UpTo(kLargest) : operation == 1 ? std::max(1, height / 2) : height;
    Image src(from, width, height), dst(to, newWidth, newHeight);
    input.Fill(src.pixels.data(), 4 * src.pixels.size());
    const int done = operation == 0   ? ZmResizeImage32(src.desc, dst.desc)
                     : operation == 1 ? ZmGenerateMipMap(src.desc, dst.desc)
                     : operation == 2 ? ZmConvertToNormalMap(src.desc, dst.desc, mask, scale)
                                      : ZmConvertToBumpMap(src.desc, dst.desc, mask, scale);
    Demand(done == (operation < 2 || isfinite(scale)));
    const bool isCopy = operation < 2 && width == newWidth && height == newHeight;  // keeps transparent colours
    for (int i = 0; i < newWidth * newHeight && done && !isCopy; ++i) {
        const int x = i % newWidth, y = i / newWidth;
        const Heights heights = {src, mask, scale};
        operation < 2    ? CompareResized(src, dst, x, y)
        : operation == 2 ? CompareNormal(heights, dst, x, y)
                         : CompareSlopes(heights, dst, x, y);
    }
    return 0;
}
