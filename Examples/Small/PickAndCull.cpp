// The work of a level editor at each frame and click: leaves out the crates that the camera cannot see, and finds the
// one under the mouse.
#include <ZmMath.h>

#include <cfloat>
#include <cstdio>

namespace {

struct Crate {
    const char* name;
    ZmMatrix world;
};

const ZmBbox kShape = {{1, 1, 1}, {-1, -1, -1}};  // Max comes first

Crate Place(const char* name, float x, float y, float z, float heading)
{
    Crate crate = {name, {}};
    Zm3DMatrixFromEulerAngles(crate.world, 0, heading, 0);
    crate.world[3][0] = x;
    crate.world[3][1] = y;
    crate.world[3][2] = z;
    return crate;
}

/// The ray through a pixel, with y pointing downwards. It reaches the far plane at t = 1.
ZmRay RayThrough(const ZmFrustum& camera, const Zm2DVector& pixel, const Zm2DVector& screen)
{
    const float u = 2 * pixel.x / screen.x - 1, v = 1 - 2 * pixel.y / screen.y;
    const ZmVector onNear = camera.Direction * camera.NearDistance + camera.Right * (u * camera.HalfWidth) +
                            camera.Up * (v * camera.HalfHeight);
    return {camera.Origin, onNear * camera.FarNearRatio};
}

/// Transforms the ray into the space of the box; t is the same in both spaces.
bool Hit(const Crate& crate, const ZmRay& ray, float& t)
{
    ZmMatrix toCrate = ZmMatrix::Identity();
    Zm3DInverseMatrix(toCrate, crate.world);
    ZmRay local;
    ray.Transform(local, toCrate);
    ZmVector point;
    if (ZmIntersect::RayBox(local, kShape, point, nullptr, nullptr, nullptr) != 1) {
        return false;
    }
    t = Dot(point - local.Origin, local.Direction) / SquareLength(local.Direction);
    return true;
}

}  // namespace

int main()
{
    const Crate crates[] = {Place("near", 0, 0, 10, 0.5f),    Place("behind it", 0.5f, 0, 16, 0),
                            Place("left", -7, 0, 10, 0.8f),   Place("beside", 14, 0, 10, 0),
                            Place("behind you", 0, 0, -5, 0), Place("too far", 0, 0, 60, 0)};
    // Two units up; 90 degrees wide and 67.5 high, from 1 to 50 units.
    const ZmFrustum camera({0, 2, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 1, 50, 1.57079633f, 0.75f);
    for (const Crate& crate : crates) {
        std::printf("%-10s  %s\n", crate.name, ZmIntersect::FrustumOBB(camera, kShape, crate.world) ? "drawn" : "-");
    }

    const Zm2DVector clicks[] = {{320, 304}, {344, 268}, {320, 40}};
    for (const Zm2DVector& pixel : clicks) {
        const ZmRay ray = RayThrough(camera, pixel, {640, 480});
        const Crate* picked = nullptr;
        float nearest = FLT_MAX, t;
        for (const Crate& crate : crates) {
            if (Hit(crate, ray, t) && t < nearest) {
                picked = &crate;
                nearest = t;
            }
        }
        std::printf("click at %.0f, %.0f: ", pixel.x, pixel.y);
        if (picked != nullptr) {
            std::printf("%s, %.1f units away\n", picked->name, nearest * Length(ray.Direction));
        } else {
            std::puts("nothing");
        }
    }
}
