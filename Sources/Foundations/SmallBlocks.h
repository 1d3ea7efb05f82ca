#pragma once

#include <stddef.h>
#include <stdint.h>

namespace zm {

/// Blocks of up to 128 bytes, cut from pages of 64 KB, with one free list for each sixteen bytes of size. Pages return
/// to the heap all together only. Not thread-safe. Constant-initialised and never destroyed.
class SmallBlocks {
public:
    static constexpr size_t kLargest = 128;

    /// A block of 1 to kLargest bytes, aligned to 16; null without memory.
    void* Take(size_t size)
    {
        Block*& first = m_Free[ClassOf(size)];
        Block* block = first;
        if (block == nullptr) {
            return CutFromPage(BytesOf(size));
        }
        first = block->next;
        __builtin_prefetch(first);  // the next Take() reads it, and long-unused blocks lie anywhere in memory
        m_BytesInUse += BytesOf(size);
        return block;
    }

    /// `size` must be the size passed to Take().
    void GiveBack(void* memory, size_t size)
    {
        Block* block = static_cast<Block*>(memory);
        Block*& first = m_Free[ClassOf(size)];
        block->next = first;
        first = block;
        m_BytesInUse -= BytesOf(size);
    }

    /// Frees all pages if no block is in use.
    void FreePages();

    size_t PageCount() const { return m_PageCount; }
    size_t BytesInPages() const { return m_PageCount * kPageBytes; }
    size_t BytesInUse() const { return m_BytesInUse; }

private:
    struct Block {
        Block* next;
    };

    static constexpr size_t kGrain = 16, kPageBytes = 65536;

    static constexpr size_t ClassOf(size_t size) { return (size - 1) / kGrain; }
    static constexpr size_t BytesOf(size_t size) { return (size + kGrain - 1) / kGrain * kGrain; }

    void* CutFromPage(size_t bytes);
    bool AddPage();

    Block* m_Free[kLargest / kGrain] = {};
    Block* m_Pages = nullptr;
    char* m_Rest = nullptr;  ///< from here to m_RestEnd the newest page has never been used
    char* m_RestEnd = nullptr;
    size_t m_PageCount = 0;
    size_t m_BytesInUse = 0;
};

}  // namespace zm
