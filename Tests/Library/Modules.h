#pragma once

// Loading modules by hand, and what a process holds: of the two files in Posix/ and Win32/, the system's is built.

struct Held {
    long handles, threads, bytes;
};

void* Load(const char* path);
void (*Find(void* module, const char* name))();
void Unload(void* module);
bool IsLoaded(const char* path);

/// `bytes` are those in use on the C heap.
Held CountHeld();
