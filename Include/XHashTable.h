#pragma once

#include "XArray.h"
#include "XHashFun.h"

namespace zm {

// What a hash offers beyond its call: see XHashFun.
template <class H, class K>
struct HashTraits {
    template <class F>
    static typename F::LookUpKey* KeyOf(int);
    template <class F>
    static K* KeyOf(...);
    template <class P>
    struct Pointee;
    template <class P>
    struct Pointee<P*> {
        typedef P Type;
    };
    typedef typename Pointee<decltype(KeyOf<H>(0))>::Type LookUpKey;

    template <class F>
    static auto Hash(const F& hash, const LookUpKey& key, int) -> decltype(hash.Tagged(key))
    {
        return hash.Tagged(key);
    }
    template <class F>
    static uint64_t Hash(const F& hash, const LookUpKey& key, ...)
    {
        return uint32_t(hash(key));
    }
};

template <class A, class B>
struct OnlyIfSame {
};
template <class A>
struct OnlyIfSame<A, A> {
    typedef int Type;
};

}  // namespace zm

/// An entry of a table.
template <class T, class K>
struct XHashItem {
    /// An item on its own, in no bucket yet.
    template <class Key>
    XHashItem(Key&& itemKey, T&& itemValue, uint64_t keyHash)
        : key(static_cast<Key&&>(itemKey)), value(zm::Move(itemValue)), next(nullptr), hash(keyHash)
    {
    }

    K key;            ///< of an item in a table, not to be changed
    T value;          ///< what the key stands for; may be changed
    XHashItem* next;  ///< the next one of its bucket, or null
    uint64_t hash;    ///< low half: the key's hash; high half: more of it, where XHashFun has more
};

template <class T, class K>
struct XIsRelocatable<XHashItem<T, K>> {
    static constexpr bool value = XIsRelocatable<T>::value && XIsRelocatable<K>::value;
};

namespace zm {

/// A place in the order of a table's items; `Entry` is the item, or the constant item.
template <class Entry, class Item>
class TablePosition {
public:
    TablePosition() = default;
    TablePosition(Entry* item, const XArray<Item>* items) : m_Item(item), m_Items(items) {}

    /// An Iterator is a ConstIterator too.
    operator TablePosition<const Entry, Item>() const { return {m_Item, m_Items}; }

    Entry& operator*() const { return *Checked(); }
    Entry* operator->() const { return Checked(); }
    TablePosition& operator++()
    {
        m_Item = Checked() + 1;
        return *this;
    }
    TablePosition operator++(int)
    {
        const TablePosition old = *this;
        ++*this;
        return old;
    }
    bool operator==(const TablePosition& other) const { return m_Item == other.m_Item; }
    bool operator!=(const TablePosition& other) const { return m_Item != other.m_Item; }

private:
    Entry* Checked() const
    {
        assert(m_Items != nullptr && m_Item >= m_Items->Begin() && m_Item < m_Items->End());
        return m_Item;
    }

    Entry* m_Item = nullptr;
    const XArray<Item>* m_Items = nullptr;
};

}  // namespace zm

/// Values by key. The items lie in one array, in the order of their insertion, and iterating is a walk over it;
/// a removal puts the last item into the place of the removed one. Buckets, a power of two of them, hold chains of
/// items, the latest first. A table starts with 16 buckets and room for 12 items; when an insertion finds the room
/// full, buckets and room double. Memory is allocated with the first item, and for the first 12 as they come.
///
/// H and E are function objects without state: the hash of a key and whether two keys are equal (XHashFun, XEqual).
/// Keys and values are moved in memory by insertions and removals: pointers to them, and iterators, do not survive
/// those. Values are not more than values: a table of pointers does not delete what they point to.
///
/// One thread at a time may change a table; many may read it. Memory: an insertion that finds none leaves the
/// table as it was.
template <class T, class K, class H = XHashFun<K>, class E = XEqual<K>>
class XHashTable {
public:
    /// What is looked up: a key, or the cheaper type that its hash names.
    typedef typename zm::HashTraits<H, K>::LookUpKey LookUpKey;

    /// What the iterators stand on.
    typedef XHashItem<T, K> Item;

    /// Positions in the order of iteration. Debug builds assert that one that is read or advanced stands
    /// before the end. XInterop.h makes them iterators for the algorithms of the standard library.
    typedef zm::TablePosition<Item, Item> Iterator;
    typedef zm::TablePosition<const Item, Item> ConstIterator;

