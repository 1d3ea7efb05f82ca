#include "Pictures.h"
#include "View.h"

#include <cstdio>

namespace {

/// Two crates of equal size, one behind the other, for the camera of `NewCamera()`.
const ZmBbox kCrates[] = {{{0.5f, 0.1f, 3.6f}, {0, -0.4f, 3.1f}}, {{-0.1f, 0.2f, 2.1f}, {-0.6f, -0.3f, 1.6f}}};
constexpr uint32_t kCrateColours[] = {kBlue, kOrange};

ZmFrustum NewCamera()
{
    ZmFrustum camera;
    camera.HalfWidth = 0.6f;
    camera.HalfHeight = 0.45f;
    camera.NearDistance = 1;
    camera.FarDistance = 4;
    camera.Update();
    return camera;
}

/// The points in clip space, divided by w.
std::vector<ZmVector> Projected(const ZmMatrix& projection, const std::vector<ZmVector>& points)
{
    std::vector<ZmVector> res;
    for (const ZmVector& point : points) {
        ZmVector4 clip;
        Zm3DMultiplyMatrixVector4(&clip, projection, &point);
        res.push_back({clip.x / clip.w, clip.y / clip.w, clip.z / clip.w});
    }
    return res;
}

std::vector<ZmVector> CornersOf(const ZmBbox& box)
{
    std::vector<ZmVector> corners(8);
    box.TransformTo(corners.data(), ZmMatrix::Identity());
    return corners;
}

std::vector<ZmVector> CornersOf(const ZmFrustum& frustum)
{
    std::vector<ZmVector> corners(8);
    frustum.ComputeVertices(corners.data());
    return corners;
}

/// The bits of a corner's index say on which sides of the box it lies.
void DrawBox(Canvas& canvas, const View& view, const std::vector<ZmVector>& corners, uint32_t colour, float width)
{
    for (unsigned int from = 0; from < 8; ++from) {
        for (const unsigned int side : {1u, 2u, 4u}) {
            if ((from & side) == 0) {
                canvas.Line(view(corners[from]), view(corners[from | side]), colour, width);
            }
        }
    }
}

/// Draws two rings of four corners each, in the order of the frustum.
void DrawRings(Canvas& canvas, const View& view, const std::vector<ZmVector>& corners, uint32_t colour)
{
    for (size_t i = 0; i < 4; ++i) {
        const size_t next = (i + 1) % 4;
        canvas.Line(view(corners[4 + i]), view(corners[4 + next]), colour);
        canvas.Line(view(corners[i]), view(corners[4 + i]), colour);
        canvas.Line(view(corners[i]), view(corners[next]), colour);
    }
}

ZmVector Middle(const std::vector<ZmVector>& corners, const int (&indices)[4])
{
    ZmVector sum(0, 0, 0);
    for (const int index : indices) {
        sum += corners[size_t(index)];
    }
    return sum * 0.25f;
}

std::string Whole(float value)
{
    char text[16];
    std::snprintf(text, sizeof(text), "%.0f", double(value));
    return text;
}

/// Labels a corner of clip space with its coordinates.
void NameCorner(Canvas& canvas, const Zm2DVector& at, const ZmVector& corner, Align align)
{
    canvas.Text(at, "(" + Whole(corner.x) + ", " + Whole(corner.y) + ", " + Whole(corner.z) + ")", kGrey, 15, align);
}

}  // namespace

bool DrawHandedness()
{
    Canvas canvas(800, 440);
    const ZmFrustum frustum;
    const View view(kAslant, {230, 280}, 82);
    const std::vector<ZmVector> corners = CornersOf(frustum);
    DrawRings(canvas, view, corners, kGrey);

    // By plane index: four corners whose centre lies in the plane.
    const struct {
        const char* name;
        int corners[4];
    } kPlanes[] = {{"left", {0, 3, 4, 7}},   {"right", {1, 2, 5, 6}}, {"top", {2, 3, 6, 7}},
                   {"bottom", {0, 1, 4, 5}}, {"near", {1, 1, 1, 3}},  {"far", {6, 6, 6, 4}}};
    for (int plane = 0; plane < 6; ++plane) {
        const ZmVector middle = Middle(corners, kPlanes[plane].corners), normal = frustum.Planes[plane].Normal;
        canvas.Disc(view(middle), 4, kOrange);
        canvas.Arrow(view({middle, middle + normal * 0.7f}), kOrange, 3);
        const Zm2DVector name = view(middle + normal * 0.95f);
        canvas.Text({name.x, name.y + 6}, kPlanes[plane].name, kOrange, 14, Align::CENTRE);
    }

    const ZmVector axes[] = {frustum.Right, frustum.Up, frustum.Direction};
    constexpr const char* names[] = {"Right: ", "Up: ", "Direction: "};
    for (const int axis : {2, 0, 1}) {
        canvas.Arrow(view({frustum.Origin, frustum.Origin + axes[axis] * 0.9f}), kAxisColours[axis], 4);
        canvas.Text({600, 150 + 40 * float(axis)}, names[axis] + NameOfAxis(axes[axis]), kAxisColours[axis], 18);
    }
    canvas.Disc(view(frustum.Origin), 6, kInk);
    canvas.Text({600, 110}, "the eye", kInk, 18);
    return canvas.Save("handedness.png");
}

