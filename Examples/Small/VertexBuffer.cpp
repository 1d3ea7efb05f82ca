// Transforms a whole vertex buffer in place, one call per component: positions by the matrix of the object, normals by
// its transposed inverse, so that they stay perpendicular to a stretched surface. Colours are not touched.
#include <ZmMath.h>

#include <cmath>
#include <cstdio>

struct Vertex {
    ZmVector position;
    ZmVector normal;
    uint32_t colour;
};

int main()
{
    // Two slopes of 45 degrees that meet at the ridge, two units above the eaves.
    const ZmVector left(-0.70710678f, 0.70710678f, 0), right(0.70710678f, 0.70710678f, 0);
    Vertex roof[] = {
        {{-2, 0, 0}, left, 0xFFA03020}, {{0, 2, 0}, left, 0xFFA03020},  {{0, 2, 5}, left, 0xFFA03020},
        {{0, 2, 0}, right, 0xFF802818}, {{2, 0, 0}, right, 0xFF802818}, {{2, 0, 5}, right, 0xFF802818},
    };
    constexpr int kCount = sizeof(roof) / sizeof(roof[0]);

    // Three times as wide, turned by 30 degrees about Y, on a house at (10, 4, 0).
    const ZmMatrix stretch({3, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0});
    ZmMatrix turn, world;
    Zm3DMatrixFromEulerAngles(turn, 0, 0.52359878f, 0);
    Zm3DMultiplyMatrix(world, turn, stretch);  // the factor on the right acts first
    world[3][0] = 10;
    world[3][1] = 4;

    ZmMatrix normalMatrix = ZmMatrix::Identity();
    Zm3DInverseMatrix(normalMatrix, world);
    Zm3DTransposeMatrix(normalMatrix, normalMatrix);

    const ZmStridedData positions(&roof[0].position, sizeof(Vertex)), normals(&roof[0].normal, sizeof(Vertex));
    Zm3DMultiplyMatrixVectorStrided(&positions, &positions, world, kCount);
    Zm3DRotateVectorStrided(&normals, &normals, normalMatrix, kCount);

    for (Vertex& vertex : roof) {
        vertex.normal.Normalize();  // the lengths have changed
        const ZmVector &p = vertex.position, &n = vertex.normal;
        std::printf("position %6.2f %6.2f %6.2f   normal %5.2f %5.2f %5.2f   colour %08X\n", p.x, p.y, p.z, n.x, n.y,
                    n.z, unsigned(vertex.colour));
    }

    // The stretched slope falls 2 units over 6, and its normal is perpendicular to it.
    const ZmVector slope = roof[1].position - roof[0].position;
    std::printf("slope 1:%.0f, cosine between slope and normal %.2f\n", Length({slope.x, 0, slope.z}) / slope.y,
                std::fabs(Dot(slope, roof[0].normal)) / Length(slope));
}
