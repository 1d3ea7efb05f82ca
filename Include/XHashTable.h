#pragma once

#include "XArray.h"
#include "XHashFun.h"

namespace zm {

// The optional members of a hash; see XHashFun.
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

    template <class F>
    static auto SizeOfSeeded(const F& hash, const LookUpKey* key) -> char (&)[sizeof(hash.Seeded(*key))];
    static char (&SizeOfSeeded(...))[1];
    static constexpr bool kIsSeeded = sizeof(SizeOfSeeded(H(), static_cast<LookUpKey*>(nullptr))) == sizeof(uint64_t);
};

template <class A>
struct IsReference {
    static constexpr bool kValue = false;
};
template <class A>
struct IsReference<A&> {
    static constexpr bool kValue = true;
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
    /// Creates an item that is in no bucket yet.
    template <class Key>
    XHashItem(Key&& itemKey, T&& itemValue, uint64_t keyHash)
        : key(static_cast<Key&&>(itemKey)), value(zm::Move(itemValue)), next(nullptr), hash(keyHash)
    {
    }

    K key;            ///< must not be changed while the item is in a table
    T value;          ///< the key's value; may be changed
    XHashItem* next;  ///< next item of the bucket, or null
    uint64_t hash;    ///< low half: the key's hash; high half: further bits, if XHashFun provides them
};

template <class T, class K>
struct XIsRelocatable<XHashItem<T, K>> {
    static constexpr bool value = XIsRelocatable<T>::value && XIsRelocatable<K>::value;
};

namespace zm {

/// A position in a table's order; `Entry` is the item type, const or not.
template <class Entry, class Item>
class TablePosition {
public:
    TablePosition() = default;
    TablePosition(Entry* item, const XArray<Item>* items) : m_Item(item), m_Items(items) {}

    /// Converts an Iterator to a ConstIterator.
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

/// Hash table. The items are stored in one array in the order of insertion, which is also the order of iteration; the
/// last item takes the place of a removed one. The number of buckets is a power of two; each bucket is a chain of
/// items, the latest first. A table starts with 16 buckets and a capacity of 12 items; when an insertion finds it full,
/// both double. Nothing is allocated before the first item, and the array for the first 12 grows as they are added.
/// If a chain grows very long, as with keys that somebody has constructed, and the hash has a `Seeded` form, the table
/// finds its items by that instead: no keys make it slow.
///
/// H and E are stateless function objects: the hash of a key, and the equality of two keys (XHashFun, XEqual).
/// Insertions and removals move keys and values, which invalidates pointers to them and iterators. A table of pointers
/// does not delete the objects they point to.
///
/// Only one thread at a time may change a table; several may read it. If memory runs out during an insertion, the table
/// stays unchanged.
template <class T, class K, class H = XHashFun<K>, class E = XEqual<K>>
class XHashTable {
public:
    /// Type of key for look-ups: the key type, or the cheaper type that the hash declares.
    typedef typename zm::HashTraits<H, K>::LookUpKey LookUpKey;

    /// The item type of the iterators.
    typedef XHashItem<T, K> Item;

    /// Iterators in the order of the items. Debug builds assert that they are not read or advanced at the end.
    /// XInterop.h makes them usable with the algorithms of the standard library.
    typedef zm::TablePosition<Item, Item> Iterator;
    typedef zm::TablePosition<const Item, Item> ConstIterator;

    /// Result of Insert().
    struct Inserted {
        Iterator position;  ///< the key's item; End() if memory ran out
        bool created;       ///< whether the item is new
    };

    /// Number of buckets in a small table.
    static constexpr int kFirstBuckets = 16;

    XHashTable() = default;

    /// Copies the items in the same order; the copy is empty if memory runs out.
    XHashTable(const XHashTable& src);

    /// Leaves `src` empty.
    XHashTable(XHashTable&& src) noexcept { Swap(src); }

    /// Takes over the items of the copied or moved argument.
    XHashTable& operator=(XHashTable src) noexcept
    {
        Swap(src);
        return *this;
    }

    ~XHashTable()
    {
        zm::DeleteBlock(m_Buckets);
        zm::DeleteBlock(m_Index);
    }

    /// Number of items.
    int Size() const { return m_Items.Size(); }
    bool IsEmpty() const { return m_Items.IsEmpty(); }

    /// Number of buckets; a power of two.
    int BucketCount() const { return m_Buckets != nullptr ? int(m_BucketsEnd - m_Buckets) : kFirstBuckets; }

    /// Number of items that fit without growing: three quarters of the buckets.
    int Capacity() const { return RoomOf(BucketCount()); }

