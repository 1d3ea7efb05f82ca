// The drop-down console of a game: a custom log listener that keeps the last few messages above a given severity, ready
// to be drawn.
#include <ZmMath.h>

#include <cstdio>

namespace {

constexpr XGUID kConsoleType = {0x47414D45, 0x434F4E53};

class GameConsole : public ZmLogListener {
public:
    static constexpr int kLines = 4;

    static ZmLogListener* Make(const char* name) { return new GameConsole(name); }

    const XGUID& GetGuid() const override { return kConsoleType; }

    void Output(int module, int level, int, const char*, const char* text) override
    {
        XString& line = m_Lines[m_Count++ % kLines];
        line = "";
        line << ZmLog::GetLevelDesc(ZmLog::Level(level)) << ' ' << ZmLog::GetLog().GetModule(module) << ": " << text;
    }

    void Draw() const
    {
        for (int i = m_Count > kLines ? m_Count - kLines : 0; i < m_Count; ++i) {
            std::printf("| %s\n", m_Lines[i % kLines].Text());
        }
        std::puts("+----");
    }

private:
    explicit GameConsole(const char* name) : ZmLogListener(name) {}

    XString m_Lines[kLines];
    int m_Count = 0;
};

}  // namespace

int main()
{
    ZmLog& log = ZmLog::GetLog();
    const int sound = log.RegisterModule("Sound"), script = log.RegisterModule("Script");

    // The log creates the listener through the factory of its type, and owns it.
    log.RegisterListenerFactory(kConsoleType, GameConsole::Make);
    auto* console = static_cast<GameConsole*>(log.RegisterListener(kConsoleType, "console", sound));
    console->AddModule(script);
    console->SetLevel(ZmLog::LEVEL_ERROR | ZmLog::LEVEL_WARNING | ZmLog::LEVEL_INFO);

    log.SetInformation(sound, ZmLog::LEVEL_INFO, __LINE__, __FILE__).Print("%d voices", 32);
    log.SetInformation(sound, ZmLog::LEVEL_DEBUG, __LINE__, __FILE__).Print("buffer of %d bytes", 4096);
    log.SetInformation(script, ZmLog::LEVEL_WARNING, __LINE__, __FILE__).Print("door %s has no key", "cellar");
    console->Draw();

    // For threads that log at the same time: this pair of functions locks.
    for (int tick = 1; tick <= 5; ++tick) {
        log.SetInformationMT(script, ZmLog::LEVEL_ERROR, __LINE__, __FILE__).PrintMT("tick %d: nil value", tick);
    }
    console->Draw();

    log.UnregisterListener("console");  // destroys it before this program's code is unloaded
}
