#include "ZmAllocator.h"

#include "Foundations/AllocatorReport.h"
#include "Foundations/ScratchBlocks.h"
#include "Foundations/StringStorage.h"
#include "Platform/FirstUse.h"
#include "Platform/OsFiles.h"
#include "Platform/OsThread.h"
#include "Platform/OutOfMemory.h"
#include "Platform/OwnMutexHolder.h"
#include "XFixedSizeAllocator.h"
#include "ZmAligned.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <stdlib.h>

namespace {

/// Set when the allocator is destroyed, for destructors that run after it.
std::atomic<bool> g_Destroyed{false};

bool IsDestroyed()
{
    return g_Destroyed.load(std::memory_order_relaxed);
}

constexpr unsigned kPoolGrain = 4, kPoolCount = 256;
constexpr unsigned kLargestPoolBlock = (kPoolCount - 1) * kPoolGrain;
constexpr int kPoolPageSize = 4096;

unsigned PoolOf(unsigned size)
{
    return (size + kPoolGrain - 1) / kPoolGrain;
}

}  // namespace

struct ZmAllocator::Parts {
    ZmMutex mutex;

    /// Nesting depth of the thread that holds the mutex. The program may have replaced the global allocation operators
    /// by its own, which call AllocateMemory(): such inner calls are not counted.
    int depth = 0;

    zm::ScratchBlocks scratch;
    XArray<XString*> strings;
    std::unique_ptr<XFixedSizeAllocator> pools[kPoolCount];
};

