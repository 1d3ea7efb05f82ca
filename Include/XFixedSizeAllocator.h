#pragma once

#include "XArray.h"

#include <stdint.h>

namespace zm {
class ChunkMap;
}

/// Blocks of one size, cut from chunks of some `pageSize` bytes. Handing out and taking back cost the same with
/// ten chunks as with thousands. A chunk that is wholly free goes back to the heap, except one, the last.
///
/// Blocks lie one behind another: they are aligned as their size allows, at most as the allocation operators align.
/// One allocator belongs to one thread at a time.
class XFixedSizeAllocator {
public:
    /// A chunk has pageSize / blockSize blocks, or 8 * blockSize where that would be none. Blocks have at least
    /// 4 bytes. Allocates nothing yet.
    ZM_API XFixedSizeAllocator(int blockSize, int pageSize);

    /// Frees all chunks, with the blocks that are still in use.
    ZM_API ~XFixedSizeAllocator();

    XFixedSizeAllocator(const XFixedSizeAllocator&) = delete;
    XFixedSizeAllocator& operator=(const XFixedSizeAllocator&) = delete;

    /// A block with undefined contents: the one freed last in the current chunk, else one of the first chunk that
    /// has a free block. Null without memory.
    ZM_API void* Allocate();

    /// Takes back a block. Null, and pointers that are not blocks of a chunk or were never handed out, are ignored; a
    /// block must not be freed twice.
    ZM_API void Free(void* block);

    /// Frees all chunks, with the blocks that are still in use.
    ZM_API void Clear();

    /// Bytes of a block; chunks there are now.
    int GetBlockSize() const { return m_BlockSize; }
    int GetChunkCount() const { return m_Chunks.Size(); }

    /// Bytes in all chunks; at most INT_MAX.
    ZM_API int GetChunksTotalSize() const;

    /// How many of a hundred blocks are in use, rounded down; 0 without chunks.
    ZM_API int GetChunksOccupation() const;

private:
    struct Chunk {
        char* Data;
        uint32_t FirstFree;  ///< index of a block; a free block begins with the index of the next
        uint32_t FreeCount;
        uint32_t Count;
        uint32_t Fresh;  ///< blocks from this index on were never used, and follow one another
    };

    uint64_t ChunkBytes() const { return uint64_t(m_BlockSize) * uint64_t(m_BlocksPerChunk); }
    bool IsWhollyFree(int chunk) const { return m_Chunks[chunk].FreeCount == m_Chunks[chunk].Count; }
    bool AddChunk();
    void* Take(int index);
    bool GiveBack(int index, char* block);
    uint32_t PositionOf(size_t offset) const;
    void SettleFreeChunk(int chunk);
    void RemoveLastChunk();
    void SwapChunks(int a, int b);

    int m_BlockSize;
    int m_BlocksPerChunk;
    XArray<Chunk> m_Chunks;
    int m_AllocationChunk;  ///< where blocks are taken from; -1 for none
    uint64_t m_Reciprocal;  ///< of the size of a block
    zm::ChunkMap* m_Map;    ///< finds chunks without a search
};
