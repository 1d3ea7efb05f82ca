#include "Files/BigFileEntry.h"
#include "Files/RegularFile.h"
#include "Logging/LibraryLog.h"
#include "Platform/OsFiles.h"
#include "Platform/OsReplacement.h"
#include "ZmAllocator.h"

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

/// The block through which bytes are copied.
class CopyBlock {
public:
    CopyBlock() : m_Block(static_cast<char*>(ZmAllocator::Instance().AllocateScratch(kSize))) {}
    ~CopyBlock() { ZmAllocator::Instance().ReleaseScratch(m_Block); }
    CopyBlock(const CopyBlock&) = delete;
    CopyBlock& operator=(const CopyBlock&) = delete;

    bool WriteZeros(ZmFile& output, unsigned int size)
    {
        if (m_Block != nullptr) {
            memset(m_Block, 0, std::min(size, kSize));
        }
        return InSteps(size, [&](unsigned int step) { return WriteAll(output, m_Block, step); });
    }

    /// Copies from a file's position, bypassing what a derived class keeps. False if anything fails or is missing.
    bool Copy(ZmFile& output, ZmFile& input, unsigned int size)
    {
        return InSteps(size, [&](unsigned int step) {
            return input.ZmFile::Read(m_Block, step) == step && WriteAll(output, m_Block, step);
        });
    }

private:
    static constexpr unsigned int kSize = 1 << 18;

    template <class Step>
    bool InSteps(unsigned int size, Step step) const
    {
        bool done = m_Block != nullptr;
        for (unsigned int count; size != 0 && done; size -= count) {
            count = std::min(size, kSize);
            done = step(count);
        }
        return done;
    }

    char* m_Block;
};

// A file that has disappeared or changed its size since it was appended is replaced by zeros, so that the index stays
// correct. Any other failure may be over the next time, and zeros would cost the file's bytes.
bool WriteDeferred(ZmFile& output, const char* path, unsigned int size)
{
    ZmFile file;
    const bool opened = zm::OpenRegularFile(file, path, ZmFile::READONLY) != 0;
    const unsigned int found = file.Size();
    CopyBlock block;
    if (opened && found == size) {
        return block.Copy(output, file, size);
    }
    const unsigned int mode = zm::FileMode(path);
    const bool isGone = mode != 0 ? !zm::IsRegularFile(mode) : zm::IsMissing(path);
    if (opened ? !file.IsValid() : !isGone) {
        zm::Warn(__LINE__, kSourceName, "File %s cannot be read: nothing is saved", path);
        return false;
    }
    zm::Warn(zm::kLineOfMissingFile, kSourceName, "File %s is missing for the big file saving", path);
    return block.WriteZeros(output, size);
}

/// Calls back whenever the percentage changes.
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

/// Whether the path names something other than a regular file, such as a device, which must not be replaced.
bool IsNoFile(const char* path)
{
    const unsigned int mode = ZmFile::GetFileMode(path);
    return mode != 0 && !zm::IsRegularFile(mode);
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
        return WriteFile(target, indexSize, progress);
    }
    zm::Replacement replacement;
    if (!replacement.Begin(target, zm::Replacement::CLOSEST)) {
        zm::Warn(__LINE__, kSourceName, "File %s cannot be replaced: nothing is saved", target);
        return 0;
    }
    if (!WriteFile(replacement.Path(), indexSize, progress)) {
        return 0;
    }
    const bool isReleased = inPlace && m_File.IsOpen() && !zm::kReplacesOpenFiles;
    if (isReleased) {
        m_File.Close();
    }
    if (!replacement.Commit()) {
        zm::Warn(__LINE__, kSourceName, "Big File %s cannot be replaced", target);
        if (isReleased) {
            m_File.Open(target, ZmFile::READONLY);
        }
        return 0;
    }
    if (inPlace) {
        m_File.Close();
    }
    return 1;
}

bool ZmBigFile::CanBeSaved(unsigned int& indexSize)
{
    const unsigned int fileSize = m_File.Size();
    if (m_File.IsOpen() && !m_File.IsValid()) {
        zm::Warn(__LINE__, kSourceName, "Big File %s cannot be read: nothing is saved", m_FileName.Text());
        return false;
    }
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

bool ZmBigFile::WriteFile(const char* path, unsigned int indexSize, ProgressionCallback* progress)
{
    ZmFile output;
    if (!output.Open(path, ZmFile::WRITEONLY)) {
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
    return m_File.MoveTo(entry.offset) && CopyBlock().Copy(output, m_File, entry.ByteCount());
}
