#include "Imaging/ImageView.h"

#include "ZmPixelFormat.h"

namespace zm {

bool ReadMask(Channel& res, uint32_t mask, int pixelBits)
{
    res.shift = int(GetBitShift(mask));
    res.bits = int(GetBitCount(mask));
    return res.bits <= 16 && mask == ((1u << res.bits) - 1) << res.shift && mask <= ~0u >> (32 - pixelBits);
}

namespace {

// The functions below return what is wrong, or null.

const char* ReadLayout(PixelLayout& res, const ZmImageDescEx& desc)
{
    const uint32_t masks[4] = {desc.RedMask, desc.GreenMask, desc.BlueMask, desc.AlphaMask};
    uint32_t used = 0;
    for (int c = 0; c < 4; ++c) {
        if (!ReadMask(res.channel[c], masks[c], desc.BitsPerPixel)) {
            return "a mask has a gap, more than 16 bits, or bits outside the pixel";
        }
        if ((masks[c] & used) != 0) {
            return "masks overlap";
        }
        used |= masks[c];
    }
    res.bytes = desc.BitsPerPixel / 8;
    return used != 0 ? nullptr : "there are no masks, no palette and no compressed format";
}

/// Colour formats are found before bump formats, so L8V8U8 is known by its name only.
bool HasSlopes(const ZmImageDescEx& desc, uint32_t format)
{
    const bool isNamed = desc.CompressedFormat == ZM_PF_BUMP_L8V8U8;
    return (format >= ZM_PF_BUMP_V8U8 && format <= ZM_PF_BUMP_L6V5U5) ||
           (isNamed && (format == ZM_PF_32_BGR888 || format == ZM_PF_32_ABGR8888));
}

const char* ReadMasked(ImageView& res, const ZmImageDescEx& desc, uint32_t format)
{
    const int bits = desc.BitsPerPixel;
    res.kind = PixelKind::MASKED;
    res.bits = bits;
    res.hasSlopes = HasSlopes(desc, format);
    return bits == 8 || bits == 16 || bits == 24 || bits == 32 ? ReadLayout(res.layout, desc)
                                                               : "pixels with masks have 8, 16, 24 or 32 bits";
}

const char* ReadIndexed(ImageView& res, const ZmImageDescEx& desc)
{
    res.kind = PixelKind::INDEXED;
    res.bits = desc.BitsPerPixel;
    res.palette = desc.Palette;
    res.entrySize = desc.PaletteEntrySize;
    res.entries = desc.PaletteCount;
    return res.bits != 4 && res.bits != 8 ? "pixels with a palette have 4 or 8 bits"
           : res.palette == nullptr       ? "the palette is null"
           : res.entrySize < 3            ? "palette entries have fewer than three bytes"
                                          : nullptr;
}

const char* ReadPixels(ImageView& res, const ZmImageDescEx& desc)
{
    const uint32_t format = ZmImageDesc2PixelFormat(desc);
    if (desc.PaletteCount != 0) {
        return ReadIndexed(res, desc);
    }
    if (format < ZM_PF_DXT1 || format > ZM_PF_DXT5) {
        return ReadMasked(res, desc, format);
    }
    res.kind = PixelKind::COMPRESSED;
    res.bits = 0;
    res.format = format;
    return nullptr;
}

int64_t BytesOfLine(const ImageView& image)
{
    if (image.kind == PixelKind::COMPRESSED) {
        return (int64_t(image.width) + 3) / 4 * (image.format == ZM_PF_DXT1 ? 8 : 16);
    }
    return (int64_t(image.width) * image.bits + 7) / 8;
}

}  // namespace

const char* View(ImageView& res, const ZmImageDescEx& desc)
{
    if (desc.Pixels == nullptr) {
        return "the pixels are null";
    }
    if (desc.Width <= 0 || desc.Height <= 0) {
        return "the size is not positive";
    }
    res = {};
    res.width = desc.Width;
    res.height = desc.Height;
    res.pixels = desc.Pixels;
    res.pitch = desc.BytesPerLine;
    if (const char* problem = ReadPixels(res, desc)) {
        return problem;
    }
    const int64_t pitch = desc.BytesPerLine, distance = pitch < 0 ? -pitch : pitch;
    return distance < BytesOfLine(res)            ? "the pitch is shorter than a line"
           : distance > PTRDIFF_MAX / desc.Height ? "the image is larger than the address space"
                                                  : nullptr;
}

namespace {

const char* ViewAs(ImageView& res, const ZmImageDescEx& desc, bool masked)
{
    const char* problem = View(res, desc);
    return problem != nullptr || !masked || res.kind == PixelKind::MASKED ? problem
                                                                          : "the image is indexed or compressed";
}

}  // namespace

ImageProblem ViewBoth(ImageView& from, ImageView& to, const ZmImageDescEx& src, const ZmImageDescEx& dst, bool masked)
{
    if (const char* problem = ViewAs(from, src, masked)) {
        return {"source", problem};
    }
    return {"destination", ViewAs(to, dst, masked)};
}

int Explain(const ImageProblem& problem, XString& why)
{
    why = nullptr;
    if (problem.what != nullptr && problem.image != nullptr) {
        why << problem.image << ": ";
    }
    why << problem.what;
    return problem.what == nullptr ? 1 : 0;
}

ImageView UpsideDown(const ImageView& image)
{
    ImageView res = image;
    res.pixels = image.Line(image.height - 1);
    res.pitch = -image.pitch;
    return res;
}

}  // namespace zm
