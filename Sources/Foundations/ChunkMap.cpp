#include "Foundations/ChunkMap.h"

namespace zm {

ChunkMap::ChunkMap(size_t chunkBytes) : m_ChunkBytes(chunkBytes), m_GranuleShift(0)
{
    while (m_GranuleShift < int(8 * sizeof(uintptr_t)) - 1 && (chunkBytes - 1) >> m_GranuleShift != 0) {
        ++m_GranuleShift;
    }
}

// At most half of the slots are taken, so that what is absent is soon known to be.
bool ChunkMap::Reserve(int chunks)
{
    constexpr int kSlotsPerChunk = 4, kMaxChunks = 1 << 28;
    const int words = chunks / 64 + 1;
    if (chunks > kMaxChunks || !m_FreeBits.Reserve(words)) {
        return false;
    }
    while (m_FreeBits.Size() < words) {
        m_FreeBits.PushBack(0);
    }
    return m_Slots.Size() >= kSlotsPerChunk * chunks || Resize(2 * kSlotsPerChunk * chunks);
}

bool ChunkMap::Resize(int slots)
{
    int size = 16, bits = 4;
    while (size < slots) {
        size *= 2;
        ++bits;
    }
    XArray<Slot> old;
    if (!old.Reserve(size)) {
        return false;
    }
    old.Swap(m_Slots);
    for (int i = 0; i < size; ++i) {
        m_Slots.PushBack({nullptr, 0, 0});
    }
    m_Mask = size_t(size) - 1;
    m_HashShift = 64 - bits;
    for (const Slot* slot = old.Begin(); slot != old.End(); ++slot) {
        if (slot->data != nullptr) {
            Insert(*slot);
        }
    }
    return true;
}

void ChunkMap::Insert(const Slot& slot)
{
    size_t i = HomeOf(slot);
    while (m_Slots.Begin()[i].data != nullptr) {
        i = Next(i);
    }
    m_Slots.Begin()[i] = slot;
}

void ChunkMap::Add(const char* data, int chunk)
{
    Insert({data, chunk, 0});
    if (HasSecondGranule(data)) {
        Insert({data, chunk, 1});
    }
}

size_t ChunkMap::SlotOf(const char* data, int second) const
{
    const Slot* slots = m_Slots.Begin();
    size_t i = HomeOf({data, 0, second});
    while (slots[i].data != data || slots[i].second != second) {
        i = Next(i);
    }
    return i;
}

// Linear probing without tombstones: later slots of the run move into the gap where their home allows it
// (Knuth, The Art of Computer Programming 3, 6.4, algorithm R).
void ChunkMap::Erase(size_t gap)
{
    Slot* slots = m_Slots.Begin();
    for (size_t i = Next(gap); slots[i].data != nullptr; i = Next(i)) {
        const size_t fromHome = (i - HomeOf(slots[i])) & m_Mask, fromGap = (i - gap) & m_Mask;
        if (fromHome >= fromGap) {
            slots[gap] = slots[i];
            gap = i;
        }
    }
    slots[gap].data = nullptr;
}

void ChunkMap::Remove(const char* data)
{
    Erase(SlotOf(data, 0));
    if (HasSecondGranule(data)) {
        Erase(SlotOf(data, 1));
    }
}

void ChunkMap::Renumber(const char* data, int chunk)
{
    m_Slots.Begin()[SlotOf(data, 0)].chunk = chunk;
    if (HasSecondGranule(data)) {
        m_Slots.Begin()[SlotOf(data, 1)].chunk = chunk;
    }
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
