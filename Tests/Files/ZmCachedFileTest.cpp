#include "ZmCachedFile.h"

#include "Support/Blocks.h"
#include "Support/HeardMessages.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr unsigned int kNone = 0xFFFFFFFF;

/// A model of the cached read over an array, step by step.
struct Model {
    const Block& file;
    unsigned int cacheSize;
    Block cache = Block(cacheSize);
    size_t filePosition = 0;
    unsigned int position = 0, blockStart = kNone;

    void Fill()
    {
        if (filePosition < file.size()) {
            const size_t count = std::min(size_t(cacheSize), file.size() - filePosition);
            std::copy_n(&file[filePosition], count, cache.begin());
            filePosition += count;
        }
    }

    void Copy(Block& out, unsigned int from, unsigned int count) const
    {
        out.insert(out.end(), cache.begin() + from, cache.begin() + from + count);
    }

    void FillAndCopyBlocks(Block& out, unsigned int blocks)
    {
        for (; blocks > 0; --blocks) {
            Fill();
            Copy(out, 0, cacheSize);
        }
    }

    void ReadAcross(Block& out, unsigned int size, unsigned int first)
    {
        const unsigned int last = (position + size) / cacheSize * cacheSize, rest = position + size - last;
        filePosition = first;
        Fill();
        Copy(out, position - first, first + cacheSize - position);
        FillAndCopyBlocks(out, (last - first - cacheSize) / cacheSize);
        blockStart = last;
        Fill();
        Copy(out, 0, rest);
        position += size;
    }

    void ReadFromCache(Block& out, unsigned int size)
    {
        const unsigned int available = cacheSize - (position - blockStart), count = std::min(size, available);
        Copy(out, position - blockStart, count);
        if (size > count) {
            position = blockStart + cacheSize;
            FillAndCopyBlocks(out, (size - count) / cacheSize);
            blockStart = unsigned(filePosition);
            Fill();
            Copy(out, 0, (size - count) % cacheSize);
        }
        position += size;
    }

    Block Read(unsigned int size)
    {
        Block out;
        if (blockStart == kNone || position < blockStart || position >= blockStart + cacheSize) {
            const unsigned int first = position / cacheSize * cacheSize;
            if (position + size >= first + cacheSize) {
                ReadAcross(out, size, first);
                return out;
            }
            filePosition = blockStart = first;
            Fill();
        }
        ReadFromCache(out, size);
        return out;
    }
};

// Seeks to a place in the file or a little beyond it, relative to the start, the end or the position.
void SeekBoth(Random& random, ZmCachedFile& file, Model& model)
{
    const int target = random.Int(0, int(model.file.size() + model.cacheSize)), size = int(model.file.size());
    const struct {
        ZmStream::SeekMode mode;
        int base;
    } kWays[] = {{ZmStream::START, 0}, {ZmStream::END, size}, {ZmStream::CURRENT, int(model.position)}};
    const auto& way = kWays[random.Int(0, 2)];
    model.position = unsigned(target);
    EXPECT_EQ(file.Seek(target - way.base, way.mode), 1);
}

void CompareReads(Random& random, ZmCachedFile& file, Model& model, int reads)
{
    for (int i = 0; i < reads && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        if (random.Int(0, 2) == 0) {
            SeekBoth(random, file, model);
        }
        const unsigned int size = unsigned(random.Int(0, random.Int(0, 3) != 0 ? 20 : int(3 * model.cacheSize)));
        Block read(size, 0xA5);
        EXPECT_EQ(file.Read(read.data(), size), size);
        EXPECT_EQ(FirstDifference(read, model.Read(size)), -1);
        EXPECT_EQ(file.Position(), model.position);
        EXPECT_EQ(file.ZmFile::Position(), model.filePosition);
    }
}

TEST(ZmCachedFileTest, ReadsAsTheModelDoes)
{
    const TemporaryFolder folder;
    Random random(1);
    for (const int fileSize : {0, 1, 15, 16, 17, 1000, 4096, 70000}) {
        const Block bytes = RandomBytes(random, size_t(fileSize));
        const std::string path = folder / std::to_string(fileSize);
        MakeFile(path, std::string(bytes.begin(), bytes.end()));
        for (const unsigned int cacheSize : {1u, 7u, 16u, 64u, 1000u, 4096u, 32768u, 100000u}) {
            SCOPED_TRACE(std::to_string(fileSize) + " bytes by " + std::to_string(cacheSize));
            ZmCachedFile file(cacheSize);
            ASSERT_TRUE(file.Open(path.c_str(), ZmFile::READONLY));
            Model model = {bytes, cacheSize};
            CompareReads(random, file, model, 200);
        }
    }
}

/// A file in which the value of each byte gives its position.
class ZmCachedFileSmallTest : public testing::Test {
protected:
    ZmCachedFileSmallTest()
    {
        for (char c = 0; c < 100; ++c) {
            m_Bytes += c;
        }
        MakeFile(m_Path, m_Bytes);
    }

    std::string Read(ZmCachedFile& file, unsigned int size)
    {
        std::string read(size, '?');
        EXPECT_EQ(file.Read(&read[0], size), size);
        return read;
    }

    const TemporaryFolder m_Folder;
    const std::string m_Path = m_Folder / "file";
    std::string m_Bytes;
};

