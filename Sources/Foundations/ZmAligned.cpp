#include "ZmAligned.h"

#include "Platform/Unaligned.h"
#include "XMemory.h"

#include <stdint.h>

namespace {

// The word below a block holds the pointer returned by the heap. Small alignments leave it unaligned.
char* AllocatedPointer(const void* block)
{
    return zm::LoadUnaligned<char*>(static_cast<const char*>(block) - sizeof(char*));
}

}  // namespace

void* ZmNewAligned(int size, int alignment)
{
    const bool powerOfTwo = alignment > 0 && (alignment & (alignment - 1)) == 0;
    const uint64_t bytes = uint64_t(size) + uint64_t(alignment) + sizeof(char*);
    if (size < 0 || !powerOfTwo || bytes > PTRDIFF_MAX) {
        return nullptr;
    }
    char* raw = static_cast<char*>(zm::NewBlock(size_t(bytes)));
    if (raw == nullptr) {
        return nullptr;
    }
    const size_t mask = size_t(alignment) - 1, above = reinterpret_cast<size_t>(raw) + sizeof(raw) + mask;
    char* block = raw + sizeof(raw) + mask - (above & mask);
    memcpy(block - sizeof(raw), &raw, sizeof(raw));
    return block;
}

void ZmDeleteAligned(void* block)
{
    if (block != nullptr) {
        zm::DeleteBlock(AllocatedPointer(block));
    }
}

int ZmIsAllocatedByNewAligned(void* block, int alignment)
{
    if (block == nullptr || alignment <= 0) {
        return 0;
    }
    const uintptr_t raw = reinterpret_cast<uintptr_t>(AllocatedPointer(block));
    return reinterpret_cast<uintptr_t>(block) - sizeof(raw) - raw < uintptr_t(alignment);
}
