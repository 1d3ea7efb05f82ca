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

/// Goes on with a file whose last line is incomplete.
int ContinueLog()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("cut");
    ZmLogListener* listener = log.RegisterListener(ZmFileListener::m_Guid, "cut", module);
    if (listener != nullptr) {
        listener->SetFlags(ZmLogListener::KEEP_FILE);
        static_cast<ZmFileListener*>(listener)->SetDirectory("./");
        log.SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("a line");
    }
    return log.UnregisterListener("cut");
}

const char* CheckContinued(int)
{
    return BytesOf("cut.log").compare(0, 9, "an old li") == 0 ? nullptr : kLost;
}

int Register()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("a module");
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    int made = 0;
    char name[20];
    for (int i = 0; i < 20; ++i) {
        snprintf(name, sizeof(name), "listener %d", i);
        made += log.RegisterListener(ZmFileListener::m_Guid, name, module) != nullptr;
    }
    for (int i = 0; i < 20; ++i) {
        snprintf(name, sizeof(name), "listener %d", i);
        made -= log.UnregisterListener(name);
    }
    return made;
}

/// Prints in its turn.
class PrintingListener : public ZmLogListener {
public:
    static ZmLogListener* Make(const char* name) { return new (std::nothrow) PrintingListener(name); }
    const XGUID& GetGuid() const override { return kType; }
    void Output(int, int, int, const char* file, const char*) override
    {
        constexpr int nobodys = -2;  // -1 is the module that could not be registered
        ZmLog::GetLog().SetInformationMT(nobodys, ZmLog::LEVEL_INFO, 1, file).PrintMT("%s", "nobody listens");
        m_Heard += 1;
    }

    static constexpr XGUID kType = {0x5052494E, 0x54494E47};
    int m_Heard = 0;

private:
    explicit PrintingListener(const char* name) : ZmLogListener(name) {}
};

int PrintInTurn()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("in turn");
    log.RegisterListenerFactory(PrintingListener::kType, PrintingListener::Make);
    ZmLogListener* listener = log.RegisterListener(PrintingListener::kType, "in turn", module);
    log.SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("%s", "once");
    const int heard = listener != nullptr ? static_cast<PrintingListener*>(listener)->m_Heard : 0;
    log.UnregisterListener("in turn");
    return heard;
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
    int res = log.RegisterModule(kLongName.c_str());
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
    {"log lines", BeginLog, WriteLog, CheckLog},
    {"log files", Nothing, WriteLogs, Always},
    {"log continued", [] { MakeFile("cut.log", "an old li"); }, ContinueLog, CheckContinued},
    {"log listeners", Nothing, Register, [](int res) { return res != 0 ? "a listener that is none" : Always(0); }},
    {"log printed to in turn", Nothing, PrintInTurn, Always},
    {"log to the console", Nothing, LogToConsole, Always},
    {"log modules", Nothing, RegisterModules, Always},
};
