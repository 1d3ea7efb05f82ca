#include "XHashTable.h"

#include "Support/Random.h"
#include "Support/Tracked.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

TEST(XHashTableTest, TheHashOfATextIsThatOfThePlainLoop)
{
    const XHashFun<XString> hashOf;
    EXPECT_EQ(hashOf("ab"), 583u);
    Random random(1);
    for (int i = 0; i < 20000; ++i) {
        const int length = i % 71, low = random.Int(0, 1) * 128;
        uint32_t expected = 0;
        XString text;
        text.Reserve(70);
        for (int k = 0; k < length; ++k) {
            const int byte = random.Int(low, 255);
            text << char(byte);
            expected = expected * 5 + uint32_t(byte < 128 ? byte : byte - 256);
        }
        ASSERT_EQ(hashOf(text), expected) << "length " << length;
    }
    EXPECT_EQ(XHashFun<XGUID>()({7, 9}), 7u);
}

/// Half of the keys share one hash, since 5 'a' + 'f' is 5 'b' + 'a'.
std::vector<XString> TextKeys()
{
    std::vector<XString> keys{XString()};
    for (int i = 0; i < 64; ++i) {
        XString colliding;
        for (int bit = 0; bit < 6; ++bit) {
            colliding << ((i >> bit & 1) != 0 ? "af" : "ba");
        }
        keys.push_back(colliding);
        keys.push_back(XString("key ") + i);
    }
    return keys;
}

std::vector<XGUID> GuidKeys()
{
    std::vector<XGUID> keys;
    for (uint32_t i = 0; i < 120; ++i) {
        keys.push_back({i % 3 == 0 ? 1 : i * 8, i});
    }
    return keys;
}

void Make(std::unique_ptr<Tracked>& value, int number)
{
    value = std::make_unique<Tracked>(number);
}
void Make(XString& value, int number)
{
    value.Format("%d", number);
}

int NumberOf(const std::unique_ptr<Tracked>& value)
{
    return value != nullptr ? value->Number() : 0;
}
int NumberOf(const XString& value)
{
    return int(strtol(value.Text(), nullptr, 10));
}

/// Texts of one hash: each pair of characters has two forms of the same value.
std::vector<XString> CollidingKeys(int pairs)
{
    std::vector<XString> keys;
    for (int number = 0; number < 1 << pairs; ++number) {
        XString key;
        for (int i = 0; i < pairs; ++i) {
            key << (number >> i & 1 ? "bA" : "aF");
        }
        keys.push_back(key);
    }
    return keys;
}

/// A table and its expected state: the order of its items in a vector, and the number of its buckets.
template <class T, class K>
class Compared {
public:
    explicit Compared(const std::vector<K>& keys) : m_Keys(keys) {}

    void ChangeAtRandom(Random& random, int chanceToInsert)
    {
        const K& key = m_Keys[size_t(random.Int(0, int(m_Keys.size()) - 1))];
        if (random.Int(0, 2000) == 0) {
            m_Table.Clear();
            m_Model.clear();
        } else if (random.Int(0, 99) < chanceToInsert) {
            Insert(key, random);
        } else {
            Remove(key);
        }
    }

    void Compare()
    {
        auto position = m_Table.Begin();
        for (const auto& [key, number] : m_Model) {
            ASSERT_TRUE(position != m_Table.End() && position->key == key);
            ASSERT_EQ(NumberOf((*position++).value), number);
        }
        ASSERT_TRUE(position == m_Table.End());
        ASSERT_EQ(m_Table.Size(), int(m_Model.size()));
        ASSERT_EQ(m_Table.BucketCount(), m_Buckets);
        ASSERT_EQ(m_Table.Capacity(), m_Buckets * 3 / 4);
        const K& key = m_Keys[m_Model.size() % m_Keys.size()];
        const T* value = m_Table.LookUp(key);
        ASSERT_EQ(value != nullptr ? NumberOf(*value) : 0, NumberIn(key));
        ASSERT_EQ(m_Table.Find(key) != m_Table.End(), value != nullptr);
    }

private:
    typedef std::vector<std::pair<K, int>> Model;

