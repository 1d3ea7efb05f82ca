#pragma once

#include "ZmMath.h"

#include <vector>

/// A descriptor that owns its pixels. By default the bytes are red, green and blue, as image files need them.
struct Image {
    Image(int width, int height, ZM_PIXELFORMAT format = ZM_PF_24_BGR888)
    {
        ZmPixelFormat2ImageDesc(format, desc);
        desc.Width = width;
        desc.Height = height;
        desc.BytesPerLine = width * desc.BitsPerPixel / 8;
        pixels.resize(size_t(desc.BytesPerLine) * size_t(height));
        desc.Pixels = pixels.data();
    }
    Image(Image&&) = default;
    Image& operator=(Image&&) = default;

    ZmImageDescEx desc = {};
    std::vector<unsigned char> pixels;
};
