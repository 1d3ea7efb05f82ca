#include "ZmMath.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void ExpectAsMade(const ZmLogListener* listener, const XGUID& type, int timeFormat)
{
    ASSERT_NE(listener, nullptr);
    EXPECT_TRUE(listener->GetGuid() == type);
    EXPECT_EQ(listener->GetLevel(), 31);
    EXPECT_EQ(listener->GetFlags(), 0);
    EXPECT_EQ(listener->GetTimeFormatValue(), timeFormat);
    EXPECT_TRUE(listener->IsModule(1));
    EXPECT_FALSE(listener->IsModule(2));
}

TEST(StartUpLogTest, TheLibrarysModuleIsTheFirstAndHasTwoListeners)
{
    ZmLog& log = ZmLog::GetLog();
    EXPECT_EQ(log.RegisterModule("ZmMath"), 1);
    EXPECT_STREQ(log.GetModule(1), "ZmMath");
    ExpectAsMade(log.GetListener("ZmMath"), {0x1FA732C0, 0x3BBE0666}, 3);
    ExpectAsMade(log.GetListener("OUTPUTDEBUG LISTENER"), {0x51F155DD, 0x7AA77819}, 0);
}

TEST(StartUpLogTest, ItsFileLiesBesideTheProgram)
{
    const auto* listener = static_cast<ZmFileListener*>(ZmLog::GetLog().GetListener("ZmMath"));
    ASSERT_NE(listener, nullptr);
    char program[4096];
    ASSERT_NE(ZmGetModuleFileName(nullptr, program, sizeof(program)), 0u);
    const std::string path = program;
    EXPECT_EQ(listener->GetDirectory(), path.substr(0, path.find_last_of("/\\") + 1));
    EXPECT_STREQ(listener->GetExt(), "log");
}

}  // namespace
