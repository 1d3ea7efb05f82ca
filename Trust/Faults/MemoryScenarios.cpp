#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

#include <string.h>

namespace {

int UseStrings()
{
    static const char kLong[] = "a text of more than a few bytes, so that it needs a block of its own";
    XString text(kLong), other(text);
    text << kLong << 12345 << 1.5f;
    other = text;
    other.Replace("text", "a longer word");
    other.Format("%s %d", kLong, 5);
    XString sub = other.Substring(3, 20);
    sub.ToUpper();
    sub.Trim();
    sub.FormatTime("%Y-%m-%d, which is the date");
    XStringTokenizer tokens(text, " ,");
    int count = 0;
    for (const char* token = nullptr; (token = tokens.NextToken(token)) != nullptr;) {
        ++count;
    }
    return count;
}

int BuildStrings()
{
    XString text;
    text.Create(nullptr, 300);
    text.Reserve(5000);
    text.CreateTail(XString("the tail of a text that is long enough for the heap, or so it seems here"), 4);
    const XString sized(200);
    XString copy(text + "more");
    copy.Strip();
    copy.Cut(1, 3);
    copy.Crop(0, 30);
    text << 123456789012345ll << 5u << 'c' << &text;
    return copy.Length() + sized.Length() >= 0;
}

int ReplaceInStrings()
{
    XString text("a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b");
    const int count = text.Replace("a", "a longer word") + text.Replace("b", "") + text.Replace('l', 'L');
    return count;
}

int UseArray()
{
    XArray<XString> array;
    for (int i = 0; i < 100; ++i) {
        array.PushBack("a text of more than a few bytes, so that it needs a block of its own");
    }
    const XArray<XString> copy(array);
    array.Reserve(300);
    if (array.Size() > 5) {
        array.RemoveAt(5);
    }
    return copy.Size();
}

constexpr int kNames = 200;

void NumberedName(char* res, int number)
{
    snprintf(res, 20, "name %d", number);
}

/// Syllables of equal hashes, so that all names are in one chain.
void CollidingName(char* res, int number)
{
    for (int bit = 0; bit < 8; ++bit) {
        memcpy(res + 2 * bit, (number >> bit & 1) != 0 ? "af" : "ba", 3);
    }
}

/// Whether the table has exactly these names, of whole numbers below kNames, with the numbers as values.
bool HasOnly(const XHashTable<int, XString>& table, const bool* names, void (*nameOf)(char*, int))
{
    int count = 0;
    for (int i = 0; i < kNames; ++i) {
        char name[20];
        nameOf(name, i);
        const int* value = table.LookUp(name);
        if ((value != nullptr) != names[i] || (value != nullptr && *value != i)) {
            return false;
        }
        count += names[i];
    }
    return table.Size() == count;
}

int UseTable(void (*nameOf)(char* res, int number))
{
    XHashTable<int, XString> table;
    bool inserted[kNames] = {};
    char name[20];
    for (int i = 0; i < kNames; ++i) {
        nameOf(name, i);
        inserted[i] = table.InsertUnique(name, i) != 0;
    }
    bool right = HasOnly(table, inserted, nameOf);
    const XHashTable<int, XString> copy(table);
    right = right && (copy.IsEmpty() || HasOnly(copy, inserted, nameOf));
    for (int i = 0; i < kNames; i += 3) {
        nameOf(name, i);
        right = right && table.Remove(name) == (inserted[i] ? i : 0);
        inserted[i] = false;
    }
    return right && HasOnly(table, inserted, nameOf) ? 1 : -1;
}

/// Both texts need blocks of their own.
int MoveTables()
{
    XHashTable<XString, XString> table;
    char name[20];
    int inserted = 0;
    for (int i = 0; i < 100; ++i) {
        NumberedName(name, i);
        inserted += table.Insert(name, "a value that needs a block of its own on the heap of the process").created;
    }
    XHashTable<XString, XString> other(table);
    const int copied = other.Size();
    other.Swap(table);
    return other.Size() == inserted && table.Size() == copied && (copied == inserted || copied == 0) ? 1 : -1;
}

const char* CheckTable(int res)
{
    return res < 0 ? kPartial : nullptr;
}

/// Each text needs a block of its own; those that did not get one are empty.
int UseArrayOfTexts()
{
    static const char kText[] = "a text of more than a few bytes, so that it needs a block of its own";
    XArray<XString> array;
    int added = 0;
    for (int i = 0; i < 40; ++i) {
        added += array.PushBack(kText);
    }
    XArray<XString> copy(array), moved(static_cast<XArray<XString>&&>(array));
    copy = moved;
    bool right = moved.Size() == added && array.IsEmpty() && (copy.IsEmpty() || copy.Size() == added);
    for (const XString* text = moved.Begin(); text != moved.End(); ++text) {
        right = right && (text->IsEmpty() || strcmp(text->Text(), kText) == 0);
    }
    return right ? 1 : -1;
}

int UseAlignedBlocks()
{
    bool right = true;
    for (int alignment = 16; alignment <= 4096; alignment *= 4) {
        void* block = ZmNewAligned(1000, alignment);
        right = right && (block == nullptr ||
                          (size_t(block) % size_t(alignment) == 0 && ZmIsAllocatedByNewAligned(block, alignment)));
        ZmDeleteAligned(block);
    }
    return right ? 1 : -1;
}

int UsePools()
{
    XFixedSizeAllocator pool(40, 4096);
    void* blocks[300];
    for (void*& block : blocks) {
        block = pool.Allocate();
    }
    for (void* block : blocks) {
        pool.Free(block);
    }
    return 1;
}

int UseAllocator()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* scratch = allocator.AllocateScratch(100000);
    void* pool = allocator.AllocatePool(48);
    void* memory = allocator.AllocateMemory(1000);
    char* string = allocator.AllocateString("some text");
    XString* text = allocator.AllocateScratchString();
    allocator.DumpStats("stats");
    if (text != nullptr) {
        allocator.ReleaseScratchString(text);
    }
    allocator.ReleaseString(string);
    allocator.ReleaseMemory(memory);
    allocator.ReleasePool(48, pool);
    allocator.ReleaseScratch(scratch);
    allocator.ReleaseUnusedScratch();
    return 1;
}

