#include "ZmModule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

TEST(ZmModuleTest, TheProgramsPathIsGivenWholeOrNotAtAll)
{
    char buffer[4096];
    const unsigned int length = ZmGetModuleFileName(nullptr, buffer, sizeof(buffer));
    const std::string path = buffer;
    EXPECT_EQ(path.size(), length);
    EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
    EXPECT_EQ(std::filesystem::path(path).stem(), "ZmMathTests");

    std::string exact(length + 2, '#');
    EXPECT_EQ(ZmGetModuleFileName(nullptr, &exact[0], length + 1), length);
    EXPECT_EQ(exact, path + '\0' + '#');
    EXPECT_EQ(ZmGetModuleFileName(nullptr, &exact[0], length), 0u);
    EXPECT_STREQ(exact.c_str(), "");
    EXPECT_EQ(ZmGetModuleFileName(nullptr, nullptr, 10), 0u);
    EXPECT_EQ(ZmGetModuleFileName(nullptr, &exact[0], 0), 0u);
}

}  // namespace
