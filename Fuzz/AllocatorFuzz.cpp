// All allocators at once beside a list of what is in use: blocks must be aligned, must not overlap and must keep their
// bytes until they are released.

#include "Input.h"
#include "XFixedSizeAllocator.h"
#include "ZmAligned.h"
#include "ZmAllocator.h"

#include <limits.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr int kFixedSize = 20, kChunkSize = 100;

ZmAllocator& Shared()
{
    return ZmAllocator::Instance();
}

struct State {
    XFixedSizeAllocator fixed{kFixedSize, kChunkSize};
    int freeScratch = 0;  ///< blocks to be reused
};

const struct Kind {
    void* (*allocate)(State& state, unsigned size);
    void (*release)(State& state, unsigned size, void* block);
    unsigned alignment, smallest, largest;  ///< sizes that succeed
} kKinds[] = {
    {[](State& state, unsigned size) {
         state.freeScratch -= size != 0 && state.freeScratch != 0;
         return Shared().AllocateScratch(size);
     },
     [](State& state, unsigned, void* block) {
         ++state.freeScratch;
         Shared().ReleaseScratch(block);
     },
     16, 1, UINT_MAX},
    {[](State&, unsigned size) { return Shared().AllocatePool(size); },
     [](State&, unsigned size, void* block) { Shared().ReleasePool(size, block); }, 4, 1, 1020},
    {[](State& state, unsigned) { return state.fixed.Allocate(); },
     [](State& state, unsigned, void* block) { state.fixed.Free(block); }, 4, 0, kFixedSize},
    {[](State&, unsigned size) { return ZmNewAligned(int(size), 512); },
     [](State&, unsigned, void* block) { ZmDeleteAligned(block); }, 512, 0, UINT_MAX},
    {[](State&, unsigned size) { return Shared().AllocateMemory(size); },
     [](State&, unsigned, void* block) { Shared().ReleaseMemory(block); }, 8, 0, UINT_MAX},
    {[](State&, unsigned size) -> void* { return Shared().AllocateString(size); },
     [](State&, unsigned, void* block) { Shared().ReleaseString(static_cast<char*>(block)); }, 8, 0, UINT_MAX},
};

struct Block {
    uint8_t* bytes;
    unsigned size;
    const Kind* kind;
    uint8_t pattern;
};

void Allocate(State& state, std::vector<Block>& used, const Kind& kind, unsigned size, uint8_t pattern)
{
    if (&kind == &kKinds[2]) {
        size = kFixedSize;
    }
    void* const bytes = kind.allocate(state, size);
    Demand((bytes != nullptr) == (size >= kind.smallest && size <= kind.largest));
    if (bytes != nullptr) {
        const Block block = {static_cast<uint8_t*>(bytes), size, &kind, pattern};
        Demand(reinterpret_cast<uintptr_t>(bytes) % kind.alignment == 0);
        Demand(std::none_of(used.begin(), used.end(), [&](const Block& b) {
            return block.bytes < b.bytes + b.size && b.bytes < block.bytes + block.size;
        }));
        memset(bytes, pattern, size);
        used.push_back(block);
    }
}

void Release(State& state, std::vector<Block>& used, size_t place)
{
    const Block block = std::exchange(used[place], used.back());
    used.pop_back();
    Demand(std::count(block.bytes, block.bytes + block.size, block.pattern) == ptrdiff_t(block.size));
    block.kind->release(state, block.size, block.bytes);
}

void CompareCounts(const State& state, const std::vector<Block>& used)
{
    constexpr int kChunkBlocks = kChunkSize / kFixedSize;
    int scratch = 0, fixed = 0;
    for (const Block& block : used) {
        scratch += block.kind == &kKinds[0];
        fixed += block.kind == &kKinds[2];
    }
    const int blocks = state.fixed.GetChunkCount() * kChunkBlocks;
    Demand(Shared().GetAllocatedScratchCount() == scratch + state.freeScratch);
    Demand((Shared().GetAllocatedScratchMemory() == 0) == (scratch + state.freeScratch == 0));
    Demand(state.fixed.GetChunksOccupation() == (blocks != 0 ? fixed * 100 / blocks : 0));
    Demand(fixed != 0 || blocks <= kChunkBlocks);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    State state;
    std::vector<Block> used;
    for (int step = 0; step < 60 && !input.IsEmpty(); ++step) {
        const int choice = input.UpTo(11);
        if (choice < 6) {
            Allocate(state, used, kKinds[choice], unsigned(input.UpTo(255) * (choice < 2 ? 5 : 1)), uint8_t(step));
        } else if (choice < 11 && !used.empty()) {
            Release(state, used, size_t(input.Byte()) % used.size());
        } else {
            Shared().ReleaseUnusedScratch();
            state.freeScratch = 0;
        }
        CompareCounts(state, used);
    }
    while (!used.empty()) {
        Release(state, used, used.size() - 1);
    }
    Shared().ReleaseUnusedScratch();
    state.freeScratch = 0;
    CompareCounts(state, used);
    return 0;
}
