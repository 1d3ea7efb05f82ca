#include "XFixedSizeAllocator.h"

#include "Support/Random.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The allocator's rules implemented literally: chunks are searched one by one, and every index is written. Only the
/// address of a new chunk is taken from the first block that the real allocator returns from it.
class ChunkModel {
public:
    ChunkModel(int blockSize, int pageSize)
        : m_BlockSize(blockSize), m_Blocks(pageSize / blockSize != 0 ? pageSize / blockSize : 8 * blockSize)
    {
    }

    /// Whether the rules return this block.
    bool Allocate(char* real)
    {
        if (m_Allocation == kNone || m_Chunks[m_Allocation].free == 0) {
            m_Allocation = FirstWithFreeBlock();
        }
        if (m_Allocation == kNone) {
            Chunk chunk{real, 0, m_Blocks, std::vector<int>(size_t(m_Blocks))};
            for (int i = 0; i < m_Blocks; ++i) {
                chunk.next[size_t(i)] = i + 1;
            }
            m_Chunks.push_back(chunk);
            m_Allocation = m_Release = m_Chunks.size() - 1;
        }
        Chunk& chunk = m_Chunks[m_Allocation];
        const int block = chunk.firstFree;
        chunk.firstFree = chunk.next[size_t(block)];
        --chunk.free;
        return real == chunk.data + block * m_BlockSize;
    }

    void Free(char* block)
    {
        m_Release = OwnerOf(block);
        Chunk& chunk = m_Chunks[m_Release];
        const int index = int(block - chunk.data) / m_BlockSize;
        chunk.next[size_t(index)] = chunk.firstFree;
        chunk.firstFree = index;
        if (++chunk.free == m_Blocks) {
            KeepOneFreeChunk();
        }
    }

    void Clear()
    {
        m_Chunks.clear();
        m_Allocation = m_Release = kNone;
    }

    int TotalSize() const { return int(m_Chunks.size()) * m_Blocks * m_BlockSize; }
    int Occupation() const
    {
        int used = 0;
        for (const Chunk& chunk : m_Chunks) {
            used += m_Blocks - chunk.free;
        }
        return m_Chunks.empty() ? 0 : used * 100 / (int(m_Chunks.size()) * m_Blocks);
    }

private:
    static constexpr size_t kNone = size_t(-1);

    struct Chunk {
        char* data;
        int firstFree;
        int free;
        std::vector<int> next;
    };

    size_t FirstWithFreeBlock() const
    {
        for (size_t i = 0; i < m_Chunks.size(); ++i) {
            if (m_Chunks[i].free != 0) {
                return i;
            }
        }
        return kNone;
    }

    bool Owns(size_t chunk, const char* block) const
    {
        return chunk < m_Chunks.size() && block >= m_Chunks[chunk].data &&
               block < m_Chunks[chunk].data + m_Blocks * m_BlockSize;
    }

    size_t OwnerOf(const char* block) const
    {
        for (size_t step = 0; step < m_Chunks.size(); ++step) {
            for (const size_t chunk : {m_Release - step, m_Release + step}) {
                if (Owns(chunk, block)) {
                    return chunk;
                }
            }
        }
        abort();  // all blocks in use come from Allocate()
    }

    void KeepOneFreeChunk()
    {
        const size_t last = m_Chunks.size() - 1;
        const bool lastIsFree = m_Chunks[last].free == m_Blocks;
        if (m_Release != last && !lastIsFree) {
            std::swap(m_Chunks[m_Release], m_Chunks[last]);
        } else if (m_Release != last) {
            m_Chunks.pop_back();
            std::swap(m_Chunks[m_Release], m_Chunks.back());
        } else if (last != 0 && m_Chunks[last - 1].free == m_Blocks) {
            m_Chunks.pop_back();
            m_Release = last - 1;
        } else {
            return;
        }
        m_Allocation = 0;
    }

    int m_BlockSize;
    int m_Blocks;
    std::vector<Chunk> m_Chunks;
    size_t m_Allocation = kNone;
    size_t m_Release = kNone;
};

/// The allocator, its model, and the blocks in use; each block is filled with its own byte.
class Compared {
public:
    Compared(int blockSize, int pageSize) : m_Size(blockSize), m_Real(blockSize, pageSize), m_Model(blockSize, pageSize)
    {
    }

    void Allocate()
    {
        char* block = static_cast<char*>(m_Real.Allocate());
        ASSERT_NE(block, nullptr);
        ASSERT_TRUE(m_Model.Allocate(block)) << "not the block that the rules return";
        memset(block, int(++m_Mark & 0xFF), size_t(m_Size));
        m_Used.push_back({block, std::string(size_t(m_Size), char(m_Mark))});
        CompareFigures();
    }

    void Free(size_t which)
    {
        const auto [block, contents] = m_Used[which];
        ASSERT_EQ(std::string(block, size_t(m_Size)), contents) << "a block was changed";
        m_Used[which] = m_Used.back();
        m_Used.pop_back();
        m_Model.Free(block);
        m_Real.Free(block);
        CompareFigures();
    }

