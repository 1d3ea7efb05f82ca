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

/// The library's own module, and who hears it.
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

/// After every destructor of this module. Modules that use strings are unloaded before.
void OnUnload()
{
    ZmThreadStart::ForgetMainThread();
    zm::FreeTextPages();
    zm::FreeRuntimeMemory();
}

/// The whole start-up, in its order. It runs when the library is loaded, ahead of every other
/// initialiser of this module and of the modules that link it. What is not here needs no code: the
/// constant vectors, the identity matrix, the sampling factor and the tables of conversions are part of
/// the image, and each lock comes with what it guards.
__attribute__((constructor(101))) void OnLoad()
{
    // What is registered first runs last, on each system. A destructor of the image would not: on Windows those
    // run ahead of everything registered.
    atexit(OnUnload);

    zm::DetectProcessor();
    ZmSetBaseFPUControlWord();
    zm::BuildSineTable();
    ZmThreadStart::WrapMainThread();
    StartLog();
}

}  // namespace
