#pragma once

#include "ZmApi.h"

/// A sequence of bytes with a position for reading and writing. Sizes and positions have 32 bits; larger ones are
/// reported as 4294967295. Not thread-safe: only one thread may use a stream at a time.
class ZM_API ZmStream {
public:
    /// The origin of an offset.
    enum SeekMode : int {
        START = 0,   ///< from the beginning
        END = 1,     ///< relative to the end; the sign of the offset differs, see ZmFile and ZmSubFile
        CURRENT = 2  ///< from the current position
    };

    /// Current position in bytes; size in bytes.
    virtual unsigned int Position() = 0;
    virtual unsigned int Size() = 0;
    /// Returns whether the stream can be used.
    virtual int IsValid() = 0;
    /// Moves the position and returns whether that succeeded.
    virtual int Seek(int offset, SeekMode mode) = 0;
    /// Read into the buffer or write from it; return the number of bytes.
    virtual unsigned int Read(void* buffer, unsigned int size) = 0;
    virtual unsigned int Write(const void* buffer, unsigned int size) = 0;

    /// Copies `size` bytes from the source, beginning at its position, to this stream; 0 means source.Size() bytes,
    /// even if fewer remain. Works through a scratch buffer of 32768 bytes. Returns the size, **whatever Read and Write
    /// returned**; where the source delivers too little, zeros or earlier bytes are written instead. Returns 0 if
    /// memory runs out.
    virtual unsigned int Copy(ZmStream& source, unsigned int size);

protected:
    /// For derived classes only.
    ZmStream();
    ZmStream(const ZmStream& src);
    ZmStream& operator=(const ZmStream& src);
    // Not virtual: streams are deleted only as ZmFile or a class derived from it. Out of line like every exported
    // member:
    ~ZmStream();  // NOLINT(performance-trivially-destructible)
};
