// Opens, lists, searches, reads and saves arbitrary bytes as archives. A saved archive must open with the same entries.

#include "ZmBigFile.h"
#include "ZmLog.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class Scratch {
public:
    Scratch() : m_Folder(fs::temp_directory_path() / ("ArchiveFuzz-" + std::to_string(std::random_device()())))
    {
        fs::create_directory(m_Folder);
        ZmLog::GetLog().UnregisterListener("ZmMath");
        ZmLog::GetLog().UnregisterListener("OUTPUTDEBUG LISTENER");
    }
    ~Scratch() { fs::remove_all(m_Folder); }

    std::string operator/(const char* name) const { return (m_Folder / name).string(); }

private:
    fs::path m_Folder;
};

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
    bool same = a.GetEntryCount() == b.GetEntryCount();
    for (int i = 0; same && i < a.GetEntryCount(); ++i) {
        same = strcmp(a.GetEntryName(i), b.GetEntryName(i)) == 0 && a.GetEntrySize(i) == b.GetEntrySize(i);
    }
    if (!same) {
        abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Scratch scratch;
    const std::string path = scratch / "archive", copy = scratch / "copy", list = scratch / "list";
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data), std::streamsize(size));
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
