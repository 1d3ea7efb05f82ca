#pragma once

#include "XString.h"

/// The memory services of a process: plain blocks with statistics, storage of strings, scratch blocks and scratch
/// strings that are recycled, and pools of small blocks.
///
/// Any thread may call anything here at any time; a lock guards what is shared. The allocator is made at the first
/// use and destroyed when the library is unloaded. Destructors that run later may still give back what they own,
/// and even ask for more: from then on strings and blocks come from the C heap and go back to it without being
/// counted, and scratch blocks and pool blocks, whose memory went with the allocator, are forgotten.
///
/// Without memory the functions return null.
class ZmAllocator {
public:
    /// Counters. They are of the moment: a thread that reads one while others allocate may see it change. Bytes of
    /// strings are those that XString asked for and, for blocks of AllocateString(), those that the C heap holds.
    struct Stats {
        int32_t CurrentBytes = 0;  ///< of AllocateMemory(); see ReleaseMemory()
        int32_t PeakBytes = 0;     ///< the most that CurrentBytes has been
        int32_t TotalBytes = 0;    ///< of all AllocateMemory() together; wraps after 2 GiB, as CurrentBytes does

        uint32_t MemoryCount = 0;  ///< calls of AllocateMemory() that were counted

        uint32_t StringCount = 0;       ///< strings that are allocated
        uint32_t PeakStringCount = 0;   ///< the most that StringCount has been
        uint64_t TotalStringCount = 0;  ///< strings that ever were
        uint64_t StringBytes = 0;       ///< the same three for their bytes
        uint64_t PeakStringBytes = 0;   ///< the most that StringBytes has been
        uint64_t TotalStringBytes = 0;  ///< of all strings that ever were
    };

    /// Constructs the allocator at the first call.
    ZM_API static ZmAllocator& Instance();

    /// Plain blocks of the global allocation operators: neither lock nor statistics.
    ZM_API void* Allocate(unsigned int size);
    ZM_API void Release(void* block);

    /// Storage for strings: blocks of the C heap, and a copy of a text in one (null for null).
    /// @{
    ZM_API char* AllocateString(unsigned int size);
    ZM_API char* AllocateString(const char* text);
    ZM_API void ReleaseString(char* string);
    /// @}

    /// Blocks of the C heap that the statistics count.
    ZM_API void* AllocateMemory(unsigned int size);

    /// Frees a block of AllocateMemory(); null does nothing. **CurrentBytes stays as it is**: it grows only, and
    /// starts again at 0 when it is found negative, after 2 GiB. That is the contract, do not repair it.
    ZM_API void ReleaseMemory(void* block);

    /// Scratch blocks, for data of one frame or one call, aligned to 16 bytes. A block that was given back is
    /// handed out again: the smallest that is large enough, of several such the one given back last; else the
    /// largest, made larger. So a program that has warmed up allocates nothing. Null for size 0.
    ZM_API void* AllocateScratch(unsigned int size);

    /// Gives back a scratch block that is in use; anything else, null included, is ignored.
    ZM_API void ReleaseScratch(void* block);

    /// Bytes and number of all scratch blocks, in use or not; the bytes are at most 2^32 - 1.
    ZM_API unsigned int GetAllocatedScratchMemory();
    ZM_API int GetAllocatedScratchCount();

    /// Frees the scratch blocks that nobody uses.
    ZM_API void ReleaseUnusedScratch();

    /// A string for a moment: the one given back last, **with the contents it had then**, or a new and empty one.
    ZM_API XString* AllocateScratchString();
    ZM_API void ReleaseScratchString(XString* string);

    /// Blocks of 1 to 1020 bytes from pools, one pool for each four bytes of size; null for other sizes. Blocks are
    /// aligned to 4 bytes. `size` must be the same at both calls; null is ignored.
    ZM_API void* AllocatePool(unsigned int size);
    ZM_API void ReleasePool(unsigned int size, void* block);

    /// The counters, which go on changing.
    ZM_API const Stats& GetGlobalStats() const;

    /// Writes the statistics as a text to the named file, replacing it, or to the standard output for null. Does
    /// nothing if the file cannot be opened.
    ///
    /// "Shared Strings" is always 0 and "UnShared Strings" the number of strings, as each owns its text. The
    /// small allocator is the one that short strings come from, in pages of 64 KB; a "free" allocator of larger pages
    /// does not exist, and what the report says of it is 0. "Current" is CurrentBytes, and in brackets the
    /// number of AllocateMemory() calls and their mean size.
    ZM_API void DumpStats(const char* fileName);

    ZmAllocator(const ZmAllocator&) = delete;
    ZmAllocator& operator=(const ZmAllocator&) = delete;

private:
    struct Parts;

    ZmAllocator();
    ~ZmAllocator();

    Parts* m_Parts;
};
