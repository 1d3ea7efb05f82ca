// Plays a key-framed gate: the matrices between two keys keep their shape, as element-by-element blending would not,
// and the keys themselves come back exactly. Then decomposes a sheared matrix into translation, rotation and stretch,
// and recomposes it.
#include <ZmMath.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr float kDegrees = 3.14159265f / 180;

ZmMatrix Blended(float t, const ZmMatrix& a, const ZmMatrix& b)
{
    ZmMatrix res;
    InterpolateFloatArray(&res, &a, &b, t, 16);
    return res;
}

float LengthOfX(const ZmMatrix& m)
{
    return Length({m[0][0], m[0][1], m[0][2]});
}

}  // namespace

int main()
{
    // The gate swings by 120 degrees about its post, and sinks a little.
    const ZmMatrix closed = ZmMatrix::Identity();
    const ZmMatrix open = ZmRotationY(120 * kDegrees) * ZmTranslation({0, -0.4f, 0});

    std::puts("   t  degrees  height  width  blended by elements");
    for (int step = 0; step <= 4; ++step) {
        const float t = float(step) / 4;
        const ZmMatrix gate = ZmInterpolate(closed, open, t);
        const ZmQuaternion turn = Zm3DQuaternionFromMatrix(gate);
        const float turned = 2 * std::atan2(Length({turn.x, turn.y, turn.z}), std::fabs(turn.w)) / kDegrees;
        std::printf("%.2f  %7.0f  %6.2f  %5.2f  %19.2f\n", t, turned, gate[3][1], LengthOfX(gate),
                    LengthOfX(Blended(t, closed, open)));
    }

    const bool exact = ZmInterpolate(closed, open, 0) == closed && ZmInterpolate(closed, open, 1) == open;
    std::printf("the keys come back %s\n", exact ? "exactly" : "CHANGED");

    // A banner sheared by the wind and worn by a giant: no scale along the axes describes it.
    ZmMatrix banner({2, 0, 0}, {1, 2, 0}, {0, 0, 2}, {5, 6, 7});
    ZmQuaternion rotation, stretchAxes;
    ZmVector position, stretch;
    const float sign = Zm3DDecomposeMatrixTotal(banner, rotation, position, stretch, stretchAxes);
    std::printf("position %.0f %.0f %.0f, stretched by %.2f %.2f %.2f, sign %.0f\n", position.x, position.y, position.z,
                stretch.x, stretch.y, stretch.z, sign);

    ZmMatrix again;
    again.RecomposeMatrixEx(&position, &stretch, &rotation, &stretchAxes, sign);
    float largest = 0;
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            largest = std::fmax(largest, std::fabs(again[i][j] - banner[i][j]));
        }
    }
    std::printf("recomposed with errors %s 0.00001\n", largest < 1e-5f ? "below" : "ABOVE");
}
