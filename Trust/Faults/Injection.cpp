#include "Injection.h"

#include <dlfcn.h>
#include <errno.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <signal.h>
#include <stdint.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

const FaultKind kFaultKinds[] = {
    {"memory", ENOMEM, false, false, {}},
    {"threads", EAGAIN, false, false, {}},
    {"open", EMFILE, false, false, {SYS_openat, SYS_open}},
    {"open EIO", EIO, false, false, {SYS_openat, SYS_open}},
    {"read", EIO, false, false, {SYS_read, SYS_pread64}},
    {"short read", 0, true, false, {SYS_read, SYS_pread64}},
    {"write", ENOSPC, false, false, {SYS_write, SYS_writev, SYS_pwrite64}},
    {"short write", 0, true, false, {SYS_write}},
    {"seek", EIO, false, false, {SYS_lseek}},
    {"status", EIO, false, false, {SYS_newfstatat, SYS_fstat, SYS_stat, SYS_lstat, SYS_faccessat}},
    {"close", EIO, false, true, {SYS_close}},
    {"rename", EIO, false, false, {SYS_rename, SYS_renameat, SYS_renameat2}},
    {"unlink", EACCES, false, false, {SYS_unlink, SYS_unlinkat, SYS_rmdir}},
    {"sync", EIO, false, false, {SYS_fsync, SYS_fdatasync}},
    {"map", ENOMEM, false, false, {SYS_mmap}},
    {"lock", ENOLCK, false, false, {SYS_flock}},
    {"folder", EIO, false, false, {SYS_getdents64, SYS_mkdir, SYS_mkdirat}},
    {"owner", EPERM, false, false, {SYS_fchown, SYS_fchmod}},
};
const size_t kFaultKindCount = sizeof(kFaultKinds) / sizeof(*kFaultKinds);

namespace {

std::atomic<const FaultKind*> g_Kind{nullptr};
std::atomic<unsigned> g_Calls{0}, g_Faults{0};
unsigned g_Count = 0;
bool g_Stays = false;
std::atomic<long> g_LiveBlocks{0};

/// Counts a call of the kind and decides whether it fails.
bool Fails()
{
    const unsigned call = ++g_Calls;
    const bool fails = call == g_Count || (g_Stays && call > g_Count);
    g_Faults += fails;
    return fails;
}

bool Fails(const FaultKind& kind)
{
    return g_Kind == &kind && Fails();
}

bool Contains(const FaultKind& kind, int call)
{
    return std::find(kind.calls.begin(), kind.calls.end(), call) != kind.calls.end();
}

}  // namespace

// The only place from which the filter lets the calls through.
extern "C" long InjectedCall(long number, long a, long b, long c, long d, long e, long f);
extern "C" const char InjectedCallEnd[];
asm(R"(
    .globl InjectedCall
InjectedCall:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
    .globl InjectedCallEnd
InjectedCallEnd:
    ret
)");

namespace {

long Answer(int call, const greg_t* registers)
{
    const FaultKind* kind = g_Kind;
    long length = registers[REG_RDX];
    const bool fails = kind != nullptr && Contains(*kind, call) && Fails();
    if (fails && !kind->isShort && !kind->isDone) {
        return -kind->error;
    }
    if (fails && kind->isShort && length > 1) {
        length /= 2;
    }
    const long res = InjectedCall(call, registers[REG_RDI], registers[REG_RSI], length, registers[REG_R10],
                                  registers[REG_R8], registers[REG_R9]);
    return fails && kind->isDone ? -kind->error : res;
}

void OnCall(int, siginfo_t* info, void* context)
{
    const int saved = errno;
    greg_t* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    registers[REG_RAX] = Answer(info->si_syscall, registers);
    errno = saved;
}

sock_filter Statement(unsigned code, unsigned operand, unsigned ifTrue = 0, unsigned ifFalse = 0)
{
    return {uint16_t(code), uint8_t(ifTrue), uint8_t(ifFalse), operand};
}

}  // namespace

bool InstallInjection()
{
    struct sigaction action = {};
    action.sa_sigaction = OnCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigaction(SIGSYS, &action, nullptr);

    constexpr unsigned kLoad = BPF_LD | BPF_W | BPF_ABS, kIfEqual = BPF_JMP | BPF_JEQ | BPF_K,
                       kReturn = BPF_RET | BPF_K;
    const auto allowed = reinterpret_cast<uint64_t>(InjectedCallEnd);
    constexpr unsigned kPointer = offsetof(seccomp_data, instruction_pointer);
    std::vector<sock_filter> program = {Statement(kLoad, kPointer),
                                        Statement(kIfEqual, unsigned(allowed), 0, 3),
                                        Statement(kLoad, kPointer + 4),
                                        Statement(kIfEqual, unsigned(allowed >> 32), 0, 1),
                                        Statement(kReturn, SECCOMP_RET_ALLOW),
                                        Statement(kLoad, offsetof(seccomp_data, nr))};
    for (const FaultKind& kind : kFaultKinds) {
        for (const int call : kind.calls) {
            program.push_back(Statement(kIfEqual, unsigned(call), 0, 1));
            program.push_back(Statement(kReturn, SECCOMP_RET_TRAP));
        }
    }
    program.push_back(Statement(kReturn, SECCOMP_RET_ALLOW));
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

void ArmFault(const FaultKind& kind, unsigned count, bool stays)
{
    g_Calls = 0;
    g_Faults = 0;
    g_Count = count;
    g_Stays = stays;
    g_Kind = &kind;
}

unsigned DisarmFaults()
{
    g_Kind = nullptr;
    return g_Faults;
}

long LiveBlocks()
{
    return g_LiveBlocks;
}

// The allocation functions of the C library, and the creation of threads, for the whole process: what a program defines
// comes before what its libraries do. Threads are created with all signals blocked, where the filter cannot be used.
extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

static void* Counted(void* block)
{
    g_LiveBlocks += block != nullptr;
    return block;
}

static bool MemoryFails()
{
    const bool fails = Fails(kFaultKinds[0]);
    if (fails) {
        errno = ENOMEM;
    }
    return fails;
}

void* malloc(size_t size)
{
    return MemoryFails() ? nullptr : Counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size)
{
    return MemoryFails() ? nullptr : Counted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size)
{
    if (MemoryFails()) {
        return nullptr;
    }
    void* res = __libc_realloc(block, size);
    g_LiveBlocks += block == nullptr && res != nullptr;
    return res;
}

void* memalign(size_t alignment, size_t size)
{
    return MemoryFails() ? nullptr : Counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** res, size_t alignment, size_t size)
{
    *res = memalign(alignment, size);
    return *res != nullptr ? 0 : ENOMEM;
}

void free(void* block)
{
    g_LiveBlocks -= block != nullptr;
    __libc_free(block);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return Fails(kFaultKinds[1]) ? EAGAIN : create(thread, attributes, run, argument);
}

}  // extern "C"
