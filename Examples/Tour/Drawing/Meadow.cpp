#include "Meadow.h"

#include "Noise.h"
#include "Terrain.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kGrassReach = 46;
constexpr size_t kFewestCopies = 12;

void PlaceCamera(Scene& scene, const Settings& settings)
{
    ZmMatrix turn;
    Zm3DMatrixFromEulerAngles(turn, settings.camera.lookDown, 0, 0);
    const ZmVector origin(0, GroundHeight(0, 0) + settings.camera.eyeHeight, 0);
    scene.camera = ZmFrustum(origin, Rotate(turn, ZmVector::axisX()), Rotate(turn, ZmVector::axisY()),
                             Rotate(turn, ZmVector::axisZ()), 0.25f, 900, settings.camera.fieldOfView,
                             float(settings.height) / float(settings.width));
}

// Scales, turns about the vertical axis, and places on the ground.
ZmMatrix Placed(const Spot& spot)
{
    return ZmTransform(Footing(spot), Facing(spot), ZmVector(spot.size, spot.size, spot.size));
}

bool TooClose(const Spot& spot, const std::vector<Spot>& others)
{
    return std::any_of(others.begin(), others.end(), [&](const Spot& other) {
        const float dx = spot.x - other.x, dz = spot.z - other.z, reach = 0.62f * (spot.size + other.size);
        return dx * dx + dz * dz < reach * reach;
    });
}

}  // namespace

// Herds with open grass between them, sparser with distance.
std::vector<Spot> ChooseSpots(const Settings& settings)
{
    std::vector<Spot> spots = settings.front;
    Random random(11);
    for (int row = 0; row < 75; ++row) {
        const float z = 7.5f + 1.3f * float(row), halfWidth = 0.52f * z + 3;
        for (int column = 0; float(column) * 1.5f < 2 * halfWidth; ++column) {
            const float x = 1.5f * float(column) - halfWidth;
            const Spot spot = {x + random.Between(-0.7f, 0.7f), z + random.Between(-0.6f, 0.6f),
                               random.Next() < 0.2f ? random.Between(0.5f, 0.7f) : random.Between(0.85f, 1.25f),
                               random.Between(0, 6.2832f), size_t(random.Next() * float(settings.colours.size()))};
            const float herd = Turbulence(0.13f * spot.x + 40, 0.13f * spot.z + 3, 2);
            if (random.Next() < SmoothStep(0.45f, 0.75f, herd) * 0.6f && PathDistance(spot.x, spot.z) > 1.6f &&
                !TooClose(spot, spots)) {
                spots.push_back(spot);
            }
        }
    }
    return spots;
}

ZmVector Footing(const Spot& spot)
{
    return {spot.x, GroundHeight(spot.x, spot.z) - 0.015f * spot.size, spot.z};
}

ZmQuaternion Facing(const Spot& spot)
{
    return ZmRotationQuaternion(ZmVector::axisY(), -spot.heading);
}

namespace {

void PlaceStatues(Scene& scene, const Mesh& statue, const Settings& settings)
{
    const std::vector<Spot> spots = ChooseSpots(settings);
    const size_t most = std::max(kFewestCopies, size_t(settings.mostTriangles) / statue.TriangleCount());
    for (size_t i = 0; i < std::min(spots.size(), most); ++i) {
        scene.Add(statue, Material::STATUE, Placed(spots[i]), settings.colours[spots[i].colour]);
    }
}

void PlaceGround(Scene& scene)
{
    for (Mesh& tile : MakeGroundTiles()) {
        scene.meshes.push_back(std::move(tile));
        scene.Add(scene.meshes.back(), Material::GROUND, ZmMatrix::Identity(), ZmVector::axis1());
    }
}

// Follows the slope; sinks into the ground with distance.
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
    const size_t first = scene.meshes.size(), kinds = 4;
    for (uint32_t i = 0; i < kinds; ++i) {
        scene.meshes.push_back(MakeGrassPatch(i));
    }
    Random random(3);
    constexpr int rows = int(kGrassReach / kGrassPatchSize);
    for (int row = 0; row < rows; ++row) {
        const float z = 0.5f + kGrassPatchSize * float(row);
        const int halfWidth = int((0.52f * z + 4) / kGrassPatchSize);
        for (int column = -halfWidth; column <= halfWidth; ++column) {
            const float x = kGrassPatchSize * float(column);
            if (PathDistance(x, z) < 0.6f) {
                continue;
            }
            const Mesh& patch = scene.meshes[first + size_t(random.Next() * float(kinds))];
            scene.Add(patch, Material::GRASS, GrassPlaced(x, z, int(4 * random.Next())), ZmVector::axis1());
        }
    }
}

void PlaceFlowers(Scene& scene)
{
    const ZmVector kinds[] = {{0.85f, 0.84f, 0.80f}, {0.90f, 0.66f, 0.10f}, {0.66f, 0.42f, 0.72f}};
    scene.meshes.push_back(MakeFlower());
    const Mesh& flower = scene.meshes.back();
    Random random(23);
    for (int i = 0; i < 3000; ++i) {
        const float z = random.Between(2.5f, 32), x = random.Between(-1, 1) * (0.52f * z + 2);
        const float bed = Turbulence(0.35f * x, 0.35f * z + 60, 2);
        if (bed < 0.56f || PathDistance(x, z) < 1) {
            continue;
        }
        const size_t kind = size_t(3 * Noise(0.4f * x + 9, 0.4f * z)) % 3;
        scene.Add(flower, Material::FLOWER, Placed({x, z, random.Between(0.6f, 1.1f), random.Between(0, 6), 0}),
                  kinds[kind]);
    }
}

}  // namespace

void BuildLandscape(Scene& scene, const Settings& settings)
{
    PlaceCamera(scene, settings);
    scene.light = {Unit(settings.towardsSun), settings.sunColour};
    PlaceGround(scene);
    PlaceGrass(scene);
    PlaceFlowers(scene);
}

void BuildMeadow(Scene& scene, const Mesh& statue, const Settings& settings)
{
    BuildLandscape(scene, settings);
    PlaceStatues(scene, statue, settings);
}
