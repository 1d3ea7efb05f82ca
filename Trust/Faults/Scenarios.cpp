#include "Scenarios.h"

#include "Files/ArchiveBytes.h"
#include "Support/TemporaryFolder.h"
#include "ZmMath.h"

#include <string.h>

// Under the faults the scenarios themselves allocate nothing.

namespace {

namespace fs = std::filesystem;

constexpr char kWrongBytes[] = "wrong bytes", kLost[] = "old file lost", kUndone[] = "success without effect",
               kPartial[] = "success in part";

const Members kOld = {{"a", "first"}, {"b", std::string(70000, 'b')}, {"c", std::string(10, 'c')}};
const Members kNew = {kOld[1], {"c", std::string(50000, 'd')}, {"e", "new"}};
const std::string kDeferred(50000, 'd');

char g_Bytes[100000];
unsigned g_Count = 0;

void Nothing() {}

const char* Always(int)
{
    return nullptr;
}

/// Whether the file holds what the answer says: the new bytes after a success, the old ones after a failure.
const char* OldOrNew(const char* path, int res, const std::string& old, const std::string& fresh)
{
    const std::string bytes = BytesOf(path);
    return bytes == (res != 0 ? fresh : old) ? nullptr : res != 0 ? kWrongBytes : kLost;
}

// Archives.

void MakeArchive()
{
    MakeFile("archive", ArchiveBytes(kOld));
    MakeFile("deferred", kDeferred);
}

int ChangeArchive(ZmBigFile& archive)
{
    return archive.Open("archive", 1) && archive.Remove("a") && archive.Append("c", "deferred", 1, 1) &&
           archive.Append("E", "new", 3);
}

int SaveArchive(const char* path)
{
    ZmBigFile archive;
    return ChangeArchive(archive) && archive.Save(path, nullptr);
}

const char* CheckArchive(int res)
{
    if (const char* wrong = OldOrNew("archive", res, ArchiveBytes(kOld), ArchiveBytes(kNew))) {
        return wrong;
    }
    return nullptr;
}

int ReadArchive()
{
    ZmBigFile archive;
    ZmSubFile sub;
    g_Count = 0;
    if (!archive.OpenExisting("archive") || archive.GetEntryCount() != 3 || !archive.Find("B", &sub)) {
        return 0;
    }
    g_Count = sub.Read(g_Bytes, 70000);
    return g_Count == 70000 && sub.IsValid();
}

const char* CheckRead(int res)
{
    return res != 0 && memcmp(g_Bytes, kOld[1].second.data(), 70000) != 0 ? kWrongBytes : nullptr;
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
    return res != 0 && memcmp(g_Bytes, kOld[1].second.data(), 5000) != 0 ? kWrongBytes : nullptr;
}

int MakeNewArchive()
{
    ZmBigFile archive;
    return archive.Open("other", 1) && archive.Append("d", kDeferred.data(), 50000) && archive.Save(nullptr, nullptr);
}

int ReopenArchive()
{
    ZmBigFile archive;
    return ChangeArchive(archive) && archive.Save(nullptr, nullptr) && archive.Open("archive", 1) &&
           archive.GetEntryCount() == 3 && archive.Find("c", nullptr);
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
    const std::string zeros(kDeferred.size(), '\0');
    return res != 0 && BytesOf("other") != ArchiveBytes({{"d", zeros}}) ? kWrongBytes : nullptr;
}

const char* CheckOther(int res)
{
    const std::string bytes = BytesOf("other");
    return res != 0 && bytes != ArchiveBytes({{"d", kDeferred}}) ? kWrongBytes : nullptr;
}

void MakeLists()
{
    MakeArchive();
    MakeFile("list", "c\nb\n");
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

// Files.

void MakeBytes()
{
    MakeFile("file", kOld[1].second);
    MakeFile("text", "one\ntwo 2\r\nthree\n");
}

int ReadFile()
{
    ZmFile file;
    g_Count = file.Open("file", ZmFile::READONLY) ? file.Read(g_Bytes, 70000) : 0;
    return g_Count == 70000;
}

int ReadCached()
{
    ZmCachedFile file(4096);
    g_Count = file.Open("file", ZmFile::READONLY) ? file.Read(g_Bytes, 70000) : 0;
    return g_Count == 70000 && file.IsValid();
}

int WriteFile()
{
    ZmFile file;
    const bool written = file.Open("new", ZmFile::WRITEONLY) && file.Write(kDeferred.data(), 50000) == 50000 &&
                         file.Printf("%d", 12345) == 5;
    return file.Close() && written;
}

const char* CheckWritten(int res)
{
    return res != 0 && BytesOf("new") != kDeferred + "12345" ? kPartial : nullptr;
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
    return bytes.compare(0, 70000, kOld[1].second) != 0   ? kLost
           : res != 0 && bytes != kOld[1].second + "more" ? kPartial
                                                          : nullptr;
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
    std::string expected = kOld[1].second;
    expected.replace(10, 2, "XY").replace(69996, 4, "END!");
    return res != 0 && BytesOf("file") != expected ? kWrongBytes : nullptr;
}

int ReadLines()
{
    ZmFile file;
    char line[100];
    g_Count = 0;
    int number = 0;
    if (file.Open("text", ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT))) {
        g_Count += file.GetString(line, 100) && strcmp(line, "one\n") == 0;
        g_Count += file.Scanf("two %d", &number) == 1 && number == 2;
    }
    return int(g_Count);
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
    return res != 0 && memcmp(g_Bytes, kOld[1].second.data(), 2000) != 0 ? kWrongBytes : nullptr;
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
                         file.Write(kDeferred.data(), 50000) == 50000 && file.Printf("%s", "12345") == 5 &&
                         file.Flush() == 0;
    return file.Close() && written;
}

int ReadItems()
{
    ZmFile file;
    g_Count = file.Open("file", ZmFile::READONLY) ? file.ReadItems(g_Bytes, 1000, 70) : 0;
    return g_Count == 70;
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

// Configurations and settings.

const char kConfiguration[] = "a = 1\n<Section>\nb = 2\nc = 3\n<Below>\nd = a longer text, not in the string itself\n"
                              "</Below>\n</Section>\ne = 5\n";
const char kLongValue[] = "a longer text, not in the string itself";

void MakeConfiguration()
{
    MakeFile("test.cfg", kConfiguration);
}

bool HasAll(const ZmConfiguration& tree)
{
    const struct {
        const char *section, *name, *value;
    } kEntries[] = {{"Section", "b", "2"}, {"Section", "c", "3"}, {"Section.Below", "d", kLongValue}};
    bool res = tree.GetEntry("a", 0) != nullptr;
    for (const auto& row : kEntries) {
        const ZmConfigurationSection* section = tree.GetSubSection(row.section, 1);
        const ZmConfigurationEntry* entry = section != nullptr ? section->GetEntry(row.name) : nullptr;
        res = res && entry != nullptr && strcmp(entry->GetValue(), row.value) == 0;
    }
    return res;
}

bool g_Whole = true;

int LoadConfiguration()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromFile("test.cfg", line, error);
    g_Whole = HasAll(tree);
    return res;
}

int LoadMemory()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromMemory(kConfiguration, line, error);
    g_Whole = HasAll(tree);
    return res;
}

