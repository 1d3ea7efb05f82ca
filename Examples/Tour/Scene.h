#pragma once

#include "Mesh.h"

#include <deque>
#include <vector>

/// What a model is made of.
enum class Material {
    GROUND,
    GRASS,
    FLOWER,
    STATUE
};

/// An instance of a mesh.
struct Model {
    const Mesh* shape;
    Material made;
    ZmMatrix world;
    ZmBbox box;       ///< in world space
    ZmVector colour;  ///< share of red, green and blue light that it reflects

    bool IsLeaf() const { return made == Material::GRASS || made == Material::FLOWER; }
    bool HasTwoSides() const { return IsLeaf() || (made == Material::STATUE && !shape->closed); }
};

struct Sun {
    ZmVector towards;  ///< unit vector from the ground to the sun
    ZmVector colour;
};

/// All contents of the picture. Meshes keep their addresses.
struct Scene {
    ZmFrustum camera;
    Sun light;
    std::deque<Mesh> meshes;
    std::vector<Model> models;

    void Add(const Mesh& shape, Material made, const ZmMatrix& world, const ZmVector& colour);
};

/// A potentially visible model and the rows of the picture that it can touch.
struct VisibleModel {
    const Model* shown;
    float distance;
    int firstRow, endRow;
};

/// The boxes of all models, of which there must be one at least, as the library's bulk functions expect them.
ZmStridedData Boxes(const Scene& scene);

/// The models whose world boxes are not entirely outside the view, nearest first.
std::vector<VisibleModel> ModelsInView(const Scene& scene, const ZmMatrix& worldToClip, int width, int height);
