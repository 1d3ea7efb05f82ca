// The bare functions of the system and its C library.

#include "../../Harness.h"
#include "../../TestFiles.h"

#include <fcntl.h>
#include <filesystem>
#include <pthread.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>
#include <vector>

namespace bench {
namespace {

int OpenToWrite(const char* name)
{
    return open((TestFolder() + name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
}

void WriteLines(const Work& w)
{
    static const int file = OpenToWrite("/bare");
    char line[] = "[bench] [INFO] [05/03/2004 14:02:11] [bench:42] : object 1000 has 2000 triangles\n";
    for (int i = 0; i < w.count; ++i) {
        line[60] = char('0' + i % 10);
        if (write(file, line, sizeof(line) - 1) < 0) {
            return;
        }
    }
}

FILE* LargeFileOpened()
{
    static FILE* const file = fopen(LargeFile().c_str(), "rb");
    fseek(file, 0, SEEK_SET);
    return file;
}

template <unsigned Size>
void ReadAll(const Work& w)
{
    FILE* file = LargeFileOpened();
    unsigned char bytes[Size];
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        if (fread_unlocked(bytes, Size, 1, file) != 1) {
            return;
        }
        sum += bytes[0];
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

/// Reads the whole block that contains the bytes, then copies them.
void ReadRandom(const Work& w)
{
    static const int file = open(LargeFile().c_str(), O_RDONLY);
    static unsigned char block[kBlock];
    const int* order = static_cast<const int*>(w.extra);
    unsigned char bytes[64];
    unsigned sum = 0;
    for (int i = 0; i < w.count; ++i) {
        if (pread(file, block, kBlock, off_t(order[i]) * kBlock) != kBlock) {
            return;
        }
        memcpy(bytes, block + 1000, sizeof(bytes));
        sum += bytes[0];
    }
    *static_cast<float*>(w.dst) = float(sum % 65536);
}

void WalkFolder(const Work& w)
{
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ManyFiles())) {
        count += !entry.is_directory();
    }
    *static_cast<float*>(w.dst) = float(count);
}

void CopyFile(const std::string& path)
{
    constexpr size_t kStep = 128 * 1024;  // as cp does
    static char buffer[kStep];
    const int source = open(path.c_str(), O_RDONLY), target = OpenToWrite("/copy");
    for (ssize_t read_; (read_ = read(source, buffer, kStep)) > 0;) {
        if (write(target, buffer, size_t(read_)) != read_) {
            break;
        }
    }
    close(source);
    close(target);
}

void CopyLargeFile(const Work&)
{
    CopyFile(LargeFile());
}

void CopyArchive(const Work&)
{
    CopyFile(ArchiveFile());
}

void* Raise(void* number)
{
    ++*static_cast<int*>(number);
    return nullptr;
}

void StartAndJoin(const Work& w)
{
    std::vector<pthread_t> threads(size_t(w.count));
    std::vector<int> numbers(threads.size());
    for (size_t i = 0; i < threads.size(); ++i) {
        numbers[i] = int(i);
        pthread_create(&threads[i], nullptr, Raise, &numbers[i]);
    }
    for (size_t i = 0; i < threads.size(); ++i) {
        pthread_join(threads[i], nullptr);
        static_cast<float*>(w.dst)[i] = float(numbers[i]);
    }
}

constexpr Entry kEntries[] = {
    {"Log/LineBesideWrite", WriteLines}, {"Read/16", ReadAll<16>},      {"Read/64", ReadAll<64>},
    {"Read/256", ReadAll<256>},          {"Read/Random", ReadRandom},   {"Folder/Walk", WalkFolder},
    {"Stream/Copy", CopyLargeFile},      {"Archive/Save", CopyArchive}, {"Threads/StartAndJoin", StartAndJoin},
};

}  // namespace

extern const Contender kSystem;
constexpr Contender kSystem{"system", Role::PEER, kEntries};

}  // namespace bench