    /// Iterators to the first item and past the last one.
    Iterator Begin() { return At(m_Items.Begin()); }
    Iterator End() { return At(m_Items.End()); }
    ConstIterator Begin() const { return ConstAt(m_Items.Begin()); }
    ConstIterator End() const { return ConstAt(m_Items.End()); }

    /// Item at a position in the order, from 0 to Size() - 1.
    Item& ItemAt(int position) { return m_Items[position]; }
    const Item& ItemAt(int position) const { return m_Items[position]; }

    /// Returns the key's item, or End().
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

    /// Returns the key's value, or null.
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

    /// Returns the key's item, created with `value` if there is none; an existing item keeps its value. A key passed as
    /// an rvalue is moved into the table.
    Inserted Insert(const LookUpKey& key, T value = T()) { return InsertKey(key, value); }
    /// The same for a key that is moved into the table.
    template <class Key, typename zm::OnlyIfSame<Key, K>::Type = 0>
    Inserted Insert(Key&& key, T value = T())
    {
        return InsertKey(zm::Move(key), value);
    }

    /// Inserts an item. Returns 1, or 0 with nothing changed if the key already exists or memory runs out.
    int InsertUnique(const LookUpKey& key, T value) { return InsertKey(key, value).created; }
    /// The same for a key that is moved into the table.
    template <class Key, typename zm::OnlyIfSame<Key, K>::Type = 0>
    int InsertUnique(Key&& key, T value)
    {
        return InsertKey(zm::Move(key), value).created;
    }

    /// Removes the key's item and returns its value, or the empty value T() if there is none. The last item of the
    /// order takes the place of the removed one.
    T Remove(const LookUpKey& key);

