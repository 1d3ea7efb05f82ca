#include "ZmModule.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(LibraryPathTest, ALibraryHasThePathItWasLoadedFrom)
{
    void* library = dlopen("libc.so.6", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    Dl_info info;
    ASSERT_NE(dladdr(dlsym(library, "strlen"), &info), 0);
    char buffer[4096];
    EXPECT_NE(ZmGetModuleFileName(library, buffer, sizeof(buffer)), 0u);
    EXPECT_TRUE(std::filesystem::equivalent(buffer, info.dli_fname)) << buffer;
    dlclose(library);
}

}  // namespace
