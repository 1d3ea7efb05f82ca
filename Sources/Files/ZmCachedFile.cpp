#include "ZmCachedFile.h"

#include "Files/RegularFile.h"
#include "Logging/LibraryLog.h"
#include "Platform/Unaligned.h"
#include "ZmAligned.h"

#include <algorithm>
#include <string.h>

namespace {

constexpr unsigned int kNoBlock = 0xFFFFFFFF;
constexpr int kAlignment = 64;

// Zeroed: a block that extends past the end of the file is only partly filled, and old heap contents must not leak.
char* NewCache(unsigned int size)
{
    char* cache = size <= unsigned(INT32_MAX) ? static_cast<char*>(ZmNewAligned(int(size), kAlignment)) : nullptr;
    if (cache != nullptr) {
        memset(cache, 0, size);
    }
    return cache;
}

// memcpy() with a fast path of two overlapping moves for 8 to 16 bytes, the sizes of numbers and vectors. With size 0
// the destination may be null.
void CopyShort(char* res, const char* src, unsigned int size)
{
    if (size >= 8 && size <= 16) {
        const uint64_t first = zm::LoadUnaligned<uint64_t>(src), last = zm::LoadUnaligned<uint64_t>(src + size - 8);
        memcpy(res, &first, 8);
        memcpy(res + size - 8, &last, 8);
    } else if (size != 0) {
        memcpy(res, src, size);
    }
}

void WarnNotCached(int line, const char* operation)
{
    zm::Warn(line, "ZmCachedFile", "%s : Not Cached", operation);
}

}  // namespace

ZmCachedFile::ZmCachedFile(unsigned int cacheSize)
    : m_CacheSize(cacheSize != 0 ? cacheSize : kDefaultCacheSize), m_Cache(NewCache(m_CacheSize)),
      m_CacheStart(kNoBlock)
{
}

ZmCachedFile::~ZmCachedFile()
{
    ZmDeleteAligned(m_Cache);
}

void ZmCachedFile::SetCacheSize(unsigned int size)
{
    if (size == 0 || size == m_CacheSize) {
        return;
    }
    // Deliberately keeps m_CacheStart: until the next fill, reads from that block return zeros.
    if (char* cache = NewCache(size)) {
        ZmDeleteAligned(m_Cache);
        m_Cache = cache;
        m_CacheSize = size;
    }
}

int ZmCachedFile::Open(const char* name, OpenMode mode)
{
    m_CacheStart = kNoBlock;
    m_Position = 0;
    return zm::OpenRegularFile(*this, name, mode);
}

// Keeps the block: reads after Close() are still served from it until the next Open().
int ZmCachedFile::Close()
{
    return ZmFile::Close();
}

unsigned int ZmCachedFile::Position()
{
    return m_Position;
}

int ZmCachedFile::Seek(int offset, SeekMode mode)
{
    const unsigned int from = mode == START ? 0 : mode == END ? Size() : m_Position;
    m_Position = from + unsigned(offset);
    return 1;
}

unsigned int ZmCachedFile::Write(const void* buffer, unsigned int size)
{
    const unsigned int written = ZmFile::Write(buffer, size);
    m_Position += written;
    return written;
}

// Handles the common short read within the block. The slow path is a separate function, so that this one saves no
// registers for it.
unsigned int ZmCachedFile::Read(void* buffer, unsigned int size)
{
    const unsigned int offset = m_Position - m_CacheStart;
    if (m_CacheStart != kNoBlock && offset < m_CacheSize && size <= m_CacheSize - offset) {
        CopyShort(static_cast<char*>(buffer), m_Cache + offset, size);
        m_Position += size;
        return size;
    }
    return ReadSlowPath(static_cast<char*>(buffer), size);
}

