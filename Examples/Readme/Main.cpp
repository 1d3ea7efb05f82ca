#include <ZmMath.h>

#include <cstdio>

struct Vertex {
    ZmVector position;
    Zm2DVector texture;
};

int main()
{
    Vertex square[] = {{{-1, -1, 0}, {0, 0}}, {{1, -1, 0}, {1, 0}}, {{1, 1, 0}, {1, 1}}, {{-1, 1, 0}, {0, 1}}};

    // A quarter turn about Z, then five units ahead: products read from left to right.
    const ZmMatrix world = ZmRotationZ(1.5707963f) * ZmTranslation({0, 0, 5});

    // All positions in one call and in place; the bytes between them are not touched.
    const ZmStridedData positions(square, sizeof(Vertex));
    Zm3DMultiplyMatrixVectorStrided(&positions, &positions, world, 4);
    for (const Vertex& v : square) {
        std::printf("(%2.0f, %2.0f, %2.0f)\n", v.position.x, v.position.y, v.position.z);
    }

    // What do they cover of a screen of 640 x 480? The camera stands aside and looks at their middle.
    const ZmMatrix view = ZmLookAt({3, 2, 0}, {0, 0, 5});
    const ZmMatrix camera = view * ZmPerspective(1.0471976f, 640 / 480.0f, 0.1f, 100);  // 60 degrees from top to bottom
    const ZmBbox box = ZmBoxFromPoints(positions, 4);
    const ZmRect screen(0, 0, 640, 480);
    ZmRect part;
    ZMCLIP_FLAGS all, any;
    if (ZmTransformBox2D(camera, box, &screen, &part, all, any)) {
        std::printf("x from %.0f to %.0f, y from %.0f to %.0f\n", part.left, part.right, part.top, part.bottom);
    }
}