const char* CheckLoaded(int res)
{
    return res != 0 && !g_Whole ? kPartial : nullptr;
}

int SaveConfiguration()
{
    ZmConfiguration tree(0);
    const bool added = tree.AddEntry(nullptr, "a", 1) && tree.AddEntry("S", "b", "a text of some length, on the heap");
    return added && tree.SaveToFile("test.cfg");
}

const char* CheckConfiguration(int res)
{
    return OldOrNew("test.cfg", res, kConfiguration,
                    "a = 1\n\n<S>\n\tb = a text of some length, on the heap\n</S>\n") != nullptr &&
                   OldOrNew("test.cfg", res, kConfiguration,
                            "a = 1\n<S>\nb = a text of some length, on the heap\n</S>\n") != nullptr
               ? kWrongBytes
               : nullptr;
}

void MakeLinkedConfiguration()
{
    MakeFile("target", kConfiguration);
    fs::create_symlink("target", "test.cfg");
}

const char* CheckConfiguration(int res);

const char* CheckLinkedConfiguration(int res)
{
    return fs::is_symlink("test.cfg") ? CheckConfiguration(res) : "the link is lost";
}

int LoadTwice()
{
    ZmConfiguration tree(2);
    XString error;
    int line = 0;
    const int res = tree.BuildFromFile("test.cfg", line, error) && tree.BuildFromMemory(kConfiguration, line, error) &&
                    tree.BuildFromFile("test.cfg", line, error);
    g_Whole = HasAll(tree);
    return res;
}

