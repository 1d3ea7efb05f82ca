#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

#include <string.h>

namespace fs = std::filesystem;

namespace {

void MakeBytes()
{
    MakeFile("file", kLarge);
    MakeFile("text", "one\ntwo 2\r\nthree\n");
}

int ReadFile()
{
    ZmFile file;
    return file.Open("file", ZmFile::READONLY) && file.Read(g_Bytes, 70000) == 70000;
}

int ReadCached()
{
    ZmCachedFile file(4096);
    return file.Open("file", ZmFile::READONLY) && file.Read(g_Bytes, 70000) == 70000 && file.IsValid();
}

int WriteFile()
{
    ZmFile file;
    const bool written = file.Open("new", ZmFile::WRITEONLY) && file.Write(kOther.data(), 50000) == 50000 &&
                         file.Printf("%d", 12345) == 5;
    return file.Close() && written;
}

const char* CheckWritten(int res)
{
    return res != 0 && BytesOf("new") != kOther + "12345" ? kPartial : nullptr;
}

int AppendToFile()
{
    ZmFile file;
    const bool written = file.Open("file", ZmFile::APPEND) && file.Write("more", 4) == 4;
    return file.Close() && written;
}

const char* CheckAppended(int res)
{
    const std::string bytes = BytesOf("file");
    return bytes.compare(0, 70000, kLarge) != 0 ? kLost : res != 0 && bytes != kLarge + "more" ? kPartial : nullptr;
}

int UpdateFile()
{
    ZmFile file;
    const bool written = file.Open("file", ZmFile::READWRITE) && file.Read(g_Bytes, 10) == 10 &&
                         file.Write("XY", 2) == 2 && file.Seek(-4, ZmStream::END) && file.Write("END!", 4) == 4;
    return file.Close() && written;
}

const char* CheckUpdated(int res)
{
    std::string expected = kLarge;
    expected.replace(10, 2, "XY").replace(69996, 4, "END!");
    return res != 0 && BytesOf("file") != expected ? kWrongBytes : nullptr;
}

int ReadLines()
{
    ZmFile file;
    char line[100];
    int count = 0, number = 0;
    if (file.Open("text", ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT))) {
        count += file.GetString(line, 100) && strcmp(line, "one\n") == 0;
        count += file.Scanf("two %d", &number) == 1 && number == 2;
    }
    return count;
}

int SeekCached()
{
    ZmCachedFile file(1000);
    bool done = file.Open("file", ZmFile::READONLY) != 0;
    for (int i = 0; done && i < 20; ++i) {
        done = file.Seek(i * 3333, ZmStream::START) && file.Read(g_Bytes + i * 100, 100) == 100;
    }
    file.SetCacheSize(2000);
    return done && file.IsValid();
}

const char* CheckSought(int res)
{
    return res != 0 && memcmp(g_Bytes, kLarge.data(), 2000) != 0 ? kWrongBytes : nullptr;
}

int UseCopies()
{
    ZmFile file;
    if (!file.Open("file", ZmFile::READONLY)) {
        return 0;
    }
    ZmFile copy(file);
    ZmFile other;
    other = copy;
    file.Close();
    return other.Read(g_Bytes, 10) == 0;
}

int AppendAndRead()
{
    ZmFile file;
    const bool done = file.Open("file", ZmFile::APPENDREAD) && file.Write("more", 4) == 4 &&
                      file.Seek(0, ZmStream::START) && file.Read(g_Bytes, 70000) == 70000;
    return file.Close() && done;
}

int WriteText()
{
    ZmFile file;
    const bool written = file.Open("new", ZmFile::OpenMode(ZmFile::WRITEONLY | ZmFile::TEXT)) &&
                         file.Write(kOther.data(), 50000) == 50000 && file.Printf("%s", "12345") == 5 &&
                         file.Flush() == 0;
    return file.Close() && written;
}

int ReadItems()
{
    ZmFile file;
    return file.Open("file", ZmFile::READONLY) && file.ReadItems(g_Bytes, 1000, 70) == 70;
}

int ReadSpans()
{
    ZmFile file;
    ZmSubFile first, last;
    if (!file.Open("file", ZmFile::READONLY)) {
        return 0;
    }
    first.Set(&file, 0, 35000);
    last.Set(&file, 35000, 35000);
    bool read = true;
    for (int i = 0; read && i < 5; ++i) {
        read = first.Read(g_Bytes + i * 7000, 7000) == 7000 && last.Read(g_Bytes + 35000 + i * 7000, 7000) == 7000;
    }
    return read && first.IsValid() && last.IsValid();
}

