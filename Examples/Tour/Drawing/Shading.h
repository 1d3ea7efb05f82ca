#pragma once

#include "ContactShade.h"
#include "Relief.h"
#include "Scene.h"
#include "Shadows.h"

/// The nearest surface at a sample, as the rasteriser stores it.
struct Surface {
    float inverseDistance;  ///< 1 / distance along the camera's direction; 0 for sky
    ZmVector normal;        ///< of any length
    float sky, ground;      ///< as in Vertex
    const Model* shown;
};

/// Computes the light of surfaces: red, green and blue, linear, without upper bound.
class Shading {
public:
    /// Draws the shadow maps on up to `threads` threads. Scene and relief must outlive the object.
    Shading(const Scene& scene, const Relief& pebbles, int threads)
        : m_Scene(scene), m_Pebbles(pebbles), m_Shadows(scene, threads), m_Contact(scene)
    {
    }

    /// Light along `ray` from the camera. `ray` reaches 1 along the camera's direction; `turn`, 0 to 1, varies from
    /// sample to sample. Thread-safe.
    ZmVector Light(const Surface& surface, const ZmVector& ray, float turn) const;

private:
    // A surface and the point where it is hit.
    struct Hit {
        const Surface& of;
        ZmVector point, normal, toEye;
        float distance;  // along the camera's direction
    };
    ZmVector Haze(const ZmVector& direction) const;
    ZmVector SkyLight(const ZmVector& direction) const;
    ZmVector Colour(const Hit& hit) const;
    ZmVector GroundColour(const Hit& hit) const;
    ZmVector GroundNormal(const Hit& hit) const;
    float Sunlight(const Hit& hit, float turn) const;
    ZmVector AmbientLight(const Hit& hit) const;
    ZmVector SurfaceLight(const Hit& hit, float turn) const;

    const Scene& m_Scene;
    const Relief& m_Pebbles;
    Shadows m_Shadows;
    ContactShade m_Contact;
};
