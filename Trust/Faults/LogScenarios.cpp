#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

#include <fstream>
#include <string>

namespace {

ZmLogListener* g_Listener = nullptr;
int g_Module = 0;

void BeginLog()
{
    ZmLog& log = ZmLog::GetLog();
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    g_Module = log.RegisterModule("trust");
    log.UnregisterListener("trust");  // one that stays would list its module once more each time
    g_Listener = log.RegisterListener(ZmFileListener::m_Guid, "trust", g_Module);
    static_cast<ZmFileListener*>(g_Listener)->SetDirectory("./");
    log.SetInformationMT(g_Module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("the first line opens the file");
}

int WriteLog()
{
    ZmLog& log = ZmLog::GetLog();
    for (int i = 0; i < 3; ++i) {
        log.SetInformationMT(g_Module, ZmLog::LEVEL_INFO, i, "file").PrintMT("number %d with %s", i, "a text");
        log.SetInformation(g_Module, ZmLog::LEVEL_INFO, i, "file").Print("%d %0300d", i, 1);
    }
    return 1;
}

/// A fault may cut lines, but not mix them.
const char* CheckLog(int)
{
    std::ifstream file("trust.log");
    for (std::string line; std::getline(file, line);) {
        const size_t number = line.find("number ");
        const std::string rest = number != std::string::npos ? line.substr(number) : "";
        if (rest.size() > 8 && std::string(" with a text").compare(0, rest.size() - 8, rest, 8, rest.size() - 8) != 0) {
            return kWrongBytes;
        }
    }
    return nullptr;
}

/// A file in a folder that is to be made, and one that is closed and opened again.
int WriteLogs()
{
    ZmLog& log = ZmLog::GetLog();
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    const int module = log.RegisterModule("logs");
    int made = 0;
    for (const int flags : {int(ZmLogListener::DATED), ZmLogListener::KEEP_FILE | ZmLogListener::ESCAPED}) {
        ZmLogListener* listener = log.RegisterListener(ZmFileListener::m_Guid, "logs", module);
        if (listener != nullptr) {
            made += 1;
            listener->SetFlags(flags);
            static_cast<ZmFileListener*>(listener)->SetDirectory("one/two/");
            log.SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("a line\nof %d", flags);
        }
        log.UnregisterListener("logs");
    }
    return made;
}

int Register()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("a module");
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    const bool made = log.RegisterListener(ZmFileListener::m_Guid, "listener", module) != nullptr;
    log.UnregisterListener("listener");
    return made;
}

int LogToConsole()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("console");
    log.RegisterListenerFactory(ZmConsoleListener::m_Guid, ZmConsoleListener::ListenerFactory);
    log.RegisterListener(ZmConsoleListener::m_Guid, "console", module);
    log.SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("%s", "");
    return log.UnregisterListener("console");
}

int RegisterModules()
{
    ZmLog& log = ZmLog::GetLog();
    int res = 0;
    char name[20];
    for (int i = 0; i < 50; ++i) {
        snprintf(name, sizeof(name), "module %d", i);
        log.RegisterModule(name);
        res += log.IsModule(name);
    }
    return res;
}

}  // namespace

const std::vector<Scenario> kLogScenarios = {
    {"log lines", BeginLog, WriteLog, CheckLog},       {"log files", Nothing, WriteLogs, Always},
    {"log listeners", Nothing, Register, Always},      {"log to the console", Nothing, LogToConsole, Always},
    {"log modules", Nothing, RegisterModules, Always},
};
