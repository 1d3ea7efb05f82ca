#include "Imaging/PictureLines.h"

#include <string.h>

namespace zm {
namespace {

bool Equal(const PixelLayout& a, const PixelLayout& b)
{
    return memcmp(&a, &b, sizeof(a)) == 0;
}

/// Whether pixels of an opaque picture can be written directly, with only the highest byte still to be set.
bool HasColoursOfRgb(const PixelLayout& layout)
{
    const bool alpha = layout.channel[kAlpha].bits != 0;
    return Equal(layout, alpha ? kArgb : kRgb);
}

}  // namespace

bool SourceLines::Prepare(const ImageView& image, const PixelLayout& layout)
{
    m_Image = image;
    m_Read = Convert(image.layout, kArgb);
    m_Direct = Equal(image.layout, kArgb) || Equal(image.layout, layout);
    m_Copies = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(image.width) * 4 * kCopies);
    return m_Direct || m_Copies != nullptr;
}

const uint8_t* SourceLines::Read(int y, int number)
{
    if (m_Direct) {
        return m_Image.Line(y);
    }
    uint8_t* const copy = m_Copies.get() + ptrdiff_t(number) * m_Image.width * 4;
    ConvertPixels(m_Read, m_Image.Line(y), copy, m_Image.width);
    return copy;
}

bool PictureLines::Prepare(const ImageView& src, const ImageView& dst, bool opaque)
{
    const PixelLayout& layout = opaque ? kRgb : kArgb;
    m_Dst = dst;
    m_Write = Convert(layout, dst.layout);
    m_Direct = opaque ? HasColoursOfRgb(dst.layout) : Equal(dst.layout, kArgb);
    m_Result = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(dst.width) * 4);
    return (m_Direct || m_Result != nullptr) && m_Source.Prepare(src, layout);
}

void PictureLines::Write(int y)
{
    if (!m_Direct) {
        ConvertPixels(m_Write, m_Result.get(), m_Dst.Line(y), m_Dst.width);
    }
}

}  // namespace zm
