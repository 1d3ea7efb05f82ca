#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

TEST(RayTest, TransformMovesTheOriginAndOnlyTurnsTheDirection)
{
    OnEachPath([] {
        Random random(1);
        const ZmMatrix m = random.Affine();
        const ZmVector origin = random.Vector(), direction = random.Vector();
        const ZmRay ray = {origin, direction};
        ZmRay moved, inPlace = ray;
        ray.Transform(moved, m);
        inPlace.Transform(inPlace, m);
        ExpectNear(moved.Origin, Vector4d(origin, 1) * Matrix44d(m), 310 * 4 * kRounding);
        ExpectNear(moved.Direction, Rotated(direction, Matrix44d(m)), 300 * 4 * kRounding);
        EXPECT_TRUE(SameBits(inPlace, moved));
    });
}

}  // namespace
