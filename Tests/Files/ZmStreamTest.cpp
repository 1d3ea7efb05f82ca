#include "ZmStream.h"

#include "Support/TemporaryFolder.h"
#include "ZmFile.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Sizes = std::vector<unsigned int>;

/// Yields bytes counting up from 0 and records what is written, with the size of each call. It can refuse both.
class TestStream final : public ZmStream {
public:
    explicit TestStream(unsigned int size, bool refuses = false) : m_Size(size), m_Refuses(refuses) {}

    unsigned int Position() override { return m_Position; }
    unsigned int Size() override { return m_Size; }
    int IsValid() override { return 1; }
    int Seek(int, SeekMode) override { return 0; }
    unsigned int Read(void* buffer, unsigned int size) override
    {
        m_Reads.push_back(size);
        for (unsigned int i = 0; !m_Refuses && i < size; ++i) {
            static_cast<char*>(buffer)[i] = char(m_Position++ % 251);
        }
        return m_Refuses ? 0 : size;
    }
    unsigned int Write(const void* buffer, unsigned int size) override
    {
        m_Writes.push_back(size);
        m_Written.append(static_cast<const char*>(buffer), m_Refuses ? 0 : size);
        return m_Refuses ? 0 : size;
    }

    unsigned int m_Size, m_Position = 0;
    bool m_Refuses;
    Sizes m_Reads, m_Writes;
    std::string m_Written;
};

const struct {
    const char* name;
    unsigned int sourceSize, asked, copied;
    Sizes steps;
} kCopies[] = {
    {"nothing", 0, 0, 0, {0}},
    {"a part", 100, 10, 10, {10}},
    {"all", 100, 0, 100, {100}},
    {"more than there is", 100, 200, 200, {200}},
    {"one less than a step", 32767, 0, 32767, {32767}},
    {"one step", 32768, 0, 32768, {32768}},
    {"one more than a step", 32769, 0, 32769, {32768, 1}},
    {"two steps", 0, 65536, 65536, {32768, 32768}},
    {"two steps and one", 65537, 0, 65537, {32768, 32768, 1}},
};

TEST(ZmStreamTest, CopyMovesStepsOf32768Bytes)
{
    for (const auto& row : kCopies) {
        SCOPED_TRACE(row.name);
        TestStream source(row.sourceSize), target(0), expected(0);
        EXPECT_EQ(target.Copy(source, row.asked), row.copied);
        EXPECT_EQ(source.m_Reads, row.steps);
        EXPECT_EQ(target.m_Writes, row.steps);
        std::string bytes(row.copied, 0);
        expected.Read(&bytes[0], row.copied);
        EXPECT_EQ(target.m_Written, bytes);
    }
}

TEST(ZmStreamTest, CopyGoesOnWhenTheStreamsRefuse)
{
    TestStream source(70000, true), target(0, true);
    EXPECT_EQ(target.Copy(source, 0), 70000u);
    EXPECT_EQ(source.m_Reads, (Sizes{32768, 32768, 4464}));
    EXPECT_EQ(target.m_Writes, source.m_Reads);
}

TEST(ZmStreamTest, CopyOfZeroTakesTheSizeAndBeginsAtThePosition)
{
    const TemporaryFolder folder;
    MakeFile(folder / "source", std::string(60, 'a') + std::string(40, 'b'));
    ZmFile source, target;
    ASSERT_TRUE(source.Open((folder / "source").c_str(), ZmFile::READONLY));
    ASSERT_TRUE(target.Open((folder / "target").c_str(), ZmFile::WRITEONLY));
    source.Seek(60, ZmStream::START);
    EXPECT_EQ(target.Copy(source, 0), 100u);
    target.Close();
    EXPECT_EQ(BytesOf(folder / "target"), std::string(40, 'b') + std::string(60, '\0'));
}

}  // namespace
