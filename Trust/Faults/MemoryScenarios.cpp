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

int UseTable()
{
    XHashTable<int, XString> table;
    int inserted = 0;
    char name[20];
    for (int i = 0; i < 200; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        inserted += table.InsertUnique(name, i);
    }
    const XHashTable<int, XString> copy(table);
    return inserted == table.Size() ? inserted : -1000;
}

const char* CheckTable(int res)
{
    return res < 0 ? kPartial : nullptr;
}

int ChangeTable()
{
    XHashTable<XString, XString> table;
    char name[20];
    int res = 0;
    for (int i = 0; i < 100; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        const auto inserted = table.Insert(name, "a value that needs a block of its own on the heap of the process");
        res += inserted.position != table.End();
    }
    for (int i = 0; i < 100; i += 3) {
        snprintf(name, sizeof(name), "name %d", i);
        table.Remove(name);
    }
    XHashTable<XString, XString> other(table);
    other.Swap(table);
    return res;
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
    {"hash table", Nothing, UseTable, CheckTable},
    {"hash table changed", Nothing, ChangeTable, Always},
    {"fixed-size blocks", Nothing, UsePools, Always},
    {"allocator", Nothing, UseAllocator, Always},
    {"scratch memory", Nothing, UseScratch, [](int res) { return res < 0 ? "a block stayed" : Always(0); }},
    {"pools", [] { UseManyPools(); }, UseManyPools, Always},
};
