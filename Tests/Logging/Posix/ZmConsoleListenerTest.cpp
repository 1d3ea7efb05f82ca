#include "ZmMath.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(ZmConsoleListenerTest, LinesGoToTheStandardOutputAtOnce)
{
    const std::unique_ptr<ZmLogListener> listener(ZmConsoleListener::ListenerFactory("console"));
    listener->SetFlags(ZmLogListener::SOURCE_LINE | ZmLogListener::DATED);
    EXPECT_TRUE(listener->GetGuid() == (XGUID{0x2BA41B30, 0x77A51B5D}));
    testing::internal::CaptureStdout();
    listener->Output(1, ZmLog::LEVEL_ERROR, 42, "C:\\src\\mesh", "100 %s");
    listener->Output(0, ZmLog::LEVEL_INFO, 7, "mesh", "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "[ZmMath] [ERROR] [mesh:42] : 100 %s\n[INFO] [mesh:7] : \n");
    EXPECT_EQ(static_cast<ZmConsoleListener*>(listener.get())->SetSize(80, 25), 0);
}

}  // namespace
