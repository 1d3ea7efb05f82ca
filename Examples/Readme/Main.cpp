#include <ZmMath.h>

#include <cstdio>

struct Vertex {
    ZmVector position;
    Zm2DVector texture;
};

int main()
{
    Vertex square[] = {{{-1, -1, 0}, {0, 0}}, {{1, -1, 0}, {1, 0}}, {{1, 1, 0}, {1, 1}}, {{-1, 1, 0}, {0, 1}}};

    // A quarter turn about Z, then five units ahead: the factor on the right acts first.
    ZmMatrix turn, world, move = ZmMatrix::Identity();
    Zm3DMatrixFromEulerAngles(turn, 0, 0, 1.5707963f);
    move[3][2] = 5;
    Zm3DMultiplyMatrix(world, move, turn);

    // All positions in one call and in place; the bytes between them are not touched.
    const ZmStridedData positions(square, sizeof(Vertex));
    Zm3DMultiplyMatrixVectorStrided(&positions, &positions, world, 4);
    for (const Vertex& v : square) {
        std::printf("(%2.0f, %2.0f, %2.0f)\n", v.position.x, v.position.y, v.position.z);
    }

    // What do they cover of a screen of 640 x 480, seen from the origin along Z?
    ZmMatrix projection({1, 0, 0}, {0, 4 / 3.0f, 0}, {0, 0, 1.01f}, {0, 0, -1.01f});  // depths from 1 to 101
    projection[2][3] = 1;                                                             // w = z
    projection[3][3] = 0;
    ZmBbox box = {{1, 1, 0}, {-1, -1, 0}};  // the largest corner comes first
    box.TransformFrom(box, world);
    const ZmRect screen(0, 0, 640, 480);
    ZmRect part;
    ZMCLIP_FLAGS all, any;
    if (ZmTransformBox2D(projection, box, &screen, &part, all, any)) {
        std::printf("x from %.0f to %.0f, y from %.0f to %.0f\n", part.left, part.right, part.top, part.bottom);
    }
}
