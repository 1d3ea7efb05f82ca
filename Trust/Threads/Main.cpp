// Sixteen threads use the library at random, for the thread sanitizer.
//
//     ZmRandomThreads [operations] [exit]    operations of each thread; exit: leave the process when half of them are
//     done

#include "Support/Random.h"
#include "ZmLog.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kThreads = 16;

std::atomic<unsigned long> g_Done{0}, g_Heard{0};
unsigned long g_Printed = 0;      // under g_Mutex
ZmMutex& g_Mutex = *new ZmMutex;  // outlives the threads when the process exits
int g_Module = 0;

void Demand(bool condition, const char* what)
{
    if (!condition) {
        fprintf(stderr, "%s\n", what);
        abort();
    }
}

class CountingListener : public ZmLogListener {
public:
    explicit CountingListener(const char* name) : ZmLogListener(name) {}
    const XGUID& GetGuid() const override { return s_Guid; }
    void Output(int, int, int, const char*, const char* text) override { g_Heard += strncmp(text, "message ", 8) == 0; }

    inline static const XGUID s_Guid{0x72747374, 0x74687264};
};

/// Objects that belong to one thread, beside those of the process that all threads share.
class User {
public:
    explicit User(int number) : m_Random(uint64_t(number)), m_Byte(char('A' + number)) {}
    ~User()
    {
        for (int i = 0; i < kBlocks; ++i) {
            Release(i);
        }
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    void Operate() { (this->*kOperations[m_Random.Bits() % (sizeof(kOperations) / sizeof(*kOperations))])(); }

private:
    static constexpr int kBlocks = 12;
    using Operation = void (User::*)();
    static const Operation kOperations[12];

    void Block()
    {
        const int i = m_Random.Int(0, kBlocks - 1);
        if (m_Blocks[i] != nullptr) {
            Release(i);
            return;
        }
        ZmAllocator& allocator = ZmAllocator::Instance();
        m_Sizes[i] = i < 3 ? 40 : m_Random.Int(1, 3000);
        const auto size = unsigned(m_Sizes[i]);
        void* const block = i < 3   ? allocator.AllocatePool(size)
                            : i < 6 ? allocator.AllocateScratch(size)
                            : i < 9 ? allocator.AllocateMemory(size)
                                    : allocator.AllocateString(size);
        Demand(block != nullptr, "no memory");
        m_Blocks[i] = static_cast<char*>(memset(block, m_Byte, size));
    }

    void Release(int i)
    {
        ZmAllocator& allocator = ZmAllocator::Instance();
        char* const block = m_Blocks[i];
        for (int byte = 0; block != nullptr && byte < m_Sizes[i]; ++byte) {
            Demand(block[byte] == m_Byte, "another thread wrote into a block");
        }
        if (block == nullptr) {
            return;
        }
        i < 3   ? allocator.ReleasePool(unsigned(m_Sizes[i]), block)
        : i < 6 ? allocator.ReleaseScratch(block)
        : i < 9 ? allocator.ReleaseMemory(block)
                : allocator.ReleaseString(block);
        m_Blocks[i] = nullptr;
    }

    void ScratchString()
    {
        XString* const string = ZmAllocator::Instance().AllocateScratchString();
        Demand(string != nullptr, "no memory");
        *string = "scratch ";
        *string << m_Random.Int(0, 1000000) << " of a thread";
        Demand(string->Length() > 20, "a scratch string changed");
        ZmAllocator::Instance().ReleaseScratchString(string);
    }

    void UnusedScratch() { ZmAllocator::Instance().ReleaseUnusedScratch(); }

    void Text()
    {
        m_Text << m_Byte << m_Random.Int(0, 99);
        m_Text.ToLower();
        if (m_Text.Length() > 200) {
            m_Text = "";
        }
    }

    void Table()
    {
        XString key;
        key << m_Random.Int(0, 300);
        const bool had = m_Table.LookUp(key) != nullptr;
        if (m_Random.Int(0, 1) != 0) {
            Demand(m_Table.Insert(key, 1).created != had, "a table lost a key");
        } else {
            m_Table.Remove(key);
        }
    }

    void Tree()
    {
        const std::string section = "a/b" + std::to_string(m_Random.Int(0, 9)), name(1, m_Byte);
        Demand(m_Tree->AddEntry(section.c_str(), name.c_str(), m_Random.Int(0, 99), nullptr) == 1, "no entry added");
        if (m_Random.Int(0, 99) == 0) {
            m_Tree = std::make_unique<ZmConfiguration>(uint16_t(2));
            int line = 0;
            XString error;
            m_Tree->BuildFromMemory("x = 1\n<a>\ny = 2\n</a>\n", line, error);
        }
    }

    void Log()
    {
        ZmLog& log = ZmLog::GetLog().SetInformationMT(g_Module, ZmLog::LEVEL_INFO, __LINE__, __FILE__);
        log.PrintMT("message %d", m_Random.Int(0, 9));
        const ZmMutexHolder holder(g_Mutex);
        ++g_Printed;
    }

    void Lock()
    {
        if (g_Mutex.TryEnterMutex() != 0) {
            ++g_Printed;
            --g_Printed;
            g_Mutex.LeaveMutex();
        }
    }

    void Thread()
    {
        if (m_Random.Int(0, 30) != 0) {  // the others are much quicker
            return;
        }
        ZmThread thread;
        thread.SetName("of a thread");
        const int number = m_Random.Int(1000, 2000);
        int seen = number;
        thread.CreateThread([](void* argument) { return unsigned(*static_cast<int*>(argument)); }, &seen);
        unsigned code = 0;
        thread.Wait(&code, 0);
        Demand(code == unsigned(number), "a thread's exit code is another's");
        thread.Close();
    }

    void Pixels()
    {
        uint32_t pixels[2][8] = {};
        ZmImageDescEx src = {}, dst = {};
        ZmPixelFormat2ImageDesc(ZM_PF_32_ARGB8888, src);
        ZmPixelFormat2ImageDesc(ZM_PF_16_RGB565, dst);
        src.Width = dst.Width = 8;
        src.Height = dst.Height = 1;
        src.BytesPerLine = dst.BytesPerLine = 32;
        src.Pixels = reinterpret_cast<uint8_t*>(pixels[0]);
        dst.Pixels = reinterpret_cast<uint8_t*>(pixels[1]);
        Demand(ZmDoBlit(src, dst) == 1, "a conversion failed");
    }

    void System()
    {
        if (m_Random.Int(0, 30) == 0) {
            Demand(!ZmGetTempPath().IsEmpty(), "no folder for temporary files");
        }
        constexpr unsigned long kSse = ZMPROCESSOR_FEATURE_SSE;
        ModifyProcessorFeatures(kSse, m_Random.Int(0, 1) != 0 ? kSse : 0);
        ZmMatrix inverse;
        Zm3DInverseMatrix(inverse, ZmMatrix::Identity());
        Demand(inverse[0][0] == 1, "an inverse is wrong");
    }

    Random m_Random;
    const char m_Byte;
    char* m_Blocks[kBlocks] = {};
    int m_Sizes[kBlocks] = {};
    XString m_Text;
    XHashTable<int, XString> m_Table;
    std::unique_ptr<ZmConfiguration> m_Tree = std::make_unique<ZmConfiguration>(uint16_t(2));
};

const User::Operation User::kOperations[12] = {&User::Block, &User::Block,  &User::ScratchString, &User::UnusedScratch,
                                               &User::Text,  &User::Table,  &User::Tree,          &User::Log,
                                               &User::Lock,  &User::Thread, &User::Pixels,        &User::System};

void Use(int number, unsigned long operations)
{
    User user(number);
    for (unsigned long i = 0; i < operations; ++i) {
        user.Operate();
        ++g_Done;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const unsigned long operations = argc > 1 ? strtoul(argv[1], nullptr, 0) : 1000000;
    const bool exits = argc > 2 && strcmp(argv[2], "exit") == 0;
    ZmLog& log = ZmLog::GetLog();
    g_Module = log.RegisterModule("threads");
    log.RegisterListenerFactory(CountingListener::s_Guid,
                                [](const char* name) -> ZmLogListener* { return new CountingListener(name); });
    log.RegisterListener(CountingListener::s_Guid, "counting", g_Module);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back(Use, i, operations);
    }
    if (exits) {
        for (std::thread& thread : threads) {
            thread.detach();
        }
        while (g_Done < operations * kThreads / 2) {
            std::this_thread::yield();
        }
        printf("%lu operations done when the process exits\n", g_Done.load());
        exit(0);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    printf("%lu operations, %lu messages printed, %lu heard\n", g_Done.load(), g_Printed, g_Heard.load());
    return g_Heard != g_Printed;
}
