// The standard library's table and the C heap.

#include "../Stores.h"

#include <stdlib.h>
#include <string>
#include <unordered_map>

namespace bench {
namespace {

struct Table {
    typedef std::string Key;

    static Key MakeKey(const char* text) { return text; }
    void Insert(const Key& key, int value) { m_Map.emplace(key, value); }
    int Find(const Key& key) const { return m_Map.find(key)->second; }
    template <class Use>
    void Each(Use use) const
    {
        for (const auto& item : m_Map) {
            use(item.second);
        }
    }

    std::unordered_map<std::string, int> m_Map;
};

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
