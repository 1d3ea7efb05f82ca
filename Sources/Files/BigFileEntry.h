#pragma once

#include "ZmBigFile.h"

#include <limits.h>

namespace zm {

// Documentation/ArchiveFormat.md describes the layout of an archive.
constexpr unsigned int kArchiveHeader = 8;
constexpr char kArchiveMagic[4] = {'Z', 'M', 'B', 'G'};
constexpr unsigned int kLargestArchive = INT_MAX;

}  // namespace zm

struct ZmBigFile::Entry {
    XString name;
    char* source;         ///< owned; null if the bytes are in the archive file, or if there are none
    Entry* older;         ///< the entry created before this one
    unsigned int offset;  ///< from the start of the archive file
    int size;             ///< negative: source is the path of a file of -size bytes
    bool isListed;        ///< used by LoadIndex(): already placed in the new order

    bool IsDeferred() const { return source != nullptr && size < 0; }

    /// Size in bytes. Without a source, sizes of 2 GiB and more come only from a damaged index.
    unsigned int ByteCount() const { return IsDeferred() ? unsigned(-size) : unsigned(size); }

    void Empty()
    {
        zm::DeleteBlock(source);
        source = nullptr;
        offset = 0;
        size = 0;
    }

    /// Allocates and returns a source of `bytes` bytes; null if out of memory. Call Empty() first.
    char* MakeSource(unsigned int bytes)
    {
        source = static_cast<char*>(zm::NewBlock(bytes));
        return source;
    }
};
