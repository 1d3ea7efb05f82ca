// Conversions of whole images, and palettes.

#include "Families.h"
#include "Inputs.h"
#include "Pictures.h"

#include "ZmBlit.h"
#include "ZmPixelFormat.h"
#include "ZmQuantization.h"
#include "ZmResize.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace bench {
namespace {

constexpr int kSmall = 320 * 180 / 4, kFrame = 1920 * 1080 / 4, kPhoto = kPhotoWidth * kPhotoHeight / 4,
              kTexture = kSquare * kSquare / 4;

const std::vector<uint8_t>& RandomBytes()
{
    static const std::vector<uint8_t> bytes = [] {
        std::vector<uint8_t> res(size_t(kTexture) * 16);
        uint32_t state = 1;
        for (uint8_t& byte : res) {
            state = state * 1664525u + 1013904223u;
            byte = uint8_t(state >> 24);
        }
        return res;
    }();
    return bytes;
}

/// Soft shapes with a little grain, 24 bits per pixel.
const std::vector<uint8_t>& Photograph()
{
    static const std::vector<uint8_t> pixels = [] {
        std::vector<uint8_t> res;
        for (int i = 0; i < kPhoto * 4; ++i) {
            const double x = i % kPhotoWidth, y = i / kPhotoWidth, grain = RandomBytes()[size_t(i)] / 16.0 - 8;
            const double shape = std::sin(x * 0.013) * std::cos(y * 0.021) + 0.4 * std::sin((x + y) * 0.07);
            for (const double level :
                 {100 + 80 * std::sin(shape * 1.3), 120 + 60 * shape - y * 0.05, 110 + 70 * shape}) {
                const double value = level + grain;
                res.push_back(uint8_t(value < 0 ? 0 : value > 255 ? 255 : value));
            }
        }
        return res;
    }();
    return pixels;
}

void PrepareBytes(Work& w)
{
    w.src = RandomBytes().data();
}

void PreparePhotograph(Work& w)
{
    w.src = Photograph().data();
}

constexpr double kOtherResults = -1;  // peers truncate, or order colours differently

constexpr Task kTasks[] = {
    {"Blit/8888to565", 8, 16, PrepareBytes, {kSmall, kFrame}, {1.05, 1.05}, kOtherResults},
    {"Blit/565to8888", 16, 8, PrepareBytes, {kSmall, kFrame}, {1.05, 1.05}, 0},
    {"Blit/ARGBtoABGR", 16, 16, PrepareBytes, {kSmall, kFrame}, {1.05, 1.05}, 0},
    {"Blit/24to32", 16, 12, PrepareBytes, {kSmall, kFrame}, {1.05, 1.05}, 0},
    {"Blit/32to24", 12, 16, PrepareBytes, {kSmall, kFrame}, {1.05, 1.05}, 0},
    {"Blit/4444to565", 8, 8, PrepareBytes, {kSmall, kFrame}, {0, 3.0}, kOtherResults},
    {"Blit/V16U16to565", 16, 8, PrepareBytes, {kFrame}, {3.0}, kOtherResults},
    {"Blit/332to8888", 4, 16, PrepareBytes, {kFrame}, {3.0}, kOtherResults},
    {"Blit/Alpha", 16, 16, PrepareBytes, {kSmall, kFrame}, {0.5, 0.5}, kOtherResults},
    {"Resize/960x540", 16, 4, PrepareBytes, {kFrame}, {1.05}, kOtherResults},
    {"Resize/700x400", 16, 4, PrepareBytes, {kFrame}, {1.05}, kOtherResults},
    {"Resize/2560x1440", 16, 32, PrepareBytes, {kFrame}, {0.5}, kOtherResults},
    {"Resize/Mipmaps", 16, 8, PrepareBytes, {kTexture}, {0.9}, kOtherResults},
    {"Resize/WithAlpha", 16, 32, PrepareBytes, {kFrame}, {}, kOtherResults},
    {"Resize/Lanczos3To700x400", 16, 4, PrepareBytes, {kFrame}, {0.7}, kOtherResults},
    {"Resize/Lanczos3To2560x1440", 16, 32, PrepareBytes, {kFrame}, {0.7}, kOtherResults},
    {"Resize/LightTo700x400", 16, 4, PrepareBytes, {kFrame}, {1.5}, kOtherResults},
    {"Resize/LightTo2560x1440", 16, 32, PrepareBytes, {kFrame}, {1.5}, kOtherResults},
    {"Resize/LightLanczos3To700x400", 16, 4, PrepareBytes, {kFrame}, {1.5}, kOtherResults},
    {"Resize/LightMipmaps", 16, 8, PrepareBytes, {kTexture}, {1.5}, kOtherResults},
    {"Palette/Photograph", 4, 12, PreparePhotograph, {kPhoto}, {0.14}, kOtherResults},
};

ZmImageDescEx Describe(const Work& w, ZM_PIXELFORMAT format, const void* pixels)
{
    ZmImageDescEx desc = {};
    ZmPixelFormat2ImageDesc(format, desc);
    desc.Width = WidthOf(w);
    desc.Height = HeightOf(w);
    desc.BytesPerLine = desc.Width * desc.BitsPerPixel / 8;
    desc.Pixels = static_cast<unsigned char*>(const_cast<void*>(pixels));
    return desc;
}

template <ZM_PIXELFORMAT From, ZM_PIXELFORMAT To>
void Blit(const Work& w)
{
    ZmDoBlit(Describe(w, From, w.src), Describe(w, To, w.dst));
}

void AlphaBlit(const Work& w)
{
    ZmDoAlphaBlit(Describe(w, ZM_PF_32_ARGB8888, w.src), Describe(w, ZM_PF_32_RGB888, w.dst));
}

ZmImageDescEx DescribeSized(ZM_PIXELFORMAT format, int width, int height, uint8_t* pixels)
{
    ZmImageDescEx desc = {};
    ZmPixelFormat2ImageDesc(format, desc);
    desc.Width = width;
    desc.Height = height;
    desc.BytesPerLine = width * 4;
    desc.Pixels = pixels;
    return desc;
}

template <ZM_PIXELFORMAT Format, int Width, int Height>
void Resize(const Work& w)
{
    ZmResizeImage32(Describe(w, Format, w.src), DescribeSized(Format, Width, Height, static_cast<uint8_t*>(w.dst)));
}

template <ZMFILTER Filter, ZMLIGHT Light, int Width, int Height>
void Filtered(const Work& w)
{
    const ZmImageOptions options = {ZMCHANNELS_COLOR, Light, Filter, ZMEDGES_CLAMP};
    ZmResizeImage32(Describe(w, ZM_PF_32_ARGB8888, w.src),
                    DescribeSized(ZM_PF_32_ARGB8888, Width, Height, static_cast<uint8_t*>(w.dst)), options);
}

template <ZM_PIXELFORMAT Format, ZMLIGHT Light>
void MakeMipmaps(const Work& w)
{
    ZmImageOptions options;
    options.Light = Light;
    ZmImageDescEx level = Describe(w, Format, w.src);
    uint8_t* pixels = static_cast<uint8_t*>(w.dst);
    for (int size = kSquare / 2; size > 0; size /= 2) {
        const ZmImageDescEx next = DescribeSized(Format, size, size, pixels);
        ZmGenerateMipMap(level, next, options);
        level = next;
        pixels += size * size * 4;
    }
}

/// Uses all pixels as samples. Discards the two progress lines: the C library's standard error stream is a variable.
void Quantize(const Work& w)
{
    static FILE* const nowhere = std::fopen("/dev/null", "w");
    static unsigned char palette[256 * 3];
    ZmImageDescEx indexed = Describe(w, ZM_PF_INDEXED8, w.dst);
    indexed.Palette = palette;
    indexed.PaletteCount = 256;
    indexed.PaletteEntrySize = 3;
    SetQuantizationSamplingFactor(1);
    FILE* const errors = stderr;
    stderr = nowhere ? nowhere : errors;
    ZmDoBlit(Describe(w, ZM_PF_24_RGB888, w.src), indexed);
    stderr = errors;
}

constexpr Entry kEntries[] = {
    {"Blit/8888to565", Blit<ZM_PF_32_ARGB8888, ZM_PF_16_RGB565>},
    {"Blit/565to8888", Blit<ZM_PF_16_RGB565, ZM_PF_32_ARGB8888>},
    {"Blit/ARGBtoABGR", Blit<ZM_PF_32_ARGB8888, ZM_PF_32_ABGR8888>},
    {"Blit/24to32", Blit<ZM_PF_24_RGB888, ZM_PF_32_ARGB8888>},
    {"Blit/32to24", Blit<ZM_PF_32_ARGB8888, ZM_PF_24_RGB888>},
    {"Blit/4444to565", Blit<ZM_PF_16_ARGB4444, ZM_PF_16_RGB565>},
    {"Blit/V16U16to565", Blit<ZM_PF_BUMP_V16U16, ZM_PF_16_RGB565>},
    {"Blit/332to8888", Blit<ZM_PF_8_RGB332, ZM_PF_32_ARGB8888>},
    {"Blit/Alpha", AlphaBlit},
    {"Resize/960x540", Resize<ZM_PF_32_RGB888, 960, 540>},
    {"Resize/700x400", Resize<ZM_PF_32_RGB888, 700, 400>},
    {"Resize/2560x1440", Resize<ZM_PF_32_RGB888, 2560, 1440>},
    {"Resize/Mipmaps", MakeMipmaps<ZM_PF_32_RGB888, ZMLIGHT_STORED>},
    {"Resize/WithAlpha", Resize<ZM_PF_32_ARGB8888, 2560, 1440>},
    {"Resize/Lanczos3To700x400", Filtered<ZMFILTER_LANCZOS3, ZMLIGHT_STORED, 700, 400>},
    {"Resize/Lanczos3To2560x1440", Filtered<ZMFILTER_LANCZOS3, ZMLIGHT_STORED, 2560, 1440>},
    {"Resize/LightTo700x400", Filtered<ZMFILTER_DEFAULT, ZMLIGHT_LINEAR, 700, 400>},
    {"Resize/LightTo2560x1440", Filtered<ZMFILTER_DEFAULT, ZMLIGHT_LINEAR, 2560, 1440>},
    {"Resize/LightLanczos3To700x400", Filtered<ZMFILTER_LANCZOS3, ZMLIGHT_LINEAR, 700, 400>},
    {"Resize/LightMipmaps", MakeMipmaps<ZM_PF_32_ARGB8888, ZMLIGHT_LINEAR>},
    {"Palette/Photograph", Quantize},
};

/// What linear light is measured by.
constexpr Entry kStoredEntries[] = {
    {"Resize/LightTo700x400", Filtered<ZMFILTER_DEFAULT, ZMLIGHT_STORED, 700, 400>},
    {"Resize/LightTo2560x1440", Filtered<ZMFILTER_DEFAULT, ZMLIGHT_STORED, 2560, 1440>},
    {"Resize/LightLanczos3To700x400", Filtered<ZMFILTER_LANCZOS3, ZMLIGHT_STORED, 700, 400>},
    {"Resize/LightMipmaps", MakeMipmaps<ZM_PF_32_ARGB8888, ZMLIGHT_STORED>},
};

}  // namespace

constexpr Tasks kImagingTasks{kTasks};
constexpr Contender kImaging{"ZmMath", Role::OURS, kEntries};
constexpr Contender kStoredImaging{"ZmMath stored", Role::PEER, kStoredEntries};

}  // namespace bench
