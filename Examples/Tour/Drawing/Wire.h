#pragma once

#include "Picture.h"

/// Draws lines over a finished picture.
class Wire {
public:
    /// Draws into `window` of the picture as seen through `worldToClip`. With `hides`, parts of lines behind surfaces
    /// of the picture are fainter.
    Wire(Picture& picture, const RKRECT& window, const ZmMatrix& worldToClip, bool hides)
        : m_Picture(picture), m_Window(window), m_WorldToClip(worldToClip), m_Hides(hides)
    {
    }

    /// The alpha of a colour is its strength.
    void Line(const ZmVector& from, const ZmVector& to, const ZmColor& colour);

    /// Draws the twelve edges between eight corners, which are numbered by three bits.
    void Box(const ZmVector (&corners)[8], const ZmColor& colour);

private:
    void Dot(int x, int y, float nearness, float weight, const ZmColor& colour);

    Picture& m_Picture;
    RKRECT m_Window;
    ZmMatrix m_WorldToClip;
    bool m_Hides;
};

/// Blends a colour over one pixel by its alpha.
void Blend(uint32_t& pixel, const ZmColor& colour);
