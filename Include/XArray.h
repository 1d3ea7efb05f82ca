#pragma once

#include "XMemory.h"

#include <assert.h>
#include <limits.h>

/// Growable array in one block. When full, its capacity doubles; the first item makes room for two
/// plain values, or for one item of any other type. Items move in memory when the array grows:
/// pointers into it do not survive that. One thread at a time may change it.
///
/// Memory: a call that finds none returns 0 and leaves the array as it was.
template <class T>
class XArray {
public:
    XArray() = default;

    /// A copy has room for its items and no more; it stays empty where there is no memory.
    XArray(const XArray& src)
    {
        if (Reserve(src.Size())) {
            for (const T* item = src.m_Begin; item != src.m_End; ++item) {
                new (m_End++) T(*item);
            }
        }
    }

    /// Leaves `src` empty, without memory.
    XArray(XArray&& src) noexcept { Swap(src); }

    /// Takes over the items of a copy, or of what is moved.
    XArray& operator=(XArray src) noexcept
    {
        Swap(src);
        return *this;
    }

    ~XArray()
    {
        Clear();
        zm::DeleteBlock(m_Begin);
    }

    /// Items.
    int Size() const { return int(m_End - m_Begin); }
    bool IsEmpty() const { return m_End == m_Begin; }

    /// Items that fit without growing.
    int Capacity() const { return int(m_CapacityEnd - m_Begin); }

    /// `position` is from 0 to Size() - 1; debug builds assert it.
    T& operator[](int position) { return *At(position); }
    const T& operator[](int position) const { return *At(position); }

    /// The first item; the place after the last one. Null both, or equal, in an empty array.
    T* Begin() { return m_Begin; }
    const T* Begin() const { return m_Begin; }
    T* End() { return m_End; }
    const T* End() const { return m_End; }

    /// The array must not be empty.
    T& Front() { return *At(0); }
    const T& Front() const { return *At(0); }
    T& Back() { return *At(Size() - 1); }
    const T& Back() const { return *At(Size() - 1); }

    /// Appends. `value` may be an item of this array. 1, or 0 without memory.
    int PushBack(const T& value) { return EmplaceBack(value) != nullptr; }
    int PushBack(T&& value) { return EmplaceBack(zm::Move(value)) != nullptr; }

    /// Appends T(arguments...). The item, or null without memory.
    template <class... Arguments>
    T* EmplaceBack(Arguments&&... arguments)
    {
        if (m_End == m_CapacityEnd) {
            return EmplaceGrowing(static_cast<Arguments&&>(arguments)...);
        }
        // cppcheck-suppress constStatement; it takes the arguments for a statement
        return new (m_End++) T(static_cast<Arguments&&>(arguments)...);
    }

    /// Removes the last item; the array must not be empty.
    void PopBack()
    {
        assert(!IsEmpty());
        (--m_End)->~T();
    }

    /// Removes one item; the later ones move down.
    void RemoveAt(int position)
    {
        T* item = At(position);
        item->~T();
        zm::Relocate(item, item + 1, size_t(m_End - item - 1));
        --m_End;
    }

    /// Makes room for `capacity` items exactly, if there is less. 1, or 0 without memory.
    int Reserve(int capacity)
    {
        if (capacity <= Capacity()) {
            return 1;
        }
        T* block = NewItems(capacity);
        if (block == nullptr) {
            return 0;
        }
        Install(block, capacity, Size());
        return 1;
    }

    /// Destroys the items and keeps the memory.
    void Clear()
    {
        zm::Destroy(m_Begin, size_t(Size()));
        m_End = m_Begin;
    }

    /// Exchanges items and memory.
    void Swap(XArray& other) noexcept
    {
        SwapPointers(m_Begin, other.m_Begin);
        SwapPointers(m_End, other.m_End);
        SwapPointers(m_CapacityEnd, other.m_CapacityEnd);
    }

private:
    static_assert(alignof(T) <= 2 * sizeof(void*), "items are aligned as the allocation operators align");

    T* At(int position) const
    {
        assert(position >= 0 && position < Size());
        return m_Begin + position;
    }

    static T* NewItems(int count)
    {
        const size_t size = sizeof(T);  // NOLINT(bugprone-sizeof-expression): of pointers, too
        return size_t(count) <= size_t(-1) / 2 / size ? static_cast<T*>(zm::NewBlock(size_t(count) * size)) : nullptr;
    }

    int NextCapacity() const
    {
        const int capacity = Capacity();
        if (capacity == 0) {
            return __is_trivially_copyable(T) ? 2 : 1;
        }
        return capacity <= INT_MAX / 2 ? 2 * capacity : INT_MAX;
    }

    // Moves the items to the block, where `size` are from now on.
    void Install(T* block, int capacity, int size)
    {
        zm::Relocate(block, m_Begin, size_t(Size()));
        zm::DeleteBlock(m_Begin);
        m_Begin = block;
        m_End = block + size;
        m_CapacityEnd = block + capacity;
    }

    template <class... Arguments>
    T* EmplaceGrowing(Arguments&&... arguments)
    {
        const int size = Size(), capacity = NextCapacity();
        T* block = capacity > size ? NewItems(capacity) : nullptr;
        if (block == nullptr) {
            return nullptr;
        }
        // First of all: an argument may be one of the items that move.
        T* item = new (block + size) T(static_cast<Arguments&&>(arguments)...);
        Install(block, capacity, size + 1);
        return item;
    }

    static void SwapPointers(T*& a, T*& b)
    {
        T* old = a;
        a = b;
        b = old;
    }

    T* m_Begin = nullptr;
    T* m_End = nullptr;
    T* m_CapacityEnd = nullptr;
};

template <class T>
struct XIsRelocatable<XArray<T>> {
    static constexpr bool value = true;
};
