#pragma once

#include "Imaging/Conversion.h"
#include "Imaging/HeapArray.h"
#include "Imaging/ResizeLines.h"

namespace zm {

/// The lines of an image with colours, and alpha if present, at the positions of ARGB8888. Lines that have this layout
/// already are not copied.
class SourceLines {
public:
    static constexpr int kCopies = Band::kMost + 2;  ///< the inner lines of a band and its edges

    /// Returns false if out of memory.
    bool Prepare(const ImageView& image, const PixelLayout& layout);

    /// Valid until the copy with this number is used again.
    const uint8_t* Read(int y, int number);

private:
    ImageView m_Image;
    Conversion m_Read;
    bool m_Direct;
    HeapArray<uint8_t> m_Copies;
};

/// What all resizing methods share: reading source lines and writing result lines.
class PictureLines {
public:
    /// For opaque pictures the highest byte of intermediate pixels is arbitrary. Returns false if out of memory.
    bool Prepare(const ImageView& src, const ImageView& dst, bool opaque);

    const uint8_t* Read(int y, int copy) { return m_Source.Read(y, copy); }
    /// The buffer in which to build line y of the result.
    uint8_t* Result(int y) { return m_Direct ? m_Dst.Line(y) : m_Result.get(); }
    /// The same for an opaque picture.
    ResultLine Opaque(int y)
    {
        return {Result(y), m_Dst.width, uint8_t(m_Dst.layout.channel[kAlpha].bits != 0 ? 255 : 0)};
    }
    void Write(int y);

private:
    SourceLines m_Source;
    ImageView m_Dst;
    Conversion m_Write;
    bool m_Direct;
    HeapArray<uint8_t> m_Result;
};

}  // namespace zm