    /// What Insert() has found or made.
    struct Inserted {
        Iterator position;  ///< the key's item; End() without memory
        bool created;       ///< whether it is new
    };

    /// Buckets of a small table.
    static constexpr int kFirstBuckets = 16;

    XHashTable() = default;

    /// The same items in the same order; empty where there is no memory.
    XHashTable(const XHashTable& src);

    /// Leaves `src` empty.
    XHashTable(XHashTable&& src) noexcept { Swap(src); }

    /// Takes over the items of a copy, or of what is moved.
    XHashTable& operator=(XHashTable src) noexcept
    {
        Swap(src);
        return *this;
    }

    ~XHashTable() { zm::DeleteBlock(m_Buckets); }

    /// Items.
    int Size() const { return m_Items.Size(); }
    bool IsEmpty() const { return m_Items.IsEmpty(); }

    /// Chains that the items are spread over; a power of two.
    int BucketCount() const { return m_Buckets != nullptr ? int(m_BucketsEnd - m_Buckets) : kFirstBuckets; }

    /// Items that fit without growing: three quarters of the buckets.
    int Capacity() const { return RoomOf(BucketCount()); }

    /// From the first item to the place after the last.
    Iterator Begin() { return At(m_Items.Begin()); }
    Iterator End() { return At(m_Items.End()); }
    ConstIterator Begin() const { return ConstAt(m_Items.Begin()); }
    ConstIterator End() const { return ConstAt(m_Items.End()); }

    /// The item at a position of the order, from 0 to Size() - 1.
    Item& ItemAt(int position) { return m_Items[position]; }
    const Item& ItemAt(int position) const { return m_Items[position]; }

    /// The key's item, or End().
    Iterator Find(const LookUpKey& key)
    {
        Item* item = Search(key);
        return item != nullptr ? At(item) : End();
    }
    /// The same in a constant table.
    ConstIterator Find(const LookUpKey& key) const
    {
        const Item* item = Search(key);
        return item != nullptr ? ConstAt(item) : End();
    }

    /// The key's value, or null.
    T* LookUp(const LookUpKey& key)
    {
        Item* item = Search(key);
        return item != nullptr ? &item->value : nullptr;
    }
    /// The same in a constant table.
    const T* LookUp(const LookUpKey& key) const
    {
        const Item* item = Search(key);
        return item != nullptr ? &item->value : nullptr;
    }

    /// The key's item, which is created with `value` where there is none; an item that was there keeps its own.
    /// A key that is a temporary or moved is taken over.
    Inserted Insert(const LookUpKey& key, T value = T()) { return InsertKey(key, value); }
    /// The same for a key to be taken over.
    template <class Key, typename zm::OnlyIfSame<Key, K>::Type = 0>
    Inserted Insert(Key&& key, T value = T())
    {
        return InsertKey(zm::Move(key), value);
    }

    /// 1, or 0 if the key was there already, or without memory; nothing has changed then.
    int InsertUnique(const LookUpKey& key, T value) { return InsertKey(key, value).created; }
    /// The same for a key to be taken over.
    template <class Key, typename zm::OnlyIfSame<Key, K>::Type = 0>
    int InsertUnique(Key&& key, T value)
    {
        return InsertKey(zm::Move(key), value).created;
    }

    /// Removes the key's item and returns its value; the empty value T() if there is none. The last item of the
    /// order takes the place of the removed one.
    T Remove(const LookUpKey& key);

    /// Removes all items; the memory stays.
    void Clear()
    {
        m_Items.Clear();
        ClearBuckets(m_Buckets, BucketsSize());
    }

    /// Exchanges items and memory.
    void Swap(XHashTable& other) noexcept;

private:
    Iterator At(Item* item) { return {item, &m_Items}; }
    ConstIterator ConstAt(const Item* item) const { return {item, &m_Items}; }

    static constexpr int RoomOf(int buckets) { return buckets / 4 * 3; }
    static uint64_t HashOf(const LookUpKey& key) { return zm::HashTraits<H, K>::Hash(H(), key, 0); }

    size_t BucketsSize() const { return size_t(m_BucketsEnd - m_Buckets); }
    Item** BucketOf(uint64_t hash) const { return m_Buckets + (uint32_t(hash) & (BucketsSize() - 1)); }

    static void ClearBuckets(Item** buckets, size_t count)
    {
        if (count != 0) {
            memset(static_cast<void*>(buckets), 0, count * sizeof(Item*));
        }
    }

    Item* Search(const LookUpKey& key) const { return m_Items.IsEmpty() ? nullptr : Search(key, HashOf(key)); }

