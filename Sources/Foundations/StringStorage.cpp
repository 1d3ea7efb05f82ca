#include "Foundations/StringStorage.h"

#include "Foundations/SmallBlocks.h"
#include "Platform/OsHeap.h"
#include "Platform/OsModule.h"
#include "Platform/OsThread.h"

#include <algorithm>
#include <atomic>
#include <stdlib.h>

namespace zm {

ZmAllocator::Stats g_Stats;

namespace {

#if defined(__has_feature)
#define ZM_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ZM_HAS_FEATURE(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || ZM_HAS_FEATURE(address_sanitizer)
constexpr size_t kLargestInPages = 0;  // the sanitizer must see each string as a heap block of its own
#else
constexpr size_t kLargestInPages = SmallBlocks::kLargest;
#endif

SmallBlocks g_Small;
std::atomic<bool> g_Taken{false};

/// Locks pages and counters while it lives. It is held for a few instructions only, so waiting threads spin. A process
/// with a single thread skips the atomic exchange, which would cost as much as everything else. Termination of a thread
/// is delayed until it has released the lock; destructors at process exit do not wait for a thread that the system
/// ended while it held the lock.
class Holder {
public:
    explicit Holder(const StopDelay& delay) : m_Locks(delay.OthersRun())
    {
        while (m_Locks && g_Taken.exchange(true, std::memory_order_acquire) && !OtherThreadsAreEnded()) {
            YieldThread();
        }
    }
    ~Holder()
    {
        if (m_Locks) {
            g_Taken.store(false, std::memory_order_release);
        }
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    const bool m_Locks;
};

void CountNew(size_t bytes)
{
    ZmAllocator::Stats& stats = g_Stats;
    stats.StringCount += 1;
    stats.StringBytes += bytes;
    stats.TotalStringCount += 1;
    stats.TotalStringBytes += bytes;
    stats.PeakStringCount = std::max(stats.PeakStringCount, stats.StringCount);
    stats.PeakStringBytes = std::max(stats.PeakStringBytes, stats.StringBytes);
}

void CountDelete(size_t bytes)
{
    g_Stats.StringCount -= 1;
    g_Stats.StringBytes -= bytes;
}

char* NewCountedHeapText(size_t size, bool countHeapSize)
{
    const StopDelay delay;  // not only for the holder: the heap has locks, too
    char* text = static_cast<char*>(malloc(size));
    if (text != nullptr) {
        const size_t bytes = countHeapSize ? HeapBlockSize(text) : size;
        const Holder holder(delay);
        CountNew(bytes);
    }
    return text;
}

void DeleteCountedHeapText(char* text, size_t bytes)
{
    const StopDelay delay;
    {
        const Holder holder(delay);
        CountDelete(bytes);
    }
    free(text);
}

}  // namespace

char* NewText(size_t size)
{
    if (size > kLargestInPages) {
        return NewCountedHeapText(size, false);
    }
    const StopDelay delay;
    const Holder holder(delay);
    void* text = g_Small.Take(size);
    if (text != nullptr) {
        CountNew(size);
    }
    return static_cast<char*>(text);
}

void DeleteText(char* text, size_t size)
{
    if (text == nullptr) {
        return;
    }
    if (size > kLargestInPages) {
        DeleteCountedHeapText(text, size);
        return;
    }
    const StopDelay delay;
    const Holder holder(delay);
    CountDelete(size);
    g_Small.GiveBack(text, size);
}

char* NewHeapText(size_t size)
{
    return NewCountedHeapText(size, true);
}

void DeleteHeapText(char* text)
{
    if (text != nullptr) {
        DeleteCountedHeapText(text, HeapBlockSize(text));
    }
}

void* NewRecord(size_t size)
{
    if (size > kLargestInPages) {
        return malloc(size);
    }
    const StopDelay delay;
    const Holder holder(delay);
    return g_Small.Take(size);
}

void DeleteRecord(void* record, size_t size)
{
    if (size > kLargestInPages) {
        free(record);
    } else if (record != nullptr) {
        const StopDelay delay;
        const Holder holder(delay);
        g_Small.GiveBack(record, size);
    }
}

TextPages CopyStringStats(ZmAllocator::Stats& res)
{
    const StopDelay delay;
    const Holder holder(delay);
    res.StringCount = g_Stats.StringCount;
    res.PeakStringCount = g_Stats.PeakStringCount;
    res.TotalStringCount = g_Stats.TotalStringCount;
    res.StringBytes = g_Stats.StringBytes;
    res.PeakStringBytes = g_Stats.PeakStringBytes;
    res.TotalStringBytes = g_Stats.TotalStringBytes;
    return {g_Small.PageCount(), g_Small.BytesInUse(), g_Small.BytesInPages() - g_Small.BytesInUse()};
}

void FreeTextPages()
{
    const StopDelay delay;
    const Holder holder(delay);
    g_Small.FreePages();
}

}  // namespace zm
