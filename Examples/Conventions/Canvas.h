#pragma once

#include "ZmMath.h"

#include <string>
#include <vector>

/// Colours, packed as the library does.
/// @{
constexpr uint32_t kWhite = 0xFFFFFFFF, kInk = 0xFF252525, kGrey = 0xFF8A8A8A, kPale = 0xFFD8D8D8;
constexpr uint32_t kRed = 0xFFCC2B2B, kGreen = 0xFF2A9040, kBlue = 0xFF2458C8, kOrange = 0xFFE08A00;
constexpr uint32_t kAxisColours[3] = {kRed, kGreen, kBlue};
/// @}

enum class Align {
    LEFT,
    CENTRE,
    RIGHT
};

/// Describes an image at `pixels` without padding between lines.
ZmImageDescEx Describe(ZM_PIXELFORMAT format, int width, int height, void* pixels);

/// A white picture to draw on, in pixels from its top left corner. It is drawn much larger than it is saved, which
/// smooths the edges.
class Canvas {
public:
    Canvas(int width, int height);

    /// Fills any polygon by the even-odd rule.
    void Fill(const std::vector<Zm2DVector>& corners, uint32_t colour);
    void Rectangle(float left, float top, float right, float bottom, uint32_t colour);
    void Disc(const Zm2DVector& centre, float radius, uint32_t colour);

    /// Draws a line with round ends.
    void Line(const Zm2DVector& from, const Zm2DVector& to, uint32_t colour, float width = 2.5f);
    void Path(const std::vector<Zm2DVector>& points, uint32_t colour, float width = 2.5f);
    /// Draws a path with an arrow head at its end. Paths of zero length get no head.
    void Arrow(const std::vector<Zm2DVector>& points, uint32_t colour, float width = 3.5f);

    /// `at` lies on the base line; capitals are `height` high. Lines behind the letters are interrupted around them.
    void Text(const Zm2DVector& at, const std::string& text, uint32_t colour = kInk, float height = 17,
              Align align = Align::LEFT);

    bool Save(const char* path) const;

private:
    void Strokes(const std::vector<std::vector<Zm2DVector>>& strokes, uint32_t colour, float width);
    void Span(int y, float left, float right, uint32_t colour);

    int m_Width, m_Height;
    std::vector<uint32_t> m_Pixels;
};
