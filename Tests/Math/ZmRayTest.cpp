#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

TEST(ZmRayTest, TransformMovesTheOriginAndOnlyTurnsTheDirection)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Affine();
        const ZmRay ray = {random.Vector(), random.Vector()};
        ZmRay moved, inPlace = ray;
        ray.Transform(moved, m);
        inPlace.Transform(inPlace, m);
        ExpectClose(moved.Origin, Row4(ray.Origin, 1) * m);
        ExpectClose(moved.Direction, Row4(ray.Direction, 0) * m);
        EXPECT_TRUE(SameBits(inPlace, moved));
    });
}

}  // namespace
