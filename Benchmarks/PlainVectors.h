#pragma once

// Vectors for peers written by hand. Internal to each file, as in Each.h.
namespace bench {
namespace {

struct Vec {
    float x, y, z;

    Vec(float a, float b, float c) : x(a), y(b), z(c) {}
    explicit Vec(const float* v) : x(v[0]), y(v[1]), z(v[2]) {}
};

inline Vec operator-(const Vec& a, const Vec& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator+(const Vec& a, const Vec& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator*(const Vec& v, float s)
{
    return {v.x * s, v.y * s, v.z * s};
}
inline float Dot(const Vec& a, const Vec& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec Cross(const Vec& a, const Vec& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

}  // namespace
}  // namespace bench
