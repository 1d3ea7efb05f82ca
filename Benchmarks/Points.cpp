// Points and directions through one matrix, array to array.

#include "Families.h"
#include "Inputs.h"

#include "ZmMatrix.h"
#include "ZmStridedData.h"

#include <cstring>

namespace bench {
namespace {

void Prepare(Work& w)
{
    w.src = RandomFloats(size_t(w.count) * size_t(w.srcStride));
    w.extra = TurningMatrix();
}

void PrepareInPlace(Work& w)
{
    const size_t bytes = size_t(w.count) * size_t(w.srcStride);
    std::memcpy(w.dst, RandomFloats(bytes), bytes);
    w.src = w.dst;
    w.extra = TurningMatrix();
}

constexpr Task kTasks[] = {
    {"Points/12to12", 12, 12, Prepare, {1000, 30000, 8000000}, {0.70, 0.70, 0.85}},
    {"Points/12to12-in-place", 12, 12, PrepareInPlace, {1000, 30000, 8000000}, {0.70, 0.70, 0.97}},
    {"Points/32to32", 32, 32, Prepare, {1000, 30000, 8000000}, {1.00, 1.00, 1.00}},
    {"Points/12to16", 16, 12, Prepare, {1000, 30000, 8000000}, {1.00, 1.00, 0.90}},
    {"Points/16to16", 16, 16, Prepare, {1000, 30000, 8000000}, {1.00, 1.00, 0.97}},
    {"Rotates/12to12", 12, 12, Prepare, {1000, 30000, 8000000}, {0.70, 0.70, 0.85}},
    {"Rotates/12to12-in-place", 12, 12, PrepareInPlace, {1000, 30000, 8000000}, {0.70, 0.70, 0.97}},
    {"Rotates/32to32", 32, 32, Prepare, {1000, 30000, 8000000}, {0.65, 0.65, 1.00}},
};

using Strided = void(const ZmStridedData*, const ZmStridedData*, const ZmMatrix&, int);

template <Strided* function>
void Run(const Work& w)
{
    const ZmStridedData dst(w.dst, unsigned(w.dstStride));
    const ZmStridedData src(const_cast<void*>(w.src), unsigned(w.srcStride));
    function(&dst, &src, *static_cast<const ZmMatrix*>(w.extra), w.count);
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Run<Zm3DMultiplyMatrixVectorStrided>},
    {"Points/12to12-in-place", Run<Zm3DMultiplyMatrixVectorStrided>},
    {"Points/32to32", Run<Zm3DMultiplyMatrixVectorStrided>},
    {"Points/12to16", Run<Zm3DMultiplyMatrixVector4Strided>},
    {"Points/16to16", Run<Zm3DMultiplyMatrixVector4Strided>},
    {"Rotates/12to12", Run<Zm3DRotateVectorStrided>},
    {"Rotates/12to12-in-place", Run<Zm3DRotateVectorStrided>},
    {"Rotates/32to32", Run<Zm3DRotateVectorStrided>},
};

}  // namespace

constexpr Tasks kPointTasks{kTasks};
constexpr Contender kPoints{"ZmMath", Role::OURS, kEntries};
constexpr Contender kScalarPoints{"ZmMath scalar", Role::OURS_SCALAR, kEntries};

}  // namespace bench