    typename Model::iterator EntryOf(const K& key)
    {
        return std::find_if(m_Model.begin(), m_Model.end(), [&](const auto& entry) { return entry.first == key; });
    }

    int NumberIn(const K& key) { return EntryOf(key) != m_Model.end() ? EntryOf(key)->second : 0; }

    void Insert(const K& key, Random& random)
    {
        const int number = random.Int(1, 9999);
        const bool isNew = NumberIn(key) == 0;
        m_Buckets *= isNew && int(m_Model.size()) == m_Buckets * 3 / 4 ? 2 : 1;
        if (isNew) {
            m_Model.push_back({key, number});
        }
        T value{};
        Make(value, number);
        if (random.Int(0, 1) == 0) {
            ASSERT_EQ(m_Table.InsertUnique(key, std::move(value)), int(isNew));
        } else {
            const auto inserted = m_Table.Insert(K(key));
            ASSERT_EQ(inserted.created, isNew);
            ASSERT_TRUE(inserted.position->key == key);
            if (isNew) {
                ASSERT_EQ(NumberOf(inserted.position->value), 0);
                inserted.position->value = std::move(value);
            }
        }
    }

    void Remove(const K& key)
    {
        const int number = NumberIn(key);
        if (number != 0) {
            *EntryOf(key) = m_Model.back();
            m_Model.pop_back();
        }
        ASSERT_EQ(NumberOf(m_Table.Remove(key)), number);
    }

    std::vector<K> m_Keys;
    XHashTable<T, K> m_Table;
    Model m_Model;
    int m_Buckets = 16;
};

template <class T, class K>
void CompareWithModel(const std::vector<K>& keys, uint64_t seed)
{
    Random random(seed);
    Compared<T, K> compared(keys);
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("step " + std::to_string(i));
        compared.ChangeAtRandom(random, i / 1000 % 2 == 0 ? 70 : 30);
        compared.Compare();
    }
}

TEST(XHashTableTest, RandomOperationsKeepTheOrderOfTheModel)
{
    CompareWithModel<XString>(TextKeys(), 1);
    CompareWithModel<std::unique_ptr<Tracked>>(TextKeys(), 2);
    CompareWithModel<XString>(GuidKeys(), 3);
    CompareWithModel<std::unique_ptr<Tracked>>(GuidKeys(), 4);
    CompareWithModel<XString>(CollidingKeys(9), 5);
    CompareWithModel<std::unique_ptr<Tracked>>(CollidingKeys(9), 6);
    EXPECT_EQ(Tracked::Alive(), 0);
}

struct OneHash {
    uint32_t operator()(int) const { return 5; }
    uint64_t Seeded(int key) const { return uint64_t(key) * 0x9E3779B97F4A7C15 >> 20; }
};

int g_Comparisons = 0;

struct CountingEqual {
    bool operator()(int a, int b) const
    {
        ++g_Comparisons;
        return a == b;
    }
};

TEST(XHashTableTest, KeysOfOneHashAreComparedFewTimes)
{
    constexpr int kKeys = 20000;
    EXPECT_EQ(XHashFun<XString>()("bA"), XHashFun<XString>()("aF"));
    g_Comparisons = 0;
    XHashTable<int, int, OneHash, CountingEqual> table;
    for (int key = 0; key < kKeys; ++key) {
        table.InsertUnique(key, -key);
    }
    XHashTable<int, int, OneHash, CountingEqual> copy(table);
    int found = 0;
    for (int key = 0; key < kKeys; ++key) {
        found += *copy.LookUp(key) == -key && table.Remove(key) == -key && table.LookUp(key) == nullptr;
    }
    EXPECT_EQ(found, kKeys);
    EXPECT_LT(g_Comparisons, 20 * kKeys);
}

std::string KeysOf(const XHashTable<Tracked, XString>& table)
{
    std::string keys;
    for (auto position = table.Begin(); position != table.End(); ++position) {
        keys += position->key.Text();
    }
    return keys;
}

XHashTable<Tracked, XString> TableOf(const char* letters)
{
    XHashTable<Tracked, XString> table;
    for (int i = 0; letters[i] != 0; ++i) {
        table.Insert(XString(letters + i, 1), i + 1);
    }
    return table;
}

