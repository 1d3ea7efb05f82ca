#pragma once

// Vectors, matrices, quaternions and colours as std::array, as pointer and count, and in C++20 as std::span. ZmMath.h
// does not include this header, because of the headers it needs.
//
//     const ZmVector v = ZmFromArray<ZmVector>({1, 2, 3});
//     file.Write(ZmFloats(matrix).data(), sizeof(ZmMatrix));
//     const ZmStridedData positions = ZmStrided(vertices.data(), &Vertex::position);
//
// The floats are in the order of the record: x, y, z, w; a matrix row by row; r, g, b, a. The views copy nothing and
// are valid as long as the record lives. Any thread may call.

#include "ZmColor.h"
#include "ZmMatrix.h"
#include "ZmQuaternion.h"
#include "ZmStridedData.h"

#include <array>
#include <stddef.h>
#if __cplusplus >= 202002L
#include <span>
#endif

namespace zm {

// The number of floats in a record, and the conversions from and to an array of them.
template <class T>
struct Floats;

template <>
struct Floats<Zm2DVector> {
    typedef std::array<float, 2> Array;
    static constexpr Array To(const Zm2DVector& v) { return {v.x, v.y}; }
    static constexpr Zm2DVector From(const Array& a) { return {a[0], a[1]}; }
};

template <>
struct Floats<ZmVector> {
    typedef std::array<float, 3> Array;
    static constexpr Array To(const ZmVector& v) { return {v.x, v.y, v.z}; }
    static constexpr ZmVector From(const Array& a) { return {a[0], a[1], a[2]}; }
};

template <>
struct Floats<ZmVector4> {
    typedef std::array<float, 4> Array;
    static constexpr Array To(const ZmVector4& v) { return {v.x, v.y, v.z, v.w}; }
    static constexpr ZmVector4 From(const Array& a) { return {a[0], a[1], a[2], a[3]}; }
};

template <>
struct Floats<ZmQuaternion> {
    typedef std::array<float, 4> Array;
    static constexpr Array To(const ZmQuaternion& q) { return {q.x, q.y, q.z, q.w}; }
    static constexpr ZmQuaternion From(const Array& a) { return {a[0], a[1], a[2], a[3]}; }
};

template <>
struct Floats<ZmColor> {
    typedef std::array<float, 4> Array;
    static constexpr Array To(const ZmColor& c) { return {c.r, c.g, c.b, c.a}; }
    static constexpr ZmColor From(const Array& a) { return {a[0], a[1], a[2], a[3]}; }
};

template <>
struct Floats<ZmMatrix> {
    typedef std::array<float, 16> Array;

    static constexpr Array To(const ZmMatrix& m)
    {
        Array a{};
        for (size_t i = 0; i < a.size(); ++i) {
            a[i] = m[int(i / 4)][i % 4];
        }
        return a;
    }
    static constexpr ZmMatrix From(const Array& a)
    {
        ZmMatrix m{{}, {}, {}, {}};
        for (size_t i = 0; i < a.size(); ++i) {
            m[int(i / 4)][i % 4] = a[i];
        }
        return m;
    }
};

}  // namespace zm

/// std::array with as many floats as the record T.
template <class T>
using ZmArrayOf = typename zm::Floats<T>::Array;

/// Copies the floats of a record to an array.
template <class T>
constexpr ZmArrayOf<T> ZmToArray(const T& record)
{
    return zm::Floats<T>::To(record);
}

/// Creates a record from an array of its floats.
template <class T>
constexpr T ZmFromArray(const ZmArrayOf<T>& floats)
{
    return zm::Floats<T>::From(floats);
}

/// Creates a record from the first of `count` floats; missing ones are 0. The pointer may be null if `count` is 0.
template <class T>
constexpr T ZmFromFloats(const float* floats, size_t count)
{
    ZmArrayOf<T> array{};
    for (size_t i = 0; i < array.size() && i < count; ++i) {
        array[i] = floats[i];
    }
    return ZmFromArray<T>(array);
}

/// View of a record's floats in place: a range, also usable for std::span. F is float or const float.
template <class F, size_t N>
class ZmFloatView {
public:
    /// Views N floats.
    constexpr explicit ZmFloatView(F* floats) : m_Floats(floats) {}

    /// Pointer to the first float; number of floats.
    constexpr F* data() const { return m_Floats; }
    static constexpr size_t size() { return N; }

    /// Pointers to the first float and past the last one.
    constexpr F* begin() const { return m_Floats; }
    constexpr F* end() const { return m_Floats + N; }

    /// The float at `position`, which is not checked.
    constexpr F& operator[](size_t position) const { return m_Floats[position]; }

private:
    F* m_Floats;
};

/// Views the floats of a record: writing through the view writes the record.
template <class T>
ZmFloatView<float, std::tuple_size_v<ZmArrayOf<T>>> ZmFloats(T& record)
{
    static_assert(sizeof(T) == sizeof(ZmArrayOf<T>), "the record is its floats");
    return ZmFloatView<float, std::tuple_size_v<ZmArrayOf<T>>>(reinterpret_cast<float*>(&record));
}
template <class T>
ZmFloatView<const float, std::tuple_size_v<ZmArrayOf<T>>> ZmFloats(const T& record)
{
    return ZmFloatView<const float, std::tuple_size_v<ZmArrayOf<T>>>(reinterpret_cast<const float*>(&record));
}

#if __cplusplus >= 202002L
/// The same as a std::span of fixed size.
template <class T>
auto ZmSpan(T& record)
{
    const auto view = ZmFloats(record);
    return std::span<std::remove_pointer_t<decltype(view.data())>, view.size()>(view.data(), view.size());
}
#endif

/// Describes the elements of an array, or one member of each element, for the functions that take strided data. The
/// array of a source is only read, so it may be constant. Null stays null.
template <class T>
ZmStridedData ZmStrided(T* elements)
{
    return ZmStridedData(const_cast<void*>(static_cast<const void*>(elements)), unsigned(sizeof(T)));
}
template <class T, class Element, class Member>
ZmStridedData ZmStrided(T* elements, Member Element::*member)
{
    const void* first = elements != nullptr ? &(elements->*member) : nullptr;
    return ZmStridedData(const_cast<void*>(first), unsigned(sizeof(T)));
}
