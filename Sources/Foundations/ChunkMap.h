#pragma once

#include "XArray.h"

#include <stdint.h>

namespace zm {

/// Finds the chunk that contains an address, and the first chunk with a free block, without walking the chunks.
/// Chunks are numbered from 0 and all have the same size.
///
/// An open hash table over granules of memory, each at least as large as a chunk: a chunk touches one or two granules
/// and is listed under each. Slots hold numbers only, so the table for thousands of chunks fits in the first-level
/// cache.
class ChunkMap {
public:
    explicit ChunkMap(size_t chunkBytes);

    /// Reserves memory for `chunks` chunks, one more than there are now. Returns false if out of memory.
    bool Reserve(int chunks);

    /// Adds a chunk after the last one. Reserve() must have been called for it.
    void Add(const char* data);
    void RemoveLast();
    void Swap(int a, int b);

    /// The chunk that contains the address, or -1.
    int Find(const void* address) const
    {
        if (m_Slots.IsEmpty()) {
            return -1;
        }
        const uintptr_t wanted = reinterpret_cast<uintptr_t>(address), *const data = m_Data.Begin();
        const int* slots = m_Slots.Begin();
        size_t i = HomeOf(wanted >> m_GranuleShift);
        while (slots[i] != kEmpty && wanted - data[ChunkOf(slots[i])] >= m_ChunkBytes) {
            i = Next(i);
        }
        return ChunkOf(slots[i]);
    }

    void SetFree(int chunk, bool hasFreeBlocks)
    {
        uint64_t& word = m_FreeBits[chunk / 64];
        const uint64_t bit = uint64_t(1) << chunk % 64;
        word = hasFreeBlocks ? word | bit : word & ~bit;
        if (hasFreeBlocks && chunk / 64 < m_FirstFreeWord) {
            m_FirstFreeWord = chunk / 64;
        }
    }

    /// The first chunk with free blocks, or -1.
    int FirstFree();

private:
    // An entry is twice the number of a chunk, plus 1 for the second of its granules. -1 decodes to chunk -1.
    static constexpr int kEmpty = -1;
    static constexpr int ChunkOf(int entry) { return entry >> 1; }

    bool HasSecondGranule(int chunk) const { return GranuleOf(2 * chunk) != GranuleOf(2 * chunk + 1); }
    uintptr_t GranuleOf(int entry) const
    {
        return (m_Data[ChunkOf(entry)] + ((entry & 1) != 0 ? m_ChunkBytes - 1 : 0)) >> m_GranuleShift;
    }
    size_t HomeOf(uintptr_t granule) const
    {
        return size_t(uint64_t(granule) * 0x9E3779B97F4A7C15u >> m_HashShift) & m_Mask;
    }
    size_t Next(size_t slot) const { return (slot + 1) & m_Mask; }

    void Insert(int entry);
    void InsertChunk(int chunk);
    size_t SlotOf(int entry) const;
    void Erase(int entry);
    bool Resize(int slots);

    size_t m_ChunkBytes;
    int m_GranuleShift;
    int m_HashShift = 63;
    size_t m_Mask = 0;
    XArray<int> m_Slots;       ///< entries
    XArray<uintptr_t> m_Data;  ///< addresses of the chunks
    XArray<uint64_t> m_FreeBits;
    int m_FirstFreeWord = 0;  ///< all words before this one are 0
};

}  // namespace zm
