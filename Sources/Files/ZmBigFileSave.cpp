#include "Files/BigFileEntry.h"
#include "Files/RegularFile.h"
#include "Logging/LibraryLog.h"
#include "Platform/Replacement.h"
#include "ZmAllocator.h"
#include "ZmMemoryMappedFile.h"

#include <algorithm>
#include <string.h>

namespace {

constexpr char kSourceName[] = "ZmBigFile";

bool WriteAll(ZmFile& output, const void* bytes, unsigned int size)
{
    return output.Write(bytes, size) == size;
}

bool WriteWord(ZmFile& output, unsigned int word)
{
    const unsigned char bytes[] = {static_cast<unsigned char>(word), static_cast<unsigned char>(word >> 8),
                                   static_cast<unsigned char>(word >> 16), static_cast<unsigned char>(word >> 24)};
    return WriteAll(output, bytes, sizeof(bytes));
}

bool WriteZeros(ZmFile& output, unsigned int size)
{
    static constexpr char kZeros[4096] = {};
    bool written = true;
    for (unsigned int step; size != 0 && written; size -= step) {
        step = std::min(size, unsigned(sizeof(kZeros)));
        written = WriteAll(output, kZeros, step);
    }
    return written;
}

// So that the index stays true, a file that has gone since it was appended leaves zeros.
bool WriteDeferred(ZmFile& output, const char* path, unsigned int size)
{
    const ZmMemoryMappedFile file(path);
    if (file.GetErrorType() == ZmMMF_NoError && file.GetSize() == size) {
        return WriteAll(output, file.GetBase(), size);
    }
    zm::Warn(zm::kLineOfMissingFile, kSourceName, "File %s is missing for the big file saving", path);
    return WriteZeros(output, size);
}

/// Calls back when the percentage has changed.
class Progress {
public:
    Progress(ZmBigFile::ProgressionCallback* callback, int count) : m_Callback(callback), m_Count(count) {}

    void Reached(int done)
    {
        const int percent = int(int64_t(done) * 100 / m_Count);
        if (m_Callback != nullptr && percent != m_Last) {
            m_Last = percent;
            m_Callback->Progress(percent);
        }
    }

private:
    ZmBigFile::ProgressionCallback* m_Callback;
    int m_Count;
    int m_Last = -1;
};

/// Whether a file of that name would be put in the place of something that is no file, such as a device.
bool IsNoFile(const char* path)
{
    constexpr unsigned int kTypeMask = 0xF000, kRegularFile = 0x8000;
    const unsigned int mode = ZmFile::GetFileMode(path);
    return mode != 0 && (mode & kTypeMask) != kRegularFile;
}

}  // namespace

int ZmBigFile::Save(const char* path, ProgressionCallback* progress)
{
    const bool inPlace = path == nullptr;
    unsigned int indexSize = 0;
    if ((inPlace && m_FileName.IsEmpty()) || !CanBeSaved(indexSize)) {
        return 0;
    }
    if (m_Order.Size() != m_Names.Size()) {
        printf("diff : %d <=> %d", m_Order.Size(), m_Names.Size());
    }
    const char* target = inPlace ? m_FileName.Text() : path;
    if (IsNoFile(target)) {
        return WriteFile(target, false, indexSize, progress);
    }
    zm::Replacement replacement;
    if (!replacement.Begin(target, zm::Replacement::CLOSEST)) {
        zm::Warn(__LINE__, kSourceName, "File %s cannot be replaced: nothing is saved", target);
        return 0;
    }
    if (!WriteFile(replacement.Path(), true, indexSize, progress)) {
        return 0;
    }
    const bool wasOpen = m_File.IsValid() != 0;
    if (inPlace) {
        m_File.Close();  // not every system replaces a file that is open
    }
    if (!replacement.Commit()) {
        zm::Warn(__LINE__, kSourceName, "Big File %s cannot be replaced", target);
        if (inPlace && wasOpen) {
            m_File.Open(target, ZmFile::READONLY);
        }
        return 0;
    }
    return 1;
}

bool ZmBigFile::CanBeSaved(unsigned int& indexSize)
{
    const unsigned int fileSize = m_File.Size();
    uint64_t index = 0, bytes = 0;
    for (const Entry* const* place = m_Order.Begin(); place != m_Order.End(); ++place) {
        const Entry& entry = **place;
        const unsigned int size = entry.ByteCount();
        if (entry.source == nullptr && size != 0 && uint64_t(entry.offset) + size > fileSize) {
            zm::Warn(__LINE__, kSourceName, "The bytes of entry %s are not in Big File %s: nothing is saved",
                     entry.name.Text(), m_FileName.Text());
            return false;
        }
        index += entry.name.Length() + 1u + 4u;
        bytes += size;
    }
    if (zm::kArchiveHeader + index + bytes > zm::kLargestArchive) {
        zm::Warn(__LINE__, kSourceName, "Big File %s would become too large: nothing is saved", m_FileName.Text());
        return false;
    }
    indexSize = unsigned(index);
    return true;
}

bool ZmBigFile::WriteFile(const char* path, bool regular, unsigned int indexSize, ProgressionCallback* progress)
{
    ZmFile output;
    if (!(regular ? zm::OpenRegularFile(output, path, ZmFile::WRITEONLY) : output.Open(path, ZmFile::WRITEONLY))) {
        zm::Warn(__LINE__, kSourceName, "File %s cannot be made: nothing is saved", path);
        return false;
    }
    const bool written = WriteArchive(output, indexSize, progress);
    if (output.Close() && written) {
        return true;
    }
    zm::Warn(__LINE__, kSourceName, "File %s cannot be written whole: nothing is saved", path);
    return false;
}

bool ZmBigFile::WriteArchive(ZmFile& output, unsigned int indexSize, ProgressionCallback* progress)
{
    if (!WriteIndex(output, indexSize)) {
        return false;
    }
    const int count = m_Order.Size();
    Progress percentage(progress, count);
    for (int i = 0; i < count; ++i) {
        if (!WriteBytes(output, *m_Order[i])) {
            return false;
        }
        percentage.Reached(i + 1);
    }
    return true;
}

bool ZmBigFile::WriteIndex(ZmFile& output, unsigned int indexSize) const
{
    bool written = WriteAll(output, zm::kArchiveMagic, sizeof(zm::kArchiveMagic)) && WriteWord(output, indexSize);
    for (int i = 0; written && i < m_Order.Size(); ++i) {
        const Entry& entry = *m_Order[i];
        written = WriteAll(output, entry.name.Text(), entry.name.Length() + 1u) && WriteWord(output, entry.ByteCount());
    }
    return written;
}

bool ZmBigFile::WriteBytes(ZmFile& output, const Entry& entry)
{
    const unsigned int size = entry.ByteCount();
    if (size == 0) {
        return true;
    }
    if (entry.source == nullptr) {
        return WriteStored(output, entry);
    }
    return entry.IsDeferred() ? WriteDeferred(output, entry.source, size) : WriteAll(output, entry.source, size);
}

bool ZmBigFile::WriteStored(ZmFile& output, const Entry& entry)
{
    const unsigned int size = entry.ByteCount();
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* block = allocator.AllocateScratch(size);
    if (block == nullptr) {
        return false;
    }
    m_File.Seek(int(entry.offset), ZmStream::START);
    m_File.Read(block, size);
    // A cached read does not say how much it found.
    const bool written = m_File.IsValid() && WriteAll(output, block, size);
    allocator.ReleaseScratch(block);
    return written;
}
