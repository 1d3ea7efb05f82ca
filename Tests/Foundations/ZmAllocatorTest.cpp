#include "ZmAllocator.h"

#include "Support/Random.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdio.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

ZmAllocator& Allocator()
{
    return ZmAllocator::Instance();
}

bool HoldsOnly(const void* block, char mark, size_t size)
{
    const char* bytes = static_cast<const char*>(block);
    return std::all_of(bytes, bytes + size, [mark](char byte) { return byte == mark; });
}

/// The rules of scratch blocks over plain lists. Where the rules create a block, its address is taken from the real
/// allocator; elsewhere the rules determine which block must be returned.
class ScratchModel {
public:
    struct Record {
        unsigned size;
        char* block;
        char mark;
    };

    void Allocate(unsigned size)
    {
        char* block = static_cast<char*>(Allocator().AllocateScratch(size));
        ASSERT_EQ(reinterpret_cast<uintptr_t>(block) % 16, 0u);
        const auto fit = std::find_if(m_Free.begin(), m_Free.end(), [size](const Record& r) { return r.size >= size; });
        Record record{size, block, 0};
        if (fit != m_Free.end()) {
            record = *fit;
            m_Free.erase(fit);
            ASSERT_EQ(static_cast<void*>(block), record.block) << "not the smallest block that is large enough";
        } else if (!m_Free.empty()) {
            m_Free.pop_back();
        }
        record.mark = char(++m_Mark);
        memset(block, record.mark, record.size);
        m_Used.push_back(record);
    }

    void Release(size_t which)
    {
        const Record record = m_Used[which];
        ASSERT_TRUE(HoldsOnly(record.block, record.mark, record.size));
        m_Used.erase(m_Used.begin() + ptrdiff_t(which));
        const auto notSmaller = [record](const Record& r) { return r.size >= record.size; };
        m_Free.insert(std::find_if(m_Free.begin(), m_Free.end(), notSmaller), record);
        Allocator().ReleaseScratch(record.block);
    }

    void ReleaseUnused()
    {
        m_Free.clear();
        Allocator().ReleaseUnusedScratch();
    }

    void Compare() const
    {
        unsigned bytes = 0;
        for (const std::vector<Record>* list : {&m_Used, &m_Free}) {
            for (const Record& record : *list) {
                bytes += record.size;
            }
        }
        ASSERT_EQ(Allocator().GetAllocatedScratchMemory(), bytes);
        ASSERT_EQ(Allocator().GetAllocatedScratchCount(), int(m_Used.size() + m_Free.size()));
    }

    const std::vector<Record>& Used() const { return m_Used; }

private:
    std::vector<Record> m_Used, m_Free;
    unsigned m_Mark = 0;
};

TEST(ZmAllocatorTest, ScratchBlocksComeByTheirRules)
{
    Allocator().ReleaseUnusedScratch();
    ASSERT_EQ(Allocator().GetAllocatedScratchCount(), 0) << "other tests have released all their blocks";
    Random random(1);
    ScratchModel model;
    for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
        const int choice = random.Int(0, 99), used = int(model.Used().size());
        if (choice < (i / 200 % 2 == 0 ? 60 : 40)) {
            model.Allocate(unsigned(choice < 25 ? random.Int(1, 4) * 100 : random.Int(1, 1000)));
        } else if (choice == 99) {
            model.ReleaseUnused();
        } else if (used != 0) {
            model.Release(size_t(choice < 80 ? random.Int(0, used - 1) : used - 1));
        }
        model.Compare();
    }
    while (!model.Used().empty()) {
        model.Release(0);
    }
    model.ReleaseUnused();
    model.Compare();
}

TEST(ZmAllocatorTest, ScratchThatCannotBeIsRefused)
{
    Allocator().ReleaseUnusedScratch();
    char foreign[16];
    void* block = Allocator().AllocateScratch(100);
    Allocator().ReleaseScratch(block);
    for (const unsigned size : {0u, unsigned(INT_MAX) + 1, UINT_MAX}) {
        EXPECT_EQ(Allocator().AllocateScratch(size), nullptr) << size;
    }
    for (void* strange : {static_cast<void*>(nullptr), static_cast<void*>(foreign), block}) {
        Allocator().ReleaseScratch(strange);
    }
    EXPECT_EQ(Allocator().GetAllocatedScratchCount(), 1);
    EXPECT_EQ(Allocator().GetAllocatedScratchMemory(), 100u);
    Allocator().ReleaseUnusedScratch();
}

