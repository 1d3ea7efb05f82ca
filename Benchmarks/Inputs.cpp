#include "Inputs.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bench {
namespace {

struct Release {
    void operator()(void* memory) const { std::free(memory); }
};

/// A buffer that grows on demand and then loses its contents.
class Buffer {
public:
    /// Returns true if the memory is new.
    bool Reserve(size_t bytes)
    {
        if (bytes <= m_Size) {
            return false;
        }
        m_Size = (bytes + 63) / 64 * 64;
        m_Memory.reset();
        m_Memory.reset(std::aligned_alloc(64, m_Size));
        if (!m_Memory) {
            throw std::bad_alloc();
        }
        std::memset(m_Memory.get(), 0, m_Size);
        return true;
    }
    void* Get() const { return m_Memory.get(); }
    size_t Size() const { return m_Size; }

private:
    std::unique_ptr<void, Release> m_Memory;
    size_t m_Size = 0;
};

struct Rotation {
    double x, y, z, w;
};

struct Block {
    double m[3][3];
};

class Generator {
public:
    double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_Engine); }

    Rotation UnitQuaternion()
    {
        std::normal_distribution<double> normal;
        const Rotation r = {normal(m_Engine), normal(m_Engine), normal(m_Engine), normal(m_Engine)};
        const double length = std::sqrt(r.x * r.x + r.y * r.y + r.z * r.z + r.w * r.w);
        return {r.x / length, r.y / length, r.z / length, r.w / length};
    }

    std::mt19937& Engine() { return m_Engine; }

private:
    std::mt19937 m_Engine{20030711};
};

Block ToBlock(const Rotation& r)
{
    const double x = r.x, y = r.y, z = r.z, w = r.w;
    return {{{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
             {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
             {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}}};
}

Block Multiply(const Block& a, const Block& b)
{
    Block res;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            res.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j];
        }
    }
    return res;
}

Block RandomScale(Generator& random)
{
    return {{{random.Uniform(0.5, 2), 0, 0}, {0, random.Uniform(0.5, 2), 0}, {0, 0, random.Uniform(0.5, 2)}}};
}

void Write(float (&matrix)[16], const Block& block, const double (&translation)[3])
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            matrix[4 * i + j] = float(block.m[i][j]);
        }
        matrix[4 * i + 3] = 0;
        matrix[12 + i] = float(translation[i]);
    }
    matrix[15] = 1;
}

void TransposeBlock(float (&res)[16], const float (&matrix)[16])
{
    std::memcpy(res, matrix, sizeof(res));
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            res[4 * i + j] = matrix[4 * j + i];
        }
    }
}

void Write(float (&quaternion)[4], const Rotation& r)
{
    quaternion[0] = float(r.x);
    quaternion[1] = float(r.y);
    quaternion[2] = float(r.z);
    quaternion[3] = float(r.w);
}

void MakeMatrices(Operands& res, int i, Generator& random)
{
    const auto translation = [&](double(&t)[3]) -> const double(&)[3] {
        for (double& component : t) {
            component = random.Uniform(-10, 10);
        }
        return t;
    };
    const auto rotation = [&] { return ToBlock(random.UnitQuaternion()); };
    double t[3];
    Write(res.a[i], Multiply(RandomScale(random), rotation()), translation(t));
    Write(res.b[i], Multiply(RandomScale(random), rotation()), translation(t));
    Write(res.rotation[i], rotation(), translation(t));
    const Block turn = rotation();
    Write(res.stretched[i], Multiply(Multiply(turn, RandomScale(random)), rotation()), translation(t));
    TransposeBlock(res.aTransform[i], res.a[i]);
    TransposeBlock(res.bTransform[i], res.b[i]);
}

