#include "ZmConfig.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

std::string Read(const char* section, const std::string& name)
{
    ZmConfig settings;
    settings.OpenSection(section, ZmConfig::MODE_READ);
    char value[ZmConfig::kMaxValue];
    const int size = settings.ReadStringEntry(name.c_str(), value);
    settings.CloseSection(section);
    EXPECT_EQ(settings.ReadStringEntry(name.c_str(), value), -1) << "the section is closed";
    return size < 0 ? "none" : std::to_string(size) + ' ' + value;
}

void Write(const char* section, const std::string& name, const std::string& value)
{
    ZmConfig settings;
    settings.OpenSection(section, ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry(name.c_str(), value.c_str());
}

TEST(ZmConfigTest, WhatOneObjectWritesAnotherReads)
{
    const struct {
        const char *section, *name;
        std::string value;
    } kRows[] = {
        {"ZmMathTest", "name", "value"},
        {"ZmMathTest", "empty", ""},
        {"ZmMathTest", "", "of no name"},
        {"ZmMathTest", "a = b % c", " = \t%41%\n\r "},
        {"ZmMathTest", "/ . \x01", std::string(255, 'x')},
        {"ZmMathTest\\Below", "name", "another"},
        {"ZmMathTest/Below", "name", "a third"},
    };
    for (const auto& row : kRows) {
        Write(row.section, row.name, "old");
        Write(row.section, row.name, row.value);
    }
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.section + std::string(":") + row.name);
        EXPECT_EQ(Read(row.section, row.name), std::to_string(row.value.size() + 1) + ' ' + row.value);
    }
    EXPECT_EQ(Read("zmmathtest", "NAME"), "6 value") << "case does not matter";
    EXPECT_EQ(Read("ZmMathTest", "missing"), "none");
    EXPECT_EQ(Read("ZmMathTest-none", "name"), "none");
    Write("ZmMathTest", "long", std::string(256, 'x'));
    EXPECT_EQ(Read("ZmMathTest", "long"), "none");
}

TEST(ZmConfigTest, TheModeSaysWhatMayBeDone)
{
    Write("ZmMathTest", "mode", "old");
    char value[ZmConfig::kMaxValue] = "kept";
    ZmConfig settings;
    settings.OpenSection("ZmMathTest", ZmConfig::MODE_WRITE);
    settings.WriteStringEntry("mode", "new");
    EXPECT_EQ(settings.ReadStringEntry("mode", value), -1);
    settings.OpenSection("ZmMathTest", ZmConfig::MODE_READ);
    settings.WriteStringEntry("mode", "not written");
    EXPECT_EQ(settings.ReadStringEntry("missing", value), -1);
    EXPECT_STREQ(value, "kept");
    EXPECT_EQ(settings.ReadStringEntry("mode", value), 4);
    EXPECT_STREQ(value, "new");
}

TEST(ZmConfigTest, ThreadsLoseNoValue)
{
    constexpr int kThreads = 4, kValues = 10;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < kValues; ++i) {
                Write("ZmMathTestThreads", std::to_string(thread) + '-' + std::to_string(i), "x");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < kThreads * kValues; ++i) {
        EXPECT_EQ(Read("ZmMathTestThreads", std::to_string(i / kValues) + '-' + std::to_string(i % kValues)), "2 x");
    }
}

}  // namespace