TEST(ZmAllocatorTest, ScratchStringsComeBackAsTheyWereTheLastFirst)
{
    XString* first = Allocator().AllocateScratchString();
    XString* second = Allocator().AllocateScratchString();
    ASSERT_NE(first, second);
    *first = "abc";
    *second = "second";
    Allocator().ReleaseScratchString(second);
    Allocator().ReleaseScratchString(first);
    Allocator().ReleaseScratchString(nullptr);
    EXPECT_EQ(Allocator().AllocateScratchString(), first);
    EXPECT_STREQ(first->Text(), "abc");
    EXPECT_EQ(Allocator().AllocateScratchString(), second);
    EXPECT_STREQ(second->Text(), "second");
    for (XString* string : {first, second}) {
        XString().Swap(*string);
        Allocator().ReleaseScratchString(string);
    }
}

TEST(ZmAllocatorTest, PoolsServeEachSizeUpTo1020)
{
    struct Block {
        unsigned size;
        void* block;
    };
    std::vector<Block> blocks;
    std::set<void*> addresses;
    for (unsigned size = 1; size <= 1020; ++size) {
        for (int i = 0; i < 3; ++i) {
            blocks.push_back({size, Allocator().AllocatePool(size)});
            ASSERT_NE(blocks.back().block, nullptr) << size;
            ASSERT_TRUE(addresses.insert(blocks.back().block).second) << size;
            EXPECT_EQ(reinterpret_cast<uintptr_t>(blocks.back().block) % 4, 0u);
            memset(blocks.back().block, int(size % 251), size);
        }
    }
    for (const Block& block : blocks) {
        ASSERT_TRUE(HoldsOnly(block.block, char(block.size % 251), block.size)) << block.size;
        Allocator().ReleasePool(block.size, block.block);
    }
}

TEST(ZmAllocatorTest, SizesOfOnePoolShareItsBlocks)
{
    for (const unsigned size : {5u, 6u, 7u}) {
        void* block = Allocator().AllocatePool(size);
        Allocator().ReleasePool(9, block);  // a pool that does not own the block
        void* another = Allocator().AllocatePool(8);
        EXPECT_NE(another, block);
        Allocator().ReleasePool(8, another);
        Allocator().ReleasePool(8, block);
        EXPECT_EQ(Allocator().AllocatePool(size), block) << "8 and " << size;
        Allocator().ReleasePool(size, block);
    }
    void* four = Allocator().AllocatePool(4);
    Allocator().ReleasePool(4, four);
    EXPECT_NE(Allocator().AllocatePool(5), four);
    for (const unsigned size : {0u, 1021u, 1024u, UINT_MAX - 2, UINT_MAX}) {
        EXPECT_EQ(Allocator().AllocatePool(size), nullptr) << size;
        Allocator().ReleasePool(size, four);
    }
    Allocator().ReleasePool(8, nullptr);
}

TEST(ZmAllocatorTest, MemoryIsCountedAndItsReleaseIsNot)
{
    const ZmAllocator::Stats& now = Allocator().GetGlobalStats();
    const ZmAllocator::Stats before = now;
    void* large = Allocator().AllocateMemory(100);
    void* small = Allocator().AllocateMemory(20);
    memset(large, 0xFF, 100);
    Allocator().ReleaseMemory(large);
    Allocator().ReleaseMemory(small);
    Allocator().ReleaseMemory(nullptr);
    EXPECT_EQ(now.CurrentBytes, before.CurrentBytes + 120);
    EXPECT_EQ(now.TotalBytes, before.TotalBytes + 120);
    EXPECT_EQ(now.PeakBytes, std::max(before.PeakBytes, now.CurrentBytes));
    EXPECT_EQ(now.MemoryCount, before.MemoryCount + 2);

    void* plain = Allocator().Allocate(100);
    memset(plain, 0xFF, 100);
    Allocator().Release(plain);
    Allocator().Release(nullptr);
    EXPECT_EQ(now.TotalBytes, before.TotalBytes + 120);
}

