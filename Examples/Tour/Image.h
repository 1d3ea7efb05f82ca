#pragma once

#include "ZmMath.h"

#include <vector>

/// A descriptor that owns its pixels. By default the bytes are red, green and blue, as image files need them.
struct Image {
    Image(int width, int height, ZM_PIXELFORMAT format = ZM_PF_24_BGR888)
    {
        ZmPixelFormat2ImageDesc(format, Desc);
        Desc.Width = width;
        Desc.Height = height;
        Desc.BytesPerLine = width * Desc.BitsPerPixel / 8;
        Pixels.resize(size_t(Desc.BytesPerLine) * size_t(height));
        Desc.Pixels = Pixels.data();
    }
    Image(Image&&) = default;
    Image& operator=(Image&&) = default;

    ZmImageDescEx Desc = {};
    std::vector<unsigned char> Pixels;
};
