#pragma once

#include "XMemory.h"

#include <assert.h>
#include <limits.h>

/// Growable array in one block. When it is full, its capacity doubles; the first item reserves capacity for two plain
/// values, or for one item of any other type. Growing moves the items and invalidates pointers to them. Only one thread
/// at a time may change an array.
///
/// If memory runs out, a call returns 0 and leaves the array unchanged.
template <class T>
class XArray {
public:
    XArray() = default;

    /// The copy has capacity for its items only; it stays empty if memory runs out.
    XArray(const XArray& src)
    {
        if (Reserve(src.Size())) {
            for (const T* item = src.m_Begin; item != src.m_End; ++item) {
                new (m_End++) T(*item);
            }
        }
    }

    /// Leaves `src` empty and without memory.
    XArray(XArray&& src) noexcept { Swap(src); }

    /// Takes over the items of the copied or moved argument.
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

    /// Number of items.
    int Size() const { return int(m_End - m_Begin); }
    bool IsEmpty() const { return m_End == m_Begin; }

    /// Number of items that fit without growing.
    int Capacity() const { return int(m_CapacityEnd - m_Begin); }

    /// Item at `position`, from 0 to Size() - 1; debug builds assert it.
    T& operator[](int position) { return *At(position); }
    const T& operator[](int position) const { return *At(position); }

    /// Pointers to the first item and past the last one. In an empty array they are equal, or both null.
    T* Begin() { return m_Begin; }
    const T* Begin() const { return m_Begin; }
    T* End() { return m_End; }
    const T* End() const { return m_End; }

    /// First and last item; the array must not be empty.
    T& Front() { return *At(0); }
    const T& Front() const { return *At(0); }
    T& Back() { return *At(Size() - 1); }
    const T& Back() const { return *At(Size() - 1); }

    /// Appends a value, which may be an item of this array. Returns 1, or 0 if memory runs out.
    int PushBack(const T& value) { return EmplaceBack(value) != nullptr; }
    int PushBack(T&& value) { return EmplaceBack(zm::Move(value)) != nullptr; }

    /// Appends T(arguments...). Returns the item, or null if memory runs out.
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

    /// Raises the capacity to exactly `capacity` items if it is lower. Returns 1, or 0 if memory runs out.
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

    // Moves the items to the block, which holds `size` items afterwards.
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
        // Must come first: an argument may be one of the items that move.
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
