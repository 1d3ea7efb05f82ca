// Opens, lists, searches, reads and saves arbitrary bytes as archives. A saved archive must open with the same entries.

#include "Input.h"
#include "ScratchFolder.h"
#include "ZmBigFile.h"

#include <algorithm>
#include <vector>

namespace {

void ReadEntries(ZmBigFile& archive)
{
    std::vector<char> bytes;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        ZmSubFile sub;
        archive.Find(archive.GetEntryName(i), &sub);
        char few[40];
        sub.Read(few, sizeof(few));
        if (archive.GetEntryFile(i, &sub) && sub.IsValid()) {
            bytes.resize(sub.Size());
            sub.Read(bytes.data(), sub.Size());
        }
        sub.Seek(-20, ZmStream::END);
        sub.Read(few, sizeof(few));
    }
}

using Listed = std::pair<std::string, unsigned int>;  // name and size

/// Entries without names and bytes count once where they follow each other, as when an archive is opened.
std::vector<Listed> ListOf(const ZmBigFile& archive)
{
    std::vector<Listed> list;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        list.emplace_back(archive.GetEntryName(i), archive.GetEntrySize(i));
    }
    const auto last = std::unique(list.begin(), list.end(), [](const Listed& a, const Listed& b) {
        return a == b && a == Listed{"", 0};
    });
    list.erase(last, list.end());
    return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const ScratchFolder scratch;
    static const std::string path = scratch / "archive", copy = scratch / "copy", list = scratch / "list";
    MakeFile(path, std::string(reinterpret_cast<const char*>(data), size));
    ZmBigFile archive, saved;
    if (!archive.Open(path.c_str(), 1)) {
        return 0;
    }
    ReadEntries(archive);
    if (archive.Save(copy.c_str(), nullptr) && saved.Open(copy.c_str(), 1)) {
        Demand(ListOf(archive) == ListOf(saved));
    }
    archive.SaveIndex(list.c_str(), size % 2);
    archive.LoadIndex(list.c_str());
    archive.Append("b", data, unsigned(size));
    archive.Append("a", path.c_str(), size % 2, 1);
    archive.RemoveEntry(1);
    if (archive.Save(nullptr, nullptr) && saved.Open(path.c_str(), 1)) {
        Demand(ListOf(archive) == ListOf(saved));
    }
    return 0;
}
