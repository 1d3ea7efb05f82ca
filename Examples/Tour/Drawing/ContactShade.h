#pragma once

#include "Scene.h"

/// The shade that statues cast on their surroundings by blocking sky light. Each statue is approximated by a sphere.
class ContactShade {
public:
    explicit ContactShade(const Scene& scene);

    /// The share of the sky, 0 to 1, that a surface sees past all statues except `self`.
    float OpenSky(const ZmVector& point, const ZmVector& normal, const Model* self) const;

private:
    struct Ball {
        ZmVector centre;
        float radius;
        const Model* of;
    };
    static Ball BallAround(const Model& model);
    static ZmVector Reach(const Ball& ball);
    void Insert(const Ball& ball);
    const std::vector<Ball>* Near(const ZmVector& point) const;

    std::vector<std::vector<Ball>> m_Cells;  // over the ground, row by row
    ZmVector m_Corner{};
    int m_Columns = 0, m_Rows = 0;
};
