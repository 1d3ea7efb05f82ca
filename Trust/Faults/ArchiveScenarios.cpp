#include "Files/ArchiveBytes.h"
#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

#include <string.h>

namespace fs = std::filesystem;

namespace {

const Members kOld = {{"a", "first"}, {"b", kLarge}, {kLongName, std::string(10, 'c')}};
const Members kNew = {kOld[1], {kLongName, kOther}, {"e", "new"}};

void MakeArchive()
{
    MakeFile("archive", ArchiveBytes(kOld));
    MakeFile("deferred", kOther);
}

int ChangeArchive(ZmBigFile& archive)
{
    return archive.Open("archive", 1) && archive.Remove("a") && archive.Append(kLongName.c_str(), "deferred", 1, 1) &&
           archive.Append("E", "new", 3);
}

int SaveArchive(const char* path)
{
    ZmBigFile archive;
    return ChangeArchive(archive) && archive.Save(path, nullptr);
}

const char* CheckArchive(int res)
{
    return OldOrNew("archive", res, ArchiveBytes(kOld), ArchiveBytes(kNew));
}

int ReadArchive()
{
    ZmBigFile archive;
    ZmSubFile sub;
    if (!archive.OpenExisting("archive") || archive.GetEntryCount() != 3 || !archive.Find("B", &sub)) {
        return 0;
    }
    return sub.Read(g_Bytes, 70000) == 70000 && sub.IsValid();
}

void MakeLinkedArchive()
{
    MakeArchive();
    fs::rename("archive", "target");
    fs::create_symlink("target", "archive");
}

const char* CheckLinkedArchive(int res)
{
    return fs::is_symlink("archive") ? CheckArchive(res) : "the link is lost";
}

void MakeArchiveOfOthers()
{
    MakeArchive();
    GiveAway("archive", 1234);
}

void MakeTwoNames()
{
    MakeArchive();
    fs::create_hard_link("archive", "second");
}

const char* CheckTwoNames(int res)
{
    return BytesOf("second") == ArchiveBytes(kOld) ? CheckArchive(res) : kLost;
}

int BrowseArchive()
{
    ZmBigFile archive;
    ZmSubFile sub;
    if (!archive.Open("archive", 0) || archive.GetEntryCount() != 3 || !archive.GetEntryFile(1, &sub)) {
        return 0;
    }
    const bool read = sub.Seek(60000, ZmStream::START) && sub.Read(g_Bytes, 5000) == 5000 && sub.IsValid();
    return read && archive.RemoveEntry(1);
}

const char* CheckBrowsed(int res)
{
    return res != 0 && memcmp(g_Bytes, kLarge.data(), 5000) != 0 ? kWrongBytes : nullptr;
}

int MakeNewArchive()
{
    ZmBigFile archive;
    return archive.Open("other", 1) && archive.Append("d", kOther.data(), 50000) && archive.Save(nullptr, nullptr);
}

int ReopenArchive()
{
    ZmBigFile archive;
    return ChangeArchive(archive) && archive.Save(nullptr, nullptr) && archive.Open("archive", 1) &&
           archive.GetEntryCount() == 3 && archive.Find(kLongName.c_str(), nullptr);
}

int AppendNow()
{
    ZmBigFile archive;
    return archive.Open("other", 1) && archive.Append("d", "deferred", 0, 0) && archive.Save(nullptr, nullptr);
}

int AppendLater()
{
    ZmBigFile archive;
    return archive.Append("d", "deferred", 1, 0) && archive.Save("other", nullptr);
}

int AppendGone()
{
    ZmBigFile archive;
    return archive.Append("d", "deferred", 1, 0) && remove("deferred") == 0 && archive.Save("other", nullptr);
}

const char* CheckZeros(int res)
{
    const std::string zeros(kOther.size(), '\0');
    return res != 0 && BytesOf("other") != ArchiveBytes({{"d", zeros}}) ? kWrongBytes : nullptr;
}

const char* CheckOther(int res)
{
    const std::string bytes = BytesOf("other");
    return res != 0 && bytes != ArchiveBytes({{"d", kOther}}) ? kWrongBytes : nullptr;
}

void MakeLists()
{
    MakeArchive();
    MakeFile("list", kLongName + "\nb\n");
}

int Reorder()
{
    ZmBigFile archive;
    return archive.Open("archive", 1) && archive.LoadIndex("list") && archive.Save(nullptr, nullptr);
}

const char* CheckOrder(int res)
{
    return OldOrNew("archive", res, ArchiveBytes(kOld), ArchiveBytes({kOld[2], kOld[1], kOld[0]}));
}

int ListArchive()
{
    ZmBigFile archive;
    const int res = archive.Open("archive", 1);
    archive.SaveIndex("names", 0);
    archive.SaveIndex("verbose", 1);
    return res;
}

}  // namespace

const std::vector<Scenario> kArchiveScenarios = {
    {"archive saved in place", MakeArchive, [] { return SaveArchive(nullptr); }, CheckArchive},
    {"archive saved over itself", MakeArchive, [] { return SaveArchive("archive"); }, CheckArchive},
    {"archive saved elsewhere", MakeArchive, [] { return SaveArchive("copy"); },
     [](int res) { return res != 0 && BytesOf("copy") != ArchiveBytes(kNew) ? kWrongBytes : Always(0); }},
    {"archive read", MakeArchive, ReadArchive, CheckRead},
    {"archive of a file read now", MakeArchive, AppendNow, CheckOther},
    {"archive of a deferred file", MakeArchive, AppendLater, CheckOther},
    {"archive of a file that is gone", MakeArchive, AppendGone, CheckZeros},
    {"archive reordered", MakeLists, Reorder, CheckOrder},
    {"archive listed", MakeArchive, ListArchive, Always},
    {"archive behind a link saved", MakeLinkedArchive, [] { return SaveArchive("archive"); }, CheckLinkedArchive},
    {"archive of another owner saved", MakeArchiveOfOthers, [] { return SaveArchive(nullptr); }, CheckArchive},
    {"archive with two names saved", MakeTwoNames, [] { return SaveArchive(nullptr); }, CheckTwoNames},
    {"archive browsed", MakeArchive, BrowseArchive, CheckBrowsed},
    {"archive made", Nothing, MakeNewArchive, CheckOther},
    {"archive saved and opened again", MakeArchive, ReopenArchive, Always},
};
