#include "Terrain.h"

#include "Noise.h"

#include <cmath>

namespace {

constexpr int kColumns = 144;
constexpr int kRows = 240;
constexpr int kTile = 12;  // quads per side of a tile

constexpr int kBladesPerPatch = 110;
constexpr int kPetals = 6;

void AddTriangle(Mesh& mesh, size_t a, size_t b, size_t c)
{
    mesh.indices.insert(mesh.indices.end(), {uint32_t(a), uint32_t(b), uint32_t(c)});
}

// Grid lines are denser near the eye.
ZmVector GridPoint(int column, int row)
{
    const float z = -4 + 0.16f * float(row) + 24 * (std::exp(0.0125f * float(row)) - 1);
    const float x = (2 * float(column) / kColumns - 1) * (0.85f * z + 12);
    return {x, GroundHeight(x, z), z};
}

Mesh MakeTile(int firstColumn, int firstRow)
{
    Mesh tile;
    for (int row = 0; row <= kTile; ++row) {
        for (int column = 0; column <= kTile; ++column) {
            const ZmVector p = GridPoint(firstColumn + column, firstRow + row);
            const Zm2DVector slope = GroundSlope(p.x, p.z);
            tile.vertices.push_back({p, Unit({-slope.x, 1, -slope.y}), 1, 0});
        }
    }
    constexpr size_t line = kTile + 1;
    for (size_t row = 0; row < kTile; ++row) {
        for (size_t column = 0; column < kTile; ++column) {
            const size_t a = row * line + column;
            AddTriangle(tile, a, a + line, a + 1);
            AddTriangle(tile, a + 1, a + line, a + line + 1);
        }
    }
    ComputeBox(tile);
    return tile;
}

// A blade with two joints and a tip, bending away from the root.
void AddBlade(Mesh& patch, Random& random)
{
    constexpr float reach = 0.5f * kGrassPatchSize;
    // Braces, because only they fix the order in which the random numbers are drawn.
    const ZmVector root{random.Between(-reach, reach), 0, random.Between(-reach, reach)};
    const float angle = random.Between(0, 6.2832f);
    const ZmVector side(std::cos(angle), 0, std::sin(angle)), lean(-side.z, 0, side.x);
    const float height = random.Between(0.06f, 0.17f), width = random.Between(0.006f, 0.011f);
    const float bend = height * random.Between(0.1f, 0.8f), tint = random.Next();

    const ZmVector middle = root + lean * (0.3f * bend) + ZmVector(0, 0.6f * height, 0);
    const ZmVector tip = root + lean * bend + ZmVector(0, height, 0);
    const ZmVector normal = Unit(ZmVector(0, 1, 0) + lean * 0.35f);
    const size_t first = patch.vertices.size();
    patch.vertices.push_back({root - side * width, normal, 0.15f, tint});
    patch.vertices.push_back({root + side * width, normal, 0.15f, tint});
    patch.vertices.push_back({middle - side * (0.8f * width), normal, 0.65f, tint});
    patch.vertices.push_back({middle + side * (0.8f * width), normal, 0.65f, tint});
    patch.vertices.push_back({tip, normal, 1, tint});
    AddTriangle(patch, first, first + 1, first + 2);
    AddTriangle(patch, first + 1, first + 3, first + 2);
    AddTriangle(patch, first + 2, first + 3, first + 4);
}

}  // namespace

float GroundHeight(float x, float z)
{
    const float rolling =
        0.55f * std::sin(0.13f * x + 0.6f) * std::sin(0.11f * z + 2.4f) + 0.25f * std::sin(0.31f * x - 0.19f * z);
    const float distance = SmoothStep(35, 260, z);
    const float hills = 26 * Turbulence(0.011f * x + 3.1f, 0.011f * z + 7.7f, 3) - 7;
    const float mountains = 95 * Turbulence(0.008f * x + 5.2f, 0.008f * z + 2.2f, 4) - 24;
    return rolling + distance * hills + SmoothStep(200, 460, z) * mountains +
           1.6f * SmoothStep(12, 60, std::fabs(x + 4));
}

float PathDistance(float x, float z)
{
    const float middle = 0.6f + 2.2f * std::sin(0.105f * z - 0.35f) + 0.05f * z;
    return std::fabs(x - middle) / (1 + 0.006f * z);
}

Zm2DVector GroundSlope(float x, float z)
{
    constexpr float step = 0.25f;
    return {(GroundHeight(x + step, z) - GroundHeight(x - step, z)) / (2 * step),
            (GroundHeight(x, z + step) - GroundHeight(x, z - step)) / (2 * step)};
}

std::deque<Mesh> MakeGroundTiles()
{
    static_assert(kColumns % kTile == 0 && kRows % kTile == 0, "tiles must cover the grid");
    std::deque<Mesh> tiles;
    for (int row = 0; row < kRows; row += kTile) {
        for (int column = 0; column < kColumns; column += kTile) {
            tiles.push_back(MakeTile(column, row));
        }
    }
    return tiles;
}

Mesh MakeGrassPatch(uint32_t seed)
{
    Mesh patch;
    Random random(seed);
    for (int i = 0; i < kBladesPerPatch; ++i) {
        AddBlade(patch, random);
    }
    ComputeBox(patch);
    return patch;
}

Mesh MakeFlower()
{
    Mesh flower;
    const float height = 0.16f, radius = 0.035f;
    flower.vertices.push_back({{0, height, 0}, {0, 1, 0}, 0, 0});
    for (int i = 0; i < 2 * kPetals; ++i) {
        const float angle = float(i) * 3.14159265f / kPetals, reach = i % 2 == 0 ? radius : 0.4f * radius;
        const ZmVector out(std::cos(angle), 0, std::sin(angle));
        flower.vertices.push_back(
            {out * reach + ZmVector(0, height + 0.3f * reach, 0), Unit(ZmVector(0, 2, 0) - out), 1, 0});
    }
    for (size_t i = 0; i < 2 * kPetals; ++i) {
        AddTriangle(flower, 0, 1 + (i + 1) % (2 * kPetals), 1 + i);
    }
    ComputeBox(flower);
    return flower;
}
