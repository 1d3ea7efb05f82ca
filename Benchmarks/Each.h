#pragma once

#include "Harness.h"
#include "Operands.h"

#include <cstring>

// The loops around everything that is measured. The unnamed namespace is meant: each
// file has its own copy, compiled with its own flags.
namespace bench {
namespace {

/// Calls op(result, inputs, i) for each element; the inputs are those of the single operations, or others. In a chain
/// each of them waits for the result of the one before, whose bits seem to say where its operands lie.
template <class Result, class Inputs = Operands, class Op>
inline void Each(const Work& w, Op op)
{
    Result* dst = static_cast<Result*>(w.dst);
    const Inputs& in = *static_cast<const Inputs*>(w.src);
    const int count = w.count;  // a copy: stores through pointers could alias the original
#ifdef ZM_CHAINED
    const volatile int none = 0;
    const int mask = none;
    for (int i = 0, further = 0; i < count; ++i) {
        op(dst[i], in, i + further);
        std::memcpy(&further, &dst[i], sizeof(further));
        further &= mask;
    }
#else
    for (int i = 0; i < count; ++i) {
        op(dst[i], in, i);
    }
#endif
}

/// The same, but in a chain the next operation waits for all floats of a result. Where results only move floats, the
/// first of them alone would be a plain load to whoever works float by float, and nothing of the rest would be
/// measured.
template <class Result, class Op>
inline void EachWhole(const Work& w, Op op)
{
#ifdef ZM_CHAINED
    Result* dst = static_cast<Result*>(w.dst);
    const Operands& in = *static_cast<const Operands*>(w.src);
    const int count = w.count;
    const volatile int none = 0;
    const int mask = none;
    for (int i = 0, further = 0; i < count; ++i) {
        op(dst[i], in, i + further);
        int words[sizeof(Result) / sizeof(int)];
        std::memcpy(words, &dst[i], sizeof(words));
        further = 0;
        for (const int word : words) {
            further |= word;
        }
        further &= mask;
    }
#else
    Each<Result>(w, op);
#endif
}

/// Element i of an array of operands, as a type of the contender.
template <class T>
inline const T& As(const void* operands, int i = 0)
{
    return static_cast<const T*>(operands)[i];
}

/// The value at the start of an element of `Bytes` bytes.
template <class T, int Bytes, bool Padded = (sizeof(T) < Bytes)>
struct Slot {
    T value;
};
template <class T, int Bytes>
struct Slot<T, Bytes, true> {
    T value;
    char rest[Bytes - sizeof(T)];
};

/// dst[i] = op(src[i]) with strides known at compile time.
template <class Out, class In, class Op>
inline void Transform(const Work& w, Op op)
{
    Out* dst = static_cast<Out*>(w.dst);
    const In* src = static_cast<const In*>(w.src);
    const int count = w.count;
    for (int i = 0; i < count; ++i) {
        dst[i].value = op(src[i].value);
    }
}

/// The same over one array: the compiler need not allow for two overlapping ones.
template <class Element, class Op>
inline void TransformInPlace(const Work& w, Op op)
{
    Element* data = static_cast<Element*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i) {
        data[i].value = op(data[i].value);
    }
}

}  // namespace
}  // namespace bench
