#include "ZmFile.h"

#include "RKDirectoryParser.h"
#include "Support/TemporaryFolder.h"
#include "ZmBigFile.h"
#include "ZmMemoryMappedFile.h"
#include "ZmSystem.h"

#include <gtest/gtest.h>

#include <string.h>

#include <vector>

/// The number of open files that a child process would inherit.
int InheritableFiles();

namespace {

using Lines = std::vector<std::string>;

/// The visible effects of an opening mode: opens, reads and writes a missing and an existing file.
std::string TracesOfMode(const TemporaryFolder& folder, const char* mode)
{
    std::string traces;
    char c = '-';
    for (const char* name : {"missing", "existing"}) {
        if (FILE* file = fopen((folder / name).c_str(), mode)) {
            traces += std::string("opens, reads ") + std::to_string(fread(&c, 1, 1, file)) + c;
            fseek(file, 1, SEEK_SET);
            traces += ", writes " + std::to_string(fwrite("x\n", 2, 1, file));
            fclose(file);
        }
        traces += ": " + BytesOf(folder / name) + '\n';
    }
    return traces;
}

std::string TracesOfMode(const TemporaryFolder& folder, int mode)
{
    std::string traces;
    char c = '-';
    for (const char* name : {"missing", "existing"}) {
        ZmFile file;
        if (file.Open((folder / name).c_str(), ZmFile::OpenMode(mode))) {
            traces += std::string("opens, reads ") + std::to_string(file.Read(&c, 1)) + c;
            file.Seek(1, ZmStream::START);
            traces += ", writes " + std::to_string(file.Write("x\n", 2) / 2);
            file.Close();
        }
        traces += ": " + BytesOf(folder / name) + '\n';
    }
    return traces;
}

TEST(ZmFileTest, ModesOpenAsTheirModeStringsDo)
{
    constexpr const char* kModes[] = {"rb", "rb", "wb", "r+b", "ab", "a+b", "rb", "rb",
                                      "rb", "r",  "w",  "r+",  "a",  "a+",  "rb", "rb"};
    for (const int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 26, 1 << 30, -1, -6}) {
        SCOPED_TRACE(mode);
        const TemporaryFolder mine, expected;
        MakeFile(mine / "existing", "abcd");
        MakeFile(expected / "existing", "abcd");
        const char* text = mode >= 0 && mode < 16 ? kModes[mode] : "rb";
        EXPECT_EQ(TracesOfMode(mine, mode), TracesOfMode(expected, text));
    }
}

TEST(ZmFileTest, ReadIsAllOrNothing)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file", std::string(100, 'a') + std::string(60, 'b'));
    ZmFile file;
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READONLY));
    std::string buffer(100, '-');
    EXPECT_EQ(file.Read(&buffer[0], 0), 0u);
    EXPECT_EQ(file.Read(&buffer[0], 100), 100u);
    EXPECT_EQ(buffer, std::string(100, 'a'));
    EXPECT_FALSE(file.EndOfFile());
    EXPECT_EQ(file.Read(&buffer[0], 100), 0u);
    EXPECT_EQ(buffer, std::string(60, 'b') + std::string(40, 'a'));
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_EQ(file.IsValid(), 1) << "the end is no error";
    file.Seek(97, ZmStream::START);
    EXPECT_EQ(file.ReadItems(&buffer[0], 7, 10), 9u);
    EXPECT_EQ(buffer, "aaa" + std::string(60, 'b') + std::string(37, 'a'));
}

const struct {
    const char* name;
    int offset, mode, result;
    unsigned int position;
} kSeeks[] = {
    {"from the start", 7, ZmStream::START, 1, 7},
    {"from the end, forwards", 10, ZmStream::END, 1, 110},
    {"from the end, backwards", -10, ZmStream::END, 1, 90},
    {"from the position", -20, ZmStream::CURRENT, 1, 30},
    {"an unknown mode is the start", 20, 3, 1, 20},
    {"before the start", -1, ZmStream::START, 0, 50},
    {"before the start, from the end", -101, ZmStream::END, 0, 50},
};

TEST(ZmFileTest, SeekMovesBySignsOfTheCLibrary)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file", std::string(100, 'a'));
    ZmFile file;
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READONLY));
    for (const auto& row : kSeeks) {
        SCOPED_TRACE(row.name);
        file.Seek(50, ZmStream::START);
        EXPECT_EQ(file.Seek(row.offset, ZmStream::SeekMode(row.mode)), row.result);
        EXPECT_EQ(file.Position(), row.position);
        EXPECT_EQ(file.Size(), 100u);
        EXPECT_EQ(file.Position(), row.position) << "Size() moved it";
    }
}

