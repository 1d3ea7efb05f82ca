#pragma once

#include "Scene.h"
#include "Settings.h"

/// Copies of a mesh that dance: each has a skeleton, which key frames move and which its vertices follow.
class Crowd {
public:
    /// Adds the dancers to the scene, which must outlive the object and get no other models meanwhile. `statue` must be
    /// prepared.
    Crowd(Scene& scene, const Mesh& statue, const Settings& settings);

    /// Moves all dancers to a moment of the dance, whose beat takes a time of 1.
    void Pose(float time);

    size_t Size() const { return m_Count; }

private:
    void RigMesh(const Mesh& statue);
    void AddDancer(const Mesh& statue, const Spot& spot, const ZmVector& colour);
    void SampleKeys(float time);
    void MoveVertices();

    Scene& m_Scene;
    size_t m_Count = 0, m_FirstModel = 0, m_FirstMesh = 0;
    Mesh m_Rest;  // the statue at rest
    std::vector<uint8_t> m_Bones;
    std::vector<float> m_Weights;
    std::vector<ZmMatrix> m_FromRest;  // the bones at rest, inverted

    // A node for each bone of each dancer. The first of a skeleton stands where the dancer does.
    std::vector<int> m_Parents;
    std::vector<ZmVector> m_Positions, m_Scales;
    std::vector<ZmQuaternion> m_Turns;
    std::vector<ZmMatrix> m_Local, m_World, m_Palette;
    std::vector<float> m_Phases;  // of the dancers
};
