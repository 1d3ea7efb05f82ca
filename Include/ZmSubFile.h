#pragma once

#include "ZmFile.h"

// A stream's slots are fixed, and a destructor is none of them: delete a span through its own type.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A span of another file as a stream of its own. Several spans may lie on one file and be used in turns: each moves
/// the file to its own position before it reads or writes. The file must outlive its spans. Without a file all
/// operations give 0.
class ZM_API ZmSubFile : public ZmStream {
public:
    /// No span, without a file. A copy is the same span, with a position of its own.
    ZmSubFile();
    ZmSubFile(const ZmSubFile& src);
    ZmSubFile& operator=(const ZmSubFile& src);
    ~ZmSubFile();

    /// The span of `size` bytes from `offset` on; moves the file there.
    void Set(ZmFile* parent, unsigned int offset, unsigned int size);

    unsigned int Position() override;
    /// Of the span.
    unsigned int Size() override;
    /// Whether the file is valid and the span has bytes, all of them in the file.
    int IsValid() override;
    /// **END: the offset counts backwards from the end**, against the sense of ZmFile. The position may leave the span.
    int Seek(int offset, SeekMode mode) override;
    /// As the file does, from the span's position on; not cut at the end of the span.
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
