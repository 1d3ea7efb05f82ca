#include "Platform/OsFault.h"

#include <windows.h>

namespace zm {
namespace {

void* g_Recovery[5];  // filled by __builtin_setjmp
DWORD g_Guarded;

[[noreturn]] void Recover()
{
    __builtin_longjmp(g_Recovery, 1);
}

bool IsProcessorFault(DWORD code)
{
    return code == EXCEPTION_ILLEGAL_INSTRUCTION || code == EXCEPTION_PRIV_INSTRUCTION ||
           code == EXCEPTION_ACCESS_VIOLATION || code == EXCEPTION_FLT_INVALID_OPERATION;
}

// Redirects the thread to Recover() instead of jumping out of the handler, so that the system first completes its own
// exception handling.
LONG CALLBACK OnFault(EXCEPTION_POINTERS* fault)
{
    if (GetCurrentThreadId() != g_Guarded || !IsProcessorFault(fault->ExceptionRecord->ExceptionCode)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    CONTEXT& context = *fault->ContextRecord;
    // A fresh, aligned frame below all stack that the abandoned work may have used.
#ifdef __x86_64__
    context.Rsp = ((context.Rsp - 256) & ~DWORD64(15)) - 8;
    context.Rip = reinterpret_cast<DWORD64>(&Recover);
#else
    context.Esp = ((context.Esp - 256) & ~DWORD(15)) - 4;
    context.Eip = reinterpret_cast<DWORD>(&Recover);
#endif
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

// Never inlined: the frame that __builtin_longjmp returns to must be this function's own.
__attribute__((noinline)) bool RunCatchingFaults(void (*work)(void*), void* argument)
{
    g_Guarded = GetCurrentThreadId();
    void* const handler = AddVectoredExceptionHandler(1, OnFault);
    if (__builtin_setjmp(g_Recovery) != 0) {
        RemoveVectoredExceptionHandler(handler);
        return false;
    }
    work(argument);
    RemoveVectoredExceptionHandler(handler);
    return true;
}

}  // namespace zm
