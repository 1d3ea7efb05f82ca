#include "ZmMath.h"

#include <gtest/gtest.h>

#include <memory>
#include <windows.h>

namespace {

std::string FirstRow(HANDLE console, DWORD length)
{
    std::string text(length, 0);
    DWORD read = 0;
    ReadConsoleOutputCharacterA(console, &text[0], length, {0, 0}, &read);
    return text.substr(0, read);
}

TEST(ZmConsoleListenerTest, LinesGoToAConsoleOfTheListenersOwn)
{
    const std::unique_ptr<ZmLogListener> listener(ZmConsoleListener::ListenerFactory("console"));
    if (static_cast<ZmConsoleListener*>(listener.get())->SetSize(100, 50) == 0) {
        GTEST_SKIP() << "no console can be made here";
    }
    const HANDLE console = CreateFileA("CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(console, INVALID_HANDLE_VALUE);
    CONSOLE_SCREEN_BUFFER_INFO info;
    EXPECT_TRUE(GetConsoleScreenBufferInfo(console, &info));
    EXPECT_EQ(info.dwSize.X, 100);
    EXPECT_EQ(info.dwSize.Y, 50);
    char title[64] = "";
    GetConsoleTitleA(title, sizeof(title));
    EXPECT_STREQ(title, "console");
    listener->Output(1, ZmLog::LEVEL_ERROR, 42, "mesh", "text");
    EXPECT_EQ(FirstRow(console, 23), "[ZmMath] [ERROR] : text");
    CloseHandle(console);
}

}  // namespace
