// Filling, copying and gathering elements of a few floats, and packing colours.

#include "Families.h"
#include "Inputs.h"

#include "ZmColor.h"

namespace bench {
namespace {

void Prepare(Work& w)
{
    w.src = RandomFloats(size_t(w.count) * size_t(w.srcStride));
}

void PrepareFill(Work& w)
{
    w.src = RandomFloats(64);
}

void PrepareGather(Work& w)
{
    Prepare(w);
    w.extra = ShuffledIndices(w.count);
}

constexpr Task kTasks[] = {
    {"Fill/4", 4, 0, PrepareFill, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Fill/8", 8, 0, PrepareFill, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Fill/12", 12, 0, PrepareFill, {1000, 30000, 4000000}, {0.40, 0.60, 0.92}, 0},
    {"Fill/16", 16, 0, PrepareFill, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Fill/20", 20, 0, PrepareFill, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Copy/32to4", 4, 32, Prepare, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Copy/32to8", 8, 32, Prepare, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Copy/32to12", 12, 32, Prepare, {1000, 30000, 4000000}, {0.60, 0.80, 0.90}, 0},
    {"Copy/32to16", 16, 32, Prepare, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Copy/32to20", 20, 32, Prepare, {1000, 30000, 4000000}, {1.00, 1.00, 1.00}, 0},
    {"Gather/12", 12, 12, PrepareGather, {1000, 30000, 8000000}, {1.00, 1.00, 0.70}, 0},
    {"Colours/pack", 4, 16, Prepare, {1000, 100000}, {0.60, 0.60}, 0},
    {"Colours/unpack", 16, 4, Prepare, {1000, 100000}, {0.60, 0.60}, 0},
};

void Fill(const Work& w)
{
    const auto size = static_cast<unsigned long>(w.dstStride);
    ZmFillStructure(w.count, w.dst, size, size, w.src);
}

void Copy(const Work& w)
{
    const auto size = static_cast<unsigned long>(w.dstStride);
    ZmCopyStructure(w.count, w.dst, size, size, w.src, static_cast<unsigned long>(w.srcStride));
}

ZmStridedData Target(const Work& w)
{
    return {w.dst, unsigned(w.dstStride)};
}

ZmStridedData Source(const Work& w)
{
    return {const_cast<void*>(w.src), unsigned(w.srcStride)};
}

void Gather(const Work& w)
{
    const auto size = static_cast<unsigned long>(w.dstStride);
    ZmIndexedCopy(Target(w), Source(w), size, static_cast<const int*>(w.extra), w.count);
}

void PackColours(const Work& w)
{
    ZmPackColorsStrided(Target(w), Source(w), w.count);
}

void UnpackColours(const Work& w)
{
    ZmUnpackColorsStrided(Target(w), Source(w), w.count);
}

constexpr Entry kEntries[] = {
    {"Fill/4", Fill},
    {"Fill/8", Fill},
    {"Fill/12", Fill},
    {"Fill/16", Fill},
    {"Fill/20", Fill},
    {"Copy/32to4", Copy},
    {"Copy/32to8", Copy},
    {"Copy/32to12", Copy},
    {"Copy/32to16", Copy},
    {"Copy/32to20", Copy},
    {"Gather/12", Gather},
    {"Colours/pack", PackColours},
    {"Colours/unpack", UnpackColours},
};

}  // namespace

constexpr Tasks kArrayTasks{kTasks};
constexpr Contender kArrays{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
