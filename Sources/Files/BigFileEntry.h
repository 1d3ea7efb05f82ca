#pragma once

#include "ZmBigFile.h"

#include <limits.h>

namespace zm {

// The layout of an archive: see Documentation/ArchiveFormat.md.
constexpr unsigned int kArchiveHeader = 8;
constexpr char kArchiveMagic[4] = {'Z', 'M', 'B', 'G'};
constexpr unsigned int kLargestArchive = INT_MAX;

}  // namespace zm

struct ZmBigFile::Entry {
    XString name;
    unsigned int offset;  ///< in the archive's file
    char* source;         ///< owned; null: the bytes are in the file, or there are none
    int size;             ///< negative, with a source: that is the path of a file of so many bytes

    Entry* older;   ///< the one that was made before
    bool isListed;  ///< while an index list is read: it has its place

    bool IsDeferred() const { return source != nullptr && size < 0; }

    /// Without a source, sizes of 2 GiB and more are what a damaged index says.
    unsigned int ByteCount() const { return IsDeferred() ? unsigned(-size) : unsigned(size); }

    void Empty()
    {
        zm::DeleteBlock(source);
        source = nullptr;
        offset = 0;
        size = 0;
    }

    /// Takes a block of that many bytes, which it returns; null without memory.
    char* MakeSource(unsigned int bytes)
    {
        source = static_cast<char*>(zm::NewBlock(bytes));
        return source;
    }
};
