// Archives: opening with the index, looking up names, reading whole members, saving a copy.

#include "Families.h"
#include "Inputs.h"
#include "TestFiles.h"

#include "ZmBigFile.h"
#include "ZmFileSystem.h"

namespace bench {
namespace {

void PrepareOrder(Work& w)
{
    w.extra = ShuffledIndices(w.count);
}

void PrepareNothing(Work&) {}

// The goal for saving is set against copying the file.
constexpr Task kTasks[] = {
    {"Archive/Open", 4, 0, PrepareNothing, {kMemberCount}, {0.15}, 0},
    {"Archive/Find", 4, 0, PrepareOrder, {kMemberCount}, {1.0}, 0},
    {"Archive/FindToRead", 4, 0, PrepareOrder, {kMemberCount}, {0.15}, 0},
    {"Archive/ReadRandom", 4, 0, PrepareOrder, {kMemberCount}, {0.83}, 0},
    {"Archive/ReadInOrder", 4, 0, PrepareNothing, {kMemberCount}, {0.45}, 0},
    {"Archive/Save", 4, 0, PrepareNothing, {kMemberCount}, {1.43}, 0},
};

ZmBigFile& Opened()
{
    static ZmBigFile archive;
    static const int opened = archive.Open(ArchiveFile().c_str(), 1);
    (void)opened;
    return archive;
}

void Open(const Work& w)
{
    ZmBigFile archive;
    archive.Open(ArchiveFile().c_str(), 1);
    *static_cast<float*>(w.dst) = float(archive.GetEntryCount());
}

void Find(const Work& w)
{
    const std::vector<Member>& members = ArchiveMembers();
    const int* order = static_cast<const int*>(w.extra);
    ZmBigFile& archive = Opened();
    int found = 0;
    for (int i = 0; i < w.count; ++i) {
        found += archive.Find(members[size_t(order[i])].name.c_str(), nullptr);
    }
    *static_cast<float*>(w.dst) = float(found);
}

void FindToRead(const Work& w)
{
    const std::vector<Member>& members = ArchiveMembers();
    const int* order = static_cast<const int*>(w.extra);
    ZmBigFile& archive = Opened();
    int found = 0;
    for (int i = 0; i < w.count; ++i) {
        ZmSubFile sub;
        found += archive.Find(members[size_t(order[i])].name.c_str(), &sub);
    }
    *static_cast<float*>(w.dst) = float(found);
}

void ReadMembers(const Work& w, const int* order)
{
    static char bytes[kLargestMember];
    const std::vector<Member>& members = ArchiveMembers();
    ZmBigFile& archive = Opened();
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        ZmSubFile sub;
        archive.Find(members[size_t(order != nullptr ? order[i] : i)].name.c_str(), &sub);
        sub.Read(bytes, sub.Size());
        sum += static_cast<unsigned char>(bytes[sub.Size() - 1]);
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

void ReadRandom(const Work& w)
{
    ReadMembers(w, static_cast<const int*>(w.extra));
}

void ReadInOrder(const Work& w)
{
    ReadMembers(w, nullptr);
}

void Save(const Work&)
{
    const std::string path = TestFolder() + "/saved";
    ZmDeleteFile(path.c_str());
    Opened().Save(path.c_str(), nullptr);
}

constexpr Entry kEntries[] = {
    {"Archive/Open", Open},
    {"Archive/Find", Find},
    {"Archive/FindToRead", FindToRead},
    {"Archive/ReadRandom", ReadRandom},
    {"Archive/ReadInOrder", ReadInOrder},
    {"Archive/Save", Save},
};

}  // namespace

constexpr Tasks kArchiveTasks{kTasks};
constexpr Contender kArchives{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
