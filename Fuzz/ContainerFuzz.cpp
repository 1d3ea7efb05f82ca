// XHashTable and XArray beside simple models: order, look-ups and growth, also where memory runs out and where many
// keys have the same hash.

#include "Input.h"
#include "XHashTable.h"

#include <new>
#include <string>
#include <utility>
#include <vector>

static int g_Allocations = -1;  // that succeed before all others fail; negative for all

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    if (g_Allocations == 0) {
        return nullptr;
    }
    g_Allocations -= g_Allocations > 0;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace {

constexpr int kKeys = 256;

uint32_t NumberOf(int key)
{
    return uint32_t(key % 64 * 16 + key / 64);  // few buckets
}

/// Texts with the same hash.
XString TextOf(int key)
{
    constexpr const char* kPairs[] = {"af", "ba", "c\\", "dW"};
    return XString(kPairs[key & 3]) + kPairs[key >> 2 & 3] + kPairs[key >> 4 & 3] + kPairs[key >> 6 & 3];
}

/// The items in their order and where they are; the last one takes the place of a removed one.
struct TableModel {
    TableModel() { std::fill_n(places, kKeys, -1); }

    void Insert(int key, int value)
    {
        places[key] = int(items.size());
        items.push_back({key, value});
    }
    int Remove(int key)
    {
        const int place = std::exchange(places[key], -1);
        if (place < 0) {
            return 0;
        }
        const Item removed = std::exchange(items[size_t(place)], items.back());
        places[items.back().key] = removed.key == items.back().key ? -1 : place;
        items.pop_back();
        return removed.value;
    }

    struct Item {
        int key, value;
    };
    std::vector<Item> items;
    int places[kKeys];
};

template <class Key>
void TestTable(Input& input, Key (*keyOf)(int key))
{
    static const std::vector<Key> keys = [keyOf] {
        std::vector<Key> res;
        for (int i = 0; i < kKeys; ++i) {
            res.push_back(keyOf(i));
        }
        return res;
    }();
    XHashTable<int, Key> table;
    TableModel model;
    for (int work = 0; work < 180 && !input.IsEmpty(); ++work) {
        const int operation = input.UpTo(15), first = input.Byte();
        const int last = std::min(kKeys - 1, first + (operation < 2    ? input.UpTo(180)
                                                      : operation < 12 ? operation
                                                                       : 0));
        g_Allocations = operation % 2 != 0 ? input.UpTo(7) : -1;
        for (int key = first; key <= last; ++key, ++work) {
            if (operation < 6) {
                const auto inserted = table.Insert(keys[size_t(key)], work);
                const bool isNew = model.places[key] < 0;
                Demand(inserted.position == table.End() ? isNew && g_Allocations == 0 : inserted.created == isNew);
                if (inserted.created) {
                    model.Insert(key, work);
                }
            } else if (operation < 12) {
                Demand(table.Remove(keys[size_t(key)]) == model.Remove(key));
            }
        }
        const int* const value = table.LookUp(keys[size_t(first)]);
        Demand(value == (model.places[first] < 0 ? nullptr : &table.ItemAt(model.places[first]).value));
        if (operation == 13) {
            XHashTable<int, Key> copy(table);
            Demand(copy.Size() == table.Size() || (copy.IsEmpty() && g_Allocations == 0));
            table.Swap(copy.IsEmpty() ? table : copy);
        } else if (operation == 14) {
            table.Clear();
            model = {};
        }
    }
    g_Allocations = -1;
    Demand(table.Size() == int(model.items.size()) && table.Size() <= table.Capacity());
    for (int i = 0; i < table.Size(); ++i) {
        const TableModel::Item& item = model.items[size_t(i)];
        Demand(table.ItemAt(i).value == item.value && &*table.Find(keys[size_t(item.key)]) == &table.ItemAt(i));
    }
}

void TestArray(Input& input)
{
    XArray<XString> array;
    std::vector<std::string> model;
    for (int step = 0; step < 60 && !input.IsEmpty(); ++step) {
        const int operation = input.UpTo(7), place = model.empty() ? 0 : input.UpTo(255) % int(model.size());
        g_Allocations = operation % 2 != 0 ? input.UpTo(3) : -1;
        const std::string text = std::to_string(step);
        if (operation < 2 && array.EmplaceBack(text.c_str()) != nullptr) {
            model.push_back(text);
        } else if (operation < 4 && !model.empty() && array.PushBack(array[place]) != 0) {
            model.push_back(std::string(model[size_t(place)]));
        } else if (operation == 4 && !model.empty()) {
            array.RemoveAt(place);
            model.erase(model.begin() + place);
        } else if (operation == 5) {
            Demand(array.Reserve(place * 2) == 1 ? array.Capacity() >= place * 2 : g_Allocations == 0);
        } else if (operation == 6 && !model.empty()) {
            array.PopBack();
            model.pop_back();
        } else if (operation == 7) {
            const XArray<XString> copy(array);
            Demand(copy.Size() == array.Size() || (copy.IsEmpty() && g_Allocations == 0));
            array = copy.IsEmpty() ? std::move(array) : copy;
            model.resize(size_t(array.Size()));  // the second copy may have failed
        }
        Demand(array.Size() == int(model.size()) && array.Size() <= array.Capacity());
    }
    g_Allocations = -1;
    Demand(std::equal(model.begin(), model.end(), array.Begin(), array.End(),
                      [](const std::string& a, const XString& b) { return a == b.Text(); }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    switch (input.UpTo(2)) {
    case 0: TestTable(input, NumberOf); break;
    case 1: TestTable(input, TextOf); break;
    case 2: TestArray(input); break;
    }
    return 0;
}
