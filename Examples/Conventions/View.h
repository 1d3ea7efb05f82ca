#pragma once

#include "Canvas.h"

/// A parallel view of the world on a canvas, X to the right and Y up for who looks along Z.
class View {
public:
    /// Looks along `direction`, not straight up or down. The origin comes to `centre`; a unit has `scale` pixels.
    View(const ZmVector& direction, const Zm2DVector& centre, float scale);

    Zm2DVector operator()(const ZmVector& point) const;
    std::vector<Zm2DVector> operator()(const std::vector<ZmVector>& points) const;

private:
    ZmMatrix m_ToCanvas;
};

/// The directions to look in: a view from the right and from above, and one straight ahead.
inline constexpr ZmVector kAslant(-0.5f, -0.42f, 0.75f), kAhead(0, 0, 1);

ZmVector Transformed(const ZmMatrix& matrix, const ZmVector& point);

/// Rotation by `angle` about the axis of that index, by the builder from Euler angles.
ZmMatrix EulerAngles(int axis, float angle);

inline constexpr float kDegrees = 3.14159265f / 180;
inline const char* const kAxisNames[] = {"X", "Y", "Z"};

/// The axis along which a unit vector points, such as "-Z".
std::string NameOfAxis(const ZmVector& v);

/// The three axes of a frame in red, green and blue, or all in one colour, with their names at the ends.
void DrawAxes(Canvas& canvas, const View& view, const ZmMatrix& frame, float length, float width = 3.5f,
              uint32_t colour = 0);
