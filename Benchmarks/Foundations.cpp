// Tables indexed by name, and blocks of one size.

#include "Families.h"
#include "Inputs.h"
#include "Stores.h"

#include "XFixedSizeAllocator.h"
#include "XHashTable.h"
#include "ZmAllocator.h"

namespace bench {
namespace {

void PrepareNames(Work& w)
{
    w.src = PathNames(w.count);
    w.extra = ShuffledIndices(w.count);
}

void PrepareBlocks(Work& w)
{
    w.extra = ShuffledIndices(w.count);
}

constexpr Task kTasks[] = {
    {"Table/Insert", 4, 0, PrepareNames, {1000, 100000}, {0.45, 0.65}, 0},
    {"Table/Find", 4, 0, PrepareNames, {1000, 100000}, {0.75, 1.10}, 0},
    {"Table/Iterate", 4, 0, PrepareNames, {1000, 100000}, {0.20, 0.70}, 0},
    {"Blocks/Fixed64", 4, 0, PrepareBlocks, {1024, 100000}, {0, 0.60}, 0},
    {"Blocks/Pool64", 4, 0, PrepareBlocks, {1024, 100000}, {0, 1.40}, 0},
    {"Blocks/Scratch", 4, 0, PrepareBlocks, {10, 1000, 10000}, {0, 0, 0}, 0},
};

struct Table {
    typedef XString Key;

    static Key MakeKey(const char* text) { return XString(text); }
    void Insert(const Key& key, int value) { m_Table.Insert(key, value); }
    int Find(const Key& key) const { return *m_Table.LookUp(key); }
    template <class Use>
    void Each(Use use) const
    {
        for (auto item = m_Table.Begin(); item != m_Table.End(); ++item) {
            use(item->value);
        }
    }

    XHashTable<int, XString> m_Table;
};

struct FixedBlocks {
    void* Allocate() { return m_Allocator.Allocate(); }
    void Free(void* block) { m_Allocator.Free(block); }

    XFixedSizeAllocator m_Allocator{kBlockSize, 4096};
};

struct PoolBlocks {
    static void* Allocate() { return ZmAllocator::Instance().AllocatePool(kBlockSize); }
    static void Free(void* block) { ZmAllocator::Instance().ReleasePool(kBlockSize, block); }
};

/// Starts with as many free blocks of different sizes as elements; each element takes one and gives it back.
void Scratch(const Work& w)
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    static int warm = 0;
    if (warm != w.count) {
        warm = w.count;
        allocator.ReleaseUnusedScratch();
        std::vector<void*> blocks;
        for (int i = 0; i < w.count; ++i) {
            blocks.push_back(allocator.AllocateScratch(unsigned(16 * (i + 1))));
        }
        for (void* block : blocks) {
            allocator.ReleaseScratch(block);
        }
    }
    const int* order = static_cast<const int*>(w.extra);
    for (int i = 0; i < w.count; ++i) {
        allocator.ReleaseScratch(allocator.AllocateScratch(unsigned(16 * (order[i] + 1))));
    }
}

constexpr Entry kEntries[] = {
    {"Table/Insert", InsertAll<Table>},
    {"Table/Find", FindAll<Table>},
    {"Table/Iterate", VisitAll<Table>},
    {"Blocks/Fixed64", ExchangeBlocks<FixedBlocks>},
    {"Blocks/Pool64", ExchangeBlocks<PoolBlocks>},
    {"Blocks/Scratch", Scratch},
};

}  // namespace

constexpr Tasks kFoundationTasks{kTasks};
constexpr Contender kFoundations{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
