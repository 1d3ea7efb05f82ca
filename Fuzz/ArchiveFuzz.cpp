// Opens, lists, searches, reads and saves arbitrary bytes as archives. A saved archive must open with the same entries.

#include "Input.h"
#include "ScratchFolder.h"
#include "ZmBigFile.h"

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

void ExpectSame(const ZmBigFile& a, const ZmBigFile& b)
{
    Demand(a.GetEntryCount() == b.GetEntryCount());
    for (int i = 0; i < a.GetEntryCount(); ++i) {
        Demand(strcmp(a.GetEntryName(i), b.GetEntryName(i)) == 0 && a.GetEntrySize(i) == b.GetEntrySize(i));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const ScratchFolder scratch;
    static const std::string path = scratch / "archive", copy = scratch / "copy", list = scratch / "list";
    WriteFile(path, std::string(reinterpret_cast<const char*>(data), size));
    ZmBigFile archive, saved;
    if (!archive.Open(path.c_str(), 1)) {
        return 0;
    }
    ReadEntries(archive);
    if (archive.Save(copy.c_str(), nullptr) && saved.Open(copy.c_str(), 1)) {
        ExpectSame(archive, saved);
    }
    archive.SaveIndex(list.c_str(), size % 2);
    archive.LoadIndex(list.c_str());
    archive.Append("b", data, unsigned(size));
    archive.Append("a", path.c_str(), size % 2, 1);
    archive.RemoveEntry(1);
    if (archive.Save(nullptr, nullptr) && saved.Open(path.c_str(), 1)) {
        ExpectSame(archive, saved);
    }
    return 0;
}
