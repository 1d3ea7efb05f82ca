#include "Files/ArchiveBytes.h"
#include "Support/TemporaryFolder.h"
#include "ZmMath.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

std::string AccessOf(const std::string& path)
{
    DWORD size = 0;
    GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::string res(size, '\0');
    GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, &res[0], size, &size);
    return res;
}

/// An archive with one entry, open with a second one that has not been saved.
class ReplacedArchiveTest : public testing::Test {
protected:
    ReplacedArchiveTest()
    {
        MakeFile(m_Path, ArchiveBytes({{"old", "1"}}));
        EXPECT_NE(m_Archive.Open(m_Path.c_str(), 1), 0);
        EXPECT_NE(m_Archive.Append("new", "2", 1), 0);
    }

    TemporaryFolder m_Folder;
    std::string m_Path = m_Folder / "archive";
    ZmBigFile m_Archive;
};

TEST_F(ReplacedArchiveTest, AttributesAndAccessAreKept)
{
    struct {
        ACL list;
        char entries[200];
    } access;
    SID everyone = {SID_REVISION, 1, SECURITY_WORLD_SID_AUTHORITY, {SECURITY_WORLD_RID}};
    InitializeAcl(&access.list, sizeof(access), ACL_REVISION);
    ASSERT_NE(AddAccessAllowedAce(&access.list, ACL_REVISION, FILE_ALL_ACCESS, &everyone), 0);
    SECURITY_DESCRIPTOR descriptor;
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, &access.list, FALSE);
    const std::string usual = AccessOf(m_Path);
    ASSERT_NE(SetFileSecurityA(m_Path.c_str(), DACL_SECURITY_INFORMATION, &descriptor), 0);
    ASSERT_NE(SetFileAttributesA(m_Path.c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
    const std::string special = AccessOf(m_Path);
    ASSERT_NE(special, usual);

    ASSERT_NE(m_Archive.Save(nullptr, nullptr), 0);
    EXPECT_EQ(BytesOf(m_Path), ArchiveBytes({{"old", "1"}, {"new", "2"}}));
    EXPECT_NE(GetFileAttributesA(m_Path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    EXPECT_EQ(AccessOf(m_Path), special);
}

TEST_F(ReplacedArchiveTest, StaysOpenWhereItCannotBeReplaced)
{
    const HANDLE other = CreateFileA(m_Path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                     OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    EXPECT_EQ(m_Archive.Save(nullptr, nullptr), 0);
    CloseHandle(other);
    EXPECT_NE(m_Archive.Save(nullptr, nullptr), 0) << "with the entry that only the old file has";
    EXPECT_EQ(BytesOf(m_Path), ArchiveBytes({{"old", "1"}, {"new", "2"}}));
}

}  // namespace