void MakeQuaternions(Operands& res, int i, Generator& random)
{
    const Rotation p = random.UnitQuaternion();
    Rotation q;
    do {
        q = random.UnitQuaternion();
    } while (std::fabs(p.x * q.x + p.y * q.y + p.z * q.z + p.w * q.w) > 0.98);
    Write(res.p[i], p);
    Write(res.q[i], q);

    Rotation axis = random.UnitQuaternion();
    const double length = std::sqrt(axis.x * axis.x + axis.y * axis.y + axis.z * axis.z);
    axis = {axis.x / length, axis.y / length, axis.z / length, random.Uniform(-3, 3)};
    Write(res.axisAngle[i], axis);
    for (float& angle : res.euler[i]) {
        angle = float(random.Uniform(-3, 3));
    }
    res.t[i] = float(random.Uniform(0, 1));
}

}  // namespace

const float* RandomFloats(size_t bytes)
{
    static Buffer buffer;
    if (buffer.Reserve(bytes)) {
        float* floats = static_cast<float*>(buffer.Get());
        unsigned state = 2463534242u;
        for (size_t i = 0; i < buffer.Size() / sizeof(float); ++i) {
            state = state * 1664525u + 1013904223u;
            floats[i] = i % 4 == 3 ? 1.0f : float(int(state >> 8) - (1 << 23)) / float(1 << 23);
        }
    }
    return static_cast<const float*>(buffer.Get());
}

void* ResultMemory(size_t bytes)
{
    static Buffer buffer;
    buffer.Reserve(bytes);
    return buffer.Get();
}

const int* ShuffledIndices(int count)
{
    static std::map<int, std::vector<int>> made;
    std::vector<int>& indices = made[count];
    if (indices.empty()) {
        indices.resize(size_t(count));
        for (int i = 0; i < count; ++i) {
            indices[size_t(i)] = i;
        }
        Generator random;
        for (int i = count - 1; i > 0; --i) {
            const int other = std::uniform_int_distribution<int>(0, i)(random.Engine());
            std::swap(indices[size_t(i)], indices[size_t(other)]);
        }
    }
    return indices.data();
}

const char* const* PathNames(int count)
{
    struct Made {
        std::set<std::string> names;
        std::vector<const char*> texts;
    };
    static std::map<int, Made> all;
    Made& made = all[count];
    std::mt19937 random{20030712};
    const auto word = [&random](const std::vector<const char*>& words) { return words[random() % words.size()]; };
    while (int(made.texts.size()) < count) {
        std::string name;
        for (auto folders = random() % 3; folders > 0; --folders) {
            name += word({"models", "textures", "sounds", "city", "forest", "interior", "actors", "shared", "level1"});
            name += '/';
        }
        name += word({"wall", "door", "Tree", "rock", "window", "lamp", "water_surface", "NPC", "bridge", "roof"});
        char number[16];
        std::snprintf(number, sizeof(number), "_%04u", unsigned(random() % 100000));
        name += number;
        name += word({".bmp", ".mesh", ".wav", ".txt", ".png"});
        if (name.size() >= 8 && name.size() <= 40 && made.names.insert(name).second) {
            made.texts.push_back(made.names.find(name)->c_str());
        }
    }
    return made.texts.data();
}

const Operands& RandomOperands()
{
    static const std::unique_ptr<const Operands> operands = [] {
        auto made = std::make_unique<Operands>();
        Generator random;
        for (int i = 0; i < kOperands; ++i) {
            MakeMatrices(*made, i, random);
            MakeQuaternions(*made, i, random);
        }
        return made;
    }();
    return *operands;
}

const float* TurningMatrix()
{
    struct Matrix {
        alignas(64) float m[16];
    };
    static const Matrix matrix = [] {
        // v * R + (c - c * R) is a rotation about the point c.
        const Block r = ToBlock({0.36, 0.48, 0.64, 0.48});
        constexpr double c[3] = {0.1, -0.2, 0.15};
        double translation[3];
        for (int j = 0; j < 3; ++j) {
            translation[j] = c[j] - (c[0] * r.m[0][j] + c[1] * r.m[1][j] + c[2] * r.m[2][j]);
        }
        Matrix res;
        Write(res.m, r, translation);
        return res;
    }();
    return matrix.m;
}

}  // namespace bench
