#include "ZmMath.h"

// A module that links the library, as the engine's do: what a fresh load has made, and then a use of
// everything that the library makes at its first use.

namespace {

XString g_Kept("kept, in pages, until the module goes");

const char* FindMissing()
{
    const unsigned long wanted = ZMPROCESSOR_FEATURE_MMX | ZMPROCESSOR_FEATURE_SSE;
    const ZmLog& log = ZmLog::GetLog();
    const ZmLogListener* file = log.GetListener("ZmMath");
    const ZmLogListener* debugger = log.GetListener("OUTPUTDEBUG LISTENER");
    return (GetProcessorFeatures() & wanted) != wanted           ? "the feature word"
           : *GetProcessorDescription() == 0                     ? "the processor's description"
           : Tsin(4096) != 1 || Tcos(0) != 1 || Tcos(16383) <= 0 ? "the sine table"
           : log.IsModule("ZmMath") != 0                         ? "the log's module"
           : file == nullptr || file->GetLevel() != 31           ? "the file listener"
           : debugger == nullptr || !debugger->IsModule(1)       ? "the debugger listener"
           : g_Kept.Length() == 0                                ? "a string of the module itself"
                                                                 : nullptr;
}

}  // namespace

extern "C" const char* UseLibrary()
{
    if (const char* missing = FindMissing()) {
        return missing;
    }
    ZmLog::GetLog().SetInformationMT(1, ZmLog::LEVEL_INFO, __LINE__, "LoadingModule").PrintMT("loaded %d", 1);
    ZmAllocator& allocator = ZmAllocator::Instance();
    allocator.ReleaseScratch(allocator.AllocateScratch(100000));
    allocator.ReleasePool(8, allocator.AllocatePool(8));
    XString* scratch = allocator.AllocateScratchString();
    for (int i = 0; i < 1000; ++i) {
        *scratch << i;
        g_Kept << "x";
    }
    allocator.ReleaseScratchString(scratch);
    return nullptr;
}
