// Compressed images beside a decoder that computes each pixel alone.

#include "Imaging/ReferencePixels.h"
#include "Input.h"
#include "ZmBlit.h"

#include <vector>

namespace {

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
        Demand(pixels[size_t(i)] == Decoded(block, format, pixel));
    }
    return 0;
}
