#include "ZmCachedFile.h"

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

TEST(FullDeviceTest, AFolderOpensAndReadsNothing)
{
    char buffer[16];
    ZmFile file;
    ASSERT_TRUE(file.Open("/dev", ZmFile::READONLY));
    EXPECT_EQ(file.Read(buffer, 1), 0u);
    EXPECT_EQ(file.IsValid(), 0);
    EXPECT_EQ(file.GetString(buffer, 16), 0);
    ZmCachedFile cached;
    ASSERT_TRUE(cached.Open("/dev", ZmFile::READONLY));
    EXPECT_EQ(cached.Read(buffer, 16), 16u);
    EXPECT_EQ(std::string(buffer, 16), std::string(16, '\0'));
}

}  // namespace
