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
        std::fprintf(stderr, "zmarchive: warning: %s\n", Printable(text).c_str());
    }

    static constexpr XGUID kType = {0x7A6D6172, 0x63686976};

private:
    explicit Listener(const char* name) : ZmLogListener(name) {}
};

}  // namespace

void HearWarnings()
{
    ZmLog& log = ZmLog::GetLog();
    log.UnregisterListener("ZmMath");
    log.UnregisterListener("OUTPUTDEBUG LISTENER");
    log.RegisterListenerFactory(Listener::kType, Listener::Make);
    log.RegisterListener(Listener::kType, "zmarchive", log.RegisterModule("ZmMath"));
}

int WarningCount()
{
    return g_Count;
}