bool DrawClipSpace()
{
    Canvas canvas(800, 400);
    const ZmFrustum camera = NewCamera();
    const ZmMatrix projection = ZmPerspective(camera);

    const View world(kAslant, {40, 320}, 80);
    DrawRings(canvas, world, CornersOf(camera), kGrey);
    DrawAxes(canvas, world, ZmMatrix::Identity(), 0.7f, 3);

    const View clip(kAslant, {560, 230}, 112);
    const std::vector<ZmVector> corners = Projected(projection, CornersOf(camera));
    DrawRings(canvas, clip, corners, kGrey);
    DrawAxes(canvas, clip, ZmMatrix::Identity(), 0.6f, 3);
    const Zm2DVector leftBottom = clip(corners[0]), farRightTop = clip(corners[6]);
    NameCorner(canvas, {leftBottom.x - 8, leftBottom.y + 34}, corners[0], Align::CENTRE);
    NameCorner(canvas, {farRightTop.x + 10, farRightTop.y - 22}, corners[6], Align::CENTRE);

    const Zm2DVector nearCorner = world(CornersOf(camera)[1]), farCorner = world(CornersOf(camera)[6]);
    canvas.Text({nearCorner.x + 8, nearCorner.y + 30}, "near", kGrey, 15, Align::CENTRE);
    canvas.Text({farCorner.x, farCorner.y - 16}, "far", kGrey, 15, Align::RIGHT);

    for (int i = 0; i < 2; ++i) {
        DrawBox(canvas, world, CornersOf(kCrates[i]), kCrateColours[i], 3);
        DrawBox(canvas, clip, Projected(projection, CornersOf(kCrates[i])), kCrateColours[i], 3);
    }
    return canvas.Save("clip-space.png");
}

bool DrawScreenSpace()
{
    Canvas canvas(800, 350);
    const ZmMatrix projection = ZmPerspective(NewCamera());
    const View clip(kAhead, {170, 175}, 125);
    const std::vector<ZmVector> corners = Projected(projection, CornersOf(NewCamera()));
    canvas.Path(clip({corners[0], corners[1], corners[2], corners[3], corners[0]}), kGrey);
    NameCorner(canvas, {45, 326}, corners[0], Align::LEFT);
    NameCorner(canvas, {295, 38}, corners[2], Align::RIGHT);
    canvas.Arrow(clip({{0, 0, 0}, {0.45f, 0, 0}}), kRed);
    canvas.Arrow(clip({{0, 0, 0}, {0, 0.45f, 0}}), kGreen);
    canvas.Text({238, 180}, "x", kRed);
    canvas.Text({170, 108}, "y", kGreen, 17, Align::CENTRE);

    // Drawn onto the canvas at half its size.
    const ZmRect screen(0, 0, 640, 480);
    const View pixels(kAhead, {430, 55}, 0.5f);
    const auto rectangle = [&](const ZmRect& r) {
        return pixels({{r.left, -r.top, 0},
                       {r.right, -r.top, 0},
                       {r.right, -r.bottom, 0},
                       {r.left, -r.bottom, 0},
                       {r.left, -r.top, 0}});
    };
    canvas.Path(rectangle(screen), kGrey);
    for (int i = 0; i < 2; ++i) {
        DrawBox(canvas, clip, Projected(projection, CornersOf(kCrates[i])), kCrateColours[i], 2.5f);
        ZmRect extents;
        ZMCLIP_FLAGS all, any;
        ZmTransformBox2D(projection, kCrates[i], &screen, &extents, all, any);
        const std::vector<Zm2DVector> path = rectangle(extents);
        canvas.Path(path, kCrateColours[i], 3);
        if (i == 1) {
            canvas.Text({path[0].x + 4, path[0].y - 9}, "top " + Whole(extents.top), kOrange, 14);
            canvas.Text({path[0].x + 4, path[3].y + 23}, "bottom " + Whole(extents.bottom), kOrange, 14);
        }
    }
    canvas.Arrow(pixels({{0, 0, 0}, {150, 0, 0}}), kRed);
    canvas.Arrow(pixels({{0, 0, 0}, {0, -150, 0}}), kGreen);
    canvas.Text({514, 48}, "x", kRed);
    canvas.Text({418, 136}, "y", kGreen, 17, Align::RIGHT);
    canvas.Text({430, 38}, "(0, 0)", kGrey, 15);
    canvas.Text({750, 322}, "(640, 480)", kGrey, 15, Align::RIGHT);
    return canvas.Save("screen-space.png");
}
