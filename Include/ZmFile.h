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
/// A closed file refuses everything: it reads, writes, seeks and formats nothing (0; Flush and Printf give EOF), its
/// position and size are 0, and its end is reached.
class ZM_API ZmFile : public ZmStream {
public:
    /// An access, plus TEXT. Every other value opens as READONLY does. WRITEONLY makes an empty file; READWRITE needs a
    /// file; both APPEND forms write at the end and make the file if there is none.
    ///
    /// Text files end their lines as the platform does; GetString() reads CR LF as LF on every platform. Where lines
    /// end with CR LF, Read() and ReadItems() do the same in text modes; Position(), Seek(), Size() and Scanf() count
    /// and see bytes everywhere. All other bytes are read as they stand, 0x1A too.
    ///
    /// A folder opens in no mode. READONLY, WRITEONLY and APPEND take devices and pipes as the system does, which lets
    /// the opening of a named pipe wait for its other end. READWRITE and APPENDREAD refuse them at once.
    enum OpenMode : int {
        READONLY = 1,    ///< reading
        WRITEONLY = 2,   ///< writing an empty file
        READWRITE = 3,   ///< both, in a file that exists
        APPEND = 4,      ///< writing at the end
        APPENDREAD = 5,  ///< writing at the end, reading anywhere
        TEXT = 8         ///< to be added: line ends of the platform
    };

    ZmFile();

    /// Both objects share one open file from then on: when one closes it or is destroyed, it is closed for both.
    ZmFile(const ZmFile& src);
    ZmFile& operator=(const ZmFile& src);

    unsigned int Position() override;
    /// Moves to the end and back.
    unsigned int Size() override;
    /// 0 for a closed file and after an error of reading or writing.
    int IsValid() override;
    /// END: the offset is added to the size. Unknown modes are taken as START.
    int Seek(int offset, SeekMode mode) override;
    /// All or nothing: `size`, or 0 if not all bytes could be read (those that could are in the buffer) or written.
    unsigned int Read(void* buffer, unsigned int size) override;
    unsigned int Write(const void* buffer, unsigned int size) override;

    /// Closes the file.
    virtual ~ZmFile();

    /// Closes what is open, and opens the named file: 1, or 0 if that fails. Null is an empty name. Programs that this
    /// one starts do not inherit it.
    virtual int Open(const char* name, OpenMode mode);
    /// 1, also for a closed file; 0 if buffered data could not be written. The file is closed in any case.
    virtual int Close();
    /// A line with its line feed, or as much of it as `size` - 1 characters hold, terminated. 1; 0 at the end.
    virtual int GetString(char* buffer, unsigned int size);
    /// As fprintf() and fscanf(), with their results.
    virtual unsigned int Printf(const char* format, ...) ZM_PRINTF(2, 3);
    /// **0 when all data was written**, as fflush() returns.
    virtual unsigned int Flush();
    /// Whether a reading has met the end.
    virtual int EndOfFile();
    virtual unsigned int Scanf(const char* format, ...) ZM_SCANF(2, 3);
    /// Whole items of `size` bytes that were read, of `count`.
    virtual unsigned int ReadItems(void* buffer, unsigned int size, unsigned int count);

    /// The mode word of stat(): type and permissions; 0 for null, for an empty name, and where there is no such file.
    static unsigned int GetFileMode(const char* name);

protected:
    /// Whether the object has a file.
    bool IsOpen() const { return Stream() != nullptr; }
    /// As Seek() from the start, for positions of 2 GiB and more, too.
    void SeekTo(unsigned int position);

private:
    friend class ZmFileListener;
    friend int zm::OpenRegularFile(ZmFile& file, const char* name, int mode);
    struct OpenedFile;

    /// As Write() and Flush(): a line of a log costs hardly more than the system's call. For files that are written in
    /// no other way.
    bool WriteLine(const char* text, unsigned int length);

    int OpenAs(const char* name, OpenMode mode, bool regular);
    FILE* Stream() const;
    void Share(const ZmFile& src);
    void Forget();

    OpenedFile* m_File = nullptr;
};
