#pragma once

#include "Canvas.h"

/// A parallel projection of the world onto a canvas. Seen along Z, X points to the right and Y up.
class View {
public:
    /// Looks along `direction`, which must not be vertical. The origin is drawn at `centre`; a unit is `scale` pixels.
    View(const ZmVector& direction, const Zm2DVector& centre, float scale);

    Zm2DVector operator()(const ZmVector& point) const;
    std::vector<Zm2DVector> operator()(const std::vector<ZmVector>& points) const;

private:
    ZmMatrix m_ToCanvas;
};

/// Directions of view: from the right and above, and straight ahead.
inline constexpr ZmVector kAslant(-0.5f, -0.42f, 0.75f), kAhead(0, 0, 1);

ZmVector Transformed(const ZmMatrix& matrix, const ZmVector& point);

/// The rotation by `angle` about the axis with that index, built from Euler angles.
ZmMatrix EulerAngles(int axis, float angle);

inline constexpr float kDegrees = 3.14159265f / 180;
inline constexpr const char* kAxisNames[] = {"X", "Y", "Z"};

/// The name of the axis along which a unit vector points, such as "-Z".
std::string NameOfAxis(const ZmVector& v);

/// Draws the three axes of a frame in red, green and blue, or all in one colour, with their names at the ends.
void DrawAxes(Canvas& canvas, const View& view, const ZmMatrix& frame, float length, float width = 3.5f,
              uint32_t colour = 0);