const struct {
    const char* name;
    int live;   ///< strings afterwards
    int made;   ///< strings in all
    int bytes;  ///< bytes that the live ones have at least
    void (*run)(XString& kept, char*& text);
} kStrings[] = {
    {"constructed", 1, 1, 4, [](XString& kept, char*&) { XString("abc").Swap(kept); }},
    {"constructed and destroyed", 0, 1, 0, [](XString&, char*&) { XString("abc"); }},
    {"grown", 1, 2, 9, [](XString& kept, char*&) { (kept = "abc") << "defgh"; }},
    {"rebuilt", 1, 2, 7, [](XString& kept, char*&) { (kept = "aba").Replace("a", "aaa"); }},
    {"with the largest room", 1, 1, 65535, [](XString& kept, char*&) { kept.Reserve(65535); }},
    {"moved", 1, 1, 4,
     [](XString& kept, char*&) {
         XString other("abc"), moved(std::move(other));
         kept.Swap(moved);
     }},
    {"empty", 0, 0, 0,
     [](XString& kept, char*&) {
         const XString empty(kept);
         kept = empty;
     }},
    {"by size", 1, 1, 100, [](XString&, char*& text) { text = Allocator().AllocateString(100u); }},
    {"by text", 1, 1, 4, [](XString&, char*& text) { text = Allocator().AllocateString("abc"); }},
    {"by null", 0, 0, 0, [](XString&, char*& text) { text = Allocator().AllocateString(static_cast<char*>(nullptr)); }},
};

TEST(ZmAllocatorTest, StringsAreCountedOnEveryPath)
{
    const ZmAllocator::Stats& now = Allocator().GetGlobalStats();
    for (const auto& row : kStrings) {
        SCOPED_TRACE(row.name);
        const ZmAllocator::Stats before = now;
        {
            XString kept;
            char* text = nullptr;
            row.run(kept, text);
            EXPECT_EQ(now.StringCount, before.StringCount + unsigned(row.live));
            EXPECT_EQ(now.TotalStringCount, before.TotalStringCount + unsigned(row.made));
            EXPECT_GE(now.StringBytes, before.StringBytes + unsigned(row.bytes));
            EXPECT_GE(now.TotalStringBytes, before.TotalStringBytes + unsigned(row.bytes));
            EXPECT_TRUE(now.PeakStringCount >= now.StringCount && now.PeakStringBytes >= now.StringBytes);
            Allocator().ReleaseString(text);
        }
        EXPECT_EQ(now.StringCount, before.StringCount);
        EXPECT_EQ(now.StringBytes, before.StringBytes);
    }
}

TEST(ZmAllocatorTest, ManyShortStringsKeepTheirTexts)
{
    const ZmAllocator::Stats before = Allocator().GetGlobalStats();
    {
        Random random(1);
        std::vector<XString> strings(5000);
        for (int i = 0; i < 30000; ++i) {
            const int which = random.Int(0, int(strings.size()) - 1);
            const char mark = char('a' + which % 26);
            XString& string = strings[size_t(which)];
            ASSERT_TRUE(HoldsOnly(string.Text(), mark, string.Length())) << "step " << i;
            XString(std::string(size_t(random.Int(0, 140)), mark).c_str()).Swap(string);
        }
    }
    EXPECT_EQ(Allocator().GetGlobalStats().StringCount, before.StringCount);
    EXPECT_EQ(Allocator().GetGlobalStats().StringBytes, before.StringBytes);
}

TEST(ZmAllocatorTest, AStringIsACopyOfTheText)
{
    constexpr char text[] = "abc";
    char* copy = Allocator().AllocateString(text);
    EXPECT_STREQ(copy, text);
    EXPECT_NE(copy, text);
    Allocator().ReleaseString(copy);
    Allocator().ReleaseString(nullptr);
}

std::string ContentsOf(const std::string& path)
{
    std::string contents;
    if (FILE* file = fopen(path.c_str(), "r")) {
        char buffer[4096];
        for (size_t count; (count = fread(buffer, 1, sizeof(buffer), file)) != 0;) {
            contents.append(buffer, count);
        }
        fclose(file);
    }
    return contents;
}