int SaveLarge()
{
    ZmConfiguration tree(4);
    char name[20];
    for (int i = 0; i < 300; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        if (!tree.AddEntry(i % 2 == 0 ? "one.two" : "three", name, i)) {
            return 0;
        }
    }
    return tree.SaveToFile("test.cfg");
}

const char* CheckLarge(int res)
{
    const std::string bytes = BytesOf("test.cfg");
    if (res == 0) {
        return bytes == kConfiguration ? nullptr : kLost;
    }
    return std::count(bytes.begin(), bytes.end(), '=') == 300 ? nullptr : kPartial;
}

int SaveDataFile()
{
    ZmConfiguration tree(0);
    XString error;
    return tree.AddEntry(nullptr, "a", 1) && tree.SaveToDataFile("data.cfg") &&
           tree.BuildFromDataFile("data.cfg", error);
}

int EditConfiguration()
{
    ZmConfiguration tree(0);
    tree.AddEntry("S", "b", 1);
    tree.AddEntry("S.T", "c", 2.5f);
    tree.AddDefaultEntry("S", "d", 4u);
    tree.CreateSubSection("S", "U");
    delete tree.RemoveEntry("S", "b");
    tree.DeleteSection(nullptr, "S");
    tree.Clear();
    return tree.AddEntry(nullptr, "a", 1) && tree.GetEntry("a", 0) != nullptr;
}

int UseSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("name", "new value");
    g_Count = unsigned(settings.ReadStringEntry("name", g_Bytes));
    return int(g_Count);
}

void MakeSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READWRITE);
    settings.WriteStringEntry("name", "old value");
    settings.WriteStringEntry("other", "kept");
}

const char* CheckSettings(int res)
{
    if (res != -1 && strcmp(g_Bytes, "old value") != 0 && strcmp(g_Bytes, "new value") != 0) {
        return kWrongBytes;
    }
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READ);
    char value[ZmConfig::kMaxValue] = "";
    settings.ReadStringEntry("other", value);
    return strcmp(value, "kept") == 0 ? nullptr : kLost;
}

int ReadSettings()
{
    ZmConfig settings;
    settings.OpenSection("Trust", ZmConfig::MODE_READ);
    return settings.ReadStringEntry("name", g_Bytes);
}

int UseSections()
{
    ZmConfig settings;
    int res = 0;
    for (const char* section : {"One", "One\\Two", "Three"}) {
        settings.OpenSection(section, ZmConfig::MODE_READWRITE);
        settings.WriteStringEntry("name", section);
        res += settings.ReadStringEntry("name", g_Bytes) != -1;
        settings.CloseSection(section);
    }
    return res;
}

// The log.

ZmLogListener* g_Listener = nullptr;
int g_Module = 0;

void BeginLog()
{
    ZmLog& log = ZmLog::GetLog();
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    g_Module = log.RegisterModule("trust");
    g_Listener = log.RegisterListener(ZmFileListener::m_Guid, "trust", g_Module);
    static_cast<ZmFileListener*>(g_Listener)->SetDirectory("./");
    log.SetInformationMT(g_Module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("the first line opens the file");
}

int WriteLog()
{
    ZmLog& log = ZmLog::GetLog();
    for (int i = 0; i < 3; ++i) {
        log.SetInformationMT(g_Module, ZmLog::LEVEL_INFO, i, "file").PrintMT("line %d with %s", i, "a text");
        log.SetInformation(g_Module, ZmLog::LEVEL_INFO, i, "file").Print("%d %0300d", i, 1);
    }
    return 1;
}

int Register()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("a module");
    log.RegisterListenerFactory(ZmFileListener::m_Guid, ZmFileListener::ListenerFactory);
    const bool made = log.RegisterListener(ZmFileListener::m_Guid, "listener", module) != nullptr;
    log.UnregisterListener("listener");
    return made;
}

int LogToConsole()
{
    ZmLog& log = ZmLog::GetLog();
    const int module = log.RegisterModule("console");
    log.RegisterListenerFactory(ZmConsoleListener::m_Guid, ZmConsoleListener::ListenerFactory);
    log.RegisterListener(ZmConsoleListener::m_Guid, "console", module);
    log.SetInformationMT(module, ZmLog::LEVEL_INFO, 1, "file").PrintMT("%s", "");
    return log.UnregisterListener("console");
}

