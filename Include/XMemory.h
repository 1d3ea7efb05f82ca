#pragma once

#include "ZmApi.h"

#include <new>
#include <stddef.h>
#include <string.h>

/// Whether an object may move by copying its bytes and forgetting the old ones, without its
/// destructor: true of plain values and of most owners of one block. The containers move such
/// items in one copy. Specialise it for a type of your own to say so of that type.
template <class T>
struct XIsRelocatable {
    /// True for what the compiler calls trivially copyable.
    static constexpr bool value = __is_trivially_copyable(T);
};

namespace zm {

/// Memory for the items of a container, from the global allocation operators; null where there is
/// none. All modules take it here, so that one may fill what another one frees. Any thread.
ZM_API void* NewBlock(unsigned long long bytes);

/// Frees a block of NewBlock(); null does nothing.
ZM_API void DeleteBlock(void* block);

template <class T>
constexpr T&& Move(T& value)
{
    return static_cast<T&&>(value);
}

/// Moves items into memory that holds none. The places may overlap when the new one is lower.
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
