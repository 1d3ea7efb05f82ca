#include "Images.h"

#include "Image.h"
#include "Png.h"

#include <algorithm>
#include <filesystem>

namespace {

/// A rectangle of an image; shares its pixels and pitch.
ZmImageDescEx Part(const ZmImageDescEx& image, int x, int y, int width, int height)
{
    ZmImageDescEx part = image;
    part.Pixels += y * image.BytesPerLine + x * image.BitsPerPixel / 8;
    part.Width = width;
    part.Height = height;
    return part;
}

/// Describes the picture's own pixels, 32 bits each.
ZmImageDescEx Describe(const Picture& picture)
{
    ZmImageDescEx desc = {};
    ZmPixelFormat2ImageDesc(ZM_PF_32_RGB888, desc);
    desc.Width = picture.width;
    desc.Height = picture.height;
    desc.BytesPerLine = picture.width * 4;
    desc.Pixels = reinterpret_cast<unsigned char*>(const_cast<uint32_t*>(picture.pixels.data()));
    return desc;
}

void DrawTrueColours(const ZmImageDescEx& picture, Image& res)
{
    ZmDoBlit(picture, res.desc);
}

/// Converts to 256 colours and back.
void DrawPalette(const ZmImageDescEx& picture, Image& res)
{
    unsigned char colours[256 * 4] = {};
    Image indexed(picture.Width, picture.Height, ZM_PF_8_RGB332);
    indexed.desc.Palette = colours;
    indexed.desc.PaletteEntrySize = 4;
    indexed.desc.PaletteCount = 256;
    ZmDoBlit(picture, indexed.desc);
    ZmDoBlit(indexed.desc, res.desc);
}

/// Vertical bands, each converted through a format of few bits.
void DrawFormats(const ZmImageDescEx& picture, Image& res)
{
    constexpr ZM_PIXELFORMAT kFormats[] = {ZM_PF_24_RGB888, ZM_PF_16_RGB565, ZM_PF_16_ARGB4444, ZM_PF_8_RGB332,
                                           ZM_PF_8_ARGB2222};
    constexpr int kBands = int(std::size(kFormats));
    for (int i = 0; i < kBands; ++i) {
        const int left = picture.Width * i / kBands, width = picture.Width * (i + 1) / kBands - left;
        if (width > 0) {
            Image band(width, picture.Height, kFormats[i]);
            ZmDoBlit(Part(picture, left, 0, width, picture.Height), band.desc);
            ZmDoBlit(band.desc, Part(res.desc, left, 0, width, picture.Height));
        }
    }
}

/// All mipmap levels from half the size on, side by side.
void DrawMipmaps(const ZmImageDescEx& picture, Image& res)
{
    ZmImageDescEx level = picture;
    for (int x = 0; x < res.desc.Width;) {
        const int width = std::max(level.Width / 2, 1), height = std::max(level.Height / 2, 1);
        const ZmImageDescEx next = Part(res.desc, x, 0, width, height);
        ZmGenerateMipMap(level, next);
        level = next;
        x += width;
    }
}

/// The total width of all levels from half the size on, until both sides are one pixel.
int WidthOfMipmaps(int width, int height)
{
    int sum = 0;
    while (width > 1 || height > 1) {
        width = std::max(width / 2, 1);
        height = std::max(height / 2, 1);
        sum += width;
    }
    return std::max(sum, 1);
}

bool Save(const Image& image, const std::string& folder, const char* name, std::vector<std::string>& paths,
          std::string& error)
{
    paths.push_back((std::filesystem::path(folder) / name).string());
    if (WritePng(paths.back().c_str(), image.desc.Width, image.desc.Height, image.pixels.data())) {
        return true;
    }
    error = paths.back() + ": cannot be written";
    return false;
}

}  // namespace

bool SaveImages(const Picture& picture, const std::string& folder, std::vector<std::string>& paths, std::string& error)
{
    const int width = picture.width, height = picture.height;
    const struct {
        const char* name;
        void (*draw)(const ZmImageDescEx& picture, Image& res);
        int width, height;
    } kImages[] = {
        {"tour.png", DrawTrueColours, width, height},
        {"tour-256.png", DrawPalette, width, height},
        {"tour-formats.png", DrawFormats, width, height},
        {"tour-mipmaps.png", DrawMipmaps, WidthOfMipmaps(width, height), std::max(height / 2, 1)},
    };
    for (const auto& image : kImages) {
        Image res(image.width, image.height);
        image.draw(Describe(picture), res);
        if (!Save(res, folder, image.name, paths, error)) {
            return false;
        }
    }
    return true;
}

bool SaveSheet(const std::vector<Picture>& pictures, int columns, const std::string& folder,
               std::vector<std::string>& paths, std::string& error)
{
    const int count = int(pictures.size()), width = pictures.front().width, height = pictures.front().height;
    Image sheet(columns * width, (count + columns - 1) / columns * height);
    for (int i = 0; i < count; ++i) {
        ZmDoBlit(Describe(pictures[size_t(i)]),
                 Part(sheet.desc, i % columns * width, i / columns * height, width, height));
    }
    return Save(sheet, folder, "tour-crowd.png", paths, error);
}
