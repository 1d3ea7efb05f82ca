#include "Modules.h"

#include <stdio.h>

// Loads and unloads the library, alone and under a module that uses it. The exit code tells which step failed,
// since the streams may be closed.

namespace {

unsigned ControlWord()
{
    unsigned short word;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

int Fail(int code, const char* step, const char* what)
{
    fprintf(stderr, "%s: %s\n", step, what);
    return code;
}

int LoadAndUnload(const char* library, const char* usersPath)
{
    asm volatile("fninit");
    void* alone = Load(library);
    if (alone == nullptr || (ControlWord() & 0x0F3F) != 0x003F) {
        return Fail(2, "loading alone", alone == nullptr ? "failed" : "the control word is not the base mode's");
    }
    Unload(alone);
    if (IsLoaded(library)) {
        return Fail(3, "unloading alone", "the library stays");
    }
    void* user = Load(usersPath);
    const auto use = user != nullptr ? reinterpret_cast<const char* (*)()>(Find(user, "UseLibrary")) : nullptr;
    if (use == nullptr || !IsLoaded(library)) {
        return Fail(4, "loading the module", "failed");
    }
    if (const char* missing = use()) {
        return Fail(5, "after loading the module, missing", missing);
    }
    Unload(user);
    return IsLoaded(library) ? Fail(6, "unloading the module", "the library stays") : 0;
}

}  // namespace

// LoadingTest <library> <module that uses it>
int main(int argc, char** argv)
{
    constexpr int kWarm = 5, kRounds = 10;  // the loaders and the C library grow tables at first
    Held warm = {}, held = {};
    for (int round = 0; round < kRounds; ++round) {
        const int failed = argc == 3 ? LoadAndUnload(argv[1], argv[2]) : Fail(1, "arguments", "missing");
        if (failed != 0) {
            return failed;
        }
        held = CountHeld();
        warm = round < kWarm ? held : warm;
    }
    if (held.handles != warm.handles || held.threads != warm.threads || held.bytes != warm.bytes) {
        fprintf(stderr, "%d rounds left %ld handles, %ld threads, %ld bytes\n", kRounds - kWarm,
                held.handles - warm.handles, held.threads - warm.threads, held.bytes - warm.bytes);
        return 7;
    }
    return 0;
}
