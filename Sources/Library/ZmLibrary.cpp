#include "Foundations/StringStorage.h"
#include "Logging/LibraryLog.h"
#include "Math/SineTable.h"
#include "Platform/ProcessorState.h"
#include "Threads/ThreadStart.h"
#include "ZmFPU.h"
#include "ZmFileListener.h"
#include "ZmOutputDebugListener.h"

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

/// The whole start-up, in its order. It runs when the library is loaded, ahead of every other
/// initialiser of this module and of the modules that link it. What is not here needs no code: the
/// constant vectors and the identity matrix are part of the image.
__attribute__((constructor(101))) void OnLoad()
{
    zm::DetectProcessor();
    ZmSetBaseFPUControlWord();
    zm::BuildSineTable();
    ZmThreadStart::WrapMainThread();
    StartLog();
}

/// After every destructor of this module. Modules that use strings are unloaded before.
__attribute__((destructor(101))) void OnUnload()
{
    ZmThreadStart::ForgetMainThread();
    zm::FreeTextPages();
}

}  // namespace
