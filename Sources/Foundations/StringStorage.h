#pragma once

#include "ZmAllocator.h"

namespace zm {

/// Counted blocks for strings. Uses plain static data only, so strings work before and after the lifetime of every
/// other object. Thread-safe. Returns null if out of memory.
///
/// Callers that pass the size when freeing get short blocks from pages, at a fraction of the cost of the C heap; all
/// other blocks come from the C heap.
/// @{
char* NewText(size_t size);
void DeleteText(char* text, size_t size);

char* NewHeapText(size_t size);
void DeleteHeapText(char* text);
/// @}

/// Small records that exist in large numbers: from the same pages and as fast, but not counted as strings. `size` must
/// be the same in both calls. Thread-safe. Returns null if out of memory.
/// @{
void* NewRecord(size_t size);
void DeleteRecord(void* record, size_t size);
/// @}

/// The figures that ZmAllocator::GetGlobalStats() returns. The memory counters are guarded by the allocator's mutex,
/// the string counters by a lock of their own.
extern ZmAllocator::Stats g_Stats;

struct TextPages {
    size_t count;
    size_t bytesInUse;
    size_t bytesFree;
};

/// Copies the string counters consistently into `res`; returns the figures of the pages.
TextPages CopyStringStats(ZmAllocator::Stats& res);

/// Returns the pages to the heap if no string uses them.
void FreeTextPages();

}  // namespace zm
