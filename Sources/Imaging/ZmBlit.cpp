#include "ZmBlit.h"

#include "Imaging/Compose.h"
#include "Imaging/Conversion.h"
#include "Imaging/Dxt.h"
#include "Imaging/HeapArray.h"
#include "Imaging/PaletteQuantizer.h"
#include "ZmPixelFormat.h"
#include "ZmQuantization.h"

#include <algorithm>
#include <limits.h>
#include <string.h>

namespace zm {
namespace {

bool IsDense(const ImageView& image)
{
    return image.pitch == ptrdiff_t(image.width) * image.layout.bytes;
}

/// From masked images.
void CopyMasked(const ImageView& src, const ImageView& dst)
{
    const Conversion conversion = Convert(src.layout, dst.layout);
    const int64_t count = int64_t(dst.width) * dst.height;
    if (IsDense(src) && IsDense(dst) && count <= INT_MAX) {
        ConvertPixels(conversion, src.pixels, dst.pixels, int(count));
        return;
    }
    for (int y = 0; y < dst.height; ++y) {
        ConvertPixels(conversion, src.Line(y), dst.Line(y), dst.width);
    }
}

/// The colours of all 256 possible indices; opaque black beyond the end of the colour map.
void ReadPalette(uint32_t (&res)[256], const ImageView& image)
{
    for (int i = 0; i < 256; ++i) {
        const uint8_t* const entry = image.palette + ptrdiff_t(i) * image.entrySize;
        res[i] = 0xFF000000;
        if (i < image.entries) {
            res[i] |= uint32_t(entry[2] << 16 | entry[1] << 8 | entry[0]);
        }
    }
}

int IndexAt(const uint8_t* line, int x, int bits)
{
    return bits == 8 ? line[x] : line[x / 2] >> (x % 2 == 0 ? 4 : 0) & 15;
}

template <int Bytes>
void LookUp(const ImageView& src, const ImageView& dst, const uint8_t* colours)
{
    for (int y = 0; y < dst.height; ++y) {
        const uint8_t* const from = src.Line(y);
        uint8_t* to = dst.Line(y);
        for (int x = 0; x < dst.width; ++x, to += Bytes) {
            memcpy(to, colours + IndexAt(from, x, src.bits) * Bytes, Bytes);
        }
    }
}

/// Converts the colour map once, then copies its entries.
void CopyIndexed(const ImageView& src, const ImageView& dst)
{
    uint32_t palette[256];
    uint8_t colours[256 * 4];
    ReadPalette(palette, src);
    ConvertPixels(Convert(kArgb, dst.layout), reinterpret_cast<const uint8_t*>(palette), colours, 256);
    switch (dst.layout.bytes) {
    case 1: LookUp<1>(src, dst, colours); break;
    case 2: LookUp<2>(src, dst, colours); break;
    case 3: LookUp<3>(src, dst, colours); break;
    default: LookUp<4>(src, dst, colours); break;
    }
}

void CopyCompressed(const ImageView& src, const ImageView& dst)
{
    const Conversion conversion = Convert(kArgb, dst.layout);
    const int bytes = dst.layout.bytes, blockBytes = src.format == ZM_PF_DXT1 ? 8 : 16;
    for (int y = 0; y < dst.height; y += 4) {
        const uint8_t* block = src.Line(y / 4);
        for (int x = 0; x < dst.width; x += 4, block += blockBytes) {
            uint32_t pixels[16];
            uint8_t converted[16 * 4];
            DecodeBlock(pixels, block, src.format);
            ConvertPixels(conversion, reinterpret_cast<const uint8_t*>(pixels), converted, 16);
            const int width = std::min(4, dst.width - x), height = std::min(4, dst.height - y);
            for (int line = 0; line < height; ++line) {
                memcpy(dst.Line(y + line) + ptrdiff_t(x) * bytes, converted + line * 4 * bytes,
                       size_t(width) * size_t(bytes));
            }
        }
    }
}

/// To a masked image.
void Copy(const ImageView& src, const ImageView& dst)
{
    switch (src.kind) {
    case PixelKind::MASKED: CopyMasked(src, dst); break;
    case PixelKind::INDEXED: CopyIndexed(src, dst); break;
    case PixelKind::COMPRESSED: CopyCompressed(src, dst); break;
    }
}

/// A masked image in a block of memory, without padding between lines.
ImageView Packed(uint8_t* block, int width, int height, const PixelLayout& layout)
{
    ImageView res = {};
    res.width = width;
    res.height = height;
    res.pixels = block;
    res.pitch = ptrdiff_t(width) * layout.bytes;
    res.layout = layout;
    return res;
}

void WritePalette(const ImageView& dst, const Palette& palette)
{
    for (int i = 0; i < kPaletteSize; ++i) {
        uint8_t* const entry = dst.palette + ptrdiff_t(i) * dst.entrySize;
        entry[0] = palette.colour[i][2];
        entry[1] = palette.colour[i][1];
        entry[2] = palette.colour[i][0];
        if (dst.entrySize >= 4) {
            entry[3] = 255;
        }
    }
}

bool Quantize(const ImageView& src, const ImageView& dst)
{
    // Red first: the order of the components decides between equally near entries.
    const PixelLayout layout = {3, {{0, 8}, {8, 8}, {16, 8}, {0, 0}}};
    const int64_t length = int64_t(src.width) * src.height * 3;
    const HeapArray<uint8_t> block = NewArray<uint8_t>(length);
    if (block == nullptr) {
        return false;
    }
    const ImageView picture = Packed(block.get(), src.width, src.height, layout);
    Copy(src, picture);
    Palette palette;
    LearnPalette(palette, {block.get(), length}, GetQuantizationSamplingFactor());
    WritePalette(dst, palette);
    PaletteIndex index;
    BuildPaletteIndex(index, palette);
    for (int y = 0; y < dst.height; ++y) {
        MapToPalette(index, picture.Line(y), dst.Line(y), dst.width);
    }
    return true;
}

bool Blit(const ImageView& src, const ImageView& dst)
{
    if (dst.kind == PixelKind::INDEXED) {
        return Quantize(src, dst);
    }
    Copy(src, dst);
    return true;
}

/// Makes both views, for a blit or, with `composes`, for a composition.
ImageProblem ViewPair(ImageView& from, ImageView& to, const ZmImageDescEx& src, const ZmImageDescEx& dst, bool composes)
{
    const ImageProblem problem = ViewBoth(from, to, src, dst, false);
    if (problem.what != nullptr) {
        return problem;
    }
    if (from.width != to.width || from.height != to.height) {
        return {nullptr, "the sizes differ"};
    }
    if (to.kind == PixelKind::COMPRESSED) {
        return {"destination", "the image is compressed"};
    }
    if (to.kind != PixelKind::INDEXED) {
        return kNoProblem;
    }
    if (composes) {
        return {"destination", "the image is indexed"};
    }
    if (to.bits != 8 || to.entries != kPaletteSize) {
        return {"destination", "a palette to be made has 256 entries, and pixels of 8 bits"};
    }
    const bool isLearnt = from.kind == PixelKind::MASKED && from.bits >= 24;
    return isLearnt ? kNoProblem : ImageProblem{"source", "a palette is made of pixels with masks and 24 or 32 bits"};
}

bool HasAlpha(const ImageView& image)
{
    return image.kind == PixelKind::MASKED ? image.layout.channel[kAlpha].bits != 0
                                           : image.kind == PixelKind::COMPRESSED;
}

bool IsLaidOut(const ImageView& image, const PixelLayout& layout)
{
    return image.kind == PixelKind::MASKED && memcmp(&image.layout, &layout, sizeof(layout)) == 0;
}

/// `height` lines of an image from line y on, which must begin a row of blocks in a compressed image.
ImageView Band(const ImageView& image, int y, int height)
{
    ImageView res = image;
    res.pixels = image.Line(image.kind == PixelKind::COMPRESSED ? y / 4 : y);
    res.height = std::min(height, image.height - y);
    return res;
}

/// The image itself if it is ARGB8888, else a copy of it in the block.
ImageView AsArgb(const ImageView& image, uint8_t* block)
{
    if (IsLaidOut(image, kArgb)) {
        return image;
    }
    const ImageView copy = Packed(block, image.width, image.height, kArgb);
    Copy(image, copy);
    return copy;
}

bool Compose(const ImageView& src, const ImageView& dst)
{
    const bool alpha = !IsLaidOut(dst, kRgb), inPlace = IsLaidOut(src, kArgb) && (!alpha || IsLaidOut(dst, kArgb));
    const int height = inPlace ? dst.height : src.kind == PixelKind::COMPRESSED ? 4 : 1;
    const int64_t bytes = inPlace ? 0 : int64_t(src.width) * 4 * height;
    const HeapArray<uint8_t> block = NewArray<uint8_t>(2 * bytes);
    if (block == nullptr) {
        return false;
    }
    for (int y = 0; y < dst.height; y += height) {
        const ImageView to = Band(dst, y, height);
        const ImageView over = AsArgb(Band(src, y, height), block.get());
        const ImageView under = alpha ? AsArgb(to, block.get() + bytes) : to;
        for (int line = 0; line < to.height; ++line) {
            ComposeOver(under.Line(line), over.Line(line), to.width, alpha);
        }
        if (under.pixels != to.pixels) {
            Copy(under, to);
        }
    }
    return true;
}

}  // namespace
}  // namespace zm

int ZmDoBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    zm::ImageView from, to;
    return zm::ViewPair(from, to, src, dst, false).what == nullptr && zm::Blit(from, to);
}

int ZmDoBlitUpsideDown(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    zm::ImageView from, to;
    return zm::ViewPair(from, to, src, dst, false).what == nullptr && zm::Blit(from, zm::UpsideDown(to));
}

int ZmDoAlphaBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    zm::ImageView from, to;
    if (zm::ViewPair(from, to, src, dst, true).what != nullptr) {
        return 0;
    }
    return zm::HasAlpha(from) ? zm::Compose(from, to) : zm::Blit(from, to);
}

int ZmCanBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why)
{
    zm::ImageView from, to;
    return zm::Explain(zm::ViewPair(from, to, src, dst, false), why);
}

int ZmCanAlphaBlit(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why)
{
    zm::ImageView from, to;
    return zm::Explain(zm::ViewPair(from, to, src, dst, true), why);
}
