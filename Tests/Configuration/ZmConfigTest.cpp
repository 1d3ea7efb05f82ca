#include "Configuration/Settings.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

TEST(ZmConfigTest, WhatOneObjectWritesAnotherReads)
{
    const struct {
        const char *section, *name;
        std::string value;
    } kRows[] = {
        {"ZmMathTest", "name", "value"},
        {"ZmMathTest", "", "of no name"},
        {"ZmMathTest", "a = b % c", " = \t%41%\n\r "},
        {"ZmMathTest", "/ . \x01", std::string(255, 'x')},
        {"ZmMathTest\\Below", "name", "another"},
    };
    for (const auto& row : kRows) {
        WriteSetting(row.section, row.name, "old");
        WriteSetting(row.section, row.name, row.value);
    }
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.section + std::string(":") + row.name);
        EXPECT_EQ(ReadSetting(row.section, row.name), row.value);
    }
    EXPECT_EQ(ReadSetting("zmmathtest", "NAME"), "value") << "case does not matter";
}

TEST(ZmConfigTest, TheModeSaysWhatMayBeDone)
{
    char value[ZmConfig::kMaxValue] = "kept";
    ZmConfig settings;
    settings.OpenSection("ZmMathTest", ZmConfig::MODE_WRITE);
    settings.WriteStringEntry("mode", "new");
    settings.WriteStringEntry("empty", "");
    settings.WriteStringEntry("long", std::string(256, 'x').c_str());
    EXPECT_EQ(settings.ReadStringEntry("mode", value), -1);
    settings.OpenSection("ZmMathTest", ZmConfig::MODE_READ);
    settings.WriteStringEntry("mode", "not written");
    EXPECT_EQ(settings.ReadStringEntry("missing", value), -1);
    EXPECT_EQ(settings.ReadStringEntry("long", value), -1);
    EXPECT_STREQ(value, "kept");
    EXPECT_EQ(settings.ReadStringEntry("mode", value), 4);
    EXPECT_STREQ(value, "new");
    EXPECT_EQ(settings.ReadStringEntry("empty", value), 1);
    settings.CloseSection("");
    EXPECT_EQ(settings.ReadStringEntry("mode", value), -1);
}

TEST(ZmConfigTest, LongValuesAreReadAsStrings)
{
    ZmConfig settings;
    settings.OpenSection("ZmMathTest", ZmConfig::MODE_READWRITE);
    for (const size_t length : {0u, 254u, 255u, 256u, 4094u, 4095u, 4096u, 60000u}) {
        const std::string value(length, 'x');
        XString read("old");
        EXPECT_EQ(settings.WriteText("long", value.c_str()), 1);
        EXPECT_EQ(settings.ReadText("long", read), 1) << length;
        EXPECT_EQ(read.Text(), value);
    }
    XString kept("kept");
    EXPECT_EQ(settings.ReadText("missing", kept), 0);
    settings.CloseSection("");
    EXPECT_EQ(settings.ReadText("long", kept) + settings.WriteText("long", "x"), 0);
    EXPECT_STREQ(kept.Text(), "kept");
}

TEST(ZmConfigTest, AnApplicationHasSettingsOfItsOwn)
{
    const auto write = [](const char* application, const char* value) {
        ZmConfig settings(application);
        settings.OpenSection("ZmMathTest", ZmConfig::MODE_WRITE);
        return settings.WriteText("own", value);
    };
    const auto read = [](const char* application) {
        ZmConfig settings(application);
        settings.OpenSection("ZmMathTest", ZmConfig::MODE_READ);
        XString res("none");
        settings.ReadText("own", res);
        return std::string(res.Text());
    };
    EXPECT_EQ(write("ZmMathTestApplication", "first"), 1);
    EXPECT_EQ(write("ZmMathTestMaker\\Game", "second"), 1);
    EXPECT_EQ(read("ZmMathTestApplication"), "first");
    EXPECT_EQ(read("ZmMathTestMaker\\Game"), "second");
    EXPECT_EQ(read("ZmMathTestMaker"), "none");
    for (const char* wrong : {"", ".", "..\\x", "x\\..", "a/b", "a\\\\b", "\\a", "a\\", (const char*)nullptr}) {
        EXPECT_EQ(write(wrong, "x"), 0) << wrong;
    }
}

TEST(ZmConfigTest, ThreadsLoseNoValue)
{
    constexpr int kThreads = 4, kValues = 10;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([first = thread * kValues] {
            for (int i = first; i < first + kValues; ++i) {
                WriteSetting("ZmMathTestThreads", std::to_string(i), "x");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < kThreads * kValues; ++i) {
        EXPECT_EQ(ReadSetting("ZmMathTestThreads", std::to_string(i)), "x");
    }
}

}  // namespace
