#pragma once

#include "ZmApi.h"

/// A sequence of bytes that is read and written at a position. Sizes and positions have 32 bits; larger ones read
/// as 4294967295. A stream belongs to one thread at a time.
class ZM_API ZmStream {
public:
    /// What an offset is relative to.
    enum SeekMode : int {
        START = 0,   ///< from the beginning
        END = 1,     ///< relative to the end; the sense of the offset differs, see ZmFile and ZmSubFile
        CURRENT = 2  ///< from the position
    };

    /// Bytes before the position; bytes in all.
    virtual unsigned int Position() = 0;
    virtual unsigned int Size() = 0;
    /// Whether the stream can be used.
    virtual int IsValid() = 0;
    /// Moves the position; whether that went well.
    virtual int Seek(int offset, SeekMode mode) = 0;
    /// Bytes read into the buffer, bytes written from it.
    virtual unsigned int Read(void* buffer, unsigned int size) = 0;
    virtual unsigned int Write(const void* buffer, unsigned int size) = 0;

    /// Writes here `size` bytes that are read from the source, or as many as source.Size() for 0: not only those
    /// after its position. Works through a scratch buffer of 32768 bytes. Returns the size, **whatever Read and Write
    /// returned**: that is the contract. Where the source gives too little, zeros or
    /// bytes from before stand in. 0 without memory.
    virtual unsigned int Copy(ZmStream& source, unsigned int size);

protected:
    /// For derived classes.
    ZmStream();
    ZmStream(const ZmStream& src);
    ZmStream& operator=(const ZmStream& src);
    // Not virtual: streams are not deleted as such, only from ZmFile on. Out of line, as all that is exported:
    ~ZmStream();  // NOLINT(performance-trivially-destructible)
};