__attribute__((noinline)) unsigned int ZmCachedFile::ReadSlowPath(char* buffer, unsigned int size)
{
    if (!IsOpen()) {
        return 0;
    }
    if (m_Cache == nullptr) {
        return ReadWithoutBlock(buffer, size);
    }
    const bool hit = m_CacheStart != kNoBlock && m_Position - m_CacheStart < m_CacheSize;
    if (!hit) {
        const unsigned int block = m_Position / m_CacheSize * m_CacheSize;
        if (uint64_t(m_Position) + size >= uint64_t(block) + m_CacheSize) {
            ReadFromMissingBlock(buffer, size, block);
            return size;
        }
        m_CacheStart = block;
        FillFrom(block);
    }
    ReadFromHeldBlock(buffer, size);
    return size;
}

bool ZmCachedFile::MoveTo(unsigned int position)
{
    m_CacheStart = kNoBlock;
    return StandsAt(position) || SeekTo(position);
}

// Sequential reads find the file already in position; skipping the seek saves a system call.
bool ZmCachedFile::StandsAt(unsigned int position)
{
    return !EndOfFile() && ZmFile::Position() == position;
}

// Ignores the byte count: beyond the end of the file the block keeps its old contents.
void ZmCachedFile::Fill()
{
    ZmFile::Read(m_Cache, m_CacheSize);
}

void ZmCachedFile::FillFrom(unsigned int position)
{
    if (!StandsAt(position) && !SeekTo(position)) {
        memset(m_Cache, 0, m_CacheSize);
        return;
    }
    Fill();
}

// Used when no block could be allocated.
unsigned int ZmCachedFile::ReadWithoutBlock(void* buffer, unsigned int size)
{
    const unsigned int read = SeekTo(m_Position) ? ZmFile::Read(buffer, size) : 0;
    m_Position += read;
    return read;
}

// Reads from a block that is not in memory to its end and beyond. The block in which the read ends stays in memory.
void ZmCachedFile::ReadFromMissingBlock(char* out, unsigned int size, unsigned int block)
{
    const uint64_t end = uint64_t(m_Position) + size, lastBlock = end / m_CacheSize * m_CacheSize;
    const unsigned int skipped = m_Position - block;
    FillFrom(block);
    out = std::copy(m_Cache + skipped, m_Cache + m_CacheSize, out);
    for (uint64_t whole = uint64_t(block) + m_CacheSize; whole < lastBlock; whole += m_CacheSize) {
        Fill();
        out = std::copy_n(m_Cache, m_CacheSize, out);
    }
    m_CacheStart = unsigned(lastBlock);
    Fill();
    std::copy_n(m_Cache, size_t(end - lastBlock), out);
    m_Position += size;
}

void ZmCachedFile::ReadFromHeldBlock(char* out, unsigned int size)
{
    const unsigned int offset = m_Position - m_CacheStart, cached = std::min(size, m_CacheSize - offset);
    std::copy_n(m_Cache + offset, cached, out);
    if (size > cached) {
        // Counts the cached bytes twice. Callers depend on this and seek before each read
        // (ZmCachedFileTest, ReadsAsTheModelDoes).
        Seek(int(m_CacheStart + m_CacheSize), START);
        ReadFollowingBlocks(out + cached, size - cached);
    }
    m_Position += size;
}

// Reads the blocks that follow the one in memory; the last fill left the file positioned after that block.
void ZmCachedFile::ReadFollowingBlocks(char* out, unsigned int size)
{
    for (; size >= m_CacheSize; size -= m_CacheSize) {
        Fill();
        out = std::copy_n(m_Cache, m_CacheSize, out);
    }
    m_CacheStart = ZmFile::Position();
    Fill();
    std::copy_n(m_Cache, size, out);
}

int ZmCachedFile::GetString(char* buffer, unsigned int size)
{
    WarnNotCached(zm::kLineOfGetString, "GetString");
    return ZmFile::GetString(buffer, size);
}

unsigned int ZmCachedFile::Flush()
{
    WarnNotCached(zm::kLineOfFlush, "Flush");
    return ZmFile::Flush();
}

unsigned int ZmCachedFile::ReadItems(void* buffer, unsigned int size, unsigned int count)
{
    WarnNotCached(zm::kLineOfReadItems, "ReadItems");
    return ZmFile::ReadItems(buffer, size, count);
}
