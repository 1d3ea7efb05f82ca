#include "View.h"

#include <cmath>

namespace {

ZmVector Unit(const ZmVector& v)
{
    return v * (1 / Length(v));
}

}  // namespace

View::View(const ZmVector& direction, const Zm2DVector& centre, float scale)
{
    const ZmVector ahead = Unit(direction), right = Unit(Cross(ZmVector::axisY(), ahead));
    const ZmMatrix camera(right, Cross(ahead, right), ahead, ZmVector::axis0());
    ZmMatrix toCamera = ZmMatrix::Identity();
    Zm3DInverseMatrix(toCamera, camera);
    // On the canvas y points downwards.
    const ZmMatrix toCanvas({scale, 0, 0}, {0, -scale, 0}, {0, 0, 1}, {centre.x, centre.y, 0});
    Zm3DMultiplyMatrix(m_ToCanvas, toCanvas, toCamera);
}

Zm2DVector View::operator()(const ZmVector& point) const
{
    const ZmVector seen = Transformed(m_ToCanvas, point);
    return {seen.x, seen.y};
}

std::vector<Zm2DVector> View::operator()(const std::vector<ZmVector>& points) const
{
    std::vector<Zm2DVector> seen;
    seen.reserve(points.size());
    for (const ZmVector& point : points) {
        seen.push_back((*this)(point));
    }
    return seen;
}

ZmVector Transformed(const ZmMatrix& matrix, const ZmVector& point)
{
    ZmVector res;
    Zm3DMultiplyMatrixVector(&res, matrix, &point);
    return res;
}

ZmMatrix EulerAngles(int axis, float angle)
{
    ZmVector angles(0, 0, 0);
    angles[axis] = angle;
    ZmMatrix res;
    Zm3DMatrixFromEulerAngles(res, angles.x, angles.y, angles.z);
    return res;
}

std::string NameOfAxis(const ZmVector& v)
{
    for (int axis = 0; axis < 3; ++axis) {
        if (std::fabs(v[axis]) > 0.99f) {
            return std::string(v[axis] < 0 ? "-" : "+") + kAxisNames[axis];
        }
    }
    return "none";
}

void DrawAxes(Canvas& canvas, const View& view, const ZmMatrix& frame, float length, float width, uint32_t colour)
{
    // Back to front, so that near axes cover far ones.
    for (const int axis : {2, 0, 1}) {
        ZmVector end(0, 0, 0), name(0, 0, 0);
        end[axis] = length;
        name[axis] = length * 1.16f;
        const uint32_t own = colour != 0 ? colour : kAxisColours[axis];
        canvas.Arrow({view(Transformed(frame, {0, 0, 0})), view(Transformed(frame, end))}, own, width);
        const Zm2DVector at = view(Transformed(frame, name));
        canvas.Text({at.x, at.y + 8}, kAxisNames[axis], own, 17, Align::CENTRE);
    }
}
