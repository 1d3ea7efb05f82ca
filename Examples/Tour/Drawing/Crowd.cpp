#include "Crowd.h"

#include "Meadow.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t kMostDancers = 90;

// A skeleton: the place, the foot and a spine of five bones, one above the other.
constexpr int kSpine = 5, kFoot = 1, kBones = kFoot + 1 + kSpine, kInfluences = 4;
constexpr float kBoneLength = 1.0f / kSpine;  // a statue is at most 1 high

// The dance, a second of it: crouch, leap, hang in the air, land.
constexpr int kKeys = 6;
constexpr float kTimes[kKeys] = {0, 0.16f, 0.34f, 0.5f, 0.7f, 1};
constexpr ZmVector kLeap[kKeys] = {{0, 0, 0}, {0, 0, 0}, {0, 0.34f, 0}, {0, 0.44f, 0}, {0, 0.02f, 0}, {0, 0, 0}};
constexpr ZmVector kStretch[kKeys] = {
    {1, 1, 1}, {1.12f, 0.76f, 1.12f}, {0.9f, 1.2f, 0.9f}, {0.96f, 1.1f, 0.96f}, {1.08f, 0.84f, 1.08f}, {1, 1, 1}};
// How far each bone of the spine bends to the side and forwards.
constexpr float kBend[kKeys] = {0, 0.16f, -0.07f, -0.2f, 0.1f, 0};
constexpr float kSway[kKeys] = {0.1f, 0.04f, -0.12f, -0.06f, 0.08f, 0.1f};

template <class T>
ZmStridedData Array(const T* elements)
{
    return {const_cast<T*>(elements), sizeof(T)};
}

/// The dance of every bone of the spine.
struct Dance {
    ZmQuaternion turns[kKeys];
    ZmTrack turn, leap, stretch;

    Dance()
        : turn{Array(kTimes), Array(turns), kKeys}, leap{Array(kTimes), Array(kLeap), kKeys}, stretch{Array(kTimes),
                                                                                                      Array(kStretch),
                                                                                                      kKeys}
    {
        for (int i = 0; i < kKeys; ++i) {
            turns[i] =
                ZmRotationQuaternion(ZmVector::axisX(), kBend[i]) * ZmRotationQuaternion(ZmVector::axisZ(), kSway[i]);
        }
    }
};

/// The matrices that move a vertex at this height: the nearest bones, with weights that change smoothly.
void BindVertex(float height, uint8_t (&bones)[kInfluences], float (&weights)[kInfluences])
{
    const float place = std::clamp(height / kBoneLength - 0.5f, 0.0f, float(kSpine - 1));
    const int below = int(place);
    float sum = 0;
    for (int i = 0; i < kInfluences; ++i) {
        const int bone = below - 1 + i;
        const float apart = std::fabs(place - float(bone));
        weights[i] = bone >= 0 && bone < kSpine && apart < 2 ? (2 - apart) * (2 - apart) : 0;
        bones[i] = uint8_t(kFoot + 1 + std::clamp(bone, 0, kSpine - 1));
        sum += weights[i];
    }
    for (float& weight : weights) {
        weight /= sum;
    }
}

}  // namespace

Crowd::Crowd(Scene& scene, const Mesh& statue, const Settings& settings)
    : m_Scene(scene), m_FirstModel(scene.models.size()), m_FirstMesh(scene.meshes.size()), m_Rest(statue)
{
    RigMesh(statue);
    const std::vector<Spot> spots = ChooseSpots(settings);
    const size_t most = std::min(kMostDancers, size_t(settings.mostTriangles) / statue.TriangleCount() + 1);
    for (size_t i = 0; i < std::min(spots.size(), most); ++i) {
        AddDancer(statue, spots[i], settings.colours[spots[i].colour]);
    }
    m_Local.resize(m_Parents.size(), ZmMatrix::Identity());
    m_World = m_Palette = m_Local;
    Pose(0);
}

void Crowd::RigMesh(const Mesh& statue)
{
    for (const Vertex& vertex : statue.vertices) {
        uint8_t bones[kInfluences];
        float weights[kInfluences];
        BindVertex(vertex.position.y, bones, weights);
        m_Bones.insert(m_Bones.end(), bones, bones + kInfluences);
        m_Weights.insert(m_Weights.end(), weights, weights + kInfluences);
    }
    for (int bone = 0; bone < kBones; ++bone) {
        const float height = kBoneLength * float(std::max(bone - kFoot - 1, 0));
        m_FromRest.push_back(ZmTranslation({0, -height, 0}));
    }
}

void Crowd::AddDancer(const Mesh& statue, const Spot& spot, const ZmVector& colour)
{
    const int first = int(m_Parents.size());
    for (int bone = 0; bone < kBones; ++bone) {
        m_Parents.push_back(bone == 0 ? -1 : first + bone - 1);
        m_Positions.emplace_back(0, bone > kFoot + 1 ? kBoneLength : 0, 0);
        m_Scales.push_back(ZmVector::axis1());
        m_Turns.emplace_back(0, 0, 0, 1);
    }
    m_Turns[size_t(first)] = Facing(spot);
    m_Positions[size_t(first)] = Footing(spot);
    m_Scales[size_t(first)] = ZmVector(spot.size, spot.size, spot.size);
    m_Phases.push_back(0.35f * std::sin(0.9f * spot.x) + 0.08f * spot.z);  // waves run through the crowd
    m_Scene.meshes.push_back(statue);
    m_Scene.Add(m_Scene.meshes.back(), Material::STATUE, ZmMatrix::Identity(), colour);
    ++m_Count;
}

void Crowd::Pose(float time)
{
    SampleKeys(time);
    const int nodes = int(m_Parents.size());
    ZmTransformMatrixStrided(Array(m_Local.data()), Array(m_Positions.data()), Array(m_Turns.data()),
                             Array(m_Scales.data()), nodes);
    ZmHierarchyStrided(Array(m_World.data()), Array(m_Local.data()), m_Parents.data(), nodes);
    for (size_t i = 0; i < m_Count; ++i) {
        const size_t first = i * kBones;
        Zm3DMultiplyMatrixManyStrided(Array(&m_Palette[first]), Array(&m_World[first]), Array(m_FromRest.data()),
                                      kBones);
    }
    MoveVertices();
}

void Crowd::SampleKeys(float time)
{
    static const Dance dance;
    for (size_t i = 0; i < m_Count; ++i) {
        const size_t foot = i * kBones + kFoot;
        const float beat = time + m_Phases[i], now = beat - std::floor(beat);
        const ZmStridedData when(const_cast<float*>(&now), 0);
        ZmSampleVectors(Array(&m_Positions[foot]), dance.leap, when, 1);
        ZmSampleVectors(Array(&m_Scales[foot]), dance.stretch, when, 1);
        ZmSampleRotations(Array(&m_Turns[foot + 1]), dance.turn, when, kSpine);
    }
}

void Crowd::MoveVertices()
{
    const int count = int(m_Rest.vertices.size());
    ZmSkin skin = {
        nullptr, kBones, kInfluences, {m_Bones.data(), kInfluences}, false, {m_Weights.data(), 4 * kInfluences}};
    for (size_t i = 0; i < m_Count; ++i) {
        Mesh& mesh = m_Scene.meshes[m_FirstMesh + i];
        skin.palette = &m_Palette[i * kBones];
        ZmSkinVertices(skin, Positions(mesh), Positions(m_Rest), Normals(mesh), Normals(m_Rest), count);
        mesh.box = m_Scene.models[m_FirstModel + i].box = ZmBoxOfPoints(Positions(mesh), count);
    }
}
