// Conversion to 256 colours. Each pixel must get the nearest colour of the palette, on every path, whether the palette
// was learned from the picture or is arbitrary, and the paths must learn the same palette.

#include "Imaging/PaletteQuantizer.h"
#include "Input.h"
#include "ZmBlit.h"
#include "ZmPixelFormat.h"
#include "ZmProcessor.h"
#include "ZmQuantization.h"

#include <vector>

namespace {

constexpr int kColours = 256;

int Distance(const uint8_t* a, const uint8_t* b)
{
    return abs(a[0] - b[0]) + abs(a[1] - b[1]) + abs(a[2] - b[2]);
}

int SmallestDistance(const uint8_t* pixel, const uint8_t* palette, int entrySize)
{
    int res = Distance(pixel, palette);
    for (int i = 1; i < kColours; ++i) {
        res = std::min(res, Distance(pixel, palette + i * entrySize));
    }
    return res;
}

void TestSearch(Input& input)
{
    zm::Palette palette;
    for (auto& colour : palette.colour) {
        input.Fill(colour, 3);
    }
    const int count = 1 + input.UpTo(15);
    std::vector<uint8_t> pixels(size_t(count) * 3), found(pixels.size() / 3);
    input.Fill(pixels.data(), pixels.size());
    zm::PaletteIndex index;
    zm::BuildPaletteIndex(index, palette);
    zm::MapToPalette(index, pixels.data(), found.data(), count);
    for (int i = 0; i < count; ++i) {
        const uint8_t* const pixel = &pixels[size_t(i) * 3];
        Demand(Distance(pixel, palette.colour[found[size_t(i)]]) == SmallestDistance(pixel, palette.colour[0], 3));
    }
}

struct Picture {
    std::vector<uint8_t> palette, pixels;
};

Picture Converted(std::vector<uint8_t>& source, int width, int height)
{
    constexpr int kEntrySize = 4;
    Picture res = {std::vector<uint8_t>(kColours * kEntrySize), std::vector<uint8_t>(size_t(width * height))};
    ZmImageDescEx src = {}, dst = {};
    ZmPixelFormat2ImageDesc(ZM_PF_24_RGB888, src);
    ZmPixelFormat2ImageDesc(ZM_PF_INDEXED8, dst);
    src.Width = dst.Width = dst.BytesPerLine = width;
    src.Height = dst.Height = height;
    src.BytesPerLine = 3 * width;
    src.Pixels = source.data();
    dst.Pixels = res.pixels.data();
    dst.Palette = res.palette.data();
    dst.PaletteCount = kColours;
    dst.PaletteEntrySize = kEntrySize;
    Demand(ZmDoBlit(src, dst) == 1);
    return res;
}

void TestConversion(Input& input)
{
    SetQuantizationSamplingFactor(1 + input.UpTo(20));
    const int width = 1 + input.UpTo(7), height = 1 + input.UpTo(3);
    std::vector<uint8_t> source(size_t(width * height) * 3);
    input.Fill(source.data(), source.size());
    const Picture res = Converted(source, width, height);
    ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE);
    const Picture scalar = Converted(source, width, height);
    ModifyProcessorFeatures(ZMPROCESSOR_FEATURE_SSE, 0);
    Demand(scalar.palette == res.palette && scalar.pixels == res.pixels);
    for (size_t i = 0; i < res.pixels.size(); ++i) {
        const uint8_t *const pixel = &source[3 * i], *const entry = &res.palette[res.pixels[i] * 4u];
        Demand(Distance(pixel, entry) == SmallestDistance(pixel, res.palette.data(), 4) && entry[3] == 255);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    (input.UpTo(1) != 0 ? TestSearch : TestConversion)(input);
    return 0;
}
