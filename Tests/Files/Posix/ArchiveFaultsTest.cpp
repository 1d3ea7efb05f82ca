#include "Files/ArchiveBytes.h"
#include "Support/TemporaryFolder.h"
#include "ZmBigFile.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

/// While it lives, no file can grow beyond a limit: writing then fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) : m_OldAction(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_Old);
        const rlimit lowered = {limit, m_Old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_Old);
        signal(SIGXFSZ, m_OldAction);
    }

private:
    rlimit m_Old;
    void (*m_OldAction)(int);
};

TEST(ArchiveFaultsTest, AFullDiskNeverCostsTheOldArchive)
{
    const TemporaryFolder folder;
    const std::string path = folder / "archive", disk = folder / "disk";
    const Members old = {{"kept", std::string(70000, 'k')}, {"gone", std::string(5000, 'g')}};
    MakeFile(path, ArchiveBytes(old));
    MakeFile(disk, std::string(50000, 'd'));
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    ZmBigFile archive;
    ASSERT_EQ(archive.Open(path.c_str(), 1), 1);
    archive.Remove("gone");
    archive.Append("deferred", disk.c_str(), 1, 0);
    archive.Append("bytes", std::string(40000, 'b').data(), 40000);
    Members expected = {old[0], {"deferred", BytesOf(disk)}, {"bytes", std::string(40000, 'b')}};
    for (const size_t length : {32725u, 40000u}) {  // the buffer of the file is full inside a size, and inside a name
        expected.emplace_back(std::string(length, 'n'), "");
        archive.Append(expected.back().first.c_str(), "", 0);
    }
    const unsigned size = unsigned(ArchiveBytes(expected).size());

    for (unsigned limit = 0; limit < size; limit = limit < size - 5000 ? limit + 4999 : limit + 997) {
        SCOPED_TRACE(limit);
        const FileSizeLimit full(limit);
        ASSERT_EQ(archive.Save(nullptr, nullptr), 0);
        ASSERT_EQ(folder.Files(), (std::vector<std::string>{"archive", "disk"}));
        ASSERT_EQ(MembersOf(BytesOf(path)), old);
        ZmSubFile sub;
        ASSERT_EQ(archive.GetEntryCount(), 5);
        ASSERT_TRUE(archive.Find("kept", &sub) && sub.IsValid());
    }
    ASSERT_EQ(archive.Save("/dev/full", nullptr), 0);
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));
    ASSERT_EQ(archive.Save(path.c_str(), nullptr), 1) << "to its own path";
    EXPECT_EQ(MembersOf(BytesOf(path)), expected);
    EXPECT_EQ(archive.Save(nullptr, nullptr), 1) << "it goes on reading the old file";
    EXPECT_EQ(MembersOf(BytesOf(path)), expected);
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

constexpr uint64_t kMostBytes = 0x7FFFFFFF, kHeaderAndRecord = 8 + 6;

const struct {
    const char* name;
    std::vector<uint64_t> sizes;
    int saves;
} kLargeArchives[] = {
    {"the largest", {kMostBytes - kHeaderAndRecord}, 1},
    {"one byte too large", {kMostBytes - kHeaderAndRecord + 1}, 0},
    {"a little beyond 4 GiB", {kMostBytes, kMostBytes, 100}, 0},
};

TEST(ArchiveFaultsTest, ArchivesEndBelow2GiB)
{
    const TemporaryFolder folder;
    const auto makeLarge = [&](const std::string& name, uint64_t size, const std::string& bytes = "") {
        MakeFile(folder / name, bytes);
        std::filesystem::resize_file(folder / name, size);  // takes no room on the disk
        return folder / name;
    };
    for (const auto& row : kLargeArchives) {
        SCOPED_TRACE(row.name);
        ZmBigFile archive;
        for (const uint64_t size : row.sizes) {
            const std::string name = std::to_string(archive.GetEntryCount());
            ASSERT_EQ(archive.Append(name.c_str(), makeLarge(name, size).c_str(), 1, 0), 1);
        }
        EXPECT_EQ(archive.Save("/dev/null", nullptr), row.saves);
    }
    ZmBigFile archive;
    const std::string empty = ArchiveBytes({});
    EXPECT_EQ(archive.OpenExisting(makeLarge("archive", kMostBytes, empty).c_str()), 1);
    EXPECT_EQ(archive.OpenExisting(makeLarge("archive", kMostBytes + 1, empty).c_str()), 0);
    EXPECT_EQ(archive.Append("file", makeLarge("file", kMostBytes + 1).c_str(), 1, 0), 0);
    EXPECT_EQ(archive.Append("bytes", "", unsigned(kMostBytes) + 1), 0);
}

}  // namespace
