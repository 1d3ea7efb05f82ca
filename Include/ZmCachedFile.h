#pragma once

#include "ZmFile.h"

/// A file whose reads are served from one block of it, kept in memory. For files that do not change while they are
/// read: neither writing nor SetCacheSize() looks after the block.
///
/// The stream has a position of its own, which Seek() moves; the operating system's file moves when the block is
/// filled and when something is written.
class ZM_API ZmCachedFile : public ZmFile {
public:
    /// Bytes of a block where none are named.
    static constexpr unsigned int kDefaultCacheSize = 32768;

    /// Size 0 is taken as the default size.
    explicit ZmCachedFile(unsigned int cacheSize = kDefaultCacheSize);
    ZmCachedFile(const ZmCachedFile&) = delete;
    ZmCachedFile& operator=(const ZmCachedFile&) = delete;
    ~ZmCachedFile() override;

    unsigned int Position() override;
    /// Always 1. END: the offset is added to the size.
    int Seek(int offset, SeekMode mode) override;

    /// Always `size`, past the end of the file too, where the bytes are whatever the block holds, at first zeros. For a
    /// closed file 0, but for what the block holds: Close() leaves it in memory, and Open() forgets it.
    ///
    /// **A read that begins in the block and runs out of it leaves the position too far**, by the bytes that were
    /// served from the block. That is the contract: callers seek before each read. Do not repair it.
    unsigned int Read(void* buffer, unsigned int size) override;

    /// Writes where the operating system's file stands, not at Position(), and adds to that what was written.
    unsigned int Write(const void* buffer, unsigned int size) override;

    /// Takes regular files only, since reading seeks: a device, a pipe or a folder is refused at once.
    int Open(const char* name, OpenMode mode) override;
    int Close() override;

    /// These three have no cached form: they say so with a warning in the log, and work where the operating
    /// system's file stands.
    int GetString(char* buffer, unsigned int size) override;
    unsigned int Flush() override;
    unsigned int ReadItems(void* buffer, unsigned int size, unsigned int count) override;

    /// A block of another size, full of zeros; the block that is in memory keeps its place, so call this before
    /// reading. 0 is refused, as is what there is no memory for.
    void SetCacheSize(unsigned int size);
    unsigned int GetCacheSize() const { return m_CacheSize; }

private:
    void Fill();
    void FillFrom(unsigned int position);
    unsigned int ReadBeyond(char* buffer, unsigned int size);
    unsigned int ReadUncached(void* buffer, unsigned int size);
    void ReadAcross(char* out, unsigned int size, unsigned int block);
    void ReadCached(char* out, unsigned int size);
    void ReadOn(char* out, unsigned int size);

    unsigned int m_Position = 0;
    unsigned int m_CacheSize;
    char* m_Cache;
    unsigned int m_CacheStart;  ///< of the block in the file; 4294967295 for none
};
