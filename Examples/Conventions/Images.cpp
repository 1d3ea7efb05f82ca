#include "Canvas.h"
#include "Pictures.h"

#include <array>

namespace {

/// The bytes of a pixel of the given colour in a format.
std::array<unsigned char, 4> BytesOf(ZM_PIXELFORMAT format, uint32_t colour)
{
    std::array<unsigned char, 4> bytes = {};
    ZmDoBlit(Describe(ZM_PF_32_ARGB8888, 1, 1, &colour), Describe(format, 1, 1, bytes.data()));
    return bytes;
}

/// Draws the bits of a pixel as cells, the highest bit of each byte first, in the colour of the channel they belong to.
void DrawBits(Canvas& canvas, float left, float top, ZM_PIXELFORMAT format)
{
    const struct {
        uint32_t pixel, colour;
    } kChannels[] = {{0xFFFF0000, kRed}, {0xFF00FF00, kGreen}, {0xFF0000FF, kBlue}};
    constexpr float kCell = 15, kByte = 8 * kCell + 14;
    const std::array<unsigned char, 4> black = BytesOf(format, 0xFF000000);
    const int bits = Describe(format, 1, 1, nullptr).BitsPerPixel;
    for (int bit = 0; bit < bits; ++bit) {
        const size_t byte = size_t(bit) / 8;
        const unsigned char mask = (unsigned char)(0x80 >> bit % 8);
        // The bits that opaque black sets are alpha; bits that no colour sets belong to no channel.
        uint32_t colour = (black[byte] & mask) != 0 ? kGrey : kWhite;
        for (const auto& channel : kChannels) {
            if (((BytesOf(format, channel.pixel)[byte] ^ black[byte]) & mask) != 0) {
                colour = channel.colour;
            }
        }
        const float x = left + float(byte) * kByte + float(bit % 8) * kCell;
        canvas.Rectangle(x, top, x + kCell, top + 30, kInk);
        canvas.Rectangle(x + 1, top + 1, x + kCell - 1, top + 29, colour);
    }
}

constexpr int kWidth = 10, kHeight = 6;

/// Draws the image as the blitter sees it, and where each line begins in memory.
void DrawImage(Canvas& canvas, float left, const ZmImageDescEx& image, const uint32_t* memory)
{
    uint32_t seen[kHeight][kWidth] = {};
    ZmDoBlit(image, Describe(ZM_PF_32_ARGB8888, kWidth, kHeight, seen));
    constexpr float kCell = 24;
    for (int line = 0; line < kHeight; ++line) {
        const float y = 24 + kCell * float(line);
        for (int column = 0; column < kWidth; ++column) {
            const float x = left + kCell * float(column);
            canvas.Rectangle(x, y, x + kCell, y + kCell, kPale);
            canvas.Rectangle(x + 1, y + 1, x + kCell - 1, y + kCell - 1, seen[line][column]);
        }
        const auto offset = image.Pixels + line * image.BytesPerLine - reinterpret_cast<const unsigned char*>(memory);
        canvas.Text({left - 12, y + 19}, "+" + std::to_string(offset), line == 0 ? kRed : kGrey, 14, Align::RIGHT);
    }
    canvas.Text({left + kCell * kWidth / 2, 214}, "BytesPerLine = " + std::to_string(image.BytesPerLine), kInk, 17,
                Align::CENTRE);
}

}  // namespace

bool DrawPixelLayouts()
{
    const struct {
        const char* name;
        ZM_PIXELFORMAT format;
    } kFormats[] = {{"ARGB8888", ZM_PF_32_ARGB8888}, {"RGB888, 32", ZM_PF_32_RGB888}, {"ABGR8888", ZM_PF_32_ABGR8888},
                    {"RGB888, 24", ZM_PF_24_RGB888}, {"RGB565", ZM_PF_16_RGB565},     {"ARGB1555", ZM_PF_16_ARGB1555},
                    {"ARGB4444", ZM_PF_16_ARGB4444}, {"RGB332", ZM_PF_8_RGB332}};
    Canvas canvas(800, 450);
    for (int byte = 0; byte < 4; ++byte) {
        canvas.Text({280 + 134 * float(byte), 40}, std::string("byte ") + char('0' + byte), kInk, 16, Align::CENTRE);
    }
    float top = 60;
    for (const auto& row : kFormats) {
        canvas.Text({20, top + 24}, row.name, kInk, 17);
        DrawBits(canvas, 220, top, row.format);
        top += 48;
    }
    return canvas.Save("pixel-layouts.png");
}

bool DrawLines()
{
    // A flag, line by line as it is stored in memory.
    constexpr const char* lines[kHeight] = {"PPPPPPPP..", "PRRRRRRRP.", "PRRRRRRRRP",
                                            "PWWWWWWWWP", "PWWWWWWWP.", "PPPPPPPP.."};
    uint32_t memory[kHeight * kWidth];
    for (int i = 0; i < kHeight * kWidth; ++i) {
        const char cell = lines[i / kWidth][i % kWidth];
        memory[i] = cell == 'P' ? kInk : cell == 'R' ? kRed : cell == 'W' ? kOrange : kWhite;
    }

    Canvas canvas(800, 240);
    ZmImageDescEx image = Describe(ZM_PF_32_ARGB8888, kWidth, kHeight, memory);
    DrawImage(canvas, 120, image, memory);
    image.Pixels += (kHeight - 1) * image.BytesPerLine;
    image.BytesPerLine = -image.BytesPerLine;
    DrawImage(canvas, 520, image, memory);
    return canvas.Save("lines.png");
}
