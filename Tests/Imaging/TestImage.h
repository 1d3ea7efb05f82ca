#pragma once

#include "Support/Random.h"

#include <string.h>

#include <vector>

/// The lines of an image, or of its blocks where it is compressed, and the bytes of each.
struct LineSizes {
    int count, bytes;
};

inline LineSizes LinesOf(const ZmImageDescEx& desc)
{
    if (desc.CompressedFormat >= ZM_PF_DXT1 && desc.CompressedFormat <= ZM_PF_DXT5) {
        return {(desc.Height + 3) / 4, (desc.Width + 3) / 4 * (desc.CompressedFormat == ZM_PF_DXT1 ? 8 : 16)};
    }
    return {desc.Height, (desc.Width * desc.BitsPerPixel + 7) / 8};
}

/// Pixels with margins: lines are padded, and bytes outside the lines keep a known value.
class TestImage {
public:
    /// `upwards` gives a negative pitch: lines from bottom to top.
    TestImage(uint32_t format, int width, int height, int padding = 5, bool upwards = false)
    {
        memset(static_cast<void*>(&desc), 0, sizeof(desc));
        ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT(format), desc);
        desc.Width = width;
        desc.Height = height;
        m_Lines = LinesOf(desc);
        const int pitch = m_Lines.bytes + padding;
        m_Bytes.assign(size_t(pitch) * size_t(m_Lines.count) + kMargin * 2, kUntouched);
        desc.BytesPerLine = upwards ? -pitch : pitch;
        desc.Pixels = m_Bytes.data() + kMargin + (upwards ? pitch * (m_Lines.count - 1) : 0);
    }
    TestImage(const TestImage&) = delete;
    TestImage& operator=(const TestImage&) = delete;

    void SetPalette(int entries, int entrySize)
    {
        palette.assign(size_t(entries) * size_t(entrySize), kUntouched);
        desc.Palette = palette.data();
        desc.PaletteCount = uint16_t(entries);
        desc.PaletteEntrySize = uint16_t(entrySize);
    }

    int Bits() const { return desc.BitsPerPixel; }
    uint8_t* Line(int y) const { return desc.Pixels + y * desc.BytesPerLine; }
    void Fill(Random& random)
    {
        for (int y = 0; y < m_Lines.count; ++y) {
            for (int i = 0; i < m_Lines.bytes; ++i) {
                Line(y)[i] = uint8_t(random.Bits());
            }
        }
    }
    uint32_t Get(int x, int y) const
    {
        uint32_t pixel = 0;
        memcpy(&pixel, Line(y) + x * Bits() / 8, size_t(Bits() / 8));
        return pixel;
    }
    void Put(int x, int y, uint32_t pixel) { memcpy(Line(y) + x * Bits() / 8, &pixel, size_t(Bits() / 8)); }

    /// Whether the bytes around the lines are unchanged.
    bool MarginsUntouched() const
    {
        std::vector<uint8_t> rest = m_Bytes;
        for (int y = 0; y < m_Lines.count; ++y) {
            memset(rest.data() + (Line(y) - m_Bytes.data()), kUntouched, size_t(m_Lines.bytes));
        }
        return rest == std::vector<uint8_t>(rest.size(), kUntouched);
    }
    bool SameBytes(const TestImage& o) const { return m_Bytes == o.m_Bytes; }
    bool Untouched() const { return m_Bytes == std::vector<uint8_t>(m_Bytes.size(), kUntouched); }

    ZmImageDescEx desc;
    std::vector<uint8_t> palette;

private:
    static constexpr int kMargin = 64;
    static constexpr uint8_t kUntouched = 0xA5;

    LineSizes m_Lines;
    std::vector<uint8_t> m_Bytes;
};
