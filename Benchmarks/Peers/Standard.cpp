// The standard library's table and threads, and the C heap.

#include "../Stores.h"

#include <stdlib.h>
#include <string>
#include <thread>
#include <unordered_map>

namespace bench {
namespace {

typedef MapTable<std::unordered_map<std::string, int>> Table;

struct HeapBlocks {
    static void* Allocate() { return malloc(kBlockSize); }
    static void Free(void* block) { free(block); }
};

void StartAndJoin(const Work& w)
{
    std::vector<std::thread> threads(size_t(w.count));
    std::vector<int> numbers(threads.size());
    for (size_t i = 0; i < threads.size(); ++i) {
        numbers[i] = int(i);
        threads[i] = std::thread([number = &numbers[i]] { ++*number; });
    }
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        static_cast<float*>(w.dst)[i] = float(numbers[i]);
    }
}

constexpr Entry kEntries[] = {
    {"Table/Insert", InsertAll<Table>},
    {"Table/Find", FindAll<Table>},
    {"Table/Iterate", VisitAll<Table>},
    {"Blocks/Fixed64", ExchangeBlocks<HeapBlocks>},
    {"Blocks/Pool64", ExchangeBlocks<HeapBlocks>},
    {"Threads/StartAndJoin", StartAndJoin},
};

}  // namespace

extern const Contender kStandard;
constexpr Contender kStandard{"std", Role::PEER, kEntries};

}  // namespace bench
