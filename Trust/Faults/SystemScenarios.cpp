#include "Results.h"
#include "Scenarios.h"
#include "ZmMath.h"

namespace {

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

/// One without memory is never held; the answer is whether the calls agree about that.
int UseMutex()
{
    ZmMutex mutex;
    const int entered = mutex.EnterMutex(), again = mutex.TryEnterMutex();
    return mutex.LeaveMutex() == again && entered == again && mutex.LeaveMutex() == entered ? entered : -1;
}

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

class NamedThread : public ZmThread {
public:
    unsigned int Run() override { return 11; }
};

int RunNamedThread()
{
    NamedThread thread;
    thread.SetName("a name of a thread, long enough for a block of its own");
    thread.SetPriority(ZmThread::PRIORITY_LOWEST);
    unsigned int code = 0;
    if (!thread.CreateThread(nullptr, nullptr)) {
        return 0;
    }
    const bool ended = thread.Wait(&code, 0) == ZmThread::CODE_SUCCESS;
    thread.Close();
    return ended && code == 11 ? 1 : -1;
}

/// Strings share their pages between all threads.
unsigned int WorkWithTexts(void*)
{
    XString text;
    for (int i = 0; i < 20; ++i) {
        text << "a text of a thread " << i;
        XString copy(text);
        copy.Replace("thread", "longer word");
    }
    return 7;
}

int RunBusyThreads()
{
    ZmThread threads[3];
    int res = 1;
    for (ZmThread& thread : threads) {
        thread.CreateThread(WorkWithTexts, nullptr);
    }
    for (ZmThread& thread : threads) {
        unsigned int code = 7;
        thread.Wait(&code, 0);
        thread.Close();
        res = code == 7 ? res : -1;
    }
    return res;
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

int Filter()
{
    const ZmImageOptions options = {ZMCHANNELS_COLOR, ZMLIGHT_LINEAR, ZMFILTER_LANCZOS3, ZMEDGES_WRAP};
    return ZmResizeImage32(Image(50, 50, Pixels(0)), Image(70, 30, Pixels(50000)), options);
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

int MakeNormalMap()
{
    return ZmConvertToNormalMap(Image(50, 50, Pixels(0)), Image(50, 50, Pixels(50000)), 0xFF) +
           ZmConvertToBumpMap(Image(50, 50, Pixels(0)), Image(50, 50, Pixels(50000)), 0xFF);
}

int FitBox()
{
    float points[300];
    for (int i = 0; i < 300; ++i) {
        points[i] = float(i * i % 101);
    }
    ZmMatrix box;
    return ZmComputeBestFitBBox(reinterpret_cast<const unsigned char*>(points), 12, 100, box, 0);
}

}  // namespace

const std::vector<Scenario> kSystemScenarios = {
    {"paths", Nothing, UsePaths, Always},
    {"system", Nothing, UseSystem, Always},
    {"variables", Nothing, ReadVariables, Always},
    {"modules", Nothing, FindModules, [](int res) { return res < 0 ? "a symbol is missing" : Always(0); }},
    {"mutex", Nothing, UseMutex, [](int res) { return res < 0 ? "a lock that is held and is not" : Always(0); }},
    {"thread", Nothing, UseThread, CheckThread},
    {"threads", Nothing, UseThreads, CheckThread},
    {"named thread", Nothing, RunNamedThread, CheckThread},
    {"busy threads", Nothing, RunBusyThreads, CheckThread},
    {"image resized", Nothing, Resize, Always},
    {"mipmap", Nothing, MakeMipMap, Always},
    {"image filtered", Nothing, Filter, Always},
    {"palette", Nothing, Quantise, Always},
    {"image turned", Nothing, BlitUpsideDown, Always},
    {"normal map", Nothing, MakeNormalMap, Always},
    {"best box", Nothing, FitBox, Always},
};
