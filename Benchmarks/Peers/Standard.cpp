// The standard library's table and the C heap.

#include "../Stores.h"

#include <stdlib.h>
#include <string>
#include <unordered_map>

namespace bench {
namespace {

typedef MapTable<std::unordered_map<std::string, int>> Table;

struct HeapBlocks {
    static void* Allocate() { return malloc(kBlockSize); }
    static void Free(void* block) { free(block); }
};

constexpr Entry kEntries[] = {
    {"Table/Insert", InsertAll<Table>},
    {"Table/Find", FindAll<Table>},
    {"Table/Iterate", VisitAll<Table>},
    {"Blocks/Fixed64", ExchangeBlocks<HeapBlocks>},
    {"Blocks/Pool64", ExchangeBlocks<HeapBlocks>},
};

}  // namespace

extern const Contender kStandard;
constexpr Contender kStandard{"std", Role::Peer, kEntries};

}  // namespace bench
