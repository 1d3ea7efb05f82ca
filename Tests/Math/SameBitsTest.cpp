#include "Support/Blocks.h"
#include "Support/Paths.h"

// Code that uses only + - * / and square roots gives the same bits on every path, compiler, word size and system. Each
// family below runs its functions over random inputs and computes a checksum of the results.

namespace {

/// FNV-1a.
class Checksum {
public:
    void Add(const Block& bytes)
    {
        for (const unsigned char byte : bytes) {
            m_Value = (m_Value ^ byte) * 0x100000001B3u;
        }
    }
    template <class... T>
    void Add(const T&... values)
    {
        (Add(Block(reinterpret_cast<const unsigned char*>(&values),
                   reinterpret_cast<const unsigned char*>(&values + 1))),
         ...);
    }
    uint64_t Value() const { return m_Value; }

private:
    uint64_t m_Value = 0xCBF29CE484222325u;
};

void Transforms(Random& random, Checksum& sum)
{
    const ZmMatrix m = random.Matrix();
    const ZmVector4 v = random.Vector4();
    const ZmVector point(v.x, v.y, v.z);
    ZmVector transformed, rotated;
    ZmVector4 fromFour, fromThree;
    Zm3DMultiplyMatrixVector(&transformed, m, &point);
    Zm3DRotateVector(&rotated, m, &point);
    Zm3DMultiplyMatrixVector4(&fromFour, m, &v);
    Zm3DMultiplyMatrixVector4(&fromThree, m, &point);
    sum.Add(transformed, rotated, fromFour, fromThree);
}

void TransformedArrays(Random& random, Checksum& sum)
{
    const ZmMatrix m = random.Matrix();
    const unsigned strides[] = {12, 16, 17, 32}, stride = strides[random.Int(0, 3)];
    const int count = random.Int(1, 70);
    Block src = RandomArray(random, count, stride, 0, 3), res(size_t(count) * 32);
    const ZmStridedData from(src.data(), stride), to(res.data(), stride), quads(res.data(), 16);
    Zm3DMultiplyMatrixVectorStrided(&to, &from, m, count);
    sum.Add(res);
    Zm3DRotateVectorStrided(&to, &from, m, count);
    sum.Add(res);
    Zm3DMultiplyMatrixVector4Strided(&quads, &from, m, count);
    sum.Add(res);
}

void Matrices(Random& random, Checksum& sum)
{
    const ZmMatrix a = random.Matrix(), b = random.Affine();
    ZmMatrix affine, full, inverse = a, transposed;
    Zm3DMultiplyMatrix(affine, a, b);
    Zm3DMultiplyMatrix4(full, a, b);
    Zm3DInverseMatrix(inverse, b);
    Zm3DTransposeMatrix(transposed, a);
    ZmVector point;
    ZmInverseProject(b, {random.Float(1), 2}, 3, &point);
    sum.Add(affine, full, inverse, transposed, point, Zm3DMatrixDeterminant(a));
}

void Trigonometry(Random& random, Checksum& sum)
{
    constexpr int kCount = 250;
    float in[kCount], other[kCount], units[kCount], res[9][kCount];
    for (int i = 0; i < kCount; ++i) {
        // Floats of any size but infinity.
        const uint32_t bits = random.Bits() & ~(1u << 23), otherBits = random.Bits() & ~(1u << 23);
        memcpy(&in[i], &bits, sizeof(bits));
        memcpy(&other[i], &otherBits, sizeof(otherBits));
        if (i % 2 == 0) {
            in[i] = random.Float(i % 4 == 0 ? 10.0f : 100000.0f);
            other[i] = random.Float(10);
        }
        units[i] = random.Float(1);
    }
    const auto array = [](float* floats) { return ZmStridedData(floats, sizeof(float)); };
    ZmSinStrided(array(res[0]), array(in), kCount);
    ZmCosStrided(array(res[1]), array(in), kCount);
    ZmTanStrided(array(res[2]), array(in), kCount);
    ZmAsinStrided(array(res[3]), array(units), kCount);
    ZmAcosStrided(array(res[4]), array(units), kCount);
    ZmAtanStrided(array(res[5]), array(other), kCount);
    ZmAtan2Strided(array(res[6]), array(in), array(other), kCount);
    ZmSinCosStrided(array(res[7]), array(res[8]), array(other), kCount);
    sum.Add(res);
}

void Angles(Random& random, Checksum& sum)
{
    const ZmVector angles = random.Vector(random.Int(0, 1) ? 4.0f : 90000.0f), axis = random.Vector();
    ZmMatrix m;
    ZmQuaternion euler, turn;
    Zm3DMatrixFromEulerAngles(m, angles.x, angles.y, angles.z);
    euler.FromEulerAngles(angles.x, angles.y, angles.z);
    turn.FromRotation(axis, angles.x);
    sum.Add(m, euler, turn, Rotate(angles, axis, angles.y));

    const ZmQuaternion a = random.Rotation(), b = random.Rotation();
    float back[4];
    ZmVector direction;
    a.ToEulerAngles(&back[0], &back[1], &back[2]);
    a.ToRotation(direction, back[3]);
    const ZmFrustum frustum({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 1, 2, 0.1f + fabsf(a.x), 1);
    sum.Add(back, direction, Ln(a), LnDif(a, b), Exp(a), frustum.HalfWidth);
}

void Quaternions(Random& random, Checksum& sum)
{
    const ZmQuaternion a = random.Rotation(), b = random.Rotation();
    ZmQuaternion scaled(a.x * 3, a.y * 3, a.z * 3, a.w * 3);
    scaled.Normalize();
    ZmMatrix m;
    b.ToMatrix(m);
    sum.Add(m, scaled, Zm3DQuaternionFromMatrix(m), Zm3DQuaternionMultiply(a, b), Zm3DQuaternionDivide(a, b), Exp(a));
    sum.Add(Slerp(0.3f, a, scaled), Slerp(0.3f, a, b), Squad(0.6f, a, b, scaled, b));
}

void TotalDecompositions(Random& random, Checksum& sum)
{
    const ZmVector x = random.Vector(), y = random.Vector(), z = random.Vector();
    const ZmMatrix blocks[] = {{x, y, z, x}, {x * 1e-6f, y, z * 1e6f, y}, {x, y, x, z}, {x, x * 2.0f, x * -4.0f, y}};
    for (const ZmMatrix& m : blocks) {  // plain, badly scaled, of rank two, of rank one
        ZmQuaternion quat, uRot;
        ZmVector pos, scale;
        const float sign = Zm3DDecomposeMatrixTotal(m, quat, pos, scale, uRot);
        ZmMatrix again;
        again.RecomposeMatrixEx(&pos, &scale, &quat, &uRot, sign);
        sum.Add(sign, quat, uRot, scale, again);
    }
}

/// Results based on ZmVector::Normalize, whose vector path is approximate.
void Normalized(Random& random, Checksum& sum)
{
    const ZmVector axis = random.Vector(), origin = random.Vector();
    ZmVector unit = origin, pos, scale;
    unit.Normalize();
    ZmMatrix rotation, quick, between, m = random.Affine();
    Zm3DMatrixFromRotationAndOrigin(rotation, axis, origin, random.Float(7));
    ZmQuaternion quat;
    Zm3DDecomposeMatrix(m, quat, pos, scale);
    quick.RecomposeMatrix(&pos, &scale, &quat);
    Zm3DInterpolateMatrix(0.4f, between, m, rotation);
    sum.Add(unit, rotation, quat, quick, between);
}

void Boxes(Random& random, Checksum& sum)
{
    const ZmVector min = random.Vector(), size = {random.Float(0, 3), random.Float(0, 3), random.Float(0, 3)};
    const ZmBbox box = {min + size, min};
    const ZmMatrix m = random.Matrix(1);
    const ZmRect screen(0, 0, 640, 480);
    ZmBbox around;
    around.TransformFrom(box, m);
    ZmVector corners[8];
    box.TransformTo(corners, m);
    ZmRect extents(0, 0, 0, 0);
    ZMCLIP_FLAGS all, any;
    const int visible = ZmTransformBox2D(m, box, &screen, &extents, all, any);
    float nearest = 0, farthest = 0;
    ZmProjectBoxZExtents(m, box, nearest, farthest);
    unsigned long flags[8];
    box.ClassifyVertices(8, reinterpret_cast<const unsigned char*>(corners), 12, flags);
    for (const unsigned long word : flags) {
        sum.Add(uint32_t(word));
    }
    sum.Add(around, corners, visible, extents, all, any, nearest, farthest);
}

void PlanesRaysRectanglesAndFrustums(Random& random, Checksum& sum)
{
    const ZmMatrix m = random.Affine(2);
    const ZmVector a = random.Vector(), b = random.Vector(), c = random.Vector();
    ZmPlane plane;
    plane.Create(a, b, c);
    ZmRay ray = {a, b};
    ray.Transform(ray, m);
    ZmRect rect(a.x, a.y, b.x, b.y);
    rect.Transform(ZmRect(0, 0, 640, 480), ZmRect(-1, -2, 3, 5));
    rect.TransformToHomogeneous(ZmRect(10, 20, 110, 90));
    ZmFrustum frustum;
    frustum.Transform(m);
    ZmVector corners[8];
    frustum.ComputeVertices(corners);
    sum.Add(plane, ray, rect, frustum, corners);
}

void ArrayArithmetic(Random& random, Checksum& sum)
{
    const ZmVector4 mul = random.Vector4(), add = random.Vector4();
    const ZmVector mul3(mul.x, mul.y, mul.z), add3(add.x, add.y, add.z);
    const int count = random.Int(1, 50);
    const unsigned stride = unsigned(random.Int(16, 32));
    const Block a = RandomArray(random, count, stride, 0, 4), b = RandomArray(random, count, stride, 0, 4);
    Block results[7] = {a, a, a, a, a, a, a};
    InterpolateFloatArray(results[0].data(), a.data(), b.data(), 0.3f, 4);
    InterpolateVectorArray(results[1].data(), a.data(), b.data(), 0.7f, count, stride, stride);
    MultiplyVectorArray(results[2].data(), a.data(), mul3, count, stride, stride);
    MultiplyVector2Array(results[3].data(), a.data(), {mul.x, mul.y}, count, stride, stride);
    MultiplyVector4Array(results[4].data(), a.data(), mul, count, stride, stride);
    MultiplyAddVectorArray(results[5].data(), a.data(), mul3, add3, count, stride, stride);
    MultiplyAddVector4Array(results[6].data(), a.data(), mul, add, count, stride, stride);
    for (const Block& result : results) {
        sum.Add(result);
    }
}

void Colours(Random& random, Checksum& sum)
{
    const ZmColor c = {random.Float(0, 1.2f), random.Float(0, 1.2f), random.Float(0, 1.2f), random.Float(0, 1.2f)};
    sum.Add(RGBAFTOCOLOR(c.r, c.g, c.b, c.a), RGBAFTOCOLOR(&c));
}

void SineTable(Random& random, Checksum& sum)
{
    ZmVector v;
    v = ZmCompressedVector{short(random.Int(-32768, 32767)), short(random.Int(-32768, 32767))};
    for (int angle = random.Int(0, 39); angle < 16384; angle += 40) {
        sum.Add(Tsin(angle));
    }
    sum.Add(v, radToAngle(random.Float(20)));
}

void Intersections(Random& random, Checksum& sum)
{
    const ZmVector corner = random.Vector(2), size = {random.Float(0, 3), random.Float(0, 3), random.Float(0, 3)};
    const ZmBbox box = {corner + size, corner}, other = {size, -size};
    const ZmRay ray = {random.Vector(4), random.Vector(4)};
    const ZmVector a = random.Vector(3), b = random.Vector(3), c = random.Vector(3), normal = Cross(b - a, c - a);
    const ZmMatrix m = random.Affine(2);
    const ZmOBB turned = {a, {{0.6f, 0.8f, 0}, {-0.8f, 0.6f, 0}, {0, 0, 1}}, {size.x, size.y, size.z}};
    const ZmOBB upright = {b, {{0, 0.8f, 0.6f}, {0, -0.6f, 0.8f}, {1, 0, 0}}, {1, 2, 3}};
    const ZmSphere sphere = {a, size.x}, ball = {b, size.y};
    const ZmFrustum frustum;
    ZmVector points[4] = {}, normals[2] = {};
    float t[4] = {};
    int axes[2] = {};
    const int ofRay = ZmIntersect::RayBox(ray, box, points[0], &points[1], &normals[0], &normals[1]);
    const int ofLine = ZmIntersect::LineBox(ray, box, points[2], &points[3], nullptr, nullptr);
    sum.Add(ofRay, ofLine, points, normals, ZmIntersect::RayBox(ray, box), ZmIntersect::SegmentBox(ray, box),
            ZmIntersect::LineBox(ray, box));
    sum.Add(
        ZmIntersect::LineFace(ray, a, b, c, normal, points[0], t[0], axes[0], axes[1]), points, t, axes,
        ZmIntersect::FaceFace(a, b, c, normal, ray.Origin, corner, size, Cross(corner - ray.Origin, size - corner)));
    sum.Add(ZmIntersect::RaySphere(ray, sphere, &points[2], &points[3]), points,
            ZmIntersect::SphereSphere(sphere, c, ball, corner, &t[2], &t[3]), t, ZmIntersect::SphereAABB(sphere, box));
    sum.Add(ZmIntersect::AABBAABB(box, other), ZmIntersect::AABBOBB(box, turned), ZmIntersect::OBBOBB(turned, upright),
            ZmIntersect::AABBFace(box, a, b, c, normal), ZmIntersect::FrustumBox(frustum, box, m),
            ZmIntersect::FrustumAABB(frustum, box), ZmIntersect::FrustumOBB(frustum, box, m));
}

void Distances(Random& random, Checksum& sum)
{
    const ZmRay a = {random.Vector(2), random.Vector(2)}, b = {random.Vector(2), random.Vector(2)};
    float s[6] = {}, t[6] = {};
    sum.Add(
        ZmDistance::LineLineSquareDistance(a, b, &s[0], &t[0]), ZmDistance::LineRaySquareDistance(a, b, &s[1], &t[1]),
        ZmDistance::LineSegmentSquareDistance(a, b, &s[2], &t[2]), ZmDistance::RayRaySquareDistance(a, b, &s[3], &t[3]),
        ZmDistance::RaySegmentSquareDistance(a, b, &s[4], &t[4]),
        ZmDistance::SegmentSegmentSquareDistance(a, b, &s[5], &t[5]), s, t);
    sum.Add(ZmDistance::PointLineSquareDistance(a.Origin, b, &s[0]),
            ZmDistance::PointSegmentSquareDistance(a.Origin, b, &s[1]), s);
}

void FittedBoxes(Random& random, Checksum& sum)
{
    const int count = random.Int(1, 70);
    const unsigned stride = random.Int(0, 1) ? 12 : 20;
    const Block points = RandomArray(random, count, stride, 0, 3);
    ZmEigenMatrix eigen;
    eigen.Covariance(points.data(), stride, count);
    ZmMatrix box;
    const int fitted = ZmComputeBestFitBBox(points.data(), stride, count, box, 1);
    sum.Add(eigen.Matrix, fitted, box);
}

const struct Family {
    const char* name;
    void (*run)(Random&, Checksum&);
    bool scalarOnly;
    uint64_t checksum;  // of the results for seed 0
} kFamilies[] = {
    {"transforms", Transforms, false, 0x954048F37102E927},
    {"transformed arrays", TransformedArrays, false, 0x037B06597390B4D6},
    {"matrices", Matrices, false, 0x704EB467B31595E8},
    {"trigonometry", Trigonometry, false, 0x152420D4D319D16B},
    {"angles", Angles, false, 0x2ECB6B125517281D},
    {"quaternions", Quaternions, false, 0x6AD43D775D9B61A7},
    {"total decompositions", TotalDecompositions, false, 0x111A7F357C497D62},
    {"normalized", Normalized, true, 0xC455B01231C63759},
    {"boxes", Boxes, false, 0x8D96041104FA88A8},
    {"planes, rays, rectangles, frustums", PlanesRaysRectanglesAndFrustums, false, 0xE858484A39544C2F},
    {"array arithmetic", ArrayArithmetic, false, 0x3ED41BF6FED29688},
    {"colours", Colours, false, 0x71334AA7E0417937},
    {"sine table", SineTable, false, 0x26C4CA14AFD4A3EA},
    {"intersections", Intersections, false, 0x05CDC71696187651},
    {"distances", Distances, false, 0x3A2C9FBFE9629852},
    {"fitted boxes", FittedBoxes, false, 0xB880CB3899AE0065},
};

uint64_t ChecksumOf(const Family& family, uint64_t seed)
{
    Random random(seed);
    Checksum sum;
    for (int round = 0; round < 40; ++round) {
        family.run(random, sum);
    }
    return sum.Value();
}

TEST(SameBitsTest, EveryPathGivesTheSameBits)
{
    for (const Family& family : kFamilies) {
        for (uint64_t seed = 1; seed <= 20 && !family.scalarOnly; ++seed) {
            const PathGuard scalar(AllPaths().front());
            const uint64_t expected = ChecksumOf(family, seed);
            OnEachPath(
                1, [&](Random&) { EXPECT_EQ(ChecksumOf(family, seed), expected) << family.name << ", seed " << seed; });
        }
    }
}

TEST(SameBitsTest, EveryPlatformGivesTheSameBits)
{
    const PathGuard scalar(AllPaths().front());
    for (const Family& family : kFamilies) {
        const uint64_t checksum = ChecksumOf(family, 0);
        EXPECT_EQ(checksum, family.checksum) << family.name << ": 0x" << std::hex << checksum;
    }
}

}  // namespace
