#pragma once

#include "Harness.h"

#include <map>
#include <stddef.h>
#include <vector>

// The loops around tables and allocators. The unnamed namespace is meant, as in Each.h.
namespace bench {
namespace {

constexpr int kBlockSize = 64;

/// A map with the interface of the standard library's, with strings as keys.
template <class Map>
struct MapTable {
    typedef typename Map::key_type Key;

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

    Map m_Map;
};

template <class Table>
using Keys = std::vector<typename Table::Key>;

/// The contender's own keys, created once for each number of keys.
template <class Table>
const Keys<Table>& KeysOf(const Work& w)
{
    static std::map<int, Keys<Table>> made;
    Keys<Table>& keys = made[w.count];
    if (keys.empty()) {
        const char* const* names = static_cast<const char* const*>(w.src);
        for (int i = 0; i < w.count; ++i) {
            keys.push_back(Table::MakeKey(names[i]));
        }
    }
    return keys;
}

template <class Table>
void Fill(Table& table, const Keys<Table>& keys)
{
    int value = 0;
    for (const typename Table::Key& key : keys) {
        table.Insert(key, value++);
    }
}

template <class Table>
const Table& TableOf(const Work& w)
{
    static std::map<int, Table> made;
    const auto found = made.find(w.count);
    if (found != made.end()) {
        return found->second;
    }
    Table& table = made[w.count];
    Fill(table, KeysOf<Table>(w));
    return table;
}

/// Creates a table, copies all keys into it, and destroys it.
template <class Table>
void InsertAll(const Work& w)
{
    const Keys<Table>& keys = KeysOf<Table>(w);
    Table table;
    Fill(table, keys);
    *static_cast<float*>(w.dst) = float(table.Find(keys.back()));
}

/// Looks up all keys, in random order.
template <class Table>
void FindAll(const Work& w)
{
    const Keys<Table>& keys = KeysOf<Table>(w);
    const Table& table = TableOf<Table>(w);
    const int* order = static_cast<const int*>(w.extra);
    int sum = 0;
    for (int i = 0; i < w.count; ++i) {
        sum ^= table.Find(keys[size_t(order[i])]) + i;
    }
    *static_cast<float*>(w.dst) = float(sum);
}

template <class Table>
void VisitAll(const Work& w)
{
    int sum = 0;
    TableOf<Table>(w).Each([&sum](int value) { sum += value; });
    *static_cast<float*>(w.dst) = float(sum);
}

/// With as many live blocks as elements: frees half of them in random order and allocates as many again.
template <class Blocks>
void ExchangeBlocks(const Work& w)
{
    static Blocks allocator;
    static std::map<int, std::vector<void*>> live;
    std::vector<void*>& blocks = live[w.count];
    while (int(blocks.size()) < w.count) {
        blocks.push_back(allocator.Allocate());
    }
    const int* order = static_cast<const int*>(w.extra);
    for (int half = 0; half < 2; ++half) {
        const int first = half * (w.count / 2), last = first + w.count / 2;
        for (int i = first; i < last; ++i) {
            allocator.Free(blocks[size_t(order[i])]);
        }
        for (int i = first; i < last; ++i) {
            blocks[size_t(order[i])] = allocator.Allocate();
        }
    }
}

}  // namespace
}  // namespace bench