TEST(ZmFileTest, SizesEndBelow4GiB)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file");
    std::filesystem::resize_file(folder / "file", (uint64_t(1) << 32) + 5);  // takes no room on the disk
    ZmFile file;
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READONLY));
    EXPECT_EQ(file.Size(), UINT32_MAX);
}

TEST(ZmFileTest, PrintfFlushAndScanfGiveTheCLibrarysResults)
{
    const TemporaryFolder folder;
    ZmFile file;
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::WRITEONLY));
    EXPECT_EQ(file.Printf("%d %s %.2f", 42, "word", 1.5), 12u);
    EXPECT_EQ(file.Flush(), 0u);
    EXPECT_EQ(BytesOf(folder / "file"), "42 word 1.50");
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READONLY)) << "closes what is open";
    int number = 0;
    char word[8] = "";
    float fraction = 0;
    EXPECT_EQ(file.Scanf("%d %7s %f", &number, word, &fraction), 3u);
    EXPECT_EQ(number, 42);
    EXPECT_STREQ(word, "word");
    EXPECT_EQ(fraction, 1.5f);
    EXPECT_EQ(file.Scanf("%d", &number), unsigned(EOF));
}

// The pieces that a buffer of this size reads from a file if the C library drops the CR before an LF.
Lines PiecesOf(const std::string& bytes, size_t bufferSize, bool dropsReturns)
{
    Lines pieces;
    bool startsNew = true;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (dropsReturns && bytes.compare(i, 2, "\r\n") == 0) {
            continue;
        }
        if (startsNew || pieces.back().size() == bufferSize - 1) {
            pieces.push_back("");
        }
        pieces.back() += bytes[i];
        startsNew = bytes[i] == '\n';
    }
    return pieces;
}

Lines ReadPieces(const std::string& path, int mode, unsigned int bufferSize)
{
    Lines pieces;
    ZmFile file;
    file.Open(WithBackslashes(path).c_str(), ZmFile::OpenMode(mode));
    std::vector<char> buffer(bufferSize);  // on the heap, so that a sanitizer checks its end
    while (pieces.size() < 1000 && file.GetString(buffer.data(), bufferSize)) {
        pieces.push_back(buffer.data());
    }
    return pieces;
}

TEST(ZmFileTest, GetStringReadsCrLfAsLfInTextModes)
{
    const TemporaryFolder folder;
    for (const char* bytes :
         {"", "a", "\r\n", "\n\n\r\n\r\n", "a\r\nbc\r\ndef\r\nghij\r\nklmno\r\n", "abcdefgh\r\r\n\rxy\n", "\r\r\r\r\n",
          "no end\r", "mixed\nlines\r\nhere", "a\x1a\x1a b\r\n\x1a\r\nc\x1a"}) {
        MakeFile(folder / "file", bytes);
        for (unsigned int size = 2; size <= 10; ++size) {
            SCOPED_TRACE(testing::PrintToString(bytes) + " by " + std::to_string(size));
            for (const int mode : {ZmFile::READONLY, ZmFile::READWRITE, ZmFile::APPENDREAD}) {
                EXPECT_EQ(ReadPieces(folder / "file", mode | ZmFile::TEXT, size), PiecesOf(bytes, size, true));
                EXPECT_EQ(ReadPieces(folder / "file", mode, size), PiecesOf(bytes, size, false));
            }
        }
    }
}

// Systems whose lines end with CR LF also drop the CR when a number of characters is read.
std::string CharactersOf(const std::string& bytes)
{
    std::string text;
    for (const std::string& piece : PiecesOf(bytes, bytes.size() + 2, ZmGetPlatform() == ZM_PLATFORM_WINDOWS)) {
        text += piece;
    }
    return text;
}

