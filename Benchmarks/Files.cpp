// Log lines, streams and folders, in a temporary folder.

#include "Families.h"
#include "Inputs.h"
#include "TestFiles.h"

#include "RKDirectoryParser.h"
#include "ZmCachedFile.h"
#include "ZmFileListener.h"
#include "ZmLog.h"

namespace bench {
namespace {

void PrepareNothing(Work&) {}

void PrepareOffsets(Work& w)
{
    w.extra = ShuffledIndices(w.count);
}

constexpr Task kTasks[] = {
    {"Log/Line", 4, 0, PrepareNothing, {2000}, {0.75}, 0},
    {"Log/LineOfThreads", 4, 0, PrepareNothing, {2000}, {0.80}, 0},
    {"Log/LineBesideWrite", 4, 0, PrepareNothing, {2000}, {1.54}, 0},
    {"Read/16", 4, 0, PrepareNothing, {kLargeFile / 16}, {0.45}, 0},
    {"Read/64", 4, 0, PrepareNothing, {kLargeFile / 64}, {0.60}, 0},
    {"Read/256", 4, 0, PrepareNothing, {kLargeFile / 256}, {0.65}, 0},
    {"Read/Random", 4, 0, PrepareOffsets, {kLargeFile / kBlock}, {1.05}, 0},
    {"Folder/Walk", 4, 0, PrepareNothing, {kFileCount}, {1.50}, 0},
    {"Stream/Copy", 4, 0, PrepareNothing, {kLargeFile / kBlock}, {1.10}, 0},
};

int Module()
{
    static const int module = [] {
        ZmLog& log = ZmLog::GetLog();
        const int id = log.RegisterModule("bench");
        auto* listener = static_cast<ZmFileListener*>(log.RegisterListener(ZmFileListener::m_Guid, "ours", id));
        listener->SetDirectory((TestFolder() + "/").c_str());
        listener->SetTimeFormat(ZmLogListener::TIME_LONG);
        listener->SetFlags(ZmLogListener::SOURCE_LINE);
        return id;
    }();
    return module;
}

void LogLines(const Work& w)
{
    ZmLog& log = ZmLog::GetLog();
    const int module = Module();
    for (int i = 0; i < w.count; ++i) {
        log.SetInformation(module, ZmLog::LEVEL_INFO, __LINE__, "bench").Print("object %d has %d triangles", i, 2 * i);
    }
}

void LogLinesOfThreads(const Work& w)
{
    ZmLog& log = ZmLog::GetLog();
    const int module = Module();
    for (int i = 0; i < w.count; ++i) {
        log.SetInformationMT(module, ZmLog::LEVEL_INFO, __LINE__, "bench")
            .PrintMT("object %d has %d triangles", i, 2 * i);
    }
}

ZmCachedFile& LargeFileOpened()
{
    static ZmCachedFile file;
    static const int opened = file.Open(LargeFile().c_str(), ZmFile::READONLY);
    file.Seek(opened ? 0 : -1, ZmStream::START);
    return file;
}

template <unsigned Size>
void ReadAll(const Work& w)
{
    ZmCachedFile& file = LargeFileOpened();
    unsigned char bytes[Size];
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        file.Read(bytes, Size);
        sum += bytes[0];
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

void ReadRandom(const Work& w)
{
    ZmCachedFile& file = LargeFileOpened();
    const int* order = static_cast<const int*>(w.extra);
    unsigned char bytes[64];
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        file.Seek(order[i] * kBlock + 1000, ZmStream::START);
        file.Read(bytes, sizeof(bytes));
        sum += bytes[0];
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

void WalkFolder(const Work& w)
{
    RKDirectoryParser files(ManyFiles().c_str(), "*.*", 1, 0);
    int count = 0;
    while (files.GetNextFile() != nullptr) {
        ++count;
    }
    *static_cast<float*>(w.dst) = float(count);
}

void CopyStream(const Work&)
{
    ZmFile source, target;
    source.Open(LargeFile().c_str(), ZmFile::READONLY);
    target.Open((TestFolder() + "/copy").c_str(), ZmFile::WRITEONLY);
    target.Copy(source, 0);
}

constexpr Entry kEntries[] = {
    {"Log/Line", LogLines},
    {"Log/LineOfThreads", LogLinesOfThreads},
    {"Log/LineBesideWrite", LogLines},
    {"Read/16", ReadAll<16>},
    {"Read/64", ReadAll<64>},
    {"Read/256", ReadAll<256>},
    {"Read/Random", ReadRandom},
    {"Folder/Walk", WalkFolder},
    {"Stream/Copy", CopyStream},
};

}  // namespace

constexpr Tasks kFileTasks{kTasks};
constexpr Contender kFiles{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