namespace {

/// Locks the mutex and increments the depth while it lives.
class Inside {
public:
    Inside(ZmMutex& mutex, int& depth) : m_Holder(mutex), m_Depth(depth) { ++m_Depth; }
    ~Inside() { --m_Depth; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    zm::OwnMutexHolder m_Holder;
    int& m_Depth;
};

int32_t WrappingSum(int32_t a, uint32_t b)
{
    return int32_t(uint32_t(a) + b);
}

}  // namespace

ZmAllocator::ZmAllocator()
{
    alignas(Parts) static unsigned char memory[sizeof(Parts)];
    m_Parts = new (memory) Parts;
    constexpr int kFirstStrings = 4;
    m_Parts->strings.Reserve(kFirstStrings);
}

// Threads that still run when the process exits may be inside, or use their blocks: the allocator stays for them.
ZmAllocator::~ZmAllocator()
{
    if (zm::ThreadsOutliveExit()) {
        return;
    }
    for (XString** string = m_Parts->strings.Begin(); string != m_Parts->strings.End(); ++string) {
        delete *string;
    }
    g_Destroyed.store(true, std::memory_order_relaxed);
    m_Parts->~Parts();
}

ZmAllocator& ZmAllocator::Instance()
{
    static zm::FirstUse<ZmAllocator> allocator;
    return allocator.Get([](void* memory) {
        new (memory) ZmAllocator;
        atexit([] { Instance().~ZmAllocator(); });
    });
}

// Non-static, although they use static state only: callers use them as members.
// NOLINTBEGIN(readability-convert-member-functions-to-static)

void* ZmAllocator::Allocate(unsigned int size)
{
    return zm::NewBlock(size);
}

void ZmAllocator::Release(void* block)
{
    zm::DeleteBlock(block);
}

char* ZmAllocator::AllocateString(unsigned int size)
{
    return zm::NewHeapText(size);
}

char* ZmAllocator::AllocateString(const char* text)
{
    const size_t length = text != nullptr ? strlen(text) : 0;
    if (text == nullptr || length >= UINT_MAX) {
        return nullptr;
    }
    char* string = AllocateString(unsigned(length + 1));
    return string != nullptr ? static_cast<char*>(memcpy(string, text, length + 1)) : nullptr;
}

void ZmAllocator::ReleaseString(char* string)
{
    zm::DeleteHeapText(string);
}

// NOLINTEND(readability-convert-member-functions-to-static)

void* ZmAllocator::AllocateMemory(unsigned int size)
{
    if (!IsDestroyed()) {
        zm::OwnMutexHolder lock(m_Parts->mutex);
        if (m_Parts->depth == 0) {
            zm::g_Stats.CurrentBytes = WrappingSum(zm::g_Stats.CurrentBytes, size);
            zm::g_Stats.TotalBytes = WrappingSum(zm::g_Stats.TotalBytes, size);
            zm::g_Stats.PeakBytes = std::max(zm::g_Stats.PeakBytes, zm::g_Stats.CurrentBytes);
            zm::g_Stats.MemoryCount += 1;
        }
    }
    return malloc(size);
}

void ZmAllocator::ReleaseMemory(void* block)
{
    if (!IsDestroyed()) {
        zm::OwnMutexHolder lock(m_Parts->mutex);
        if (m_Parts->depth == 0) {
            // Only clamped, never reduced by the freed size. Callers depend on this figure
            // (ZmAllocatorTest, MemoryIsCountedAndItsReleaseIsNot).
            zm::g_Stats.CurrentBytes = std::max(zm::g_Stats.CurrentBytes, 0);
        }
    }
    free(block);
}

void* ZmAllocator::AllocateScratch(unsigned int size)
{
    if (IsDestroyed()) {
        return size != 0 && size <= INT_MAX ? ZmNewAligned(int(size), zm::ScratchBlocks::kAlignment) : nullptr;
    }
    Inside inside(m_Parts->mutex, m_Parts->depth);
    return m_Parts->scratch.Take(size);
}

void ZmAllocator::ReleaseScratch(void* block)
{
    if (block != nullptr && !IsDestroyed()) {
        Inside inside(m_Parts->mutex, m_Parts->depth);
        m_Parts->scratch.GiveBack(block);
    }
}

unsigned int ZmAllocator::GetAllocatedScratchMemory()
{
    if (IsDestroyed()) {
        return 0;
    }
    zm::OwnMutexHolder lock(m_Parts->mutex);
    return unsigned(std::min(m_Parts->scratch.TotalSize(), uint64_t(UINT_MAX)));
}

int ZmAllocator::GetAllocatedScratchCount()
{
    if (IsDestroyed()) {
        return 0;
    }
    zm::OwnMutexHolder lock(m_Parts->mutex);
    return m_Parts->scratch.Count();
}

void ZmAllocator::ReleaseUnusedScratch()
{
    if (!IsDestroyed()) {
        Inside inside(m_Parts->mutex, m_Parts->depth);
        m_Parts->scratch.FreeUnused();
    }
}

XString* ZmAllocator::AllocateScratchString()
{
    if (!IsDestroyed()) {
        zm::OwnMutexHolder lock(m_Parts->mutex);
        XArray<XString*>& strings = m_Parts->strings;
        if (!strings.IsEmpty()) {
            XString* string = strings.Back();
            strings.PopBack();
            return string;
        }
    }
    return new (std::nothrow) XString;
}

void ZmAllocator::ReleaseScratchString(XString* string)
{
    if (string == nullptr) {
        return;
    }
    if (!IsDestroyed()) {
        zm::OwnMutexHolder lock(m_Parts->mutex);
        if (m_Parts->strings.PushBack(string)) {
            return;
        }
    }
    delete string;
}

void* ZmAllocator::AllocatePool(unsigned int size)
{
    if (size == 0 || size > kLargestPoolBlock) {
        return nullptr;
    }
    if (IsDestroyed()) {
        return malloc(size);
    }
    zm::OwnMutexHolder lock(m_Parts->mutex);
    std::unique_ptr<XFixedSizeAllocator>& pool = m_Parts->pools[PoolOf(size)];
    if (pool == nullptr) {
        pool.reset(new (std::nothrow) XFixedSizeAllocator(int(PoolOf(size) * kPoolGrain), kPoolPageSize));
    }
    return pool != nullptr ? pool->Allocate() : nullptr;
}

void ZmAllocator::ReleasePool(unsigned int size, void* block)
{
    if (block == nullptr || size == 0 || size > kLargestPoolBlock || IsDestroyed()) {
        return;
    }
    zm::OwnMutexHolder lock(m_Parts->mutex);
    if (XFixedSizeAllocator* pool = m_Parts->pools[PoolOf(size)].get()) {
        pool->Free(block);
    }
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
const ZmAllocator::Stats& ZmAllocator::GetGlobalStats() const
{
    return zm::g_Stats;
}

void ZmAllocator::DumpStats(const char* fileName)
{
    zm::AllocatorFigures figures;
    if (!IsDestroyed()) {
        zm::OwnMutexHolder lock(m_Parts->mutex);
        for (const std::unique_ptr<XFixedSizeAllocator>& pool : m_Parts->pools) {
            if (pool != nullptr) {
                figures.pools.PushBack({pool->GetBlockSize(), pool->GetChunkCount(), pool->GetChunksTotalSize(),
                                        pool->GetChunksOccupation()});
            }
        }
        figures.scratchBytes = m_Parts->scratch.TotalSize();
        figures.scratchCount = m_Parts->scratch.Count();
        figures.stats.CurrentBytes = zm::g_Stats.CurrentBytes;
        figures.stats.PeakBytes = zm::g_Stats.PeakBytes;
        figures.stats.TotalBytes = zm::g_Stats.TotalBytes;
        figures.stats.MemoryCount = zm::g_Stats.MemoryCount;
    }
    figures.textPages = zm::CopyStringStats(figures.stats);
    zm::UnlessOutOfMemory(0, [&] {
        const std::string report = zm::AllocatorReport(figures);
        FILE* file = fileName != nullptr ? zm::OpenFile(fileName, "w") : stdout;
        if (file != nullptr) {
            fputs(report.c_str(), file);
            fflush(file);
            if (file != stdout) {
                fclose(file);
            }
        }
        return 1;
    });
}
