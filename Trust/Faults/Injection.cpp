#include "Injection.h"

#include <dlfcn.h>
#include <errno.h>
#include <limits.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <malloc.h>
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
#include <iterator>
#include <set>

namespace {

const std::vector<int> kNone,
    kOpen = {SYS_openat, SYS_open}, kRead = {SYS_read, SYS_pread64}, kWrite = {SYS_write, SYS_writev, SYS_pwrite64},
    kSeek = {SYS_lseek}, kStatus = {SYS_newfstatat, SYS_fstat, SYS_stat, SYS_lstat},
    kAccess = {SYS_faccessat, SYS_faccessat2, SYS_access}, kLink = {SYS_readlink, SYS_readlinkat}, kClose = {SYS_close},
    kRename = {SYS_rename, SYS_renameat, SYS_renameat2}, kUnlink = {SYS_unlink, SYS_unlinkat, SYS_rmdir},
    kSync = {SYS_fsync, SYS_fdatasync}, kMap = {SYS_mmap}, kLock = {SYS_flock}, kList = {SYS_getdents64},
    kMake = {SYS_mkdir, SYS_mkdirat}, kOwner = {SYS_fchown}, kMode = {SYS_fchmod}, kDuplicate = {SYS_fcntl, SYS_dup},
    kSpace = {SYS_statfs};

}  // namespace

// The C library does not repeat an interrupted read or write of a stream: these may fail. A file whose owner or
// permissions cannot be kept is overwritten, and a second fault may damage it: no such pairs.
const std::vector<FaultKind> kFaultKinds = {
    {"memory", ENOMEM, FaultKind::FAILS, true, kNone},
    {"threads", EAGAIN, FaultKind::FAILS, true, kNone},
    {"open EMFILE", EMFILE, FaultKind::FAILS, true, kOpen},
    {"open ENFILE", ENFILE, FaultKind::FAILS, false, kOpen},
    {"open EACCES", EACCES, FaultKind::FAILS, false, kOpen},
    {"open ENOENT", ENOENT, FaultKind::FAILS, false, kOpen},
    {"open EIO", EIO, FaultKind::FAILS, false, kOpen},
    {"open ENOMEM", ENOMEM, FaultKind::FAILS, false, kOpen},
    {"open ENOSPC", ENOSPC, FaultKind::FAILS, false, kOpen},
    {"open EINTR", EINTR, FaultKind::DOES_NO_HARM, false, kOpen},
    {"read EIO", EIO, FaultKind::FAILS, true, kRead},
    {"read EINTR", EINTR, FaultKind::FAILS, false, kRead},
    {"short read", 0, FaultKind::IS_SHORT, false, kRead},
    {"write ENOSPC", ENOSPC, FaultKind::FAILS, true, kWrite},
    {"write EIO", EIO, FaultKind::FAILS, false, kWrite},
    {"write EDQUOT", EDQUOT, FaultKind::FAILS, false, kWrite},
    {"write EINTR", EINTR, FaultKind::FAILS, false, kWrite},
    {"short write", 0, FaultKind::IS_SHORT, false, {SYS_write}},
    {"seek EIO", EIO, FaultKind::FAILS, true, kSeek},
    {"seek EINVAL", EINVAL, FaultKind::FAILS, false, kSeek},
    {"status EIO", EIO, FaultKind::FAILS, true, kStatus},
    {"status ENOMEM", ENOMEM, FaultKind::FAILS, false, kStatus},
    {"access EIO", EIO, FaultKind::FAILS, false, kAccess},
    {"access EACCES", EACCES, FaultKind::FAILS, false, kAccess},
    {"link EIO", EIO, FaultKind::FAILS, true, kLink},
    {"link ENOMEM", ENOMEM, FaultKind::FAILS, false, kLink},
    {"link EACCES", EACCES, FaultKind::FAILS, false, kLink},
    {"close EIO", EIO, FaultKind::IS_DONE, true, kClose},
    {"close EINTR", EINTR, FaultKind::IS_DONE, false, kClose},
    {"close ENOSPC", ENOSPC, FaultKind::IS_DONE, false, kClose},
    {"close EDQUOT", EDQUOT, FaultKind::IS_DONE, false, kClose},
    {"rename EIO", EIO, FaultKind::FAILS, true, kRename},
    {"rename ENOSPC", ENOSPC, FaultKind::FAILS, false, kRename},
    {"rename EACCES", EACCES, FaultKind::FAILS, false, kRename},
    {"rename EXDEV", EXDEV, FaultKind::FAILS, false, kRename},
    {"rename EBUSY", EBUSY, FaultKind::FAILS, false, kRename},
    {"unlink EACCES", EACCES, FaultKind::FAILS, true, kUnlink},
    {"unlink EIO", EIO, FaultKind::FAILS, false, kUnlink},
    {"unlink EBUSY", EBUSY, FaultKind::FAILS, false, kUnlink},
    {"sync EIO", EIO, FaultKind::FAILS, true, kSync},
    {"sync ENOSPC", ENOSPC, FaultKind::FAILS, false, kSync},
    {"sync EDQUOT", EDQUOT, FaultKind::FAILS, false, kSync},
    {"sync EINTR", EINTR, FaultKind::DOES_NO_HARM, false, kSync},
    {"sync EINVAL", EINVAL, FaultKind::DOES_NO_HARM, false, kSync},  // the file system cannot
    {"map ENOMEM", ENOMEM, FaultKind::FAILS, true, kMap},
    {"map ENODEV", ENODEV, FaultKind::FAILS, false, kMap},
    {"lock ENOLCK", ENOLCK, FaultKind::FAILS, true, kLock},
    {"lock EINTR", EINTR, FaultKind::DOES_NO_HARM, false, kLock},
    {"list EIO", EIO, FaultKind::FAILS, true, kList},
    {"list ENOENT", ENOENT, FaultKind::FAILS, false, kList},
    {"folder EIO", EIO, FaultKind::FAILS, true, kMake},
    {"folder EACCES", EACCES, FaultKind::FAILS, false, kMake},
    {"folder ENOSPC", ENOSPC, FaultKind::FAILS, false, kMake},
    {"owner EPERM", EPERM, FaultKind::FAILS, false, kOwner},
    {"mode EPERM", EPERM, FaultKind::FAILS, false, kMode},
    {"mode EIO", EIO, FaultKind::FAILS, false, kMode},
    {"duplicate EMFILE", EMFILE, FaultKind::FAILS, true, kDuplicate},
    {"space EIO", EIO, FaultKind::FAILS, false, kSpace},
};

