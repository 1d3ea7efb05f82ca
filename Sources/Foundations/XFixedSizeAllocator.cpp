#include "XFixedSizeAllocator.h"

#include "Foundations/ChunkMap.h"
#include "Platform/Unaligned.h"

#include <algorithm>

namespace {

constexpr int kNone = -1;

void StoreIndex(void* block, uint32_t index)
{
    memcpy(block, &index, sizeof(index));
}

int BlocksPerChunk(int blockSize, int pageSize)
{
    const int blocks = pageSize / blockSize;
    return blocks > 0 ? blocks : int(std::min<int64_t>(int64_t(8) * blockSize, INT_MAX));
}

// ceil(2^32 / size): offset * reciprocal >> 32 is offset / size as long as offset * size < 2^32.
uint64_t Reciprocal(int blockSize)
{
    return ((uint64_t(1) << 32) + uint64_t(blockSize) - 1) / uint64_t(blockSize);
}

}  // namespace

XFixedSizeAllocator::XFixedSizeAllocator(int blockSize, int pageSize)
    : m_BlockSize(std::max(blockSize, int(sizeof(uint32_t)))),
      m_BlocksPerChunk(BlocksPerChunk(m_BlockSize, std::max(pageSize, 0))), m_AllocationChunk(kNone),
      m_Reciprocal(Reciprocal(m_BlockSize)), m_Map(new (std::nothrow) zm::ChunkMap(size_t(ChunkBytes())))
{
}

XFixedSizeAllocator::~XFixedSizeAllocator()
{
    Clear();
    delete m_Map;
}

void* XFixedSizeAllocator::Allocate()
{
    if (m_AllocationChunk == kNone || m_Chunks[m_AllocationChunk].FreeCount == 0) {
        const int chunk = m_Map != nullptr ? m_Map->FirstFree() : kNone;
        if (chunk != kNone) {
            m_AllocationChunk = chunk;
        } else if (!AddChunk()) {
            return nullptr;
        }
    }
    return Take(m_AllocationChunk);
}

bool XFixedSizeAllocator::AddChunk()
{
    const int chunk = m_Chunks.Size();
    const uint64_t bytes = ChunkBytes();
    if (m_Map == nullptr || bytes > PTRDIFF_MAX || !m_Map->Reserve(chunk + 1)) {
        return false;
    }
    char* data = static_cast<char*>(zm::NewBlock(size_t(bytes)));
    const uint32_t count = uint32_t(m_BlocksPerChunk);
    if (data == nullptr || !m_Chunks.PushBack({data, 0, count, count, 0})) {
        zm::DeleteBlock(data);
        return false;
    }
    m_Map->Add(data);
    m_Map->SetFree(chunk, true);
    m_AllocationChunk = chunk;
    return true;
}

// A chunk's free list ends with the blocks that have never been used. Their links are written only when they are handed
// out, so creating a chunk touches none of them.
void* XFixedSizeAllocator::Take(int index)
{
    Chunk& chunk = m_Chunks[index];
    char* block = chunk.Data + size_t(chunk.FirstFree) * size_t(m_BlockSize);
    if (chunk.FirstFree == chunk.Fresh) {
        chunk.FirstFree = ++chunk.Fresh;
    } else {
        chunk.FirstFree = zm::LoadUnaligned<uint32_t>(block);
    }
    if (--chunk.FreeCount == 0) {
        m_Map->SetFree(index, false);
    }
    return block;
}

void XFixedSizeAllocator::Free(void* block)
{
    const int chunk = m_Map != nullptr ? m_Map->Find(block) : kNone;
    if (chunk != kNone && GiveBack(chunk, static_cast<char*>(block)) && IsWhollyFree(chunk)) {
        SettleFreeChunk(chunk);
    }
}

// Returns false for a pointer into the middle of a block, or to a block that cannot be in use.
bool XFixedSizeAllocator::GiveBack(int index, char* block)
{
    Chunk& chunk = m_Chunks[index];
    const size_t offset = size_t(block - chunk.Data);
    const uint32_t position = PositionOf(offset);
    if (position * size_t(m_BlockSize) != offset || position >= chunk.Fresh || chunk.FreeCount == chunk.Count) {
        return false;
    }
    StoreIndex(block, chunk.FirstFree);
    chunk.FirstFree = position;
    if (++chunk.FreeCount == 1) {
        m_Map->SetFree(index, true);
    }
    return true;
}

uint32_t XFixedSizeAllocator::PositionOf(size_t offset) const
{
    constexpr size_t kReciprocalIsExact = 65536;  // exact for offsets below this, and so for block sizes
    return offset < kReciprocalIsExact ? uint32_t(offset * m_Reciprocal >> 32) : uint32_t(offset / size_t(m_BlockSize));
}

// Keeps at most one wholly free chunk, at the end. The order of the chunks decides which blocks are handed out next, so
// the order of these steps matters.
void XFixedSizeAllocator::SettleFreeChunk(int chunk)
{
    const int last = m_Chunks.Size() - 1;
    if (chunk == last) {
        if (last == 0 || !IsWhollyFree(last - 1)) {
            return;
        }
        RemoveLastChunk();
    } else if (IsWhollyFree(last)) {
        RemoveLastChunk();
        SwapChunks(chunk, last - 1);
    } else {
        SwapChunks(chunk, last);
    }
    m_AllocationChunk = 0;
}

void XFixedSizeAllocator::RemoveLastChunk()
{
    const int last = m_Chunks.Size() - 1;
    char* data = m_Chunks[last].Data;
    m_Map->RemoveLast();
    zm::DeleteBlock(data);
    m_Chunks.PopBack();
}

void XFixedSizeAllocator::SwapChunks(int a, int b)
{
    if (a != b) {
        std::swap(m_Chunks[a], m_Chunks[b]);
        m_Map->Swap(a, b);
        for (const int chunk : {a, b}) {
            m_Map->SetFree(chunk, m_Chunks[chunk].FreeCount != 0);
        }
    }
}

void XFixedSizeAllocator::Clear()
{
    while (!m_Chunks.IsEmpty()) {
        RemoveLastChunk();
    }
    m_Chunks = XArray<Chunk>();
    m_AllocationChunk = kNone;
}

int XFixedSizeAllocator::GetChunksTotalSize() const
{
    return int(std::min(uint64_t(m_Chunks.Size()) * ChunkBytes(), uint64_t(INT_MAX)));
}

int XFixedSizeAllocator::GetChunksOccupation() const
{
    uint64_t blocks = 0, free = 0;
    for (const Chunk* chunk = m_Chunks.Begin(); chunk != m_Chunks.End(); ++chunk) {
        blocks += chunk->Count;
        free += chunk->FreeCount;
    }
    return blocks != 0 ? int((blocks - free) * 100 / blocks) : 0;
}
