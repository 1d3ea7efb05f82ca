#include "ZmMath.h"

// A module that links the library, like the modules of an engine.

static XString g_Kept("kept, in pages, until the module goes");

/// Returns what a fresh load should have initialised but has not, or null. Then uses what is initialised on first use.
extern "C" const char* UseLibrary()
{
    ZmLog& log = ZmLog::GetLog();
    log.SetInformationMT(1, ZmLog::LEVEL_INFO, __LINE__, "LoadingModule").PrintMT("loaded %d", 1);
    ZmAllocator& allocator = ZmAllocator::Instance();
    allocator.ReleaseScratch(allocator.AllocateScratch(100000));
    allocator.ReleasePool(8, allocator.AllocatePool(8));
    XString* scratch = allocator.AllocateScratchString();
    for (int i = 0; i < 1000; ++i) {
        *scratch << i;
        g_Kept << "x";
    }
    allocator.ReleaseScratchString(scratch);
    constexpr unsigned long wanted = ZMPROCESSOR_FEATURE_MMX | ZMPROCESSOR_FEATURE_SSE;
    return (GetProcessorFeatures() & wanted) != wanted           ? "the feature word"
           : *GetProcessorDescription() == 0                     ? "the processor's description"
           : Tsin(4096) != 1 || Tcos(0) != 1 || Tcos(16383) <= 0 ? "the sine table"
           : log.IsModule("ZmMath") != 0                         ? "the log's module"
           : log.GetListener("ZmMath") == nullptr                ? "the file listener"
           : log.GetListener("OUTPUTDEBUG LISTENER") == nullptr  ? "the debugger listener"
                                                                 : nullptr;
}

/// What a destructor may do that runs after the library's own.
extern "C" void PrintLate()
{
    ZmLog::GetLog().SetInformationMT(1, ZmLog::LEVEL_INFO, __LINE__, "LoadingModule").PrintMT("late %d", 1);
}

extern "C" void UseStringsForEver()
{
    for (;;) {
        XString text("short");
        text << " and longer";
    }
}
