#include "ZmLogListener.h"

#include "Support/LogClock.h"
#include "ZmLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

class TestListener : public ZmLogListener {
public:
    TestListener() : ZmLogListener("test") {}
    const XGUID& GetGuid() const override { return m_Guid; }
    void Output(int, int, int, const char*, const char*) override {}
    using ZmLogListener::BuildLine;

    std::string Date(int format)
    {
        XString text("before");
        GetDateAsString(TimeFormat(format), text);
        return text.Text();
    }

    const XGUID m_Guid = {1, 2};
};

TEST(ZmLogListenerTest, ANewListenerHearsEveryLevelOfNoModule)
{
    TestListener listener;
    EXPECT_EQ(listener.GetLevel(), 31);
    EXPECT_EQ(listener.GetFlags(), 0);
    EXPECT_EQ(listener.GetTimeFormatValue(), ZmLogListener::TIME_NONE);
    for (int id = -1; id < 10; ++id) {
        EXPECT_FALSE(listener.IsModule(id));
    }
    for (int id = 1; id < 10; id += 2) {
        listener.AddModule(id);
    }
    for (int id = -1; id < 10; ++id) {
        EXPECT_EQ(listener.IsModule(id), id > 0 && id % 2 != 0) << id;
    }
}

std::string ExpectedDate(int format, int64_t now)
{
    char rest[32];
    snprintf(rest, sizeof(rest), format == 6 ? ":%03d (%u)" : ":%03d", int(now % 1000), unsigned(now / 1000));
    const bool longYear = format == 4 || format == 5;
    return LocalText(now, longYear ? "%d/%m/%Y %H:%M:%S" : "%d/%m/%y %H:%M:%S") + (format == 4 ? "" : rest);
}

TEST(ZmLogListenerTest, TimesAreLocalInEachFormat)
{
    const SetLogClock clock;
    TestListener listener;
    const int64_t first = LocalMilliseconds(2004, 3, 5, 14, 2, 11, 345);
    EXPECT_EQ(first % 1000, 345);
    for (const int64_t now :
         {first, first + 1, first + 654, first + 655, first, LocalMilliseconds(1999, 12, 31, 23, 59, 59, 7),
          LocalMilliseconds(2035, 7, 1, 0, 0, 0, 0)}) {
        SetLogClock::s_Now = now;
        for (const int format : {3, 4, 5, 6, 3, 5, 4}) {
            EXPECT_EQ(listener.Date(format), ExpectedDate(format, now)) << "format " << format;
        }
    }
    SetLogClock::s_Now = first;
    EXPECT_EQ(listener.Date(3), "05/03/04 14:02:11:345");
    EXPECT_EQ(listener.Date(4), "05/03/2004 14:02:11");
}

TEST(ZmLogListenerTest, OtherFormatsAreEmpty)
{
    TestListener listener;
    for (const int format : {0, 2, 7, -1, 1 << 30}) {
        EXPECT_EQ(listener.Date(format), "") << format;
    }
}

TEST(ZmLogListenerTest, ElapsedTimeCountsFromTheListenersMaking)
{
    using Clock = std::chrono::steady_clock;
    const auto now = [] { return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count(); };
    const double beforeMaking = now();
    TestListener listener;
    const double afterMaking = now();
    std::this_thread::sleep_for(std::chrono::milliseconds(1020));
    const double before = now();
    const std::string text = listener.Date(ZmLogListener::TIME_ELAPSED);
    const double after = now();
    int hours, minutes, seconds, milliseconds, end = 0;
    sscanf(text.c_str(), "%2dh %2dm %2ds %3dms%n", &hours, &minutes, &seconds, &milliseconds, &end);
    ASSERT_EQ(size_t(end), text.size()) << text;
    EXPECT_EQ(end, 17) << text;
    const int elapsed = ((hours * 60 + minutes) * 60 + seconds) * 1000 + milliseconds;
    EXPECT_GE(elapsed, before - afterMaking - 2);
    EXPECT_LE(elapsed, after - beforeMaking + 1);
}

TEST(ZmLogListenerTest, LinesTellModuleLevelTimeAndSource)
{
    const SetLogClock clock;
    SetLogClock::s_Now = LocalMilliseconds(2004, 3, 5, 14, 2, 11, 345);
    const int mesh = ZmLog::GetLog().RegisterModule("Mesh");
    const std::string longText(16383, 'x');
    const struct {
        const char* name;
        int module, level, flags, format, line;
        const char *file, *text;
        std::string expected;
    } kRows[] = {
        {"everything", 1, 8, 2, 4, 42, "C:\\src\\mesh", "bad index",
         "[ZmMath] [WARNING] [05/03/2004 14:02:11] [mesh:42] : bad index\n"},
        {"as little as possible", 1, 1, 0, 0, 42, "mesh", "text", "[ZmMath] [DEBUG] : text\n"},
        {"other flags", 1, 2, 1 | 4, 0, 42, "mesh", "text", "[ZmMath] [TRACE] : text\n"},
        {"another module", mesh, 4, 0, 3, 1, "", "text", "[Mesh] [ERROR] [05/03/04 14:02:11:345] : text\n"},
        {"an unknown module", 100000, 16, 0, 0, 1, "", "text", "[INFO] : text\n"},
        {"module 0", 0, 16, 0, 0, 1, "", "text", "[INFO] : text\n"},
        {"a sum of levels", 1, 3, 0, 0, 1, "", "text", "[ZmMath] [] : text\n"},
        {"the empty time format", 1, 16, 0, 2, 1, "", "text", "[ZmMath] [INFO] : text\n"},
        {"an unknown time format", 1, 16, 0, 9, 1, "", "text", "[ZmMath] [INFO] : text\n"},
        {"a source without backslash", 1, 16, 2, 0, -3, "/src/mesh.cpp", "", "[ZmMath] [INFO] [/src/mesh.cpp:-3] : \n"},
        {"a source that ends with one", 1, 16, 3, 0, 7, "src\\", "text", "[ZmMath] [INFO] [:7] : text\n"},
        {"no source", 1, 16, 2, 0, 7, nullptr, "text", "[ZmMath] [INFO] [:7] : text\n"},
        {"a text with lines and percents", 1, 16, 0, 0, 7, "", "%s\n%n", "[ZmMath] [INFO] : %s\n%n\n"},
        {"a long text", 1, 16, 0, 0, 7, "", longText.c_str(), "[ZmMath] [INFO] : " + longText + "\n"},
        {"an escaped text", 1, 16, 8, 0, 7, "", "a\n[x] \x1b[2J\x7f\xc3\xa9 b\r",
         "[ZmMath] [INFO] : a\\x0a[x] \\x1b[2J\\x7f\xc3\xa9 b\\x0d\n"},
    };
    TestListener listener;
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        listener.SetFlags(row.flags);
        listener.SetTimeFormat(ZmLogListener::TimeFormat(row.format));
        EXPECT_STREQ(listener.BuildLine(row.module, row.level, row.line, row.file, row.text).text,
                     row.expected.c_str());
    }
}

}  // namespace
