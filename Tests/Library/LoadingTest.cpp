#include <Modules.h>  // the system's

#include <algorithm>
#include <chrono>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <thread>

// Loads and unloads the library, alone and under a module that uses it. The exit code also identifies the failure,
// since the streams may be closed.

namespace {

int Fail(int code, const char* what)
{
    fprintf(stderr, "failed: %s\n", what);
    return code;
}

bool HasBaseMode()
{
    unsigned short word;
    asm volatile("fnstcw %0" : "=m"(word));
    return (word & 0x0F3F) == 0x003F;
}

int LoadAndUnload(const char* library, const char* user)
{
    asm volatile("fninit");
    void* alone = Modules::Load(library);
    if (alone == nullptr || !HasBaseMode()) {
        return Fail(2, alone == nullptr ? "loading" : "the base mode of the control word");
    }
    Modules::Unload(alone);
    void* module = Modules::IsLoaded(library) ? nullptr : Modules::Load(user);
    if (module == nullptr) {
        return Fail(3, "unloading, or loading by a module that links the library");
    }
    if (const char* missing = reinterpret_cast<const char* (*)()>(Modules::Find(module, "UseLibrary"))()) {
        return Fail(4, missing);
    }
    Modules::Unload(module);
    return Modules::IsLoaded(library) ? Fail(5, "unloading with the module") : 0;
}

// Windows kills these threads at arbitrary points, and then runs the DLL's destructors, which use strings themselves.
int EndAmidThreads(const char* user)
{
    const auto use = reinterpret_cast<void (*)()>(Modules::Find(Modules::Load(user), "UseStringsForEver"));
    for (int i = 0; i < 8; ++i) {
        std::thread(use).detach();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return 0;
}

void (*g_PrintLate)();

// What is registered before the library is loaded runs after the library has destroyed its log, except on Windows.
int PrintAtEnd(const char* user)
{
    atexit([] { g_PrintLate(); });
    g_PrintLate = reinterpret_cast<void (*)()>(Modules::Find(Modules::Load(user), "PrintLate"));
    return 0;
}

}  // namespace

// LoadingTest <library> <module that uses it> [--end-amid-threads | --print-at-end]
int main(int argc, char** argv)
{
    if (argc != 3) {
        return argc != 4                                ? Fail(1, "arguments")
               : strcmp(argv[3], "--print-at-end") == 0 ? PrintAtEnd(argv[2])
                                                        : EndAmidThreads(argv[2]);
    }
    constexpr int kWarm = 8, kRounds = 13;  // the loaders and the C library still grow tables in the first rounds
    long handles = 0, bytes = 0, leftHandles = LONG_MAX, leftBytes = LONG_MAX;
    for (int round = 0; round < kRounds; ++round) {
        if (const int failed = LoadAndUnload(argv[1], argv[2])) {
            return failed;
        }
        // A real leak grows in every round; the heap alone may vary by a few bytes.
        const long oldHandles = handles, oldBytes = bytes;
        handles = Modules::CountHandles();
        bytes = Modules::CountBytes();
        if (round >= kWarm) {
            leftHandles = std::min(leftHandles, handles - oldHandles);
            leftBytes = std::min(leftBytes, bytes - oldBytes);
        }
    }
    fprintf(stderr, "left each time: %ld handles, %ld bytes\n", leftHandles, leftBytes);
    return leftHandles <= 0 && leftBytes <= 0 ? 0 : 6;
}
