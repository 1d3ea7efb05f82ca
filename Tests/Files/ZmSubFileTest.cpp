#include "ZmSubFile.h"

#include "Support/Blocks.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

class ZmSubFileTest : public testing::Test {
protected:
    ZmSubFileTest()
    {
        Random random(1);
        m_Bytes = RandomBytes(random, 1000);
        MakeFile(m_Path, std::string(m_Bytes.begin(), m_Bytes.end()));
        EXPECT_TRUE(m_File.Open(m_Path.c_str(), ZmFile::READWRITE));
    }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "file";
    Block m_Bytes;
    ZmFile m_File;
};

/// A span and its expected position in the file.
struct Span {
    ZmSubFile stream;
    unsigned int offset, size, position = 0;

    void Set(ZmFile& file, unsigned int from, unsigned int count)
    {
        stream.Set(&file, offset = from, size = count);
        EXPECT_EQ(file.Position(), from);
    }

    void Seek(Random& random)
    {
        const unsigned int target = unsigned(random.Int(0, int(size) + 20));
        const int way = random.Int(0, 2);
        const unsigned int move = way == 0 ? target : way == 1 ? size - target : target - position;
        position = target;
        // The file may be positioned before this span, so that a relative move fails there; the span moves all the
        // same.
        stream.Seek(int(move), ZmStream::SeekMode(way));
    }

    void Read(Random& random, const Block& expected)
    {
        Block read(size_t(random.Int(0, 100)), 0xA5);
        const unsigned int count = unsigned(read.size()), from = offset + position;
        const bool fits = from + count <= expected.size() && count > 0;
        EXPECT_EQ(stream.Read(read.data(), count), fits ? count : 0);
        if (fits) {
            EXPECT_EQ(memcmp(read.data(), &expected[from], count), 0);
            position += count;
        }
    }

    void Write(Random& random, Block& expected)
    {
        const Block bytes = RandomBytes(random, size_t(random.Int(1, 100)));
        const unsigned int from = offset + position;
        EXPECT_EQ(stream.Write(bytes.data(), unsigned(bytes.size())), bytes.size());
        expected.resize(std::max(expected.size(), from + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), expected.begin() + from);
        position += unsigned(bytes.size());
    }
};

TEST_F(ZmSubFileTest, SpansOfOneFileAreUsedInTurns)
{
    Random random(2);
    Span spans[3];
    spans[0].Set(m_File, 0, 100);
    spans[1].Set(m_File, 100, 300);
    spans[2].Set(m_File, 350, 650);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        Span& span = spans[random.Int(0, 2)];
        switch (random.Int(0, 4)) {
        case 0: span.Seek(random); break;
        case 1: span.Write(random, m_Bytes); break;
        case 2: m_File.Seek(random.Int(0, 1000), ZmStream::START); break;
        default: span.Read(random, m_Bytes);
        }
        EXPECT_EQ(span.stream.Position(), span.position);
        EXPECT_EQ(span.stream.Size(), span.size);
    }
    m_File.Close();
    EXPECT_EQ(BytesOf(m_Path), std::string(m_Bytes.begin(), m_Bytes.end()));
}

TEST_F(ZmSubFileTest, SeekCountsBackwardsFromTheEnd)
{
    ZmSubFile span;
    span.Set(&m_File, 200, 100);
    EXPECT_EQ(span.Seek(10, ZmStream::END), 1);
    EXPECT_EQ(span.Position(), 90u);
    EXPECT_EQ(m_File.Position(), 290u);
    EXPECT_EQ(span.Seek(-10, ZmStream::END), 1);
    EXPECT_EQ(span.Position(), 110u) << "the position is not clamped";
    m_File.Seek(5, ZmStream::START);
    EXPECT_EQ(span.Seek(-1, ZmStream::SeekMode(3)), 1) << "other modes count from the position";
    EXPECT_EQ(span.Position(), 109u);
    EXPECT_EQ(m_File.Position(), 4u) << "a relative seek moves the file from its own position";
    EXPECT_EQ(span.Seek(-300, ZmStream::START), 0) << "as the file refuses";
}

const struct {
    const char* name;
    unsigned int offset, size;
    int valid;
} kSpans[] = {
    {"all", 0, 1000, 1},
    {"the last byte", 999, 1, 1},
    {"empty", 100, 0, 0},
    {"one byte too many", 1, 1000, 0},
    {"behind the file", 1000, 1, 0},
    {"an end beyond 32 bits", 4294967290u, 10, 0},
    {"a size beyond the file", 10, 4294967295u, 0},
};

TEST_F(ZmSubFileTest, AValidSpanLiesInItsFile)
{
    ZmSubFile span;
    for (const auto& row : kSpans) {
        SCOPED_TRACE(row.name);
        span.Set(&m_File, row.offset, row.size);
        EXPECT_EQ(span.IsValid(), row.valid);
        EXPECT_EQ(span.Position(), 0u);
    }
    span.Set(&m_File, 0, 10);
    const ZmSubFile copy(span);
    m_File.Close();
    EXPECT_EQ(span.IsValid(), 0);
    EXPECT_EQ(ZmSubFile(copy).IsValid(), 0);
}

TEST_F(ZmSubFileTest, WithoutAFileNothingIsDone)
{
    char buffer[4];
    ZmSubFile span;
    span.Set(nullptr, 10, 10);
    EXPECT_EQ(span.IsValid(), 0);
    EXPECT_EQ(span.Seek(1, ZmStream::START), 0);
    EXPECT_EQ(span.Seek(1, ZmStream::CURRENT), 0);
    EXPECT_EQ(span.Read(buffer, 4), 0u);
    EXPECT_EQ(span.Write(buffer, 4), 0u);
    m_File.Close();
    span.Set(&m_File, 10, 10);
    EXPECT_EQ(span.Seek(1, ZmStream::END), 0);
    EXPECT_EQ(span.Read(buffer, 4), 0u);
    EXPECT_EQ(span.Write(buffer, 4), 0u);
}

}  // namespace
