// Compressed images beside a decoder that computes each pixel of its own.

#include "Input.h"
#include "ZmBlit.h"
#include "ZmPixelFormat.h"

#include <math.h>

#include <vector>

namespace {

/// A mix of two values, rounded to nearest.
uint32_t Mixed(uint32_t a, uint32_t b, int step, int steps)
{
    return uint32_t(floor((double(a) * (steps - step) + double(b) * step) / steps + 0.5));
}

uint32_t Field(const uint8_t* colour, int shift, int bits)
{
    const uint32_t most = (1u << bits) - 1, value = uint32_t(colour[0] | colour[1] << 8) >> shift & most;
    return (value << 8 | value << (8 - bits)) / (1u << bits) | value >> (2 * bits - 8);
}

uint32_t ColourOf(const uint8_t* block, int pixel, bool hasThree)
{
    const int choice = block[4 + pixel / 4] >> (pixel % 4 * 2) & 3;
    const bool three = hasThree && (block[0] | block[1] << 8) <= (block[2] | block[3] << 8);
    const uint32_t alpha = hasThree ? 0xFF000000 : 0;
    if (three && choice == 3) {
        return 0;
    }
    uint32_t res = alpha;
    for (int c = 0; c < 3; ++c) {
        const int shift = c == 0 ? 11 : c == 1 ? 5 : 0, bits = c == 1 ? 6 : 5;
        const uint32_t a = Field(block, shift, bits), b = Field(block + 2, shift, bits);
        const uint32_t value = choice == 0   ? a
                               : choice == 1 ? b
                               : three       ? Mixed(a, b, 1, 2)
                                             : Mixed(a, b, choice - 1, 3);
        res |= value << (16 - 8 * c);
    }
    return res;
}

uint32_t AlphaOf(const uint8_t* block, int pixel, bool isMixed)
{
    if (!isMixed) {
        return (block[pixel / 2] >> (pixel % 2 * 4) & 15u) * 17;
    }
    int choice = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int at = 3 * pixel + bit;
        choice |= (block[2 + at / 8] >> at % 8 & 1) << bit;
    }
    const uint32_t a = block[0], b = block[1];
    if (choice < 2) {
        return choice == 0 ? a : b;
    }
    return a > b ? Mixed(a, b, choice - 1, 7) : choice < 6 ? Mixed(a, b, choice - 1, 5) : choice == 6 ? 0 : 255;
}

ZmImageDescEx Describe(ZM_PIXELFORMAT format, int width, int height, int pitch, void* pixels)
{
    ZmImageDescEx res = {};
    ZmPixelFormat2ImageDesc(format, res);
    res.Width = width;
    res.Height = height;
    res.BytesPerLine = pitch;
    res.Pixels = static_cast<unsigned char*>(pixels);
    return res;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const auto format = ZM_PIXELFORMAT(ZM_PF_DXT1 + input.UpTo(4));
    const int width = 1 + input.UpTo(9), height = 1 + input.UpTo(9), padding = input.UpTo(3);
    const bool upsideDown = input.UpTo(1) != 0;
    const int blockSize = format == ZM_PF_DXT1 ? 8 : 16, pitch = (width + 3) / 4 * blockSize + padding;
    std::vector<uint8_t> blocks(size_t(pitch * ((height + 3) / 4) - padding));
    input.Fill(blocks.data(), blocks.size());
    std::vector<uint32_t> pixels(size_t(width * height));
    const ZmImageDescEx src = Describe(format, width, height, pitch, blocks.data()),
                        dst = Describe(ZM_PF_32_ARGB8888, width, height, 4 * width, pixels.data());
    Demand((upsideDown ? ZmDoBlitUpsideDown : ZmDoBlit)(src, dst) == 1);
    for (int i = 0; i < width * height; ++i) {
        const int x = i % width, y = upsideDown ? height - 1 - i / width : i / width, pixel = y % 4 * 4 + x % 4;
        const uint8_t* const block = blocks.data() + y / 4 * pitch + x / 4 * blockSize;
        uint32_t expected = ColourOf(block + (blockSize - 8), pixel, format == ZM_PF_DXT1);
        expected |= format == ZM_PF_DXT1 ? 0 : AlphaOf(block, pixel, format >= ZM_PF_DXT4) << 24;
        Demand(pixels[size_t(i)] == expected);
    }
    return 0;
}
