#pragma once

#include "ZmFile.h"

// Streams have no virtual destructor: delete a ZmSubFile through its own type.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A span of another file, presented as a stream. Several spans of one file may be used alternately: each moves the
/// file to its own position before it reads or writes. The file must outlive its spans. Without a file all operations
/// return 0.
class ZM_API ZmSubFile : public ZmStream {
public:
    /// An empty span without a file. A copy is the same span with its own position.
    ZmSubFile();
    ZmSubFile(const ZmSubFile& src);
    ZmSubFile& operator=(const ZmSubFile& src);
    ~ZmSubFile();

    /// The span of `size` bytes from `offset` on. Moves the file there.
    void Set(ZmFile* parent, unsigned int offset, unsigned int size);

    unsigned int Position() override;
    /// Position and size of the span.
    unsigned int Size() override;
    /// Returns whether the file is valid and the span is not empty and lies wholly within the file.
    int IsValid() override;
    /// **With END the offset counts backwards from the end**, unlike in ZmFile. The position may leave the span.
    int Seek(int offset, SeekMode mode) override;
    /// As the file does, from the span's position on; not limited to the end of the span.
    unsigned int Read(void* buffer, unsigned int size) override;
    unsigned int Write(const void* buffer, unsigned int size) override;

private:
    bool MoveParent();

    ZmFile* m_Parent = nullptr;
    unsigned int m_Offset = 0;
    unsigned int m_Size = 0;
    unsigned int m_Position = 0;
};

#pragma GCC diagnostic pop
