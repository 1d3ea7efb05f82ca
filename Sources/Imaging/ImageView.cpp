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

bool ReadLayout(PixelLayout& res, const ZmImageDescEx& desc)
{
    const uint32_t masks[4] = {desc.RedMask, desc.GreenMask, desc.BlueMask, desc.AlphaMask};
    uint32_t used = 0;
    for (int c = 0; c < 4; ++c) {
        if (!ReadMask(res.channel[c], masks[c], desc.BitsPerPixel) || (masks[c] & used) != 0) {
            return false;
        }
        used |= masks[c];
    }
    res.bytes = desc.BitsPerPixel / 8;
    return used != 0;
}

/// Colour formats are found before bump formats, so L8V8U8 is known by its name only.
bool HasSlopes(const ZmImageDescEx& desc, uint32_t format)
{
    const bool isNamed = desc.CompressedFormat == ZM_PF_BUMP_L8V8U8;
    return (format >= ZM_PF_BUMP_V8U8 && format <= ZM_PF_BUMP_L6V5U5) ||
           (isNamed && (format == ZM_PF_32_BGR888 || format == ZM_PF_32_ABGR8888));
}

bool ReadMasked(ImageView& res, const ZmImageDescEx& desc, uint32_t format)
{
    const int bits = desc.BitsPerPixel;
    res.kind = PixelKind::MASKED;
    res.bits = bits;
    res.hasSlopes = HasSlopes(desc, format);
    return (bits == 8 || bits == 16 || bits == 24 || bits == 32) && ReadLayout(res.layout, desc);
}

bool ReadIndexed(ImageView& res, const ZmImageDescEx& desc)
{
    res.kind = PixelKind::INDEXED;
    res.bits = desc.BitsPerPixel;
    res.palette = desc.Palette;
    res.entrySize = desc.PaletteEntrySize;
    res.entries = desc.PaletteCount;
    return (res.bits == 4 || res.bits == 8) && res.palette != nullptr && res.entrySize >= 3;
}

bool ReadPixels(ImageView& res, const ZmImageDescEx& desc)
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
    return true;
}

int64_t BytesOfLine(const ImageView& image)
{
    if (image.kind == PixelKind::COMPRESSED) {
        return (int64_t(image.width) + 3) / 4 * (image.format == ZM_PF_DXT1 ? 8 : 16);
    }
    return (int64_t(image.width) * image.bits + 7) / 8;
}

}  // namespace

bool View(ImageView& res, const ZmImageDescEx& desc)
{
    if (desc.Pixels == nullptr || desc.Width <= 0 || desc.Height <= 0) {
        return false;
    }
    res = {};
    res.width = desc.Width;
    res.height = desc.Height;
    res.pixels = desc.Pixels;
    res.pitch = desc.BytesPerLine;
    const int64_t pitch = desc.BytesPerLine, distance = pitch < 0 ? -pitch : pitch;
    return ReadPixels(res, desc) && distance >= BytesOfLine(res) && distance <= PTRDIFF_MAX / desc.Height;
}

bool ViewMasked(ImageView& res, const ZmImageDescEx& desc)
{
    return View(res, desc) && res.kind == PixelKind::MASKED;
}

ImageView UpsideDown(const ImageView& image)
{
    ImageView res = image;
    res.pixels = image.Line(image.height - 1);
    res.pitch = -image.pitch;
    return res;
}

}  // namespace zm