int RegisterModules()
{
    ZmLog& log = ZmLog::GetLog();
    int res = 0;
    char name[20];
    for (int i = 0; i < 50; ++i) {
        snprintf(name, sizeof(name), "module %d", i);
        log.RegisterModule(name);
        res += log.IsModule(name);
    }
    return res;
}

// Strings, containers, memory.

int UseStrings()
{
    static const char kLong[] = "a text of more than a few bytes, so that it needs a block of its own";
    XString text(kLong), other(text);
    text << kLong << 12345 << 1.5f;
    other = text;
    other.Replace("text", "a longer word");
    other.Format("%s %d", kLong, 5);
    XString sub = other.Substring(3, 20);
    sub.ToUpper();
    sub.Trim();
    sub.FormatTime("%Y-%m-%d, which is the date");
    XStringTokenizer tokens(text, " ,");
    int count = 0;
    for (const char* token = nullptr; (token = tokens.NextToken(token)) != nullptr;) {
        ++count;
    }
    return count;
}

int BuildStrings()
{
    XString text;
    text.Create(nullptr, 300);
    text.Reserve(5000);
    text.CreateTail(XString("the tail of a text that is long enough for the heap, or so it seems here"), 4);
    const XString sized(200);
    XString copy(text + "more");
    copy.Strip();
    copy.Cut(1, 3);
    copy.Crop(0, 30);
    text << 123456789012345ll << 5u << 'c' << &text;
    return copy.Length() + sized.Length() >= 0;
}

int ReplaceInStrings()
{
    XString text("a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b a b");
    const int count = text.Replace("a", "a longer word") + text.Replace("b", "") + text.Replace('l', 'L');
    return count;
}

int UseArray()
{
    XArray<XString> array;
    for (int i = 0; i < 100; ++i) {
        array.PushBack("a text of more than a few bytes, so that it needs a block of its own");
    }
    const XArray<XString> copy(array);
    array.Reserve(300);
    if (array.Size() > 5) {
        array.RemoveAt(5);
    }
    return copy.Size();
}

int UseTable()
{
    XHashTable<int, XString> table;
    int inserted = 0;
    char name[20];
    for (int i = 0; i < 200; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        inserted += table.InsertUnique(name, i);
    }
    const XHashTable<int, XString> copy(table);
    return inserted == table.Size() ? inserted : -1000;
}

const char* CheckTable(int res)
{
    return res < 0 ? kPartial : nullptr;
}

int ChangeTable()
{
    XHashTable<XString, XString> table;
    char name[20];
    int res = 0;
    for (int i = 0; i < 100; ++i) {
        snprintf(name, sizeof(name), "name %d", i);
        const auto inserted = table.Insert(name, "a value that needs a block of its own on the heap of the process");
        res += inserted.position != table.End();
    }
    for (int i = 0; i < 100; i += 3) {
        snprintf(name, sizeof(name), "name %d", i);
        table.Remove(name);
    }
    XHashTable<XString, XString> other(table);
    other.Swap(table);
    return res;
}

int UsePools()
{
    XFixedSizeAllocator pool(40, 4096);
    void* blocks[300];
    for (void*& block : blocks) {
        block = pool.Allocate();
    }
    for (void* block : blocks) {
        pool.Free(block);
    }
    return 1;
}

int UseAllocator()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* scratch = allocator.AllocateScratch(100000);
    void* pool = allocator.AllocatePool(48);
    void* memory = allocator.AllocateMemory(1000);
    char* string = allocator.AllocateString("some text");
    XString* text = allocator.AllocateScratchString();
    allocator.DumpStats("stats");
    if (text != nullptr) {
        allocator.ReleaseScratchString(text);
    }
    allocator.ReleaseString(string);
    allocator.ReleaseMemory(memory);
    allocator.ReleasePool(48, pool);
    allocator.ReleaseScratch(scratch);
    allocator.ReleaseUnusedScratch();
    return 1;
}

int UseScratch()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* blocks[20];
    for (unsigned i = 0; i < 20; ++i) {
        blocks[i] = allocator.AllocateScratch(1000 * (i + 1));
    }
    for (void* block : blocks) {
        allocator.ReleaseScratch(block);
    }
    XString* strings[10];
    for (XString*& string : strings) {
        string = allocator.AllocateScratchString();
    }
    for (XString* string : strings) {
        allocator.ReleaseScratchString(string);
    }
    allocator.ReleaseUnusedScratch();
    return allocator.GetAllocatedScratchCount() == 0 ? 1 : -1;
}

