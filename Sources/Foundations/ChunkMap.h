#pragma once

#include "XArray.h"

#include <stdint.h>

namespace zm {

/// Knows which chunk an address lies in, and which chunk is the first with a free block, both without a walk over
/// the chunks. Chunks are numbered from 0 and all have the same size.
///
/// An open hash table over granules of memory, at least as large as a chunk: a chunk touches one granule or two,
/// and stands in the table under each.
class ChunkMap {
public:
    explicit ChunkMap(size_t chunkBytes);

    /// Makes room for that many chunks; false without memory.
    bool Reserve(int chunks);

    /// There is room for it.
    void Add(const char* data, int chunk);
    void Remove(const char* data);
    void Renumber(const char* data, int chunk);

    /// The chunk that the address lies in, or -1.
    int Find(const void* address) const
    {
        if (m_Slots.IsEmpty()) {
            return -1;
        }
        const uintptr_t wanted = reinterpret_cast<uintptr_t>(address);
        const Slot* slots = m_Slots.Begin();
        size_t i = HomeOf(wanted >> m_GranuleShift);
        while (slots[i].data != nullptr && wanted - reinterpret_cast<uintptr_t>(slots[i].data) >= m_ChunkBytes) {
            i = Next(i);
        }
        return slots[i].data != nullptr ? slots[i].chunk : -1;
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
    struct Slot {
        const char* data;  ///< null in an empty slot
        int chunk;
        int second;  ///< 1 under the second of a chunk's granules
    };

    uintptr_t GranuleOf(const char* address) const { return reinterpret_cast<uintptr_t>(address) >> m_GranuleShift; }
    size_t HomeOf(uintptr_t granule) const
    {
        return size_t(uint64_t(granule) * 0x9E3779B97F4A7C15u >> m_HashShift) & m_Mask;
    }
    size_t HomeOf(const Slot& slot) const { return HomeOf(GranuleOf(slot.data) + uintptr_t(slot.second)); }
    size_t Next(size_t slot) const { return (slot + 1) & m_Mask; }
    bool HasSecondGranule(const char* data) const { return GranuleOf(data) != GranuleOf(data + m_ChunkBytes - 1); }

    void Insert(const Slot& slot);
    size_t SlotOf(const char* data, int second) const;
    void Erase(size_t slot);
    bool Resize(int slots);

    size_t m_ChunkBytes;
    int m_GranuleShift;
    int m_HashShift = 63;
    size_t m_Mask = 0;
    XArray<Slot> m_Slots;
    XArray<uint64_t> m_FreeBits;
    int m_FirstFreeWord = 0;  ///< words before this one are 0
};

}  // namespace zm
