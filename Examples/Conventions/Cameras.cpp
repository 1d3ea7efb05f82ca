#include "Pictures.h"
#include "View.h"

namespace {

constexpr float kNear = 1, kFar = 6;

/// A point at `distance` in front of a camera, in its space.
ZmVector4 Ahead(float distance, uint32_t flags)
{
    return {0, 0, (flags & ZMVIEW_RIGHT_HANDED) != 0 ? -distance : distance, 1};
}

/// Draws a camera with its axes and the pyramid of its view, which looks at a point, in a world of its handedness: in
/// right-handed ones Z points to the viewer.
void DrawCamera(Canvas& canvas, const View& view, uint32_t flags)
{
    const ZmMatrix world = (flags & ZMVIEW_RIGHT_HANDED) != 0 ? ZmScaling({1, 1, -1}) : ZmMatrix::Identity();
    const ZmVector eye = TransformPoint({0.9f, 0.5f, 0.1f}, world), target = TransformPoint({2.5f, 0.2f, 1.9f}, world);
    const ZmMatrix place = Zm3DInverseRigid(ZmLookAt(eye, target, ZmVector::axisY(), flags)) * world;
    const ZmMatrix fromClip = Zm3DInverse4(ZmPerspective(32 * kDegrees, 1.4f, kNear, kFar, flags));
    std::vector<ZmVector> corners;
    for (const Zm2DVector& side : {Zm2DVector(-1, -1), Zm2DVector(1, -1), Zm2DVector(1, 1), Zm2DVector(-1, 1)}) {
        const ZmVector4 corner = ZmVector4(side.x, side.y, 0.75f, 1) * fromClip;
        corners.push_back(TransformPoint({corner.x / corner.w, corner.y / corner.w, corner.z / corner.w}, place));
    }
    const Zm2DVector apex = view(TransformPoint(eye, world)), middle = view(TransformPoint(target, world));
    for (size_t i = 0; i < 4; ++i) {
        canvas.Line(apex, view(corners[i]), kPale);
        canvas.Line(view(corners[i]), view(corners[(i + 1) % 4]), kPale);
    }
    DrawAxes(canvas, view, world, 0.7f, 2, kGrey);
    canvas.Line(apex, middle, kInk, 1.5f);
    canvas.Disc(middle, 5, kInk);
    DrawAxes(canvas, view, place, 0.9f);
    canvas.Disc(apex, 5, kInk);
}

}  // namespace

bool DrawCameras()
{
    Canvas canvas(800, 340);
    DrawCamera(canvas, View(kAslant, {40, 190}, 84), ZMVIEW_DEFAULT);
    DrawCamera(canvas, View(kAslant, {445, 190}, 84), ZMVIEW_RIGHT_HANDED);
    canvas.Text({200, 325}, "default", kInk, 17, Align::CENTRE);
    canvas.Text({610, 325}, "right-handed", kInk, 17, Align::CENTRE);
    return canvas.Save("cameras.png");
}

bool DrawDepths()
{
    const struct {
        const char* name;
        uint32_t flags;
        uint32_t colour;
    } kCurves[] = {{"default", ZMVIEW_DEFAULT, kBlue},
                   {"reversed", ZMVIEW_DEPTH_REVERSED, kOrange},
                   {"from -1", ZMVIEW_DEPTH_FROM_MINUS, kGreen}};
    Canvas canvas(800, 330);
    const View graph(kAhead, {60, 165}, 86);
    const auto at = [&](float distance, float depth) { return graph(ZmVector(distance, 1.3f * depth, 0)); };
    for (const float depth : {-1.0f, 0.0f, 1.0f}) {
        canvas.Line(at(0, depth), at(kFar + 0.3f, depth), kPale, 1.5f);
        const Zm2DVector label = at(0, depth);
        canvas.Text({label.x - 10, label.y + 6}, depth < 0 ? "-1" : depth > 0 ? "1" : "0", kGrey, 15, Align::RIGHT);
    }
    for (const float distance : {kNear, kFar}) {
        canvas.Line(at(distance, -1), at(distance, 1), kPale, 1.5f);
        const Zm2DVector label = at(distance, -1);
        canvas.Text({label.x, label.y + 26}, distance == kNear ? "near" : "far", kGrey, 15, Align::CENTRE);
    }
    for (const auto& curve : kCurves) {
        const ZmMatrix projection = ZmPerspective(60 * kDegrees, 1, kNear, kFar, curve.flags);
        std::vector<Zm2DVector> points;
        for (int i = 0; i <= 60; ++i) {
            const float distance = kNear + (kFar - kNear) * float(i) / 60;
            const ZmVector4 clip = Ahead(distance, curve.flags) * projection;
            points.push_back(at(distance, clip.z / clip.w));
        }
        canvas.Path(points, curve.colour, 3);
        const float row = float(&curve - kCurves);
        canvas.Line({640, 62 + 30 * row}, {670, 62 + 30 * row}, curve.colour, 3);
        canvas.Text({680, 68 + 30 * row}, curve.name, curve.colour, 15);
    }
    return canvas.Save("depths.png");
}
