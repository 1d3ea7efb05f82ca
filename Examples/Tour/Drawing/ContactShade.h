#pragma once

#include "Scene.h"

/// The shade that statues throw on what is close to them by taking away sky: each one
/// counts as a sphere.
class ContactShade {
public:
    explicit ContactShade(const Scene& scene);

    /// Share of the sky, 0 to 1, that the statues other than `self` leave to a surface.
    float OpenSky(const ZmVector& point, const ZmVector& normal, const Model* self) const;

private:
    struct Ball {
        ZmVector Center;
        float Radius;
        const Model* Of;
    };
    static Ball BallAround(const Model& model);
    static ZmVector Reach(const Ball& ball);
    void Insert(const Ball& ball);
    const std::vector<Ball>* Near(const ZmVector& point) const;

    std::vector<std::vector<Ball>> m_Cells;  // over the ground, row by row
    ZmVector m_Corner{};
    int m_Columns = 0, m_Rows = 0;
};