    Item* Search(const LookUpKey& key, uint64_t hash) const
    {
        Item* item = *BucketOf(hash);
        while (item != nullptr && !(item->hash == hash && E()(item->key, key))) {
            item = item->next;
        }
        return item;
    }

    template <class Key>
    Inserted InsertKey(Key&& key, T& value);
    bool Grow();
    bool MakeRoom(int buckets, int room);
    void ChainAll();
    void Chain(Item* item);
    Item** LinkTo(const Item* item) const;

    Item** m_Buckets = nullptr;
    Item** m_BucketsEnd = nullptr;
    XArray<Item> m_Items;
};

template <class T, class K, class H, class E>
XHashTable<T, K, H, E>::XHashTable(const XHashTable& src)
{
    if (src.m_Buckets != nullptr && MakeRoom(src.BucketCount(), src.Size())) {
        for (const Item* item = src.m_Items.Begin(); item != src.m_Items.End(); ++item) {
            Chain(m_Items.EmplaceBack(*item));
        }
    }
}

template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::Swap(XHashTable& other) noexcept
{
    Item **buckets = m_Buckets, **end = m_BucketsEnd;
    m_Buckets = other.m_Buckets;
    m_BucketsEnd = other.m_BucketsEnd;
    other.m_Buckets = buckets;
    other.m_BucketsEnd = end;
    m_Items.Swap(other.m_Items);
}

template <class T, class K, class H, class E>
template <class Key>
typename XHashTable<T, K, H, E>::Inserted XHashTable<T, K, H, E>::InsertKey(Key&& key, T& value)
{
    const uint64_t hash = HashOf(key);
    if (m_Buckets != nullptr) {
        if (Item* item = Search(key, hash)) {
            return {At(item), false};
        }
    }
    if (m_Items.Size() == m_Items.Capacity() && !Grow()) {
        return {End(), false};
    }
    Item* item = m_Items.EmplaceBack(static_cast<Key&&>(key), zm::Move(value), hash);
    Chain(item);
    return {At(item), true};
}

// Room for one more item at least.
template <class T, class K, class H, class E>
bool XHashTable<T, K, H, E>::Grow()
{
    constexpr int kFirstItems = 3;
    const int size = m_Items.Size();
    if (m_Buckets == nullptr) {
        return MakeRoom(kFirstBuckets, kFirstItems);
    }
    if (size >= Capacity()) {
        return MakeRoom(2 * BucketCount(), 2 * Capacity());
    }
    const int room = size == 0 ? kFirstItems : 2 * size;
    if (!m_Items.Reserve(room < Capacity() ? room : Capacity())) {
        return false;
    }
    ChainAll();
    return true;
}

// New buckets of that number, and room for so many items.
template <class T, class K, class H, class E>
bool XHashTable<T, K, H, E>::MakeRoom(int buckets, int room)
{
    Item** fresh = static_cast<Item**>(buckets > 0 ? zm::NewBlock(size_t(buckets) * sizeof(Item*)) : nullptr);
    if (fresh == nullptr || !m_Items.Reserve(room)) {
        zm::DeleteBlock(fresh);
        return false;
    }
    zm::DeleteBlock(m_Buckets);
    m_Buckets = fresh;
    m_BucketsEnd = fresh + buckets;
    ChainAll();
    return true;
}

// Makes the chains anew: they hold addresses, which a growth changes.
template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::ChainAll()
{
    ClearBuckets(m_Buckets, BucketsSize());
    for (Item* item = m_Items.Begin(); item != m_Items.End(); ++item) {
        Chain(item);
    }
}

template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::Chain(Item* item)
{
    Item** bucket = BucketOf(item->hash);
    item->next = *bucket;
    *bucket = item;
}

// What points to the item: its bucket, or the item before it in the chain.
template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::Item** XHashTable<T, K, H, E>::LinkTo(const Item* item) const
{
    Item** link = BucketOf(item->hash);
    while (*link != item) {
        link = &(*link)->next;
    }
    return link;
}

template <class T, class K, class H, class E>
T XHashTable<T, K, H, E>::Remove(const LookUpKey& key)
{
    Item* item = Search(key);
    if (item == nullptr) {
        return T();
    }
    *LinkTo(item) = item->next;
    T value(zm::Move(item->value));
    Item* last = m_Items.End() - 1;
    if (item != last) {
        *LinkTo(last) = item;
        item->~Item();
        new (item) Item(zm::Move(*last));
    }
    m_Items.PopBack();
    return value;
}
