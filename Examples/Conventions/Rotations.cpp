#include "Pictures.h"
#include "View.h"

namespace {

typedef ZmMatrix (*Builder)(int axis, float angle);

ZmVector Axis(int index)
{
    ZmVector axis(0, 0, 0);
    axis[index] = 1;
    return axis;
}

ZmMatrix Rotation(int axis, float angle)
{
    ZmMatrix res;
    Zm3DMatrixFromRotation(res, Axis(axis), angle);
    return res;
}

ZmMatrix Quaternion(int axis, float angle)
{
    ZmQuaternion quaternion;
    quaternion.FromRotation(Axis(axis), angle);
    ZmMatrix res;
    quaternion.ToMatrix(res);
    return res;
}

/// Draws three quarters of a turn of the next axis, in the order X, Y, Z, X. A second builder, unless null, adds dots.
void DrawTurn(Canvas& canvas, const Zm2DVector& centre, int axis, Builder build, Builder dotted)
{
    const View view(kAslant, centre, 84);
    const int start = (axis + 1) % 3;
    std::vector<ZmVector> wheel, path;
    for (int step = 0; step <= 72; ++step) {
        const ZmVector point = Transformed(build(axis, float(5 * step) * kDegrees), Axis(start) * 0.85f);
        wheel.push_back(point);
        if (step <= 54) {
            path.push_back(point);
        }
    }
    canvas.Fill(view(wheel), 0xFFF4EDE0);
    DrawAxes(canvas, view, ZmMatrix::Identity(), 1.15f, 3, kGrey);
    canvas.Arrow(view({{0, 0, 0}, Axis(axis) * 1.15f}), kAxisColours[axis], 4);
    canvas.Arrow(view(path), kOrange, 4.5f);
    canvas.Disc(view(path[0]), 6, kOrange);
    for (int step = 1; dotted != nullptr && step <= 8; ++step) {
        canvas.Disc(view(Transformed(dotted(axis, float(30 * step) * kDegrees), Axis(start) * 0.85f)), 4.5f, kInk);
    }

    const ZmVector quarter = Transformed(build(axis, 90 * kDegrees), Axis(start));
    canvas.Text({centre.x + 10, centre.y + 112},
                std::string("about ") + kAxisNames[axis] + ": " + kAxisNames[start] + " to " + NameOfAxis(quarter),
                kInk, 15, Align::CENTRE);
}

ZmMatrix Turned(const ZmVector& angles)
{
    ZmMatrix res;
    Zm3DMatrixFromEulerAngles(res, angles.x, angles.y, angles.z);
    return res;
}

/// Draws the frame that the angles give, and how it results from the frame with one angle 0 by turning about a world
/// axis.
void DrawStage(Canvas& canvas, const Zm2DVector& centre, const ZmVector& angles, int turned)
{
    const View view(kAslant, centre, 78);
    DrawAxes(canvas, view, ZmMatrix::Identity(), 1.25f, 2, kPale);
    if (turned >= 0) {
        canvas.Arrow(view({{0, 0, 0}, Axis(turned) * 1.25f}), kOrange, 2.5f);
    }
    for (int axis = 0; axis < 3 && turned >= 0; ++axis) {
        std::vector<ZmVector> path;
        ZmVector partly = angles;
        for (int step = 0; step <= 20; ++step) {
            partly[turned] = angles[turned] * float(step) / 20;
            path.push_back(Transformed(Turned(partly), Axis(axis)));
        }
        canvas.Path(view(path), kAxisColours[axis], 1.5f);
        canvas.Disc(view(path[0]), 3.5f, kAxisColours[axis]);
    }
    const ZmMatrix frame = Turned(angles);
    for (const int axis : {2, 0, 1}) {
        canvas.Arrow(view({{0, 0, 0}, Transformed(frame, Axis(axis))}), kAxisColours[axis], 3.5f);
    }
}

}  // namespace

bool DrawRotations()
{
    Canvas canvas(800, 560);
    const struct {
        const char* name;
        Builder build, dotted;
    } kRows[] = {{"Zm3DMatrixFromEulerAngles", EulerAngles, nullptr},
                 {"Zm3DMatrixFromRotation, ZmQuaternion (dots)", Rotation, Quaternion}};
    for (int row = 0; row < 2; ++row) {
        const float top = 280 * float(row);
        canvas.Text({20, top + 32}, kRows[row].name, kInk, 17);
        for (int axis = 0; axis < 3; ++axis) {
            DrawTurn(canvas, {120 + 265 * float(axis), top + 158}, axis, kRows[row].build, kRows[row].dotted);
        }
    }
    return canvas.Save("rotations.png");
}

bool DrawEulerOrder()
{
    Canvas canvas(800, 270);
    const float x = 50 * kDegrees, y = 30 * kDegrees, z = 45 * kDegrees;
    const struct {
        const char* name;
        ZmVector angles;
    } kStages[] = {
        {"(0, 0, 0)", {0, 0, 0}}, {"(x, 0, 0)", {x, 0, 0}}, {"(x, y, 0)", {x, y, 0}}, {"(x, y, z)", {x, y, z}}};
    for (int i = 0; i < 4; ++i) {
        DrawStage(canvas, {85 + 200 * float(i), 130}, kStages[i].angles, i - 1);
        canvas.Text({95 + 200 * float(i), 248}, kStages[i].name, kInk, 17, Align::CENTRE);
    }
    return canvas.Save("euler-order.png");
}