    /// Calls that must have no effect.
    void Misuse(Random& random)
    {
        char foreign[8];
        m_Real.Free(nullptr);
        m_Real.Free(foreign);
        if (!m_Used.empty()) {
            char* block = m_Used[size_t(random.Int(0, int(m_Used.size()) - 1))].first;
            m_Real.Free(block + random.Int(1, m_Size - 1));
        }
        CompareFigures();
    }

    void Clear()
    {
        m_Used.clear();
        m_Model.Clear();
        m_Real.Clear();
        CompareFigures();
    }

    int UsedCount() const { return int(m_Used.size()); }

private:
    void CompareFigures()
    {
        ASSERT_EQ(m_Real.GetChunksTotalSize(), m_Model.TotalSize());
        ASSERT_EQ(m_Real.GetChunksOccupation(), m_Model.Occupation());
    }

    int m_Size;
    XFixedSizeAllocator m_Real;
    ChunkModel m_Model;
    std::vector<std::pair<char*, std::string>> m_Used;
    unsigned m_Mark = 0;
};

// Random blocks, the latest, or the earliest: each empties the chunks in a different order.
size_t Victim(Random& random, int phase, int count)
{
    return phase % 3 == 0 ? size_t(random.Int(0, count - 1)) : phase % 3 == 1 ? size_t(count - 1) : 0;
}

const struct {
    int blockSize;
    int pageSize;
    int steps;  ///< that mostly allocate, then as many that mostly free, and so on
} kUses[] = {{4, 16, 400},    {8, 64, 400},      {8, 4096, 400}, {12, 100, 400}, {24, 24, 400},
             {40, 4096, 400}, {1020, 4096, 400}, {16, 4, 400},   {7, 50, 400},   {16, 64, 4000}};

TEST(XFixedSizeAllocatorTest, RandomUseAgreesWithTheRulesBlockByBlock)
{
    for (const auto& use : kUses) {
        SCOPED_TRACE(std::to_string(use.blockSize) + " of " + std::to_string(use.pageSize));
        Random random(uint64_t(use.blockSize) * 9 + uint64_t(use.pageSize));
        Compared compared(use.blockSize, use.pageSize);
        for (int i = 0; i < 12000 && !testing::Test::HasFailure(); ++i) {
            const int phase = i / use.steps, chanceToFree = phase % 2 == 0 ? 30 : 75;
            if (random.Int(0, 99) < chanceToFree && compared.UsedCount() != 0) {
                compared.Free(Victim(random, phase, compared.UsedCount()));
            } else if (random.Int(0, 49) == 0) {
                compared.Misuse(random);
            } else if (random.Int(0, 2999) == 0) {
                compared.Clear();
            } else {
                compared.Allocate();
            }
        }
    }
}

TEST(XFixedSizeAllocatorTest, ChunksHoldAsManyBlocksAsAPage)
{
    const struct {
        int blockSize;
        int pageSize;
        int chunkBytes;
    } rows[] = {{8, 4096, 4096},         {1020, 4096, 4080}, {4096, 4096, 4096}, {50, 40, 8 * 50 * 50},
                {0, 4096, 4096 / 4 * 4}, {-8, 30, 28},       {8, -1, 8 * 8 * 8}};
    for (const auto& row : rows) {
        XFixedSizeAllocator allocator(row.blockSize, row.pageSize);
        EXPECT_EQ(allocator.GetChunksTotalSize(), 0);
        EXPECT_EQ(allocator.GetChunksOccupation(), 0);
        char* block = static_cast<char*>(allocator.Allocate());
        ASSERT_NE(block, nullptr);
        const int occupation = allocator.GetChunksOccupation();
        allocator.Free(block + std::max(row.blockSize, 4));
        EXPECT_EQ(allocator.GetChunksOccupation(), occupation) << "the next block was never handed out";
        EXPECT_EQ(allocator.GetChunksTotalSize(), row.chunkBytes) << row.blockSize << " of " << row.pageSize;
    }
}

TEST(XFixedSizeAllocatorTest, OneFreeChunkIsKept)
{
    XFixedSizeAllocator allocator(8, 4096);
    std::vector<void*> blocks;
    for (int i = 0; i < 513; ++i) {
        blocks.push_back(allocator.Allocate());
    }
    EXPECT_EQ(allocator.GetChunkCount(), 2);
    EXPECT_EQ(allocator.GetChunksOccupation(), 50);
    for (void* block : blocks) {
        allocator.Free(block);
    }
    EXPECT_EQ(allocator.GetChunksTotalSize(), 4096);
    EXPECT_EQ(allocator.GetChunksOccupation(), 0);
    allocator.Free(blocks.front());
    EXPECT_EQ(allocator.GetChunksOccupation(), 0) << "its chunk is gone";
}

}  // namespace
