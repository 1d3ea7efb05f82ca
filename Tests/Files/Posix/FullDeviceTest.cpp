#include "ZmFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(FullDeviceTest, WritingFailsWhenItReachesTheDevice)
{
    const std::string much(1 << 20, 'x');
    ZmFile file;
    ASSERT_TRUE(file.Open("/dev/full", ZmFile::WRITEONLY));
    EXPECT_EQ(file.Write("abc", 3), 3u) << "still in the buffer";
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.Close(), 1);
    ASSERT_TRUE(file.Open("\\dev\\full", ZmFile::WRITEONLY));
    EXPECT_EQ(file.Write("abc", 3), 3u);
    EXPECT_NE(file.Flush(), 0u);
    EXPECT_EQ(file.IsValid(), 0);
    file.Close();
    ASSERT_TRUE(file.Open("/dev/full", ZmFile::WRITEONLY));
    EXPECT_EQ(file.Write(much.data(), unsigned(much.size())), 0u);
}

}  // namespace