int UseScratch()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* blocks[20];
    for (unsigned i = 0; i < 20; ++i) {
        blocks[i] = allocator.AllocateScratch(1000 * (i + 1));
    }
    for (void* block : blocks) {
        allocator.ReleaseScratch(block);
    }
    XString* strings[10];
    for (XString*& string : strings) {
        string = allocator.AllocateScratchString();
    }
    for (XString* string : strings) {
        allocator.ReleaseScratchString(string);
    }
    allocator.ReleaseUnusedScratch();
    return allocator.GetAllocatedScratchCount() == 0 ? 1 : -1;
}

int UseManyPools()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* blocks[100];
    for (unsigned i = 0; i < 100; ++i) {
        blocks[i] = allocator.AllocatePool(4 + 10 * i);
    }
    for (unsigned i = 0; i < 100; ++i) {
        allocator.ReleasePool(4 + 10 * i, blocks[i]);
    }
    return 1;
}

}  // namespace

const std::vector<Scenario> kMemoryScenarios = {
    {"strings", Nothing, UseStrings, Always},
    {"strings built", Nothing, BuildStrings, Always},
    {"strings replaced", Nothing, ReplaceInStrings, Always},
    {"array", Nothing, UseArray, Always},
    {"hash table", Nothing, [] { return UseTable(NumberedName); }, CheckTable},
    {"hash table with one chain", Nothing, [] { return UseTable(CollidingName); }, CheckTable},
    {"hash table moved", Nothing, MoveTables, CheckTable},
    {"array of texts", Nothing, UseArrayOfTexts, CheckTable},
    {"aligned blocks", Nothing, UseAlignedBlocks, CheckTable},
    {"fixed-size blocks", Nothing, UsePools, Always},
    {"allocator", Nothing, UseAllocator, Always},
    {"scratch memory", Nothing, UseScratch, [](int res) { return res < 0 ? "a block stayed" : Always(0); }},
    {"pools", [] { UseManyPools(); }, UseManyPools, Always},
};
