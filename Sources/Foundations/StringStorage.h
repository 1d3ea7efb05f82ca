#pragma once

#include "ZmAllocator.h"

namespace zm {

/// Blocks for strings, counted. All of this is plain static data, so that strings work before and after the life of
/// every other object. Any thread. Without memory null.
///
/// A caller who knows the size of his block when he frees it gets short ones from pages, at a fraction of what
/// the C heap costs; the blocks of the others are of the C heap.
/// @{
char* NewText(size_t size);
void DeleteText(char* text, size_t size);

char* NewHeapText(size_t size);
void DeleteHeapText(char* text);
/// @}

/// Blocks for small records of which there are many, from the same pages and as quick; not counted among the strings.
/// `size` must be the same at both calls. Any thread. Without memory null.
/// @{
void* NewRecord(size_t size);
void DeleteRecord(void* record, size_t size);
/// @}

/// What ZmAllocator::GetGlobalStats() returns. The allocator's mutex guards the counters of memory, a lock of their
/// own those of strings.
extern ZmAllocator::Stats g_Stats;

struct TextPages {
    size_t count;
    size_t bytesInUse;
    size_t bytesFree;
};

/// A consistent copy of the string counters, into `res`, and of the pages.
TextPages CopyStringStats(ZmAllocator::Stats& res);

/// Gives the pages back to the heap, if no string is in them.
void FreeTextPages();

}  // namespace zm
