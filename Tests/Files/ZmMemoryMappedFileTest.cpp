#include "ZmMemoryMappedFile.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string.h>

namespace {

TEST(ZmMemoryMappedFileTest, TheBytesOfAFileAreInMemory)
{
    const TemporaryFolder folder;
    for (const size_t size : {1u, 4095u, 4096u, 4097u, 1000000u}) {
        SCOPED_TRACE(size);
        std::string bytes(size, 0);
        for (size_t i = 0; i < size; ++i) {
            bytes[i] = char(i * 7 % 251);
        }
        MakeFile(folder / "file", bytes);
        const ZmMemoryMappedFile file(WithBackslashes(folder / "file").c_str()), second((folder / "file").c_str());
        ASSERT_EQ(file.GetErrorType(), ZmMMF_NoError);
        ASSERT_EQ(file.GetSize(), size);
        EXPECT_EQ(memcmp(file.GetBase(), bytes.data(), size), 0);
        EXPECT_EQ(second.GetErrorType(), ZmMMF_NoError) << "reading is shared";
    }
}

TEST(ZmMemoryMappedFileTest, TheErrorSaysWhichStepFailed)
{
    const TemporaryFolder folder;
    MakeFile(folder / "empty");
    const struct {
        std::string path;
        int error;
    } kRows[] = {{folder / "missing", 1}, {folder / "empty", 2}, {folder.Path(), 1}, {"", 1}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        const ZmMemoryMappedFile file(row.path.c_str());
        EXPECT_EQ(file.GetErrorType(), row.error);
        EXPECT_EQ(file.GetBase(), nullptr);
        EXPECT_EQ(file.GetSize(), 0u);
    }
    EXPECT_EQ(ZmMemoryMappedFile(nullptr).GetErrorType(), ZmMMF_FileOpen);
    MakeFile(folder / "large");
    std::filesystem::resize_file(folder / "large", 0x100000001u);
    const ZmMemoryMappedFile large((folder / "large").c_str());
    EXPECT_NE(large.GetErrorType(), ZmMMF_NoError) << "a size beyond 32 bits";
    EXPECT_EQ(large.GetBase(), nullptr);
}

TEST(ZmMemoryMappedFileTest, NothingOfTheFileStaysHeld)
{
    const TemporaryFolder folder;
    for (const char* bytes : {"", "bytes"}) {
        MakeFile(folder / "file", bytes);
        {
            const ZmMemoryMappedFile file((folder / "file").c_str());
        }
        EXPECT_TRUE(std::filesystem::remove(folder / "file"));
    }
}

}  // namespace
