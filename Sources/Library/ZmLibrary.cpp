#include "Foundations/StringStorage.h"
#include "Logging/LibraryLog.h"
#include "Math/SineTable.h"
#include "Platform/OsHeap.h"
#include "Platform/ProcessorState.h"
#include "Threads/ThreadStart.h"
#include "ZmFPU.h"
#include "ZmFileListener.h"
#include "ZmOutputDebugListener.h"

#include <stdlib.h>

namespace {

/// Creates the library's own log module and its listener.
void StartLog()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("ZmMath");
    zm::g_LibraryModule = module;
    if (ZmLogListener* file = log.RegisterListener(ZmFileListener::m_Guid, "ZmMath", module)) {
        file->SetTimeFormat(ZmLogListener::TIME_SHORT_MS);
    }
    log.RegisterListener(ZmOutputDebugListener::m_Guid, "OUTPUTDEBUG LISTENER", module);
}

/// Runs after every destructor of this module. Modules that use strings are unloaded earlier.
void OnUnload()
{
    ZmThreadStart::ForgetMainThread();
    zm::FreeTextPages();
    zm::FreeRuntimeMemory();
}

}  // namespace

/// The complete start-up, in order. It runs when the library is loaded, before every other initialiser of this module
/// and of the modules that link it. Everything else needs no code: the constant vectors, the identity matrix, the
/// sampling factor and the conversion tables are part of the image, and each lock is initialised with the data it
/// guards.
///
/// Programs that link the static library name it to their linker, for nothing in the archive refers to it.
extern "C" __attribute__((constructor(101))) void ZmStartLibrary()
{
    // Functions registered first run last, on every platform. A destructor of the image would not do: on Windows
    // destructors run before all registered functions.
    atexit(OnUnload);

    zm::DetectProcessor();
    ZmSetBaseFPUControlWord();
    zm::BuildSineTable();
    ZmThreadStart::WrapMainThread();
    StartLog();
}
