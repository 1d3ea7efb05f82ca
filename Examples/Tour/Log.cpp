#include "Log.h"

#include "ZmFileListener.h"

namespace {

int g_Module = 0;

}  // namespace

void StartLog(const std::string& folder)
{
    ZmLog& log = ZmLog::GetLog();
    g_Module = log.RegisterModule("Tour");
    auto* file = static_cast<ZmFileListener*>(log.RegisterListener(ZmFileListener::m_Guid, "tour", g_Module));
    if (file != nullptr) {
        file->SetDirectory((folder + "/").c_str());
        file->SetTimeFormat(ZmLogListener::TIME_LONG_MS);
        file->SetFlags(ZmLogListener::SOURCE_LINE);
    }
}

ZmLog& Info(int line)
{
    return ZmLog::GetLog().SetInformationMT(g_Module, ZmLog::LEVEL_INFO, line, "Tour");
}

ZmLog& Error(int line)
{
    return ZmLog::GetLog().SetInformationMT(g_Module, ZmLog::LEVEL_ERROR, line, "Tour");
}
