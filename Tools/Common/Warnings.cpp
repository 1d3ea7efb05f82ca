#include "Warnings.h"

#include "Text.h"
#include "ZmLog.h"

#include <cstdio>

namespace {

int g_Count = 0;

class Listener : public ZmLogListener {
public:
    static ZmLogListener* Make(const char* name) { return new Listener(name); }
    const XGUID& GetGuid() const override { return kType; }
    void Output(int, int, int, const char*, const char* text) override
    {
        ++g_Count;
        std::fprintf(stderr, "%s: warning: %s\n", GetName().Text(), Printable(text).c_str());
    }

    static constexpr XGUID kType = {0x7A6D746F, 0x6F6C7300};

private:
    explicit Listener(const char* name) : ZmLogListener(name) {}
};

}  // namespace

void HearWarnings(const char* tool)
{
    ZmLog& log = ZmLog::GetLog();
    log.UnregisterListener("ZmMath");
    log.UnregisterListener("OUTPUTDEBUG LISTENER");
    log.RegisterListenerFactory(Listener::kType, Listener::Make);
    log.RegisterListener(Listener::kType, tool, log.RegisterModule("ZmMath"));
}

int WarningCount()
{
    return g_Count;
}
