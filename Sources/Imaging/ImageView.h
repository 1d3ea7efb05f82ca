#pragma once

#include "XString.h"
#include "ZmImageDescEx.h"

#include <stddef.h>
#include <stdint.h>

namespace zm {

struct Channel {
    int shift, bits;  ///< zero bits: the channel is missing
};

constexpr int kAlpha = 3;

/// Where the channels of a masked pixel are: red, green, blue, alpha.
struct PixelLayout {
    int bytes;
    Channel channel[4];
};

/// 32-bit pixels with alpha in the highest byte and blue in the lowest.
constexpr PixelLayout kArgb = {4, {{16, 8}, {8, 8}, {0, 8}, {24, 8}}};
/// The same layout without alpha.
constexpr PixelLayout kRgb = {4, {{16, 8}, {8, 8}, {0, 8}, {0, 0}}};

enum class PixelKind {
    MASKED,
    INDEXED,
    COMPRESSED
};

/// A validated image descriptor.
struct ImageView {
    PixelKind kind;
    int width, height;
    uint8_t* pixels;
    ptrdiff_t pitch;
    int bits;            ///< per pixel; 0 for compressed images
    PixelLayout layout;  ///< of masked images only
    bool hasSlopes;      ///< the first two channels are signed
    uint32_t format;     ///< of compressed images only
    uint8_t* palette;    ///< of indexed images only
    int entrySize, entries;

    uint8_t* Line(int y) const { return pixels + y * pitch; }
};

/// Returns false unless the mask is one run of at most 16 bits within `pixelBits` bits. An empty mask is no channel.
bool ReadMask(Channel& res, uint32_t mask, int pixelBits);

/// Returns what is wrong with the descriptor, or null.
const char* View(ImageView& res, const ZmImageDescEx& desc);

/// Why a call gives 0: the thing wrong, or null, and the image that it is wrong with, or null for both.
struct ImageProblem {
    const char *image, *what;
};

constexpr ImageProblem kNoProblem = {nullptr, nullptr};

/// Views both images of a call. With `masked` they may be neither indexed nor compressed.
ImageProblem ViewBoth(ImageView& from, ImageView& to, const ZmImageDescEx& src, const ZmImageDescEx& dst, bool masked);

/// Returns 1 if there is no problem; otherwise 0 and the problem in `why`.
int Explain(const ImageProblem& problem, XString& why);

/// The same image with its lines in reverse order. Not for compressed images.
ImageView UpsideDown(const ImageView& image);

}  // namespace zm
