#pragma once

#include "ZmFile.h"

/// A file that serves reads from one block in memory. Meant for files that do not change while they are read: neither
/// writing nor SetCacheSize() updates the block.
///
/// The stream has its own position, which Seek() moves. The position of the operating system's file changes when the
/// block is filled and when data is written.
class ZM_API ZmCachedFile : public ZmFile {
public:
    /// Default block size in bytes.
    static constexpr unsigned int kDefaultCacheSize = 32768;

    /// Size 0 means the default size.
    explicit ZmCachedFile(unsigned int cacheSize = kDefaultCacheSize);
    ZmCachedFile(const ZmCachedFile&) = delete;
    ZmCachedFile& operator=(const ZmCachedFile&) = delete;
    ~ZmCachedFile() override;

    unsigned int Position() override;
    /// Moves the stream's own position. Always returns 1. With END the offset is added to the size.
    int Seek(int offset, SeekMode mode) override;

    /// Reads through the block. Always returns `size`, even past the end of the file, where the bytes are whatever the
    /// block holds, initially zeros. For a closed file returns 0, unless the block holds the bytes: Close() keeps it in
    /// memory, Open() discards it.
    ///
    /// **A read that begins in the block and continues beyond it leaves the position too far**, by the number of bytes
    /// that the block supplied. Callers must seek before each read.
    unsigned int Read(void* buffer, unsigned int size) override;

    /// Writes at the position of the operating system's file, not at Position(); Position() advances by the bytes
    /// written.
    unsigned int Write(const void* buffer, unsigned int size) override;

    /// Opens regular files only, since reading seeks: devices, pipes and folders are refused at once.
    int Open(const char* name, OpenMode mode) override;
    int Close() override;

    /// These three are not cached: they log a warning and work at the position of the operating system's file.
    int GetString(char* buffer, unsigned int size) override;
    unsigned int Flush() override;
    unsigned int ReadItems(void* buffer, unsigned int size, unsigned int count) override;

    /// Changes the size of the block and fills it with zeros, without changing the position that it represents: call
    /// this before reading. Size 0 is refused, and so is a size for which there is no memory.
    void SetCacheSize(unsigned int size);
    unsigned int GetCacheSize() const { return m_CacheSize; }

private:
    friend class ZmBigFile;

    /// Moves the file itself for reads that bypass the block, which is given up. Returns false if that fails.
    bool MoveTo(unsigned int position);
    void Fill();
    bool StandsAt(unsigned int position);
    void FillFrom(unsigned int position);
    unsigned int ReadSlowPath(char* buffer, unsigned int size);
    unsigned int ReadWithoutBlock(void* buffer, unsigned int size);
    void ReadFromMissingBlock(char* out, unsigned int size, unsigned int block);
    void ReadFromHeldBlock(char* out, unsigned int size);
    void ReadFollowingBlocks(char* out, unsigned int size);

    unsigned int m_Position = 0;
    unsigned int m_CacheSize;
    char* m_Cache;
    unsigned int m_CacheStart;  ///< position of the block in the file; 4294967295 for none
};
