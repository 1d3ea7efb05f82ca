#pragma once

#include "ZmApi.h"

#include <new>
#include <stddef.h>
#include <string.h>

/// Whether objects of a type may be moved by copying their bytes and dropping the originals without calling their
/// destructor. True for plain values and for most types that own a single block. The containers move such items with
/// one copy. Specialise it to declare your own type relocatable.
template <class T>
struct XIsRelocatable {
    /// True for types that the compiler considers trivially copyable.
    static constexpr bool value = __is_trivially_copyable(T);
};

namespace zm {

/// Allocates memory for a container's items with the global allocation operators; null if memory runs out. All modules
/// allocate here, so that one may free what another one allocated. Any thread may call.
ZM_API void* NewBlock(unsigned long long bytes);

/// Frees a block of NewBlock(); null does nothing.
ZM_API void DeleteBlock(void* block);

template <class T>
constexpr T&& Move(T& value)
{
    return static_cast<T&&>(value);
}

/// Moves items into uninitialised memory. The ranges may overlap if the new one is lower.
template <class T>
void Relocate(T* to, T* from, size_t count)
{
    if constexpr (XIsRelocatable<T>::value) {
        const size_t size = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers, too
        if (count != 0) {
            memmove(static_cast<void*>(to), static_cast<const void*>(from), count * size);
        }
    } else {
        for (size_t i = 0; i < count; ++i) {
            new (to + i) T(Move(from[i]));
            from[i].~T();
        }
    }
}

template <class T>
void Destroy(T* items, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        items[i].~T();
    }
}

}  // namespace zm
