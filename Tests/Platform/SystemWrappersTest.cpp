#include "ZmEnvironment.h"
#include "ZmModule.h"
#include "ZmSharedLibrary.h"
#include "ZmSystem.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <string>

namespace {

TEST(SystemWrappersTest, VariablesAreSetReadAndRemoved)
{
    constexpr const char* name = "ZMMATH_TEST_VARIABLE";
    for (const std::string& value : {std::string("a = b"), std::string(), std::string(3000, 'x')}) {
        EXPECT_EQ(ZmSetEnvironmentVariable(name, value.c_str()), 1);
        const int length = int(value.size());
        std::string buffer(value.size() + 2, '#');
        EXPECT_EQ(ZmGetEnvironmentVariable(name, &buffer[0], unsigned(length)), length);
        EXPECT_EQ(buffer[0], value.empty() ? '#' : 0) << "no space for the terminator";
        EXPECT_EQ(ZmGetEnvironmentVariable(name, &buffer[0], unsigned(length) + 1), length);
        EXPECT_EQ(buffer, value + '\0' + '#');
        EXPECT_TRUE(value.empty() || getenv(name) == value);
    }
    EXPECT_EQ(ZmRemoveEnvironmentVariable(name) + ZmRemoveEnvironmentVariable(name), 2);
    char buffer[4] = "old";
    EXPECT_EQ(ZmGetEnvironmentVariable(name, buffer, 4), -1);
    EXPECT_TRUE(*buffer == 0 && getenv(name) == nullptr);

    for (const char* wrong : {static_cast<const char*>(nullptr), "", "A=B"}) {
        EXPECT_EQ(ZmSetEnvironmentVariable(wrong, "x") + ZmRemoveEnvironmentVariable(wrong), 0);
        EXPECT_EQ(ZmGetEnvironmentVariable(wrong, nullptr, 0), -1);
    }
    EXPECT_EQ(ZmSetEnvironmentVariable(name, nullptr), 0);
}

TEST(SystemWrappersTest, LoadedByNameAndByPath)
{
    const bool onWindows = ZmGetPlatform() == ZM_PLATFORM_WINDOWS;
    void* library = ZmLoadSharedLibrary(onWindows ? "kernel32.dll" : "libc.so.6");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(ZmGetSharedLibrarySymbol(library, onWindows ? "GetTickCount" : "strlen"), nullptr);
    EXPECT_EQ(ZmGetSharedLibrarySymbol(library, "no such symbol"), nullptr);
    EXPECT_EQ(ZmGetSharedLibrarySymbol(library, nullptr), nullptr);
    char path[4096];
    ASSERT_NE(ZmGetModuleFileName(library, path, sizeof(path)), 0u);
    for (char& c : path) {
        c = c == (onWindows ? '\\' : '/') ? (onWindows ? '/' : '\\') : c;
    }
    void* again = ZmLoadSharedLibrary(path);
    EXPECT_EQ(again, library) << path;
    EXPECT_EQ(ZmFreeSharedLibrary(again) + ZmFreeSharedLibrary(library), 2);

    for (const char* none : {static_cast<const char*>(nullptr), "", "no/such/library", "/"}) {
        EXPECT_EQ(ZmLoadSharedLibrary(none), nullptr);
    }
    EXPECT_TRUE(ZmGetSharedLibrarySymbol(nullptr, "strlen") == nullptr && ZmFreeSharedLibrary(nullptr) == 0);
}

TEST(SystemWrappersTest, TheSystemHasAVersionAndAName)
{
    ZmSystemDesc system;
    ZmGetSystemDesc(system);
    EXPECT_TRUE(system.Platform == ZmGetPlatform() && system.PointerBits == 8 * sizeof(void*));
    EXPECT_TRUE(system.Major >= 3 && system.Major < 100 && strlen(system.Name) > 4) << system.Major << system.Name;
}

}  // namespace
