#pragma once

#include <stdint.h>

/// What the channels of an image mean, and so how they are averaged. Bump formats need no such choice: their slopes
/// are averaged as signed numbers and everything else by itself.
enum ZMCHANNELS : uint32_t {
    ZMCHANNELS_COLOR = 0,          ///< alpha is coverage: it weights the colours, so that transparent ones do not bleed
    ZMCHANNELS_PREMULTIPLIED = 1,  ///< colours that are multiplied by their alpha, and never exceed it
    ZMCHANNELS_DATA = 2,           ///< each channel by itself, such as heights, or gloss in alpha
    ZMCHANNELS_NORMALS = 3         ///< unit vectors as of ZmConvertToNormalMap(), and alpha by itself
};

/// In which light colours are averaged. Alpha and normals are the same in both.
enum ZMLIGHT : uint32_t {
    ZMLIGHT_STORED = 0,  ///< the numbers as they are: black and white give 80
    ZMLIGHT_LINEAR = 1   ///< the light that sRGB numbers stand for: black and white give bc
};

/// How the pixels around a place are weighted. A filter that shrinks is stretched to the size of the result's pixels.
enum ZMFILTER : uint32_t {
    ZMFILTER_DEFAULT = 0,      ///< in each direction, bilinear where it grows and box where it shrinks
    ZMFILTER_BOX = 1,          ///< the mean of the area that a pixel covers
    ZMFILTER_BILINEAR = 2,     ///< a triangle over 2 pixels
    ZMFILTER_MITCHELL = 3,     ///< a cubic over 4 pixels between blur and ringing (B = C = 1/3)
    ZMFILTER_CATMULL_ROM = 4,  ///< a cubic over 4 pixels that keeps the pixels it passes through
    ZMFILTER_LANCZOS3 = 5,     ///< a sinc over 6 pixels in a sinc window: the sharpest, and it rings
    ZMFILTER_KAISER = 6        ///< a sinc over 6 pixels in a Kaiser window (alpha 4): for mipmaps
};

/// What lies beyond the border of an image.
enum ZMEDGES : uint32_t {
    ZMEDGES_CLAMP = 0,  ///< its border pixels
    ZMEDGES_WRAP = 1,   ///< the image again, for textures that repeat
    ZMEDGES_MIRROR = 2  ///< its mirror image, border pixels included
};

/// Options for scaling images.
struct ZmImageOptions {
    ZMCHANNELS Channels = ZMCHANNELS_COLOR;  ///< what the channels mean
    ZMLIGHT Light = ZMLIGHT_STORED;          ///< in which light colours are averaged
    ZMFILTER Filter = ZMFILTER_DEFAULT;      ///< how pixels are weighted
    ZMEDGES Edges = ZMEDGES_CLAMP;           ///< what lies beyond the border
};
