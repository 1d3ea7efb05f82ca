#include "Overlay.h"

#include "View.h"
#include "Wire.h"

namespace {

constexpr float kBoxReach = 30;   // boxes farther away are not drawn in the main picture
constexpr float kMapReach = 110;  // the far end of the frustum on the map, behind the last copy
const ZmBbox kCube = {{1, 1, 1}, {-1, -1, -1}};

const ZmColor kBoxColour(1, 1, 1, 0.5f), kPickedColour(1, 0.85f, 0.1f, 1);
const ZmColor kWithin(0.45f, 1, 0.45f, 0.8f), kWithout(1, 0.4f, 0.3f, 0.8f), kFrustumColour(1, 1, 1, 0.9f);

// Maps the cube from -1 to 1 onto the best-fit box of a model.
ZmMatrix FittedBox(const ZmMatrix& fit, const Model& model)
{
    ZmMatrix placed;
    Zm3DMultiplyMatrix(placed, model.world, fit);
    return placed;
}

ZmMatrix FitOf(const Mesh& mesh)
{
    const ZmStridedData positions = Positions(mesh);
    ZmMatrix fit;
    ZmComputeBestFitBBox(static_cast<const unsigned char*>(positions.Ptr), positions.Stride, int(mesh.vertices.size()),
                         fit, 0);
    return fit;
}

void DrawBox(Wire& wire, const ZmMatrix& box, const ZmColor& colour)
{
    ZmVector corners[8];
    kCube.TransformTo(corners, box);
    wire.Box(corners, colour);
}

// Calls draw(model, box) for each copy of the mesh.
template <class Draw>
void ForEachStatue(const Scene& scene, Draw&& draw)
{
    const Mesh* fitted = nullptr;
    ZmMatrix fit = ZmMatrix::Identity();
    for (const Model& model : scene.models) {
        if (model.made != Material::STATUE) {
            continue;
        }
        if (model.shape != fitted) {
            fitted = model.shape;
            fit = FitOf(*fitted);
        }
        draw(model, FittedBox(fit, model));
    }
}

void DrawFrustum(Wire& wire, ZmFrustum frustum)
{
    frustum.FarDistance = kMapReach;
    frustum.Update();
    ZmVector v[8];
    frustum.ComputeVertices(v);  // two rectangles, each in cyclic order
    wire.Box({v[0], v[1], v[3], v[2], v[4], v[5], v[7], v[6]}, kFrustumColour);
}

void DrawPicked(Wire& wire, const PickedTriangle& picked)
{
    for (int i = 0; i < 3; ++i) {
        wire.Line(picked.corners[i], picked.corners[(i + 1) % 3], kPickedColour);
    }
}

// Draws four ticks around the mouse point and leaves the point itself free.
void DrawCrosshair(Wire& wire, const ZmFrustum& camera, const ZmRay& mouse)
{
    const ZmVector point = mouse.Origin + mouse.Direction, right = camera.Right, up = camera.Up;
    for (const ZmVector& way : {right, -right, up, -up}) {
        wire.Line(point + way * 0.012f, point + way * 0.035f, kPickedColour);
    }
}

void DrawOverPicture(Picture& picture, const Scene& scene, const ZmMatrix& worldToClip, const ZmRay& mouse,
                     const PickedTriangle& picked)
{
    Wire wire(picture, {0, 0, picture.width, picture.height}, worldToClip, true);
    ForEachStatue(scene, [&](const Model& model, const ZmMatrix& box) {
        const ZmVector middle(box[3][0], box[3][1], box[3][2]);
        if (&model == picked.of) {
            DrawBox(wire, box, kPickedColour);
        } else if (Length(middle - scene.camera.Origin) < kBoxReach) {
            DrawBox(wire, box, kBoxColour);
        }
    });
    if (picked.of) {
        DrawPicked(wire, picked);
    }
    Wire front(picture, {0, 0, picture.width, picture.height}, worldToClip, false);
    DrawCrosshair(front, scene.camera, mouse);
}

void Darken(Picture& picture, const RKRECT& window)
{
    for (int y = window.top; y < window.bottom; ++y) {
        for (int x = window.left; x < window.right; ++x) {
            Blend(picture.pixels[size_t(y) * size_t(picture.width) + size_t(x)], ZmColor(0.02f, 0.03f, 0.05f, 0.72f));
        }
    }
}

// A view from high up beside the meadow, looking down across it.
ZmMatrix MapView(const RKRECT& window)
{
    const float aspectRatio = float(window.bottom - window.top) / float(window.right - window.left);
    ZmMatrix turn;
    Zm3DMatrixFromEulerAngles(turn, 0.81f, 0, 0);
    const ZmFrustum view({0, 120, -60}, Rotate(turn, ZmVector::axisX()), Rotate(turn, ZmVector::axisY()),
                         Rotate(turn, ZmVector::axisZ()), 1, 500, 1.05f, aspectRatio);
    return PerspectiveView(view);
}

void DrawMap(Picture& picture, const Scene& scene, const ZmRay& mouse, const PickedTriangle& picked)
{
    const int width = picture.width * 3 / 10, height = picture.height * 3 / 10, margin = picture.width / 80;
    const RKRECT window = {picture.width - width - margin, margin, picture.width - margin, margin + height};
    Darken(picture, window);
    Wire wire(picture, window, MapView(window), false);
    ForEachStatue(scene, [&](const Model&, const ZmMatrix& box) {
        DrawBox(wire, box, ZmIntersect::FrustumOBB(scene.camera, kCube, box) ? kWithin : kWithout);
    });
    DrawFrustum(wire, scene.camera);
    wire.Line(mouse.Origin, picked.of ? picked.point : mouse.Origin + mouse.Direction * kMapReach, kPickedColour);
}

}  // namespace

void DrawOverlay(Picture& picture, const Scene& scene, const ZmMatrix& worldToClip, const ZmRay& mouse,
                 const PickedTriangle& picked)
{
    DrawOverPicture(picture, scene, worldToClip, mouse, picked);
    DrawMap(picture, scene, mouse, picked);
}