TEST(ZmFileTest, CountedCharactersAreTheSameInPiecesOfAnySize)
{
    const TemporaryFolder folder;
    for (const std::string& bytes :
         {std::string("a\r\nbc\r\r\n\x1a\0e\r", 12), std::string("\r\n\r\n"), std::string()}) {
        MakeFile(folder / "file", bytes);
        const std::string text = CharactersOf(bytes);
        for (const int mode : {ZmFile::READONLY, ZmFile::READWRITE, ZmFile::APPENDREAD}) {
            for (unsigned size = 1; size <= 16; ++size) {
                SCOPED_TRACE(testing::PrintToString(bytes) + " by " + std::to_string(size));
                ZmFile whole, pieces;
                whole.Open((folder / "file").c_str(), ZmFile::OpenMode(mode | ZmFile::TEXT));
                pieces.Open((folder / "file").c_str(), ZmFile::OpenMode(mode | ZmFile::TEXT));
                std::string read(100, '?'), piece(size, '?'), joined;
                ASSERT_EQ(whole.ReadItems(&read[0], size, 100 / size), text.size() / size);
                EXPECT_EQ(read.substr(0, text.size()), text);
                EXPECT_EQ(whole.ReadItems(&read[0], 0, 7), 0u);
                while (pieces.Read(&piece[0], size) == size) {
                    joined += piece;
                }
                EXPECT_EQ(joined, text.substr(0, text.size() / size * size));
            }
        }
    }
}

TEST(ZmFileTest, LinesAreReadAndWrittenByTurns)
{
    const bool windows = ZmGetPlatform() == ZM_PLATFORM_WINDOWS;
    const TemporaryFolder folder;
    const std::string path = folder / "file", end = windows ? "\r\n" : "\n";
    char buffer[16];
    MakeFile(path, "one\x1a\r\ntwo\x1a");
    ZmFile file;
    ASSERT_TRUE(file.Open(path.c_str(), ZmFile::OpenMode(ZmFile::APPENDREAD | ZmFile::TEXT)));
    EXPECT_TRUE(file.GetString(buffer, 16) && strcmp(buffer, "one\x1a\n") == 0);
    EXPECT_EQ(file.Position(), 6u);
    EXPECT_EQ(file.Printf("%s\n", "three"), 6u);
    file.Seek(6, ZmStream::START);
    EXPECT_TRUE(file.GetString(buffer, 16) && strcmp(buffer, "two\x1athree\n") == 0) << buffer;
    EXPECT_EQ(file.Write("four\n", 5), 5u);
    file.Close();
    EXPECT_EQ(BytesOf(path), "one\x1a\r\ntwo\x1athree" + end + "four" + end);
}

TEST(ZmFileTest, AFolderOpensInNoMode)
{
    const TemporaryFolder folder;
    for (int mode = 0; mode < 16; ++mode) {
        ZmFile file;
        ZmCachedFile cached;
        EXPECT_EQ(file.Open(folder.Path().c_str(), ZmFile::OpenMode(mode)), 0) << mode;
        EXPECT_EQ(cached.Open(folder.Path().c_str(), ZmFile::OpenMode(mode)), 0) << mode;
    }
}

TEST(ZmFileTest, ProgramsThatAreStartedInheritNoFile)
{
    const TemporaryFolder folder;
    const std::string path = folder / "file";
    const int before = InheritableFiles();
    {
        std::FILE* inherited = fopen(path.c_str(), "w");
        ASSERT_NE(inherited, nullptr);
        EXPECT_EQ(InheritableFiles(), before + 1) << "unlike the library's files, an ordinary file is inherited";
        fclose(inherited);
    }
    std::vector<ZmFile> files(14);
    for (int mode = 1; mode < 14; ++mode) {
        EXPECT_TRUE(files[size_t(mode)].Open(path.c_str(), ZmFile::OpenMode(mode)));
    }
    ZmCachedFile cached;
    EXPECT_TRUE(cached.Open(path.c_str(), ZmFile::READONLY));
    MakeFile(folder / "mapped", "bytes");
    const ZmMemoryMappedFile mapped((folder / "mapped").c_str());
    EXPECT_EQ(mapped.GetErrorType(), ZmMMF_NoError);
    RKDirectoryParser walk(folder.Path().c_str(), "*", 0, 0);
    EXPECT_NE(walk.GetNextFile(), nullptr);
    ZmBigFile archive;
    EXPECT_TRUE(archive.Open((folder / "archive").c_str(), 1));
    EXPECT_EQ(InheritableFiles(), before);
}

TEST(ZmFileTest, GetStringLosesNoLineBehindAReturnAndANul)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file", std::string("a\r\0b\n\nc\n", 8));
    EXPECT_EQ(ReadPieces(folder / "file", ZmFile::READONLY | ZmFile::TEXT, 0), Lines());
    EXPECT_EQ(ReadPieces(folder / "file", ZmFile::READONLY | ZmFile::TEXT, 16), (Lines{"a\r", "\n", "c\n"}));
    char none = '-', next[4];
    ZmFile file;
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT)));
    EXPECT_TRUE(file.GetString(&none, 1) == 1 && none == 0) << "room for the terminator alone";
    EXPECT_TRUE(file.GetString(next, 4) == 1 && strcmp(next, "a\r") == 0);
}

