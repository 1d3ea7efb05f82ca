#include "Foundations/ScratchBlocks.h"

#include "ZmAligned.h"

#include <limits.h>
#include <new>
#include <stddef.h>
#include <utility>

namespace zm {

ScratchBlocks::~ScratchBlocks()
{
    FreeUnused();
    for (const Node& node : m_Used) {
        ZmDeleteAligned(node.value().block);
    }
}

void* ScratchBlocks::Take(uint32_t size)
{
    if (size == 0 || size > INT_MAX) {
        return nullptr;
    }
    Node node;
    const Entries::iterator fit = m_Free.lower_bound({size, UINT64_MAX, nullptr});
    if (fit != m_Free.end()) {
        node = m_Free.extract(fit);
    } else if (!m_Free.empty()) {
        node = EnlargeLargest(size);
    } else {
        node = NewNode(size);
    }
    if (node.empty()) {
        return nullptr;
    }
    void* block = node.value().block;
    m_Used.push_back(std::move(node));
    return block;
}

ScratchBlocks::Node ScratchBlocks::NewNode(uint32_t size)
{
    void* block = ZmNewAligned(int(size), kAlignment);
    if (block == nullptr) {
        return Node();
    }
    try {
        // Reserves for all blocks, so that reusing a block never allocates.
        const size_t count = size_t(Count()) + 1;
        m_Used.reserve(count <= m_Used.capacity() ? 0 : 2 * count);
        Entries made;
        made.insert({size, 0, block});
        m_TotalSize += size;
        return made.extract(made.begin());
    } catch (const std::bad_alloc&) {
        ZmDeleteAligned(block);
        return Node();
    }
}

// Frees the old block first, so that the two are never allocated at the same time.
ScratchBlocks::Node ScratchBlocks::EnlargeLargest(uint32_t size)
{
    Node node = m_Free.extract(std::prev(m_Free.end()));
    Free(node.value().block, node.value().size);
    node.value().size = size;
    node.value().block = ZmNewAligned(int(size), kAlignment);
    if (node.value().block == nullptr) {
        return Node();
    }
    m_TotalSize += size;
    return node;
}

bool ScratchBlocks::GiveBack(void* block)
{
    // Backwards: the block taken last is usually given back first.
    for (auto used = m_Used.end(); used != m_Used.begin();) {
        --used;
        if (used->value().block == block) {
            used->value().turn = ++m_Turn;
            m_Free.insert(std::move(*used));
            m_Used.erase(used);
            return true;
        }
    }
    return false;
}

void ScratchBlocks::FreeUnused()
{
    for (const Entry& entry : m_Free) {
        Free(entry.block, entry.size);
    }
    m_Free.clear();
}

void ScratchBlocks::Free(void* block, uint32_t size)
{
    ZmDeleteAligned(block);
    m_TotalSize -= size;
}

}  // namespace zm