int UseManyPools()
{
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* blocks[100];
    for (unsigned i = 0; i < 100; ++i) {
        blocks[i] = allocator.AllocatePool(4 + 10 * i);
    }
    for (unsigned i = 0; i < 100; ++i) {
        allocator.ReleasePool(4 + 10 * i, blocks[i]);
    }
    return 1;
}

// Paths, system.

int UsePaths()
{
    XString text("a folder/a file.txt"), escaped;
    ZmConvertPathToSystemPath(text);
    ZmAddDirectorySeparator(text);
    ZmEscapeURL("http://somewhere/a b?c=d e f g h i j k l m n o p q r s t u v w x y z", escaped);
    ZmUnEscapeUrl(escaped);
    const XString temporary = ZmGetTempPath();
    const RKPathSplitter parts("c:\\folder\\name.extension");
    const RKPathMaker maker("c:", "folder", "name", "ext");
    return temporary.Length();
}

int UseSystem()
{
    ZmSystemDesc description;
    ZmGetSystemDesc(description);
    char value[100];
    ZmSetEnvironmentVariable("ZM_TRUST", "value");
    const int res = ZmGetEnvironmentVariable("ZM_TRUST", value, sizeof(value));
    ZmRemoveEnvironmentVariable("ZM_TRUST");
    ZmTestDiskSpace(".", 10);
    ZmFreeSharedLibrary(ZmLoadSharedLibrary("no such library"));
    return res;
}

int ReadVariables()
{
    char value[100];
    ZmSetEnvironmentVariable("ZM_TRUST", "a value that is longer than what a string keeps in itself");
    const int res = ZmGetEnvironmentVariable("ZM_TRUST", value, sizeof(value));
    ZmRemoveEnvironmentVariable("ZM_TRUST");
    return res;
}

int FindModules()
{
    char path[4096];
    const unsigned int length = ZmGetModuleFileName(nullptr, path, sizeof(path));
    void* library = ZmLoadSharedLibrary("libm.so.6");
    const bool found = library == nullptr || ZmGetSharedLibrarySymbol(library, "cos") != nullptr;
    ZmFreeSharedLibrary(library);
    return found ? int(length) : -1;
}

// Threads and images.

unsigned int Work(void* argument)
{
    const XString text("a text of a thread, long enough for a block of its own, which is freed at its end");
    *static_cast<int*>(argument) = text.Length();
    return 7;
}

int UseThread()
{
    ZmThread thread;
    int length = 0;
    unsigned int code = 0;
    if (!thread.CreateThread(Work, &length)) {
        return 0;
    }
    thread.Wait(&code, 0);
    thread.Close();
    return code == 7 && length >= 0 ? 1 : -1;
}

int UseThreads()
{
    ZmThread threads[8];
    int lengths[8] = {}, started = 0;
    bool runs[8] = {};
    for (int i = 0; i < 8; ++i) {
        runs[i] = threads[i].CreateThread(Work, &lengths[i]) != 0;
        started += runs[i];
    }
    int ended = 0;
    for (int i = 0; i < 8; ++i) {
        unsigned int code = 0;
        ended += runs[i] && threads[i].Wait(&code, 0) == 53 && code == 7;
        threads[i].Close();
    }
    return ended == started ? 1 : -1;
}

const char* CheckThread(int res)
{
    return res < 0 ? "the thread did not run" : nullptr;
}

ZmImageDescEx Image(int width, int height, unsigned char* pixels)
{
    return {sizeof(ZmImageDescEx),
            0,
            width,
            height,
            width * 4,
            32,
            0xFF0000,
            0xFF00,
            0xFF,
            0xFF000000,
            0,
            0,
            nullptr,
            pixels};
}

unsigned char* Pixels(size_t at)
{
    return reinterpret_cast<unsigned char*>(g_Bytes) + at;
}

int Resize()
{
    return ZmResizeImage32(Image(100, 100, Pixels(0)), Image(70, 50, Pixels(50000))) +
           ZmResizeImage32(Image(50, 50, Pixels(50000)), Image(100, 100, Pixels(0)));
}

int MakeMipMap()
{
    return ZmGenerateMipMap(Image(100, 100, Pixels(0)), Image(50, 50, Pixels(50000)));
}

