#include "../Stores.h"

#include <absl/container/flat_hash_map.h>

#include <string>

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

    absl::flat_hash_map<std::string, int> m_Map;
};

constexpr Entry kEntries[] = {
    {"Table/Insert", InsertAll<Table>},
    {"Table/Find", FindAll<Table>},
    {"Table/Iterate", VisitAll<Table>},
};

}  // namespace

extern const Contender kAbseil;
constexpr Contender kAbseil{"Abseil", Role::Peer, kEntries};

}  // namespace bench