TEST_F(ZmCachedFileSmallTest, WritesGoWhereTheFileStandsAndPastTheCache)
{
    ZmCachedFile file(16);
    ASSERT_TRUE(file.Open(m_Path.c_str(), ZmFile::READWRITE));
    file.Seek(50, ZmStream::START);
    EXPECT_EQ(file.Write("abc", 3), 3u);
    EXPECT_EQ(file.Position(), 53u);
    file.Seek(0, ZmStream::START);
    EXPECT_EQ(Read(file, 4), std::string("abc\3", 4));
    file.ZmFile::Seek(0, ZmStream::START);
    EXPECT_EQ(file.Write("xyz", 3), 3u);
    file.Seek(0, ZmStream::START);
    EXPECT_EQ(Read(file, 4), std::string("abc\3", 4)) << "writing does not update the cache";
    file.Close();
    EXPECT_EQ(BytesOf(m_Path), "xyz" + m_Bytes.substr(3));
}

TEST_F(ZmCachedFileSmallTest, OpeningAnotherFileForgetsTheBlock)
{
    MakeFile(m_Folder / "other", std::string(100, 'o'));
    ZmCachedFile file(16);
    ASSERT_TRUE(file.Open(m_Path.c_str(), ZmFile::READONLY));
    Read(file, 8);
    ASSERT_TRUE(file.Open((m_Folder / "other").c_str(), ZmFile::READONLY));
    EXPECT_EQ(file.Position(), 0u);
    EXPECT_EQ(Read(file, 4), "oooo");
    EXPECT_EQ(file.Close(), 1);
    EXPECT_EQ(Read(file, 4), "oooo") << "closing leaves the block";
    file.Seek(16, ZmStream::START);
    char c;
    EXPECT_EQ(file.Read(&c, 1), 0u) << "bytes outside the block are not read";
    EXPECT_EQ(file.Open((m_Folder / "missing").c_str(), ZmFile::READONLY), 0);
    EXPECT_EQ(file.Read(&c, 1), 0u);
}

TEST_F(ZmCachedFileSmallTest, ChangedCacheSizesHoldForTheNextFill)
{
    ZmCachedFile file, refused(0);
    EXPECT_EQ(file.GetCacheSize(), 32768u);
    EXPECT_EQ(refused.GetCacheSize(), 32768u);
    file.SetCacheSize(0);
    EXPECT_EQ(file.GetCacheSize(), 32768u);
    file.SetCacheSize(8);
    EXPECT_EQ(file.GetCacheSize(), 8u);
    ASSERT_TRUE(file.Open(m_Path.c_str(), ZmFile::READONLY));
    EXPECT_EQ(Read(file, 4), m_Bytes.substr(0, 4));
    file.SetCacheSize(16);
    EXPECT_EQ(Read(file, 4), std::string(4, '\0')) << "the new block is zeroed and keeps the old position";
    file.Seek(40, ZmStream::START);
    EXPECT_EQ(Read(file, 20), m_Bytes.substr(40, 20));
    for (const unsigned int size : {16u, 0x80000000u}) {  // no change, and more than there can be
        file.SetCacheSize(size);
        EXPECT_EQ(file.GetCacheSize(), 16u);
        file.Seek(50, ZmStream::START);
        EXPECT_EQ(Read(file, 4), m_Bytes.substr(50, 4));
    }
    ZmCachedFile uncached(0x80000000u);
    ASSERT_TRUE(uncached.Open(m_Path.c_str(), ZmFile::READONLY));
    EXPECT_EQ(Read(uncached, 20), m_Bytes.substr(0, 20));
    EXPECT_EQ(Read(uncached, 20), m_Bytes.substr(20, 20));
}

TEST_F(ZmCachedFileSmallTest, WhatHasNoCachedFormIsDoneWithAWarningEachTime)
{
    HeardMessages messages;
    messages.Listen("cached", ZmLog::GetLog().RegisterModule("ZmMath"));
    MakeFile(m_Path, "one\ntwo\nthree\n");
    ZmCachedFile file(16);
    ASSERT_TRUE(file.Open(m_Path.c_str(), ZmFile::READWRITE));
    char buffer[8] = "";
    EXPECT_EQ(file.GetString(buffer, 8), 1);
    EXPECT_STREQ(buffer, "one\n");
    EXPECT_EQ(file.GetString(buffer, 8), 1);
    EXPECT_STREQ(buffer, "two\n");
    EXPECT_EQ(file.ReadItems(buffer, 2, 3), 3u);
    EXPECT_EQ(std::string(buffer, 6), "three\n");
    EXPECT_EQ(file.Flush(), 0u);
    const struct {
        const char* text;
        int line;
    } kExpected[] = {{"GetString : Not Cached", 201},
                     {"GetString : Not Cached", 201},
                     {"ReadItems : Not Cached", 215},
                     {"Flush : Not Cached", 208}};
    const std::vector<HeardMessage> heard = messages.Take();
    ASSERT_EQ(heard.size(), std::size(kExpected));
    for (size_t i = 0; i < heard.size(); ++i) {
        EXPECT_EQ(heard[i].text, kExpected[i].text);
        EXPECT_EQ(heard[i].line, kExpected[i].line);
        EXPECT_EQ(heard[i].file, "ZmCachedFile");
        EXPECT_EQ(heard[i].level, ZmLog::LEVEL_WARNING);
        EXPECT_EQ(heard[i].module, 1);
    }
}

}  // namespace
