#pragma once

#include "Picture.h"

/// Lines over a finished picture.
class Wire {
public:
    /// Lines appear in `window` of the picture as `worldToClip` sees them. With `hides`, what stands in front of them
    /// in the picture makes them fainter.
    Wire(Picture& picture, const RKRECT& window, const ZmMatrix& worldToClip, bool hides)
        : m_Picture(picture), m_Window(window), m_WorldToClip(worldToClip), m_Hides(hides)
    {
    }

    /// Colour and strength, 0 to 1 each.
    void Line(const ZmVector& from, const ZmVector& to, const ZmColor& color);

    /// The twelve edges between eight corners, numbered by three bits.
    void Box(const ZmVector (&corners)[8], const ZmColor& color);

private:
    void Dot(int x, int y, float nearness, float weight, const ZmColor& color);

    Picture& m_Picture;
    RKRECT m_Window;
    ZmMatrix m_WorldToClip;
    bool m_Hides;
};

/// Mixes a colour over one pixel, by its alpha.
void Blend(uint32_t& pixel, const ZmColor& color);
