#include "Shading.h"

#include "Noise.h"
#include "Terrain.h"

#include <algorithm>
#include <cmath>

namespace {

const ZmVector kZenith(0.11f, 0.33f, 0.92f);
const ZmVector kHorizon(0.80f, 0.86f, 0.95f);
const ZmVector kSunGlow(1.9f, 1.15f, 0.45f);
const ZmVector kSkyOnSurfaces(0.36f, 0.50f, 0.82f);
const ZmVector kGroundOnSurfaces(0.36f, 0.40f, 0.16f);
// A little darker than the sky behind, so that the farthest hills remain visible.
const ZmVector kHazeOnSurfaces(0.70f, 0.82f, 0.95f);
constexpr float kHazeLength = 260;

ZmVector Mix(const ZmVector& a, const ZmVector& b, float t)
{
    return a + (b - a) * t;
}

ZmVector Times(const ZmVector& a, const ZmVector& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

float Square(float x)
{
    return x * x;
}

ZmVector GrassColour(const ZmVector& p)
{
    const float broad = Turbulence(0.07f * p.x, 0.07f * p.z, 3);
    const float patchy = Noise(0.9f * p.x, 0.9f * p.z);
    const ZmVector colour = Mix({0.10f, 0.19f, 0.035f}, {0.27f, 0.29f, 0.07f}, SmoothStep(0.3f, 0.75f, broad));
    return colour * (0.68f + 0.36f * patchy);
}

// The share of path in the ground: 1 in the middle of the path, 0 in the grass.
float PathShare(const ZmVector& p)
{
    const float rough = 0.3f * (Noise(0.9f * p.x, 0.9f * p.z) - 0.5f);
    return (1 - SmoothStep(0.5f, 1.1f, PathDistance(p.x, p.z) + rough)) * (1 - SmoothStep(120, 170, p.z));
}

// Pebbles fade out before they become finer than the samples.
float PebbleShare(const ZmVector& p)
{
    return 1 - SmoothStep(8, 26, p.z);
}

// 1 where individual blades of grass are visible, 0 where they blend.
float Closeness(float distance)
{
    return 1 - SmoothStep(6, 40, distance);
}

}  // namespace

ZmVector Shading::Haze(const ZmVector& direction) const
{
    const float towardsSun = std::max(0.0f, Dot(direction, m_Scene.light.towards));
    const float broad = Square(towardsSun) * towardsSun, narrow = Square(Square(Square(broad)));
    return kHorizon + kSunGlow * (0.17f * broad + 0.5f * narrow);
}

ZmVector Shading::SkyLight(const ZmVector& direction) const
{
    const float height = std::max(0.0f, direction.y);
    ZmVector sky = Mix(Haze(direction), kZenith, 1 - std::exp(-5.5f * height));
    // Clouds on a plane high above, softer towards the horizon.
    const float scale = 1.0f / (height + 0.12f);
    const float cover = Turbulence(1.1f * direction.x * scale + 4, 2.0f * direction.z * scale, 5);
    const float cloud = SmoothStep(0.50f, 0.80f, cover) * SmoothStep(0.02f, 0.2f, height);
    return Mix(sky, ZmVector(1.5f, 1.42f, 1.36f) + kSunGlow * 0.2f, 0.85f * cloud);
}

ZmVector Shading::GroundColour(const Hit& hit) const
{
    const ZmVector &p = hit.point, grass = GrassColour(p);
    const float path = PathShare(p);
    if (path <= 0) {
        return grass;
    }
    const float height = m_Pebbles.At(p.x, p.z, hit.distance).height;
    const float pebbles = 0.5f + (height - 0.5f) * PebbleShare(p);
    const float broad = Turbulence(1.3f * p.x, 1.3f * p.z, 3);
    return Mix(grass, Mix({0.24f, 0.16f, 0.09f}, {0.46f, 0.34f, 0.21f}, 0.55f * broad + 0.45f * pebbles), path);
}

ZmVector Shading::GroundNormal(const Hit& hit) const
{
    const ZmVector& p = hit.point;
    const float share = PebbleShare(p) > 0 ? PathShare(p) * PebbleShare(p) : 0;
    if (share <= 0) {
        return hit.normal;
    }
    const Relief::Point pebbles = m_Pebbles.At(p.x, p.z, hit.distance);
    return Unit(hit.normal - ZmVector(pebbles.slopeX, 0, pebbles.slopeZ) * share);
}

ZmVector Shading::Colour(const Hit& hit) const
{
    switch (hit.of.shown->made) {
    case Material::GROUND: return GroundColour(hit);
    case Material::GRASS:
        // Blades differ close by; far away only their average is left.
        return GrassColour(hit.point) * (1 + Closeness(hit.distance) * (1.1f * hit.of.ground - 0.35f));
    default: return hit.of.shown->colour;
    }
}

float Shading::Sunlight(const Hit& hit, float turn) const
{
    const ZmVector& towards = m_Scene.light.towards;
    const bool statue = hit.of.shown->made == Material::STATUE;
    // Soft material: light wraps a little around the edge.
    const float wrap = statue ? 0.08f : 0.0f;
    const float facing = (Dot(hit.normal, towards) + wrap) / (1 + wrap);
    if (facing <= 0) {
        return 0;
    }
    float light = facing * m_Shadows.Sunlight(hit.point, hit.normal, hit.distance, turn);
    if (hit.of.shown->IsLeaf()) {
        // Roots are dark; leaves glow when lit from behind by the sun.
        const float behind = std::max(0.0f, -Dot(hit.toEye, towards));
        light *= (1 - Closeness(hit.distance) * (1 - hit.of.sky)) * (1 + 1.6f * behind * behind);
    }
    return light;
}

ZmVector Shading::AmbientLight(const Hit& hit) const
{
    const float open = m_Contact.OpenSky(hit.point, hit.normal, hit.of.shown);
    const ZmVector fromSky = kSkyOnSurfaces * (open * hit.of.sky);
    if (hit.of.shown->made != Material::STATUE) {
        return fromSky;
    }
    return fromSky + kGroundOnSurfaces * ((0.4f + 0.6f * open) * hit.of.ground);
}

ZmVector Shading::SurfaceLight(const Hit& hit, float turn) const
{
    const ZmVector colour = Colour(hit), sun = m_Scene.light.colour * Sunlight(hit, turn);
    const ZmVector light = Times(colour, sun + AmbientLight(hit));
    if (hit.of.shown->made != Material::STATUE) {
        return light;
    }
    // A sheen at grazing angles, like that of velvet.
    const float rim = Square(Square(1 - std::max(0.0f, Dot(hit.normal, hit.toEye))));
    const ZmVector sheen = kSkyOnSurfaces * (0.6f * hit.of.sky) + sun;
    return light + Times(Mix(colour, ZmVector::axis1(), 0.4f), sheen) * (0.7f * rim);
}

ZmVector Shading::Light(const Surface& surface, const ZmVector& ray, float turn) const
{
    const ZmVector direction = Unit(ray);
    if (surface.inverseDistance <= 0) {
        return SkyLight(direction);
    }

    const float distance = 1 / surface.inverseDistance;
    Hit hit = {surface, m_Scene.camera.Origin + ray * distance, Unit(surface.normal), -direction, distance};
    if (surface.shown->IsLeaf() && hit.normal.y < 0) {
        hit.normal = -hit.normal;  // thin enough to be lit from above on both sides
    }
    if (surface.shown->made == Material::GROUND) {
        hit.normal = GroundNormal(hit);
    }
    const float haze = 1 - std::exp(-std::max(0.0f, distance - 6) / kHazeLength);
    return Mix(SurfaceLight(hit, turn), Times(Haze(direction), kHazeOnSurfaces), haze);
}
