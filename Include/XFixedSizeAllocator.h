#pragma once

#include "XArray.h"

#include <stdint.h>

namespace zm {
class ChunkMap;
}

/// Allocates blocks of one size from chunks of about `pageSize` bytes. The cost of allocating and freeing does not
/// depend on the number of chunks. A chunk without used blocks returns to the heap, except for one.
///
/// Blocks are adjacent, so they are aligned as far as their size allows, at most like the allocation operators.
/// Not thread-safe: only one thread at a time may use an allocator.
class XFixedSizeAllocator {
public:
    /// Sets the sizes; allocates nothing yet. A chunk has pageSize / blockSize blocks, or 8 * blockSize if that would
    /// be 0. Blocks have at least 4 bytes.
    ZM_API XFixedSizeAllocator(int blockSize, int pageSize);

    /// Frees all chunks, including blocks that are still in use.
    ZM_API ~XFixedSizeAllocator();

    XFixedSizeAllocator(const XFixedSizeAllocator&) = delete;
    XFixedSizeAllocator& operator=(const XFixedSizeAllocator&) = delete;

    /// Returns a block with undefined contents: the one freed last in the current chunk, or else one from the first
    /// chunk that has a free block. Null if memory runs out.
    ZM_API void* Allocate();

    /// Frees a block. Null and pointers that are not allocated blocks of a chunk are ignored, but a block must not be
    /// freed twice.
    ZM_API void Free(void* block);

    /// Frees all chunks, including blocks that are still in use.
    ZM_API void Clear();

    /// Size of a block in bytes; current number of chunks.
    int GetBlockSize() const { return m_BlockSize; }
    int GetChunkCount() const { return m_Chunks.Size(); }

    /// Size of all chunks in bytes, at most INT_MAX.
    ZM_API int GetChunksTotalSize() const;

    /// Percentage of blocks in use, rounded down; 0 without chunks.
    ZM_API int GetChunksOccupation() const;

private:
    struct Chunk {
        char* Data;
        uint32_t FirstFree;  ///< index of a block; a free block starts with the index of the next one
        uint32_t FreeCount;
        uint32_t Count;
        uint32_t Fresh;  ///< all blocks from this index on have never been used
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
    int m_AllocationChunk;  ///< chunk that blocks are taken from; -1 for none
    uint64_t m_Reciprocal;  ///< reciprocal of the block size
    zm::ChunkMap* m_Map;    ///< finds the chunk of a block without a search
};