TEST(XHashTableTest, TheLastItemTakesTheRemovedOnesPlace)
{
    const struct {
        const char* removed;
        const char* left;
    } rows[] = {{"a", "dbc"}, {"d", "abc"}, {"c", "abd"}, {"ab", "dc"}, {"dcba", ""}, {"abcd", ""}};
    for (const auto& row : rows) {
        XHashTable<Tracked, XString> table = TableOf("abcd");
        for (const char* c = row.removed; *c != 0; ++c) {
            EXPECT_EQ(table.Remove(XString(c, 1)).Number(), *c - 'a' + 1);
        }
        EXPECT_EQ(KeysOf(table), row.left) << row.removed;
    }
}

std::vector<uint32_t> ChainFrom(const XHashItem<int, XGUID>& first)
{
    std::vector<uint32_t> chain;
    for (const XHashItem<int, XGUID>* item = &first; item != nullptr; item = item->next) {
        chain.push_back(item->key.second);
    }
    return chain;
}

TEST(XHashTableTest, ChainsBeginWithTheLatest)
{
    XHashTable<int, XGUID> table;
    std::vector<uint32_t> expected;
    for (uint32_t i = 0; i < 30; ++i) {
        expected.insert(expected.begin(), i);
        EXPECT_EQ(ChainFrom(*table.Insert({1, i}).position), expected);
    }
    for (const uint32_t i : {5u, 0u, 28u}) {
        expected.erase(std::find(expected.begin(), expected.end(), i));
        table.Remove({1, i});
        EXPECT_EQ(ChainFrom(*table.Find({1, 29})), expected) << i;
    }
}

TEST(XHashTableTest, CopiesAreIndependentAndMovesLeaveNothing)
{
    XHashTable<Tracked, XString> table = TableOf("abcdefghijklmnop");
    table.Remove("b");
    XHashTable<Tracked, XString> copy(table);
    EXPECT_EQ(copy.BucketCount(), 32);
    table.Remove("p");
    EXPECT_EQ(copy.LookUp("p")->Number(), 16);
    const XHashTable<Tracked, XString>& same = copy;
    copy = same;
    const XHashTable<Tracked, XString> moved(std::move(copy));
    EXPECT_EQ(KeysOf(moved), "apcdefghijklmno");
    EXPECT_TRUE(copy.IsEmpty() && copy.LookUp("a") == nullptr && copy.Begin() == copy.End());
    copy.Insert("y", 1);
    copy.Swap(table);
    EXPECT_EQ(KeysOf(table), "y");
    EXPECT_EQ(copy.LookUp("o")->Number(), 15);
}

TEST(XHashTableTest, AMovedKeyGivesItsStorageAndAnotherOneIsCopied)
{
    XHashTable<int, XString> table;
    XString moved("moved"), unique("unique");
    const XString copied("copied");
    const char *movedText = moved.Text(), *uniqueText = unique.Text();
    EXPECT_EQ(table.Insert(std::move(moved), 1).position->key.Text(), movedText);
    EXPECT_NE(table.Insert(copied, 2).position->key.Text(), copied.Text());
    EXPECT_EQ(table.InsertUnique(std::move(unique), 3), 1);
    EXPECT_EQ(table.Find("unique")->key.Text(), uniqueText);
}

TEST(XHashTableTest, AKeyOfTheTableMayBeAnArgument)
{
    XHashTable<Tracked, XString> table = TableOf("abcd");
    EXPECT_FALSE(table.Insert(table.Begin()->key, 9).created);
    EXPECT_EQ(table.Remove(table.Begin()->key).Number(), 1);
    EXPECT_EQ(table.Remove((++table.Begin())->key).Number(), 2);
    EXPECT_EQ(KeysOf(table), "dc");
}

#ifndef NDEBUG
TEST(XHashTableDeathTest, DebugBuildsStopAtTheEnd)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    XHashTable<int, XString> table, empty;
    table.Insert("a", 1);
    EXPECT_DEATH(table.End()->value = 1, "m_Items");
    EXPECT_DEATH(++table.End(), "m_Items");
    EXPECT_DEATH(empty.Begin()->value = 1, "m_Items");
}
#endif

}  // namespace