    /// Removes all items and keeps the memory.
    void Clear()
    {
        m_Items.Clear();
        ClearBuckets(m_Buckets, BucketsSize());
        zm::DeleteBlock(m_Index);
        m_Index = nullptr;
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

    // Counts the items of the chain that are not the wanted one.
    Item* Search(const LookUpKey& key, uint64_t hash, int* others = nullptr) const
    {
        Item* item = *BucketOf(hash);
        while (item != nullptr && !(item->hash == hash && E()(item->key, key))) {
            item = item->next;
            if (others != nullptr) {
                ++*others;
            }
        }
        if constexpr (kIsSeeded) {
            return item == nullptr && m_Index != nullptr ? SearchIndex(key, hash) : item;
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
    void Unlink(Item* item);

    /// The index of a table with a long chain. It replaces all chains: the buckets are empty then. It has twice as many
    /// slots as buckets, each with the position of an item plus one, or 0. An item is in the first slot that was free
    /// from that of its seeded hash on.
    /// @{
    static constexpr bool kIsSeeded = zm::HashTraits<H, K>::kIsSeeded;
    static constexpr int kLongChain = 128;
    size_t SlotMask() const { return 2 * BucketsSize() - 1; }
    size_t SlotOf(const LookUpKey& key) const
    {
        if constexpr (kIsSeeded) {
            return size_t(H().Seeded(key)) & SlotMask();
        }
        return 0;
    }
    bool BuildIndex();
    void AddToIndex(const Item* item);
    void RemoveFromIndex(const Item* item);
    size_t FindInIndex(const Item* item) const;
    Item* SearchIndex(const LookUpKey& key, uint64_t hash) const;
    /// @}

    Item** m_Buckets = nullptr;
    Item** m_BucketsEnd = nullptr;
    uint32_t* m_Index = nullptr;
    XArray<Item> m_Items;
};

template <class T, class K, class H, class E>
XHashTable<T, K, H, E>::XHashTable(const XHashTable& src)
{
    if (src.m_Buckets != nullptr && MakeRoom(src.BucketCount(), src.Size())) {
        for (const Item* item = src.m_Items.Begin(); item != src.m_Items.End(); ++item) {
            Item* copy = m_Items.EmplaceBack(*item);
            if (!zm::IsWhole(copy->key, item->key)) {
                Clear();
                return;
            }
            Chain(copy);
        }
        if (src.m_Index != nullptr) {
            BuildIndex();
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
    uint32_t* index = m_Index;
    m_Index = other.m_Index;
    other.m_Index = index;
    m_Items.Swap(other.m_Items);
}

template <class T, class K, class H, class E>
template <class Key>
typename XHashTable<T, K, H, E>::Inserted XHashTable<T, K, H, E>::InsertKey(Key&& key, T& value)
{
    const uint64_t hash = HashOf(key);
    int others = 0;
    if (m_Buckets != nullptr) {
        if (Item* item = Search(key, hash, &others)) {
            return {At(item), false};
        }
    }
    if (m_Items.Size() == m_Items.Capacity() && !Grow()) {
        return {End(), false};
    }
    Item* item = m_Items.EmplaceBack(static_cast<Key&&>(key), zm::Move(value), hash);
    if constexpr (zm::IsReference<Key>::kValue) {
        if (!zm::IsWhole(item->key, key)) {
            m_Items.PopBack();
            return {End(), false};
        }
    }
    if (m_Index != nullptr) {
        AddToIndex(item);
    } else {
        Chain(item);
        if (others >= kLongChain) {
            BuildIndex();
        }
    }
    return {At(item), true};
}

// Makes space for at least one more item.
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
    if (m_Index == nullptr) {
        ChainAll();
    }
    return true;
}

// Allocates that number of buckets, and capacity for that number of items.
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
    const bool wasIndexed = m_Index != nullptr;
    zm::DeleteBlock(m_Index);
    m_Index = nullptr;
    if (!wasIndexed || !BuildIndex()) {
        ChainAll();
    }
    return true;
}

// Rebuilds the chains, which hold addresses: these change when the array grows.
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

// Returns the pointer to the item: its bucket, or the `next` of the item before it in the chain.
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
    Unlink(item);
    T value(zm::Move(item->value));
    Item* last = m_Items.End() - 1;
    if (item != last) {
        if (m_Index != nullptr) {
            m_Index[FindInIndex(last)] = uint32_t(item - m_Items.Begin()) + 1;
        } else {
            *LinkTo(last) = item;
        }
        item->~Item();
        new (item) Item(zm::Move(*last));
    }
    m_Items.PopBack();
    return value;
}

template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::Unlink(Item* item)
{
    if (m_Index != nullptr) {
        RemoveFromIndex(item);
    } else {
        *LinkTo(item) = item->next;
    }
}

// Returns false, with the chains as they are, without a seeded hash or memory.
template <class T, class K, class H, class E>
bool XHashTable<T, K, H, E>::BuildIndex()
{
    if constexpr (kIsSeeded) {
        const size_t size = 2 * BucketsSize() * sizeof(uint32_t);
        m_Index = static_cast<uint32_t*>(zm::NewBlock(size));
        if (m_Index == nullptr) {
            return false;
        }
        memset(m_Index, 0, size);
        ClearBuckets(m_Buckets, BucketsSize());
        for (Item* item = m_Items.Begin(); item != m_Items.End(); ++item) {
            item->next = nullptr;
            AddToIndex(item);
        }
        return true;
    }
    return false;
}

template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::AddToIndex(const Item* item)
{
    size_t slot = SlotOf(item->key);
    while (m_Index[slot] != 0) {
        slot = (slot + 1) & SlotMask();
    }
    m_Index[slot] = uint32_t(item - m_Items.Begin()) + 1;
}

template <class T, class K, class H, class E>
size_t XHashTable<T, K, H, E>::FindInIndex(const Item* item) const
{
    const uint32_t wanted = uint32_t(item - m_Items.Begin()) + 1;
    size_t slot = SlotOf(item->key);
    while (m_Index[slot] != wanted) {
        slot = (slot + 1) & SlotMask();
    }
    return slot;
}

// Moves later items of the run into the gap if it is not before their own slot (Knuth, The Art of Computer Programming,
// volume 3, 6.4, algorithm R).
template <class T, class K, class H, class E>
void XHashTable<T, K, H, E>::RemoveFromIndex(const Item* item)
{
    size_t gap = FindInIndex(item);
    for (size_t slot = (gap + 1) & SlotMask(); m_Index[slot] != 0; slot = (slot + 1) & SlotMask()) {
        const size_t own = SlotOf(m_Items.Begin()[m_Index[slot] - 1].key);
        if (((slot - own) & SlotMask()) >= ((slot - gap) & SlotMask())) {
            m_Index[gap] = m_Index[slot];
            gap = slot;
        }
    }
    m_Index[gap] = 0;
}

template <class T, class K, class H, class E>
typename XHashTable<T, K, H, E>::Item* XHashTable<T, K, H, E>::SearchIndex(const LookUpKey& key, uint64_t hash) const
{
    for (size_t slot = SlotOf(key); m_Index[slot] != 0; slot = (slot + 1) & SlotMask()) {
        Item* item = const_cast<Item*>(m_Items.Begin()) + (m_Index[slot] - 1);
        if (item->hash == hash && E()(item->key, key)) {
            return item;
        }
    }
    return nullptr;
}