TEST(ZmAllocatorTest, TheReportGoesToTheFileOrToTheStandardOutput)
{
    Allocator().ReleaseUnusedScratch();
    void* scratch = Allocator().AllocateScratch(3000);
    void* pooled = Allocator().AllocatePool(1020);
    const std::string path = testing::TempDir() + "ZmAllocatorTest.txt";
    if (FILE* file = fopen(path.c_str(), "w")) {
        fputs(std::string(9000, 'x').c_str(), file);
        fclose(file);
    }
    testing::internal::CaptureStdout();
    Allocator().DumpStats(nullptr);
    const std::string printed = testing::internal::GetCapturedStdout();
    Allocator().DumpStats(path.c_str());
    Allocator().DumpStats((testing::TempDir() + "no such folder/report.txt").c_str());
    const std::string written = ContentsOf(path);
    remove(path.c_str());
    EXPECT_EQ(written, printed);
    EXPECT_EQ(printed.find("Strings Statistics :\n"), 0u);
    EXPECT_NE(printed.find(" Pool       1020 : Chunks Count : 1 (    3Ko), Occupation : 25% \n"), std::string::npos);
    EXPECT_NE(printed.find(" Total Scratch memory  2 Kb in 1 pools \n"), std::string::npos) << printed;
    EXPECT_NE(printed.find(" octets\n", printed.size() - 8), std::string::npos);
    Allocator().ReleasePool(1020, pooled);
    Allocator().ReleaseScratch(scratch);
    Allocator().ReleaseUnusedScratch();
}

/// The blocks of one kind that a thread holds at a time, each filled with its own byte.
struct Kind {
    void* (*allocate)(unsigned size);
    void (*release)(unsigned size, void* block);
};

const Kind kKinds[] = {
    {[](unsigned size) { return Allocator().AllocateScratch(size); },
     [](unsigned, void* block) { Allocator().ReleaseScratch(block); }},
    {[](unsigned size) { return Allocator().AllocatePool(size); },
     [](unsigned size, void* block) { Allocator().ReleasePool(size, block); }},
    {[](unsigned size) { return Allocator().AllocateMemory(size); },
     [](unsigned, void* block) { Allocator().ReleaseMemory(block); }},
    {[](unsigned size) -> void* { return Allocator().AllocateString(size); },
     [](unsigned, void* block) { Allocator().ReleaseString(static_cast<char*>(block)); }},
};

/// Whether the block's bytes were also used by another thread.
bool UseABlock(const Kind& kind, char mark, unsigned size)
{
    void* block = kind.allocate(size);
    memset(block, mark, size);
    std::this_thread::yield();
    const bool mixed = !HoldsOnly(block, mark, size);
    kind.release(size, block);
    return mixed;
}

bool UseStrings(char mark, int length)
{
    XString* scratch = Allocator().AllocateScratchString();
    *scratch = "";
    XString string;
    for (int i = 0; i < length; ++i) {
        string << mark;
        *scratch << string;
    }
    const bool mixed = !HoldsOnly(string.Text(), mark, size_t(length)) ||
                       !HoldsOnly(scratch->Text(), mark, size_t(length * (length + 1) / 2));
    XString().Swap(*scratch);
    Allocator().ReleaseScratchString(scratch);
    return mixed;
}

TEST(ZmAllocatorThreadTest, ThreadsNeverShareWhatTheyAllocate)
{
    const ZmAllocator::Stats before = Allocator().GetGlobalStats();
    constexpr int kThreads = 4, kRounds = 2000;
    std::atomic<int> mixed{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread, &mixed] {
            Random random{uint64_t(thread)};
            for (int i = 0; i < kRounds; ++i) {
                for (const Kind& kind : kKinds) {
                    mixed += UseABlock(kind, char('a' + thread), unsigned(random.Int(1, 32)));
                }
                mixed += UseStrings(char('a' + thread), random.Int(0, 8));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    Allocator().ReleaseUnusedScratch();
    const ZmAllocator::Stats& after = Allocator().GetGlobalStats();
    EXPECT_EQ(mixed, 0);
    EXPECT_EQ(after.StringCount, before.StringCount);
    EXPECT_EQ(after.StringBytes, before.StringBytes);
    EXPECT_EQ(after.MemoryCount, before.MemoryCount + kThreads * kRounds);
    EXPECT_EQ(Allocator().GetAllocatedScratchCount(), 0);
}

}  // namespace
