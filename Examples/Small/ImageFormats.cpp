// Converts a picture, a sunset over the sea, to formats of fewer bits and to 256 colours with a palette learnt from it,
// reports what each costs in memory and quality, and saves the last one as a bitmap file, sunset.bmp.
#include <ZmMath.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kSize = 128;

/// Owns the pixels, since a descriptor does not.
struct Image {
    explicit Image(ZM_PIXELFORMAT format)
    {
        ZmPixelFormat2ImageDesc(format, desc);
        desc.Width = desc.Height = kSize;
        desc.BytesPerLine = kSize * desc.BitsPerPixel / 8;
        pixels.resize(size_t(desc.BytesPerLine) * kSize);
        desc.Pixels = pixels.data();
    }
    ZmImageDescEx desc = {};
    std::vector<unsigned char> pixels;
};

/// The mean difference of a colour channel is in units of 1/255.
void Report(const char* name, const Image& original, const Image& converted, size_t bytes)
{
    Image back(ZM_PF_32_ARGB8888);
    ZmDoBlit(converted.desc, back.desc);
    long sum = 0;
    for (size_t i = 0; i < back.pixels.size(); ++i) {
        sum += std::abs(int(back.pixels[i]) - int(original.pixels[i]));
    }
    std::printf("%-22s %6d bytes, mean error %4.1f\n", name, int(bytes), double(sum) / (3.0 * kSize * kSize));
}

}  // namespace

int main()
{
    Image sunset(ZM_PF_32_ARGB8888);
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const int dx = x - 64, dy = y - 80, glow = 255 * 900 / (900 + dx * dx + dy * dy), sea = y > 84 ? 2 : 1;
            const int blue = 160 - y + 40 * (sea - 1), green = (y + glow) * 2 / 3 / sea, red = (160 + glow / 3) / sea;
            reinterpret_cast<uint32_t*>(sunset.desc.Pixels)[y * kSize + x] =
                0xFF000000u | uint32_t(red << 16 | green << 8 | blue);
        }
    }

    for (const ZM_PIXELFORMAT format : {ZM_PF_24_RGB888, ZM_PF_16_RGB565, ZM_PF_16_ARGB4444, ZM_PF_8_RGB332}) {
        Image converted(format);
        ZmDoBlit(sunset.desc, converted.desc);
        Report(ZmPixelFormat2String(format), sunset, converted, converted.pixels.size());
    }

    // As bitmap files require: entries of blue, green, red and a zero; lines from bottom to top.
    unsigned char palette[256 * 4] = {};
    Image indexed(ZM_PF_INDEXED8);
    indexed.desc.Palette = palette;
    indexed.desc.PaletteEntrySize = 4;
    indexed.desc.PaletteCount = 256;
    indexed.desc.Pixels += (kSize - 1) * kSize;
    indexed.desc.BytesPerLine = -kSize;
    SetQuantizationSamplingFactor(1);  // learns from every pixel
    ZmDoBlit(sunset.desc, indexed.desc);
    Report("256 colours", sunset, indexed, indexed.pixels.size() + sizeof(palette));

    constexpr uint32_t header[] = {40, kSize, kSize, 1 | 8 << 16, 0, kSize * kSize, 0, 0, 256, 0};
    const uint32_t start = 14 + sizeof(header) + sizeof(palette), sizes[] = {start + kSize * kSize, 0, start};
    ZmFile file;
    file.Open("sunset.bmp", ZmFile::WRITEONLY);
    file.Write("BM", 2);
    file.Write(sizes, sizeof(sizes));
    file.Write(header, sizeof(header));
    file.Write(palette, sizeof(palette));
    file.Write(indexed.pixels.data(), kSize * kSize);
    std::printf("sunset.bmp: %u bytes\n", file.Size());
}
