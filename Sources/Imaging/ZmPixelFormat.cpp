#include "ZmPixelFormat.h"

namespace {

struct FormatRecord {
    int32_t bitsPerPixel;
    uint32_t red, green, blue, alpha;
    char name[20];
};

// In the order of ZM_PIXELFORMAT, which is also the search order.
constexpr FormatRecord kFormats[] = {
    {0, 0, 0, 0, 0, "Unknown"},
    {32, 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000, "32 bits ARGB 8888"},
    {32, 0x00FF0000, 0x0000FF00, 0x000000FF, 0, "32 bits RGB  888"},
    {24, 0xFF0000, 0x00FF00, 0x0000FF, 0, "24 bits RGB  888"},
    {16, 0xF800, 0x07E0, 0x001F, 0, "16 bits RGB  565"},
    {16, 0x7C00, 0x03E0, 0x001F, 0, "16 bits RGB  555"},
    {16, 0x7C00, 0x03E0, 0x001F, 0x8000, "16 bits ARGB 1555"},
    {16, 0x0F00, 0x00F0, 0x000F, 0xF000, "16 bits ARGB 4444"},
    {8, 0xE0, 0x1C, 0x03, 0, "8 bits RGB  332"},
    {8, 0x30, 0x0C, 0x03, 0xC0, "8 bits ARGB 2222"},
    {32, 0x000000FF, 0x0000FF00, 0x00FF0000, 0xFF000000, "32 bits ABGR 8888"},
    {32, 0xFF000000, 0x00FF0000, 0x0000FF00, 0x000000FF, "32 bits RGBA 8888"},
    {32, 0x0000FF00, 0x00FF0000, 0xFF000000, 0x000000FF, "32 bits BGRA 8888"},
    {32, 0x000000FF, 0x0000FF00, 0x00FF0000, 0, "32 bits BGR  888"},
    {24, 0x0000FF, 0x00FF00, 0xFF0000, 0, "24 bits BGR  888"},
    {16, 0x001F, 0x07E0, 0xF800, 0, "16 bits BGR  565"},
    {16, 0x001F, 0x03E0, 0x7C00, 0, "16 bits BGR  555"},
    {16, 0x001F, 0x03E0, 0x7C00, 0x8000, "16 bits ABGR 1555"},
    {16, 0x000F, 0x00F0, 0x0F00, 0xF000, "16 bits ABGR 4444"},
    {0, 0, 0, 0, 0, "Compressed DXT1"},
    {0, 0, 0, 0, 0, "Compressed DXT2"},
    {0, 0, 0, 0, 0, "Compressed DXT3"},
    {0, 0, 0, 0, 0, "Compressed DXT4"},
    {0, 0, 0, 0, 0, "Compressed DXT5"},
    {16, 0x00FF, 0xFF00, 0, 0, "V8U8 BumpMap"},
    {32, 0x0000FFFF, 0xFFFF0000, 0, 0, "V16U16 BumpMap"},
    {16, 0x001F, 0x03E0, 0xFC00, 0, "L6V5U5 BumpMap"},
    {32, 0x0000FF, 0x00FF00, 0xFF0000, 0, "L8V8U8 BumpMap"},
};
static_assert(sizeof(kFormats) / sizeof(kFormats[0]) == ZM_PF_INDEXED8, "");

bool HasRecord(uint32_t format)
{
    return format > ZM_PF_UNKNOWN && format < ZM_PF_INDEXED8;
}

bool SameColours(const FormatRecord& record, const ZmImageDescEx& desc)
{
    return uint16_t(record.bitsPerPixel) == uint16_t(desc.BitsPerPixel) && record.red == desc.RedMask &&
           record.green == desc.GreenMask && record.blue == desc.BlueMask;
}

void SetMasks(ZmImageDescEx& desc, const FormatRecord& record)
{
    desc.RedMask = record.red;
    desc.GreenMask = record.green;
    desc.BlueMask = record.blue;
    desc.AlphaMask = record.alpha;
}

}  // namespace

ZM_PIXELFORMAT ZmImageDesc2PixelFormat(const ZmImageDescEx& desc)
{
    for (uint32_t i = ZM_PF_32_ARGB8888; i <= ZM_PF_16_ABGR4444; ++i) {
        if (SameColours(kFormats[i], desc) && kFormats[i].alpha == desc.AlphaMask) {
            return ZM_PIXELFORMAT(i);
        }
    }
    for (uint32_t i = ZM_PF_BUMP_V8U8; i <= ZM_PF_BUMP_L8V8U8; ++i) {
        if (SameColours(kFormats[i], desc)) {
            return ZM_PIXELFORMAT(i);
        }
    }
    const bool compressed = desc.CompressedFormat >= ZM_PF_DXT1 && desc.CompressedFormat <= ZM_PF_BUMP_L8V8U8;
    return compressed ? ZM_PIXELFORMAT(desc.CompressedFormat) : ZM_PF_UNKNOWN;
}

void ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT format, ZmImageDescEx& desc)
{
    if (format == ZM_PF_UNKNOWN) {
        return;
    }
    desc.CompressedFormat = 0;
    if (HasRecord(format)) {
        desc.BitsPerPixel = kFormats[format].bitsPerPixel;
        SetMasks(desc, kFormats[format]);
        desc.CompressedFormat = format >= ZM_PF_DXT1 ? uint32_t(format) : 0;
    } else if (format <= ZM_PF_INDEXED4_B) {
        desc.BitsPerPixel = format <= ZM_PF_INDEXED8_B ? 8 : 4;
        SetMasks(desc, kFormats[ZM_PF_UNKNOWN]);
    }
}

const char* ZmPixelFormat2String(ZM_PIXELFORMAT format)
{
    // Not "Unknown": callers treat an empty name as "no format" (ZmPixelFormatTest, FormatsWithoutRecordHaveNoName).
    return HasRecord(format) ? kFormats[format].name : "";
}

void ZmBppToMask(ZmImageDescEx& desc)
{
    switch (desc.BitsPerPixel) {
    case 15:
    case 16: SetMasks(desc, kFormats[ZM_PF_16_RGB555]); break;
    case 24: SetMasks(desc, kFormats[ZM_PF_24_RGB888]); break;
    case 32: SetMasks(desc, kFormats[ZM_PF_32_ARGB8888]); break;
    default: break;
    }
}

void ZmGetBitCounts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b, unsigned long& a)
{
    r = GetBitCount(desc.RedMask);
    g = GetBitCount(desc.GreenMask);
    b = GetBitCount(desc.BlueMask);
    a = GetBitCount(desc.AlphaMask);
}

void ZmGetBitShifts(const ZmImageDescEx& desc, unsigned long& r, unsigned long& g, unsigned long& b, unsigned long& a)
{
    r = GetBitShift(desc.RedMask);
    g = GetBitShift(desc.GreenMask);
    b = GetBitShift(desc.BlueMask);
    a = GetBitShift(desc.AlphaMask);
}

unsigned long GetBitCount(unsigned long mask)
{
    const unsigned long above = ~(mask >> GetBitShift(mask));
    return above == 0 ? 8 * sizeof(mask) : unsigned(__builtin_ctzl(above));
}

unsigned long GetBitShift(unsigned long mask)
{
    return mask == 0 ? 0 : unsigned(__builtin_ctzl(mask));
}
