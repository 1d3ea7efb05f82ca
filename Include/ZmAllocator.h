#pragma once

#include "XString.h"

/// The memory services of a process: plain blocks with statistics, string storage, recycled scratch blocks and scratch
/// strings, and pools of small blocks.
///
/// All functions may be called from any thread at any time; a lock protects shared data. The allocator is created at
/// its first use and destroyed when the library is unloaded. Destructors that run later may still release what they own
/// and even allocate: from then on strings and blocks come from the C heap and return to it without being counted, and
/// scratch blocks and pool blocks, whose memory is gone with the allocator, are ignored. If other threads exist at that
/// time on a POSIX system, the allocator stays instead: they may go on using it until the process is gone.
///
/// The functions return null if memory runs out.
class ZmAllocator {
public:
    /// Counters. A thread that reads one while others allocate may see it change. The string bytes are the sizes
    /// requested by XString and, for blocks of AllocateString(), the sizes that the C heap reserved.
    struct Stats {
        int32_t CurrentBytes = 0;  ///< bytes of AllocateMemory(); see ReleaseMemory()
        int32_t PeakBytes = 0;     ///< maximum of CurrentBytes
        int32_t TotalBytes = 0;    ///< bytes of all AllocateMemory() calls; wraps after 2 GiB, like CurrentBytes

        uint32_t MemoryCount = 0;  ///< calls of AllocateMemory() that were counted

        uint32_t StringCount = 0;       ///< strings currently allocated
        uint32_t PeakStringCount = 0;   ///< maximum of StringCount
        uint64_t TotalStringCount = 0;  ///< strings ever allocated
        uint64_t StringBytes = 0;       ///< bytes of the strings currently allocated
        uint64_t PeakStringBytes = 0;   ///< maximum of StringBytes
        uint64_t TotalStringBytes = 0;  ///< bytes of all strings ever allocated
    };

    /// Returns the allocator, which the first call creates.
    ZM_API static ZmAllocator& Instance();

    /// Plain blocks from the global allocation operators, without lock and statistics.
    ZM_API void* Allocate(unsigned int size);
    ZM_API void Release(void* block);

    /// String storage in the C heap: an uninitialised block, or a copy of a text (null for null).
    /// @{
    ZM_API char* AllocateString(unsigned int size);
    ZM_API char* AllocateString(const char* text);
    ZM_API void ReleaseString(char* string);
    /// @}

    /// Allocates a block from the C heap that is counted in the statistics.
    ZM_API void* AllocateMemory(unsigned int size);

    /// Frees a block of AllocateMemory(); null does nothing. **CurrentBytes does not decrease**: it only grows, and
    /// restarts at 0 when it is found to be negative, after 2 GiB.
    ZM_API void ReleaseMemory(void* block);

    /// Allocates a scratch block for the data of one frame or one call, aligned to 16 bytes. Released blocks are
    /// reused: the smallest one that is large enough, and of several such blocks the one released last; otherwise the
    /// largest, which is enlarged. A program that has warmed up therefore allocates nothing. Returns null for size 0.
    ZM_API void* AllocateScratch(unsigned int size);

    /// Releases a scratch block that is in use; anything else, including null, is ignored.
    ZM_API void ReleaseScratch(void* block);

    /// Bytes and number of all scratch blocks, in use or not; the bytes are limited to 2^32 - 1.
    ZM_API unsigned int GetAllocatedScratchMemory();
    ZM_API int GetAllocatedScratchCount();

    /// Frees the scratch blocks that are not in use.
    ZM_API void ReleaseUnusedScratch();

    /// Returns a temporary string: the one released last, **with the contents it had then**, or a new empty one.
    ZM_API XString* AllocateScratchString();
    ZM_API void ReleaseScratchString(XString* string);

    /// Blocks of 1 to 1020 bytes, aligned to 4 bytes, from pools of one block size each in steps of 4 bytes. Null for
    /// other sizes. `size` must be the same in both calls; releasing null does nothing.
    ZM_API void* AllocatePool(unsigned int size);
    ZM_API void ReleasePool(unsigned int size, void* block);

    /// The live counters.
    ZM_API const Stats& GetGlobalStats() const;

    /// Writes the statistics as text to the named file, replacing it, or to the standard output if the name is null.
    /// Does nothing if the file cannot be opened.
    ///
    /// "Shared Strings" is always 0 and "UnShared Strings" is the number of strings, as each owns its text. The small
    /// allocator supplies short strings from pages of 64 KB. There is no "free" allocator of larger pages, and its
    /// figures are 0. "Current" is CurrentBytes, followed in brackets by the number of AllocateMemory() calls and their
    /// mean size.
    ZM_API void DumpStats(const char* fileName);

    ZmAllocator(const ZmAllocator&) = delete;
    ZmAllocator& operator=(const ZmAllocator&) = delete;

private:
    struct Parts;

    ZmAllocator();
    ~ZmAllocator();

    Parts* m_Parts;
};