namespace {

constexpr unsigned kMostInterruptions = 10;

std::atomic<bool> g_IsArmed{false};
Fault g_Fault;
std::atomic<unsigned> g_Calls[kMostFaultKinds];
std::atomic<unsigned> g_Faults{0};
std::atomic<long> g_LiveBlocks{0}, g_LiveBytes{0};

/// Whether the call of that number fails; `faults` is the number of faults before it.
bool IsDue(const FaultKind& kind, unsigned number, unsigned faults)
{
    if (&kind == g_Fault.kind) {
        const unsigned most = !g_Fault.stays ? 1 : kind.error == EINTR ? kMostInterruptions : UINT_MAX;
        return number >= g_Fault.number && number - g_Fault.number < most;
    }
    return &kind == g_Fault.next && faults == 1;
}

/// Counts a call of the kind and decides whether it fails.
bool Fails(const FaultKind& kind, unsigned faults = g_Faults)
{
    const unsigned number = ++g_Calls[&kind - kFaultKinds.data()];
    const bool fails = IsDue(kind, number, faults);
    g_Faults += fails;
    return fails;
}

/// The kind of which the system call fails, or null.
const FaultKind* FailingKind(int call)
{
    const unsigned faults = g_Faults;
    const FaultKind* res = nullptr;
    for (const FaultKind& kind : kFaultKinds) {
        if (std::find(kind.calls.begin(), kind.calls.end(), call) != kind.calls.end() && Fails(kind, faults)) {
            res = &kind;
        }
    }
    return res;
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
    const FaultKind* kind = g_IsArmed ? FailingKind(call) : nullptr;
    long length = registers[REG_RDX];
    if (kind != nullptr && (kind->effect == FaultKind::FAILS || kind->effect == FaultKind::DOES_NO_HARM)) {
        return -kind->error;
    }
    if (kind != nullptr && kind->effect == FaultKind::IS_SHORT && length > 1) {
        length /= 2;
    }
    const long res = InjectedCall(call, registers[REG_RDI], registers[REG_RSI], length, registers[REG_R10],
                                  registers[REG_R8], registers[REG_R9]);
    return kind != nullptr && kind->effect == FaultKind::IS_DONE ? -kind->error : res;
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
    std::set<int> calls;
    for (const FaultKind& kind : kFaultKinds) {
        calls.insert(kind.calls.begin(), kind.calls.end());
    }
    for (const int call : calls) {
        program.push_back(Statement(kIfEqual, unsigned(call), 0, 1));
        program.push_back(Statement(kReturn, SECCOMP_RET_TRAP));
    }
    program.push_back(Statement(kReturn, SECCOMP_RET_ALLOW));
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

void ArmFault(const Fault& fault)
{
    g_Fault = fault;
    std::fill(std::begin(g_Calls), std::end(g_Calls), 0u);
    g_Faults = 0;
    g_IsArmed = true;
}

unsigned DisarmFaults()
{
    g_IsArmed = false;
    return g_Faults;
}

unsigned CallsOf(const FaultKind& kind)
{
    return g_Calls[&kind - kFaultKinds.data()];
}

long LiveBlocks()
{
    return g_LiveBlocks;
}

long LiveBytes()
{
    return g_LiveBytes;
}

// The allocation functions of the C library, and the creation of threads, for the whole process: what a program defines
// comes before what its libraries do. Threads are created with all signals blocked, where the filter cannot be used.
extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

static void* Counted(void* block, int number = 1)
{
    if (block != nullptr) {
        g_LiveBlocks += number;
        g_LiveBytes += number * long(malloc_usable_size(block));
    }
    return block;
}

static bool MemoryFails()
{
    const bool fails = g_IsArmed && Fails(kFaultKinds[0]);
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
    const long before = long(malloc_usable_size(block));
    void* res = __libc_realloc(block, size);
    if (block == nullptr) {
        return Counted(res);
    }
    g_LiveBytes += res != nullptr ? long(malloc_usable_size(res)) - before : 0;
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
    __libc_free(Counted(block, -1));
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return g_IsArmed && Fails(kFaultKinds[1]) ? EAGAIN : create(thread, attributes, run, argument);
}

}  // extern "C"