// With colours of its own, or the palette would be learnt from nothing.
int Quantise()
{
    for (size_t i = 0; i < 40000; ++i) {
        g_Bytes[i] = char(i * i);
    }
    unsigned char palette[768] = {};
    const ZmImageDescEx indexed = {
        sizeof(ZmImageDescEx), 0, 100, 100, 100, 8, 0xFF, 0xFF00, 0xFF0000, 0, 3, 256, palette, Pixels(60000)};
    return ZmDoBlit(Image(100, 100, Pixels(0)), indexed);
}

int BlitUpsideDown()
{
    return ZmDoBlitUpsideDown(Image(100, 100, Pixels(0)), Image(100, 100, Pixels(0))) +
           ZmDoAlphaBlit(Image(50, 50, Pixels(0)), Image(50, 50, Pixels(50000)));
}

}  // namespace

const Scenario kScenarios[] = {
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
    {"archive with two names saved", MakeTwoNames, [] { return SaveArchive(nullptr); }, CheckTwoNames},
    {"archive browsed", MakeArchive, BrowseArchive, CheckBrowsed},
    {"archive made", Nothing, MakeNewArchive, CheckOther},
    {"archive saved and opened again", MakeArchive, ReopenArchive, Always},
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
    {"stream copied", MakeBytes, CopyFile,
     [](int res) { return res != 0 && BytesOf("new") != kOld[1].second ? kWrongBytes : Always(0); }},
    {"file mapped", MakeBytes, MapFile, CheckRead},
    {"folders walked", MakeTree, WalkTree, Always},
    {"folders listed", MakeTree, ListTree, Always},
    {"folders deleted", MakeTree, DeleteTree, CheckDeleted},
    {"folders made", Nothing, MakePath, CheckMade},
    {"files renamed and deleted", MakeBytes, UseFiles, CheckFiles},
    {"configuration loaded", MakeConfiguration, LoadConfiguration, CheckLoaded},
    {"configuration loaded from memory", Nothing, LoadMemory, CheckLoaded},
    {"configuration saved", MakeConfiguration, SaveConfiguration, CheckConfiguration},
    {"configuration behind a link saved", MakeLinkedConfiguration, SaveConfiguration, CheckLinkedConfiguration},
    {"configuration loaded again", MakeConfiguration, LoadTwice, CheckLoaded},
    {"large configuration saved", MakeConfiguration, SaveLarge, CheckLarge},
    {"configuration data file", Nothing, SaveDataFile, Always},
    {"configuration edited", Nothing, EditConfiguration, Always},
    {"settings", MakeSettings, UseSettings, CheckSettings},
    {"settings of a new user", Nothing, UseSettings, Always},
    {"settings read", MakeSettings, ReadSettings, CheckSettings},
    {"settings in sections", Nothing, UseSections, Always},
    {"log lines", BeginLog, WriteLog, Always},
    {"log listeners", Nothing, Register, Always},
    {"log to the console", Nothing, LogToConsole, Always},
    {"log modules", Nothing, RegisterModules, Always},
    {"strings", Nothing, UseStrings, Always},
    {"strings built", Nothing, BuildStrings, Always},
    {"strings replaced", Nothing, ReplaceInStrings, Always},
    {"array", Nothing, UseArray, Always},
    {"hash table", Nothing, UseTable, CheckTable},
    {"hash table changed", Nothing, ChangeTable, Always},
    {"fixed-size blocks", Nothing, UsePools, Always},
    {"allocator", Nothing, UseAllocator, Always},
    {"scratch memory", Nothing, UseScratch, [](int res) { return res < 0 ? "a block stayed" : Always(0); }},
    {"pools", [] { UseManyPools(); }, UseManyPools, Always},
    {"paths", Nothing, UsePaths, Always},
    {"system", Nothing, UseSystem, Always},
    {"variables", Nothing, ReadVariables, Always},
    {"modules", Nothing, FindModules, [](int res) { return res < 0 ? "a symbol is missing" : Always(0); }},
    {"thread", Nothing, UseThread, CheckThread},
    {"threads", Nothing, UseThreads, CheckThread},
    {"image resized", Nothing, Resize, Always},
    {"mipmap", Nothing, MakeMipMap, Always},
    {"palette", Nothing, Quantise, Always},
    {"image turned", Nothing, BlitUpsideDown, Always},
};
const size_t kScenarioCount = sizeof(kScenarios) / sizeof(*kScenarios);
