#include "ZmEnvironment.h"
#include "ZmModule.h"
#include "ZmSharedLibrary.h"
#include "ZmSystem.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

namespace {

const bool kOnWindows = ZmGetPlatform() == ZM_PLATFORM_WINDOWS;

TEST(EnvironmentTest, VariablesAreSetReadAndRemoved)
{
    const char* const name = "ZMMATH_TEST_VARIABLE";
    for (const std::string& value : {std::string("a = b"), std::string(), std::string(3000, 'x')}) {
        SCOPED_TRACE(value.size());
        ASSERT_EQ(ZmSetEnvironmentVariable(name, value.c_str()), 1);
        const int length = int(value.size());
        EXPECT_EQ(ZmGetEnvironmentVariable(name, nullptr, 0), length);
        std::string buffer(value.size() + 2, '#');
        EXPECT_EQ(ZmGetEnvironmentVariable(name, &buffer[0], unsigned(length)), length);
        EXPECT_EQ(buffer[0], value.empty() ? '#' : 0) << "no room for the terminator";
        EXPECT_EQ(ZmGetEnvironmentVariable(name, &buffer[0], unsigned(length) + 1), length);
        EXPECT_EQ(buffer, value + '\0' + '#');
        if (!value.empty()) {
            ASSERT_NE(getenv(name), nullptr);
            EXPECT_EQ(getenv(name), value);
        }
    }
    EXPECT_EQ(ZmRemoveEnvironmentVariable(name) + ZmRemoveEnvironmentVariable(name), 2);
    char buffer[4] = "old";
    EXPECT_EQ(ZmGetEnvironmentVariable(name, buffer, 4), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(getenv(name), nullptr);
}

TEST(EnvironmentTest, NamesThatCannotBeAreRefused)
{
    for (const char* name : {static_cast<const char*>(nullptr), "", "A=B"}) {
        EXPECT_EQ(ZmSetEnvironmentVariable(name, "x"), 0);
        EXPECT_EQ(ZmGetEnvironmentVariable(name, nullptr, 0), -1);
        EXPECT_EQ(ZmRemoveEnvironmentVariable(name), 0);
    }
    EXPECT_EQ(ZmSetEnvironmentVariable("ZMMATH_TEST_VARIABLE", nullptr), 0);
}

TEST(SharedLibraryTest, LoadedByNameAndByPath)
{
    void* library = ZmLoadSharedLibrary(kOnWindows ? "kernel32.dll" : "libc.so.6");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(ZmGetSharedLibrarySymbol(library, kOnWindows ? "GetTickCount" : "strlen"), nullptr);
    EXPECT_EQ(ZmGetSharedLibrarySymbol(library, "no such symbol"), nullptr);
    EXPECT_EQ(ZmGetSharedLibrarySymbol(library, nullptr), nullptr);
    char path[4096];
    ASSERT_NE(ZmGetModuleFileName(library, path, sizeof(path)), 0u);
    for (char& c : path) {
        c = c == (kOnWindows ? '\\' : '/') ? (kOnWindows ? '/' : '\\') : c;
    }
    void* again = ZmLoadSharedLibrary(path);
    EXPECT_EQ(again, library) << path;
    EXPECT_EQ(ZmFreeSharedLibrary(again) + ZmFreeSharedLibrary(library), 2);
}

TEST(SharedLibraryTest, WhatIsNoneIsNotLoaded)
{
    char program[4096];
    ASSERT_NE(ZmGetModuleFileName(nullptr, program, sizeof(program)), 0u);
    const std::string folder = std::filesystem::path(program).parent_path().string();
    for (const char* path : {static_cast<const char*>(nullptr), "", "no/such/library", folder.c_str()}) {
        EXPECT_EQ(ZmLoadSharedLibrary(path), nullptr);
    }
    EXPECT_EQ(ZmGetSharedLibrarySymbol(nullptr, "strlen"), nullptr);
    EXPECT_EQ(ZmFreeSharedLibrary(nullptr), 0);
}

TEST(SystemTest, TheSystemHasAVersionAndAName)
{
    ZmSystemDesc system;
    ZmGetSystemDesc(system);
    EXPECT_EQ(system.Platform, ZmGetPlatform());
    EXPECT_GE(system.Major, 3u);
    EXPECT_LT(system.Major, 100u);
    EXPECT_EQ(system.PointerBits, 8 * sizeof(void*));
    EXPECT_GT(std::string(system.Name).size(), 4u);
}

}  // namespace
