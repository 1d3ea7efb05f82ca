// A camera circles a tower and always looks at its middle. The points of the tower are projected in one call; the
// camera's place in the world is the inverse of its matrix.
#include <ZmMath.h>

#include <cstdio>

namespace {

constexpr float kDegrees = 3.14159265f / 180;

/// Where the camera stands: `distance` from the target, turned about Y and raised.
ZmVector Orbit(const ZmVector& target, float heading, float elevation, float distance)
{
    return TransformPoint({0, 0, -distance}, ZmRotationX(elevation) * ZmRotationY(heading) * ZmTranslation(target));
}

}  // namespace

int main()
{
    const ZmVector tower[] = {{0, 0, 0}, {0, 8, 0}, {2, 4, 0}, {0, 4, 2}};
    constexpr const char* kNames[] = {"foot", "top", "east", "north"};
    constexpr int kCount = sizeof(tower) / sizeof(tower[0]);
    const ZmBbox box = ZmBoxFromPoints(tower, kCount);
    const ZmVector middle = (box.Min + box.Max) * 0.5f;
    const ZmMatrix projection = ZmPerspective(60 * kDegrees, 4 / 3.0f, 0.5f, 100);

    for (int heading = 0; heading < 360; heading += 90) {
        const ZmVector eye = Orbit(middle, float(heading) * kDegrees, 20 * kDegrees, 15);
        const ZmMatrix view = ZmLookAt(eye, middle), camera = view * projection;
        const ZmMatrix place = Zm3DInverseRigid(view);
        std::printf("at %6.2f %6.2f %6.2f, %.2f from the middle\n", place[3][0], place[3][1], place[3][2],
                    Distance(eye, middle));

        ZmVector4 clip[kCount];
        const ZmStridedData from(const_cast<ZmVector*>(tower), sizeof(ZmVector)), to(clip, sizeof(ZmVector4));
        Zm3DMultiplyMatrixVector4Strided(&to, &from, camera, kCount);
        for (int i = 0; i < kCount; ++i) {
            const ZmVector4 p = clip[i] / clip[i].w;  // -1 to 1 across the screen, y upwards
            std::printf("  %-5s at %4.0f %4.0f\n", kNames[i], 320 + 320 * p.x, 240 - 240 * p.y);
        }
    }
}
