#pragma once

#include "Support/Random.h"

#include <string.h>

#include <vector>

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
        m_Compressed = format >= ZM_PF_DXT1 && format <= ZM_PF_DXT5;
        m_Lines = m_Compressed ? (height + 3) / 4 : height;
        m_LineBytes = m_Compressed ? (width + 3) / 4 * (format == ZM_PF_DXT1 ? 8 : 16) : (width * Bits() + 7) / 8;
        const int pitch = m_LineBytes + padding;
        m_Bytes.assign(size_t(pitch) * size_t(m_Lines) + kMargin * 2, kUntouched);
        desc.BytesPerLine = upwards ? -pitch : pitch;
        desc.Pixels = m_Bytes.data() + kMargin + (upwards ? pitch * (m_Lines - 1) : 0);
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
        for (int y = 0; y < m_Lines; ++y) {
            for (int i = 0; i < m_LineBytes; ++i) {
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
        for (int y = 0; y < m_Lines; ++y) {
            memset(rest.data() + (Line(y) - m_Bytes.data()), kUntouched, size_t(m_LineBytes));
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

    bool m_Compressed;
    int m_Lines, m_LineBytes;
    std::vector<uint8_t> m_Bytes;
};

/// The fields of a pixel as numbers, red, green, blue and alpha, and how many bits each has.
struct Fields {
    uint32_t value[4];
    int bits[4];
};

inline Fields FieldsOf(const ZmImageDescEx& desc, uint32_t pixel)
{
    const uint32_t masks[4] = {desc.RedMask, desc.GreenMask, desc.BlueMask, desc.AlphaMask};
    Fields res = {};
    for (int c = 0; c < 4; ++c) {
        for (int bit = 31; bit >= 0; --bit) {
            if (masks[c] >> bit & 1) {
                res.value[c] = res.value[c] << 1 | (pixel >> bit & 1);
                ++res.bits[c];
            }
        }
    }
    return res;
}

/// Rescales a number from one bit count to another: bits repeated, or rounded to nearest.
inline uint32_t Rescaled(uint32_t value, int from, int to)
{
    if (to > from) {
        uint32_t res = 0;
        for (int i = 0; i < to; ++i) {
            res = res << 1 | (value >> (from - 1 - i % from) & 1);
        }
        return res;
    }
    return uint32_t(floor(double(value) * (pow(2, to) - 1) / (pow(2, from) - 1) + 0.5));
}

/// A pixel of another image's layout.
inline uint32_t Converted(const ZmImageDescEx& src, uint32_t pixel, const ZmImageDescEx& dst)
{
    const Fields from = FieldsOf(src, pixel), to = FieldsOf(dst, 0);
    const uint32_t masks[4] = {dst.RedMask, dst.GreenMask, dst.BlueMask, dst.AlphaMask};
    uint32_t res = 0;
    for (int c = 0; c < 4; ++c) {
        const bool given = from.bits[c] != 0;
        const uint32_t value = given ? Rescaled(from.value[c], from.bits[c], to.bits[c]) : c == 3 ? ~0u : 0;
        res |= uint32_t(uint64_t(value) << GetBitShift(masks[c])) & masks[c];
    }
    return res;
}

/// A pixel of ARGB8888 over another, both with straight alpha, computed in doubles.
inline uint32_t Composed(uint32_t over, uint32_t under)
{
    const double a = (over >> 24) / 255.0, b = (under >> 24) / 255.0 * (1 - a), sum = a + b;
    if (sum == 0) {
        return under;
    }
    uint32_t res = uint32_t(floor(sum * 255 + 0.5)) << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const double colour = ((over >> shift & 255) * a + (under >> shift & 255) * b) / sum;
        res |= uint32_t(floor(colour + 0.5 + 1e-9)) << shift;
    }
    return res;
}
