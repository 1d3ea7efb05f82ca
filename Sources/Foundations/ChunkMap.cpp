#include "Foundations/ChunkMap.h"

#include <utility>

namespace zm {

ChunkMap::ChunkMap(size_t chunkBytes) : m_ChunkBytes(chunkBytes), m_GranuleShift(0)
{
    while (m_GranuleShift < int(8 * sizeof(uintptr_t)) - 1 && (chunkBytes - 1) >> m_GranuleShift != 0) {
        ++m_GranuleShift;
    }
}

// Called once per new chunk. At most half of the slots are in use, so lookups of absent addresses end early.
bool ChunkMap::Reserve(int chunks)
{
    constexpr int kSlotsPerChunk = 4, kMaxChunks = 1 << 28;
    if (chunks > kMaxChunks || (m_Data.Capacity() < chunks && !m_Data.Reserve(2 * chunks))) {
        return false;
    }
    if (m_FreeBits.Size() <= chunks / 64 && !m_FreeBits.PushBack(0)) {
        return false;
    }
    return m_Slots.Size() >= kSlotsPerChunk * chunks || Resize(kSlotsPerChunk * chunks);
}

bool ChunkMap::Resize(int slots)
{
    int size = 16, bits = 4;
    while (size < slots) {
        size *= 2;
        ++bits;
    }
    XArray<int> fresh;
    if (!fresh.Reserve(size)) {
        return false;
    }
    for (int i = 0; i < size; ++i) {
        fresh.PushBack(kEmpty);
    }
    m_Slots.Swap(fresh);
    m_Mask = size_t(size) - 1;
    m_HashShift = 64 - bits;
    for (int chunk = 0; chunk < m_Data.Size(); ++chunk) {
        InsertChunk(chunk);
    }
    return true;
}

void ChunkMap::Insert(int entry)
{
    size_t i = HomeOf(GranuleOf(entry));
    while (m_Slots.Begin()[i] != kEmpty) {
        i = Next(i);
    }
    m_Slots.Begin()[i] = entry;
}

void ChunkMap::InsertChunk(int chunk)
{
    Insert(2 * chunk);
    if (HasSecondGranule(chunk)) {
        Insert(2 * chunk + 1);
    }
}

void ChunkMap::Add(const char* data)
{
    m_Data.PushBack(reinterpret_cast<uintptr_t>(data));
    InsertChunk(m_Data.Size() - 1);
}

size_t ChunkMap::SlotOf(int entry) const
{
    size_t i = HomeOf(GranuleOf(entry));
    while (m_Slots.Begin()[i] != entry) {
        i = Next(i);
    }
    return i;
}

// Linear probing without tombstones: later entries of the run move into the gap where their home slot allows it
// (Knuth, The Art of Computer Programming 3, 6.4, algorithm R).
void ChunkMap::Erase(int entry)
{
    int* slots = m_Slots.Begin();
    size_t gap = SlotOf(entry);
    for (size_t i = Next(gap); slots[i] != kEmpty; i = Next(i)) {
        const size_t fromHome = (i - HomeOf(GranuleOf(slots[i]))) & m_Mask, fromGap = (i - gap) & m_Mask;
        if (fromHome >= fromGap) {
            slots[gap] = slots[i];
            gap = i;
        }
    }
    slots[gap] = kEmpty;
}

void ChunkMap::RemoveLast()
{
    const int last = m_Data.Size() - 1;
    SetFree(last, false);
    Erase(2 * last);
    if (HasSecondGranule(last)) {
        Erase(2 * last + 1);
    }
    m_Data.PopBack();
}

void ChunkMap::Swap(int a, int b)
{
    for (const int part : {0, 1}) {
        const bool aHas = part == 0 || HasSecondGranule(a), bHas = part == 0 || HasSecondGranule(b);
        const size_t slotOfA = aHas ? SlotOf(2 * a + part) : 0, slotOfB = bHas ? SlotOf(2 * b + part) : 0;
        if (aHas) {
            m_Slots.Begin()[slotOfA] = 2 * b + part;
        }
        if (bHas) {
            m_Slots.Begin()[slotOfB] = 2 * a + part;
        }
    }
    std::swap(m_Data[a], m_Data[b]);
}

int ChunkMap::FirstFree()
{
    for (; m_FirstFreeWord < m_FreeBits.Size(); ++m_FirstFreeWord) {
        const uint64_t word = m_FreeBits[m_FirstFreeWord];
        if (word != 0) {
            return 64 * m_FirstFreeWord + __builtin_ctzll(word);
        }
    }
    return -1;
}

}  // namespace zm
