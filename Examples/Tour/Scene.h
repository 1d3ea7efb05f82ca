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
    const Mesh* Shape;
    Material Made;
    ZmMatrix World;
    ZmBbox Box;       ///< in world space
    ZmVector Colour;  ///< share of red, green and blue light that it reflects

    bool IsLeaf() const { return Made == Material::GRASS || Made == Material::FLOWER; }
    bool HasTwoSides() const { return IsLeaf() || (Made == Material::STATUE && !Shape->Closed); }
};

struct Sun {
    ZmVector Towards;  ///< unit vector from the ground to the sun
    ZmVector Colour;
};

/// All contents of the picture. Meshes keep their addresses.
struct Scene {
    ZmFrustum Camera;
    Sun Light;
    std::deque<Mesh> Meshes;
    std::vector<Model> Models;

    void Add(const Mesh& shape, Material made, const ZmMatrix& world, const ZmVector& colour);
};

/// A potentially visible model and the rows of the picture that it can touch.
struct VisibleModel {
    const Model* Shown;
    float Distance;
    int FirstRow, EndRow;
};

/// The models whose world boxes are not entirely outside the view, nearest first.
std::vector<VisibleModel> ModelsInView(const Scene& scene, const ZmMatrix& worldToClip, int width, int height);
