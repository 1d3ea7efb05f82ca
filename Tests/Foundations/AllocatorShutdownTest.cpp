#include "ZmAllocator.h"

#include <stdio.h>
#include <stdlib.h>

// Objects that outlive the allocator: they are constructed before its first use and so destroyed after it or, if it is
// in a DLL, while it is still alive. Sanitizers detect leaks.

namespace {

bool g_AllocatorIsGoneFirst = true;

void Require(bool condition, const char* what)
{
    if (!condition) {
        fprintf(stderr, "after the allocator: %s\n", what);
        fflush(stderr);
        _Exit(1);
    }
}

void UseStrings(XString& own)
{
    Require(own == "made while it lived", "a string keeps its text");
    own << " and longer";
    XString made("new");
    made << own;
    own = made;
    Require(own == "newmade while it lived and longer", "strings can be made");
    ZmAllocator& allocator = ZmAllocator::Instance();
    char* text = allocator.AllocateString("text");
    Require(text != nullptr && strcmp(text, "text") == 0, "string storage can be asked for");
    allocator.ReleaseString(text);
    XString* scratch = allocator.AllocateScratchString();
    Require(scratch != nullptr && *scratch == (g_AllocatorIsGoneFirst ? "" : "free, with storage"),
            "scratch strings are new ones, or while it lives the one given back");
    *scratch = "scratch";
    allocator.ReleaseScratchString(scratch);
}

struct Owner {
    ~Owner()
    {
        ZmAllocator& allocator = ZmAllocator::Instance();
        Require((allocator.GetAllocatedScratchCount() == 0) == g_AllocatorIsGoneFirst, "it is gone, or not, as told");
        UseStrings(string);
        void* more = allocator.AllocateMemory(100);
        Require(more != nullptr, "memory can be asked for");
        memset(more, 0xFF, 100);
        allocator.ReleaseMemory(more);
        allocator.ReleaseMemory(memory);
        allocator.ReleaseString(text);
        allocator.ReleaseScratch(scratch);
        allocator.ReleasePool(8, pooled);
        allocator.ReleaseUnusedScratch();
        allocator.ReleaseScratchString(scratchString);
        Require(allocator.AllocateScratch(0) == nullptr, "a scratch block of no bytes is none");
        puts("all given back");
        fflush(stdout);
    }

    XString string;
    char* text = nullptr;
    void* memory = nullptr;
    void* scratch = nullptr;
    void* pooled = nullptr;
    XString* scratchString = nullptr;
};

Owner g_Owner;

}  // namespace

int main(int argc, char** argv)
{
    g_AllocatorIsGoneFirst = argc < 2 || strcmp(argv[1], "--allocator-outlives-program") != 0;
    ZmAllocator& allocator = ZmAllocator::Instance();
    g_Owner.string = "made while it lived";
    g_Owner.text = allocator.AllocateString("text");
    g_Owner.memory = allocator.AllocateMemory(1000);
    g_Owner.scratch = allocator.AllocateScratch(1000);
    g_Owner.pooled = allocator.AllocatePool(8);
    g_Owner.scratchString = allocator.AllocateScratchString();
    *g_Owner.scratchString = "scratch";
    allocator.ReleaseScratchString(new XString("free, with storage"));
    return 0;
}