void ExpectRefusal(ZmFile& file)
{
    char buffer[4] = "abc";
    EXPECT_EQ(file.IsValid(), 0);
    EXPECT_EQ(file.Position(), 0u);
    EXPECT_EQ(file.Size(), 0u);
    EXPECT_EQ(file.Seek(0, ZmStream::START), 0);
    EXPECT_EQ(file.Read(buffer, 3), 0u);
    EXPECT_EQ(file.ReadItems(buffer, 1, 3), 0u);
    EXPECT_EQ(file.Write(buffer, 3), 0u);
    EXPECT_EQ(file.GetString(buffer, 3), 0);
    EXPECT_EQ(file.Printf("%d", 1), unsigned(EOF));
    EXPECT_EQ(file.Scanf("%3s", buffer), 0u);
    EXPECT_NE(file.Flush(), 0u);
    EXPECT_TRUE(file.EndOfFile());
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(file.Close(), 1);
}

TEST(ZmFileTest, AClosedFileRefusesEverything)
{
    const TemporaryFolder folder;
    MakeFile(folder / "file", "text");
    ZmFile file;
    ExpectRefusal(file);
    ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READWRITE));
    EXPECT_EQ(file.Close(), 1);
    ExpectRefusal(file);
    for (const std::string& name : {std::string(), folder / "missing", folder / std::string(5000, 'x')}) {
        ASSERT_TRUE(file.Open((folder / "file").c_str(), ZmFile::READWRITE));
        EXPECT_EQ(file.Open(name.c_str(), ZmFile::READONLY), 0) << "the open file is closed first";
        ExpectRefusal(file);
    }
    EXPECT_EQ(file.Open(nullptr, ZmFile::WRITEONLY), 0);
    EXPECT_EQ(BytesOf(folder / "file"), "text");
}

TEST(ZmFileTest, CopiesShareOneFile)
{
    const TemporaryFolder folder;
    ZmFile first, third;
    ASSERT_TRUE(first.Open((folder / "file").c_str(), ZmFile::WRITEONLY));
    {
        ZmFile second(first);
        EXPECT_EQ(second.Write("ab", 2), 2u);
        third = second;
        third = *&third;
        EXPECT_EQ(first.Position(), 2u);
        EXPECT_EQ(third.Write("cd", 2), 2u);
    }
    EXPECT_EQ(BytesOf(folder / "file"), "abcd") << "the first copy to be destroyed closed the file";
    ExpectRefusal(first);
    ExpectRefusal(third);
    ASSERT_TRUE(first.Open((folder / "file").c_str(), ZmFile::READONLY)) << "and can be opened anew, for itself";
    ExpectRefusal(third);
    EXPECT_EQ(first.Size(), 4u);
    third = first;
    ASSERT_TRUE(first.Open((folder / "file").c_str(), ZmFile::READONLY)) << "which closes it for the other copies";
    ExpectRefusal(third);
    const ZmFile none;
    ZmFile copy(none);
    ExpectRefusal(copy);
    third = none;
    ExpectRefusal(third);
    ASSERT_TRUE(third.Open((folder / "file").c_str(), ZmFile::WRITEONLY));
    EXPECT_EQ(third.Write("ef", 2), 2u);
    third = none;
    EXPECT_EQ(BytesOf(folder / "file"), "ef") << "nobody holds the file any more: it is closed";
}

TEST(ZmFileTest, TheModeWordTellsFilesFromFolders)
{
    constexpr unsigned int kTypes = 0170000, kFile = 0100000, kFolder = 0040000, kOwnerReads = 0400;
    const TemporaryFolder folder;
    MakeFile(folder / "file");
    EXPECT_EQ(ZmFile::GetFileMode((folder / "file").c_str()) & (kTypes | kOwnerReads), kFile | kOwnerReads);
    EXPECT_EQ(ZmFile::GetFileMode(folder.Path().c_str()) & kTypes, kFolder);
    EXPECT_EQ(ZmFile::GetFileMode((folder / "missing").c_str()), 0u);
    EXPECT_EQ(ZmFile::GetFileMode(""), 0u);
    EXPECT_EQ(ZmFile::GetFileMode(nullptr), 0u);
}

}  // namespace
