#pragma once

#include "ZmStream.h"

#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>

class ZmFile;
namespace zm {
int OpenRegularFile(ZmFile& file, const char* name, int mode);
}

/// A stream over a buffered file of the C library. Paths may use both separators on every platform.
///
/// A closed file does nothing: reading, writing, seeking and formatting return 0 (Flush and Printf return EOF), the
/// position and size are 0, and the end of the file counts as reached.
class ZM_API ZmFile : public ZmStream {
public:
    /// An access mode, optionally plus TEXT. Any other value opens as READONLY does. WRITEONLY creates an empty file;
    /// READWRITE requires an existing file; both APPEND modes write at the end and create the file if it is missing.
    ///
    /// Text files use the platform's line ends. GetString() reads CR LF as LF on every platform. On platforms whose
    /// lines end in CR LF, Read() and ReadItems() do the same in text modes. Position(), Seek(), Size() and Scanf()
    /// work on bytes everywhere. All other bytes, including 0x1A, are read unchanged.
    ///
    /// A folder cannot be opened in any mode. READONLY, WRITEONLY and APPEND open devices and pipes as the system does,
    /// so opening a named pipe may wait for its other end. READWRITE and APPENDREAD refuse them at once.
    enum OpenMode : int {
        READONLY = 1,    ///< reading
        WRITEONLY = 2,   ///< writing to an empty file
        READWRITE = 3,   ///< reading and writing an existing file
        APPEND = 4,      ///< writing at the end
        APPENDREAD = 5,  ///< writing at the end, reading anywhere
        TEXT = 8         ///< flag to add: the platform's line ends
    };

    ZmFile();

    /// Both objects then share one open file: when either closes it or is destroyed, it is closed for both.
    ZmFile(const ZmFile& src);
    ZmFile& operator=(const ZmFile& src);

    unsigned int Position() override;
    /// Size in bytes. Moves to the end of the file and back.
    unsigned int Size() override;
    /// Returns 0 for a closed file and after a read or write error.
    int IsValid() override;
    /// With END the offset is added to the size. Unknown modes are treated as START.
    int Seek(int offset, SeekMode mode) override;
    /// Return `size`, or 0 if not all bytes could be read or written. A failed read leaves the bytes it got in the
    /// buffer.
    unsigned int Read(void* buffer, unsigned int size) override;
    unsigned int Write(const void* buffer, unsigned int size) override;

    /// Closes the file.
    virtual ~ZmFile();

    /// Closes any open file, then opens the named one. Returns 1 on success, 0 on failure. Null is treated as an empty
    /// name. Child processes do not inherit the file.
    virtual int Open(const char* name, OpenMode mode);
    /// Closes the file in any case. Returns 1, also for a closed file, or 0 if buffered data could not be written.
    virtual int Close();
    /// Reads a line with its line feed, or the first `size` - 1 characters of it, and terminates it. Returns 1, or 0 at
    /// the end of the file. A size of 1 reads nothing and gives an empty text and 1, a size of 0 writes nothing and
    /// gives 0.
    virtual int GetString(char* buffer, unsigned int size);
    /// As fprintf() and fscanf(), with their results.
    virtual unsigned int Printf(const char* format, ...) ZM_PRINTF(2, 3);
    /// Writes buffered data to the file. **Returns 0 when all data was written**, as fflush() does.
    virtual unsigned int Flush();
    /// Returns whether a read has reached the end of the file.
    virtual int EndOfFile();
    virtual unsigned int Scanf(const char* format, ...) ZM_SCANF(2, 3);
    /// Reads up to `count` items of `size` bytes. Returns the number of whole items read.
    virtual unsigned int ReadItems(void* buffer, unsigned int size, unsigned int count);

    /// Returns the mode word of stat() (type and permissions), or 0 for a null or empty name or a missing file.
    static unsigned int GetFileMode(const char* name);

protected:
    /// Whether the object has an open file.
    bool IsOpen() const { return Stream() != nullptr; }
    /// Seeks from the start, including positions of 2 GiB and more. After a failure IsValid() is 0.
    bool SeekTo(unsigned int position);

private:
    friend class ZmFileListener;
    friend int zm::OpenRegularFile(ZmFile& file, const char* name, int mode);
    struct OpenedFile;

    /// Write() and Flush() in one, so that a log line costs hardly more than the system call. Only for files that are
    /// written in no other way.
    bool WriteLine(const char* text, unsigned int length);

    int OpenAs(const char* name, OpenMode mode, bool regular);
    FILE* Stream() const;
    void Share(const ZmFile& src);
    void Forget();

    OpenedFile* m_File = nullptr;
};
