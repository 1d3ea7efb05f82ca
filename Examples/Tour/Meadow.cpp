#include "Meadow.h"

#include "Noise.h"
#include "Terrain.h"

#include <algorithm>
#include <cmath>

namespace {

const float kEyeHeight = 1.75f;
const float kLookDown = 0.075f;    // radians
const float kFieldOfView = 0.87f;  // radians, from left to right
const float kGrassReach = 46;
const size_t kTriangleBudget = 6000000;
const size_t kFewestCopies = 12;

struct Spot {
    float X, Z, Size, Heading;
    size_t Color;
};

// The group in front, placed by hand; the rest is left to chance.
const Spot kFront[] = {
    {-1.7f, 6.7f, 1.2f, 2.25f, 1},
    {-0.55f, 6.9f, 0.62f, 0.3f, 2},
    {2.55f, 7.6f, 1.2f, 0.4f, 0},
    {-3.1f, 9.4f, 1.1f, 2.8f, 3},
};

const ZmVector kColors[] = {
    {0.82f, 0.73f, 0.58f}, {0.66f, 0.25f, 0.11f}, {0.78f, 0.50f, 0.12f}, {0.07f, 0.30f, 0.36f}, {0.70f, 0.33f, 0.32f},
    {0.27f, 0.15f, 0.09f}, {0.38f, 0.42f, 0.48f}, {0.33f, 0.19f, 0.36f}, {0.84f, 0.83f, 0.80f},
};

void PlaceCamera(Scene& scene, float aspectRatio)
{
    ZmMatrix turn;
    Zm3DMatrixFromEulerAngles(turn, kLookDown, 0, 0);
    const ZmVector origin(0, GroundHeight(0, 0) + kEyeHeight, 0);
    scene.Camera = ZmFrustum(origin, Rotate(turn, ZmVector::axisX()), Rotate(turn, ZmVector::axisY()),
                             Rotate(turn, ZmVector::axisZ()), 0.25f, 900, kFieldOfView, aspectRatio);
}

// On the ground, scaled, turned about the vertical.
ZmMatrix Placed(const Spot& spot)
{
    const ZmVector position(spot.X, GroundHeight(spot.X, spot.Z) - 0.015f * spot.Size, spot.Z);
    const ZmVector scale(spot.Size, spot.Size, spot.Size);
    ZmQuaternion turn;
    turn.FromRotation(ZmVector::axisY(), spot.Heading);
    ZmMatrix world;
    world.RecomposeMatrix(&position, &scale, &turn);
    return world;
}

bool TooClose(const Spot& spot, const std::vector<Spot>& others)
{
    return std::any_of(others.begin(), others.end(), [&](const Spot& other) {
        const float dx = spot.X - other.X, dz = spot.Z - other.Z, reach = 0.62f * (spot.Size + other.Size);
        return dx * dx + dz * dz < reach * reach;
    });
}

// Herds with open grass between them, thinning out with the distance.
std::vector<Spot> ChooseSpots()
{
    std::vector<Spot> spots(std::begin(kFront), std::end(kFront));
    Random random(11);
    for (int row = 0; row < 75; ++row) {
        const float z = 7.5f + 1.3f * float(row), halfWidth = 0.52f * z + 3;
        for (int column = 0; float(column) * 1.5f < 2 * halfWidth; ++column) {
            const float x = 1.5f * float(column) - halfWidth;
            const Spot spot = {x + random.Between(-0.7f, 0.7f), z + random.Between(-0.6f, 0.6f),
                               random.Next() < 0.2f ? random.Between(0.5f, 0.7f) : random.Between(0.85f, 1.25f),
                               random.Between(0, 6.2832f), size_t(random.Next() * float(std::size(kColors)))};
            const float herd = Turbulence(0.13f * spot.X + 40, 0.13f * spot.Z + 3, 2);
            if (random.Next() < SmoothStep(0.45f, 0.75f, herd) * 0.6f && PathDistance(spot.X, spot.Z) > 1.6f &&
                !TooClose(spot, spots))
                spots.push_back(spot);
        }
    }
    return spots;
}

void PlaceStatues(Scene& scene, const Mesh& statue)
{
    const std::vector<Spot> spots = ChooseSpots();
    const size_t most = std::max(kFewestCopies, kTriangleBudget / statue.TriangleCount());
    for (size_t i = 0; i < std::min(spots.size(), most); ++i)
        scene.Add(statue, Material::Statue, Placed(spots[i]), kColors[spots[i].Color]);
}

void PlaceGround(Scene& scene)
{
    for (Mesh& tile : MakeGroundTiles()) {
        scene.Meshes.push_back(std::move(tile));
        scene.Add(scene.Meshes.back(), Material::Ground, ZmMatrix::Identity(), ZmVector::axis1());
    }
}

// Follows the slope; shrinks into the ground with the distance.
ZmMatrix GrassPlaced(float x, float z, int quarterTurns)
{
    const Zm2DVector slope = GroundSlope(x, z);
    const ZmVector alongX(1, slope.x, 0), alongZ(0, slope.y, 1);
    const float offPath = SmoothStep(0.4f, 1.15f, PathDistance(x, z));
    const ZmVector up(0, offPath * (1 - SmoothStep(0.4f * kGrassReach, kGrassReach, z)), 0);
    const ZmVector position(x, GroundHeight(x, z), z);
    switch (quarterTurns) {
    case 0: return {alongX, up, alongZ, position};
    case 1: return {alongZ, up, -alongX, position};
    case 2: return {-alongX, up, -alongZ, position};
    default: return {-alongZ, up, alongX, position};
    }
}

void PlaceGrass(Scene& scene)
{
    const size_t first = scene.Meshes.size(), kinds = 4;
    for (uint32_t i = 0; i < kinds; ++i)
        scene.Meshes.push_back(MakeGrassPatch(i));
    Random random(3);
    const int rows = int(kGrassReach / kGrassPatchSize);
    for (int row = 0; row < rows; ++row) {
        const float z = 0.5f + kGrassPatchSize * float(row);
        const int halfWidth = int((0.52f * z + 4) / kGrassPatchSize);
        for (int column = -halfWidth; column <= halfWidth; ++column) {
            const float x = kGrassPatchSize * float(column);
            if (PathDistance(x, z) < 0.6f)
                continue;
            const Mesh& patch = scene.Meshes[first + size_t(random.Next() * float(kinds))];
            scene.Add(patch, Material::Grass, GrassPlaced(x, z, int(4 * random.Next())), ZmVector::axis1());
        }
    }
}

void PlaceFlowers(Scene& scene)
{
    const ZmVector kinds[] = {{0.85f, 0.84f, 0.80f}, {0.90f, 0.66f, 0.10f}, {0.66f, 0.42f, 0.72f}};
    scene.Meshes.push_back(MakeFlower());
    const Mesh& flower = scene.Meshes.back();
    Random random(23);
    for (int i = 0; i < 3000; ++i) {
        const float z = random.Between(2.5f, 32), x = random.Between(-1, 1) * (0.52f * z + 2);
        const float bed = Turbulence(0.35f * x, 0.35f * z + 60, 2);
        if (bed < 0.56f || PathDistance(x, z) < 1)
            continue;
        const size_t kind = size_t(3 * Noise(0.4f * x + 9, 0.4f * z)) % 3;
        scene.Add(flower, Material::Flower, Placed({x, z, random.Between(0.6f, 1.1f), random.Between(0, 6), 0}),
                  kinds[kind]);
    }
}

}  // namespace

void BuildMeadow(Scene& scene, const Mesh& statue, float aspectRatio)
{
    PlaceCamera(scene, aspectRatio);
    scene.Light = {Unit({-0.66f, 0.38f, 0.62f}), {3.7f, 2.75f, 1.65f}};
    PlaceStatues(scene, statue);
    PlaceGround(scene);
    PlaceGrass(scene);
    PlaceFlowers(scene);
}
