#pragma once

#include <set>
#include <stdint.h>
#include <vector>

namespace zm {

/// The scratch blocks of the allocator. Free blocks are ordered by size; among equals, the one given back last comes
/// first. Entries move between the free and the used blocks as nodes, so handing out and giving back blocks do not
/// use the heap.
class ScratchBlocks {
public:
    static constexpr int kAlignment = 16;

    ScratchBlocks() = default;
    ~ScratchBlocks();
    ScratchBlocks(const ScratchBlocks&) = delete;
    ScratchBlocks& operator=(const ScratchBlocks&) = delete;

    /// A block of at least `size` bytes; null for size 0 or if out of memory.
    void* Take(uint32_t size);

    /// Gives a block back. Returns false, without effect, if the block was not in use.
    bool GiveBack(void* block);

    void FreeUnused();
    uint64_t TotalSize() const { return m_TotalSize; }
    int Count() const { return int(m_Free.size() + m_Used.size()); }

private:
    struct Entry {
        uint32_t size;
        uint64_t turn;  ///< when it was given back
        void* block;
    };
    struct Order {
        bool operator()(const Entry& a, const Entry& b) const
        {
            return a.size != b.size ? a.size < b.size : a.turn > b.turn;
        }
    };
    typedef std::set<Entry, Order> Entries;
    typedef Entries::node_type Node;

    Node NewNode(uint32_t size);
    Node EnlargeLargest(uint32_t size);
    void Free(void* block, uint32_t size);

    Entries m_Free;
    std::vector<Node> m_Used;
    uint64_t m_Turn = 0;
    uint64_t m_TotalSize = 0;
};

}  // namespace zm