int WriteSpan()
{
    ZmFile file;
    const bool open = file.Open("file", ZmFile::READWRITE) != 0;
    ZmSubFile span;
    span.Set(&file, 10, 100);
    const bool written = open && span.IsValid() && span.Write("XY", 2) == 2;
    span.Set(&file, 69996, 4);
    const bool both = written && span.IsValid() && span.Write("END!", 4) == 4;
    return file.Close() && both;
}

int CopyFile()
{
    ZmFile from, to;
    const bool open = from.Open("file", ZmFile::READONLY) && to.Open("new", ZmFile::WRITEONLY);
    const bool copied = open && to.Copy(from, 0) == 70000 && from.IsValid() && to.IsValid();
    return to.Close() && copied;
}

int MapFile()
{
    const ZmMemoryMappedFile file("file");
    const bool mapped = file.GetErrorType() == ZmMMF_NoError && file.GetSize() == 70000;
    if (mapped) {
        memcpy(g_Bytes, file.GetBase(), 70000);
    }
    return mapped;
}

void MakeTree()
{
    fs::create_directories("tree/one/two");
    fs::create_directories("tree/empty/too");
    for (const char* name : {"tree/a.txt", "tree/one/b.txt", "tree/one/two/c.txt"}) {
        MakeFile(name, "x");
    }
}

int WalkTree()
{
    RKDirectoryParser walk("tree", "*.txt", 1, 0);
    int count = 0;
    while (walk.GetNextFile() != nullptr) {
        ++count;
    }
    return count;
}

int ListTree()
{
    RKDirectoryParser walk("tree", "*", 1, 1);
    walk.Reset("tree/one", nullptr, 0, 1);
    int count = 0;
    while (walk.GetNextFile() != nullptr) {
        ++count;
    }
    return count;
}

int DeleteTree()
{
    return ZmDeleteDirectory("tree");
}

const char* CheckDeleted(int res)
{
    return res != 0 && fs::exists("tree") ? kUndone : nullptr;
}

int RemoveFolders()
{
    return ZmMakeDirectory("made") + 2 * ZmCreateFileTree("x/y/") + 4 * ZmRemoveDirectory("made") +
           8 * ZmRemoveDirectory("x/y") + 16 * ZmRemoveDirectory("tree");
}

const char* CheckRemoved(int res)
{
    const bool right = ((res & 4) == 0 || !fs::exists("made")) && ((res & 8) == 0 || !fs::exists("x/y")) &&
                       (res & 16) == 0 && fs::exists("tree/one/two/c.txt");
    return right ? nullptr : kUndone;
}

int MakePath()
{
    return ZmCreateFileTree("x/y/z/file");
}

const char* CheckMade(int res)
{
    return res != 0 && !fs::is_directory("x/y/z") ? kUndone : nullptr;
}

int UseFiles()
{
    return ZmRenameFile("text", "text2") + 2 * ZmDeleteFile("file") + 4 * ZmMakeDirectory("made") +
           8 * ZmFileExist("text2");
}

const char* CheckFiles(int res)
{
    const bool renamed = (res & 1) == 0 || (fs::exists("text2") && !fs::exists("text"));
    return renamed && ((res & 2) == 0 || !fs::exists("file")) && ((res & 4) == 0 || fs::exists("made")) ? nullptr
                                                                                                        : kUndone;
}

}  // namespace

const std::vector<Scenario> kFileScenarios = {
    {"file read", MakeBytes, ReadFile, CheckRead},
    {"file read through blocks", MakeBytes, ReadCached, CheckRead},
    {"file written", Nothing, WriteFile, CheckWritten},
    {"file appended to", MakeBytes, AppendToFile, CheckAppended},
    {"file updated", MakeBytes, UpdateFile, CheckUpdated},
    {"file sought through blocks", MakeBytes, SeekCached, CheckSought},
    {"file shared", MakeBytes, UseCopies, Always},
    {"file appended to and read", MakeBytes, AppendAndRead, CheckAppended},
    {"text written", Nothing, WriteText, CheckWritten},
    {"items read", MakeBytes, ReadItems, CheckRead},
    {"lines read", MakeBytes, ReadLines, Always},
    {"spans read", MakeBytes, ReadSpans, CheckRead},
    {"span written", MakeBytes, WriteSpan, CheckUpdated},
    {"stream copied", MakeBytes, CopyFile,
     [](int res) { return res != 0 && BytesOf("new") != kLarge ? kWrongBytes : Always(0); }},
    {"file mapped", MakeBytes, MapFile, CheckRead},
    {"folders walked", MakeTree, WalkTree, Always},
    {"folders listed", MakeTree, ListTree, Always},
    {"folders deleted", MakeTree, DeleteTree, CheckDeleted},
    {"folders made", Nothing, MakePath, CheckMade},
    {"folders made and removed", MakeTree, RemoveFolders, CheckRemoved},
    {"files renamed and deleted", MakeBytes, UseFiles, CheckFiles},
};
