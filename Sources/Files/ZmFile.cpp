#include "ZmFile.h"

#include "Files/RegularFile.h"
#include "Platform/OrEmpty.h"
#include "Platform/OsFiles.h"

#include <algorithm>
#include <errno.h>
#include <new>
#include <string.h>

/// The state that copies of a ZmFile share.
struct ZmFile::OpenedFile {
    enum Direction {
        NONE,
        READING,
        WRITING
    };

    /// Prepares a file for reading or writing and returns its stream; null if it is closed. The C library requires a
    /// seek between reads and writes.
    static FILE* Turn(OpenedFile* file, Direction direction)
    {
        if (file == nullptr || file->stream == nullptr) {
            return nullptr;
        }
        if (file->direction != direction) {
            if (file->direction != NONE && !zm::SeekFile(file->stream, 0, SEEK_CUR)) {
                file->hasFailed = true;
                return nullptr;
            }
            file->direction = direction;
            if (file->isText) {
                zm::TurnText(file->stream, direction == WRITING);
            }
        }
        return file->stream;
    }

    /// Whether reads of counted characters must turn CR LF into LF, as on systems whose text files use CR LF.
    bool DropsReturns() const { return isText && zm::kTextReadsDropReturns; }

    FILE* stream;  ///< null after one of the copies has closed it
    bool isText;
    Direction direction;
    bool hasFailed;  ///< the file is no longer where its user believes it to be
    int owners;
    char buffer[32768];  ///< the C library's default buffer would split writes of this size
};

namespace {

unsigned int To32Bits(int64_t value)
{
    return unsigned(std::clamp(value, int64_t(0), int64_t(UINT32_MAX)));
}

const char* ModeString(int mode)
{
    constexpr int kAccess = 7;
    static constexpr const char* kBinary[] = {"rb", "rb", "wb", "r+b", "ab", "a+b"};
    static constexpr const char* kText[] = {"rb", "r", "w", "r+", "a", "a+"};
    const int access = mode & kAccess;
    const bool known = mode == (mode & (kAccess | ZmFile::TEXT)) && access <= ZmFile::APPENDREAD;
    return !known ? "rb" : (mode & ZmFile::TEXT) != 0 ? kText[access] : kBinary[access];
}

int Whence(ZmStream::SeekMode mode)
{
    return mode == ZmStream::END ? SEEK_END : mode == ZmStream::CURRENT ? SEEK_CUR : SEEK_SET;
}

// Turns the CR LF at the end of what fgets() returned into LF, like a C library that drops the CR. If the buffer ended
// between the two, the LF is read too. A shorter piece that ends with CR ends there because of a NUL or the end of the
// file.
void DropReturn(char* text, unsigned int size, FILE* stream)
{
    const size_t length = strlen(text);
    if (length >= 2 && text[length - 1] == '\n' && text[length - 2] == '\r') {
        text[length - 2] = '\n';
        text[length - 1] = 0;
    } else if (length >= 1 && length == size - 1 && text[length - 1] == '\r') {
        const int next = getc(stream);
        if (next == '\n') {
            text[length - 1] = '\n';
        } else {
            ungetc(next, stream);
        }
    }
}

// Drops the CR of each CR LF in text[length .. end) and returns the new length.
size_t DropReturns(char* text, size_t length, size_t end, FILE* stream)
{
    for (size_t i = length; i < end; ++i) {
        if (text[i] == '\r') {
            const int next = i + 1 < end ? text[i + 1] : ungetc(getc(stream), stream);
            if (next == '\n') {
                continue;
            }
        }
        text[length++] = text[i];
    }
    return length;
}

// Continues after signals of the program, which the C library reports as errors.
size_t ReadBytes(void* res, size_t size, FILE* stream)
{
    const bool hadFailed = ferror(stream) != 0;
    size_t length = 0;
    for (;;) {
        errno = 0;
        length += fread(static_cast<char*>(res) + length, 1, size - length, stream);
        if (length == size || hadFailed || ferror(stream) == 0 || errno != EINTR) {
            return length;
        }
        clearerr(stream);
    }
}

size_t ReadText(char* res, uint64_t size, FILE* stream)
{
    size_t length = 0;
    while (length < size) {
        const size_t read = fread(res + length, 1, size_t(size) - length, stream);
        if (read == 0) {
            break;
        }
        length = DropReturns(res, length, length + read, stream);
    }
    return length;
}

}  // namespace

ZmFile::ZmFile() = default;

ZmFile::ZmFile(const ZmFile& src) : ZmStream(src)
{
    Share(src);
}

ZmFile& ZmFile::operator=(const ZmFile& src)
{
    if (this != &src) {
        Forget();
        Share(src);
    }
    return *this;
}

ZmFile::~ZmFile()
{
    ZmFile::Close();
}

FILE* ZmFile::Stream() const
{
    return m_File != nullptr ? m_File->stream : nullptr;
}

void ZmFile::Share(const ZmFile& src)
{
    m_File = src.m_File;
    if (m_File != nullptr) {
        m_File->owners += 1;
    }
}

// The last owner closes the file.
void ZmFile::Forget()
{
    if (m_File != nullptr && --m_File->owners == 0) {
        if (m_File->stream != nullptr) {
            fclose(m_File->stream);
        }
        delete m_File;
    }
    m_File = nullptr;
}

// A file opened for both reading and writing seeks between the two, which only regular files allow.
int ZmFile::Open(const char* name, OpenMode mode)
{
    return OpenAs(name, mode, strchr(ModeString(mode), '+') != nullptr);
}

int zm::OpenRegularFile(ZmFile& file, const char* name, int mode)
{
    return file.OpenAs(name, ZmFile::OpenMode(mode), true);
}

int ZmFile::OpenAs(const char* name, OpenMode mode, bool regular)
{
    if (Stream() != nullptr) {
        Close();
    }
    Forget();
    const char* modeString = ModeString(mode);
    FILE* stream = zm::OpenFile(zm::OrEmpty(name), modeString, regular ? zm::FileKind::REGULAR : zm::FileKind::ANY);
    if (stream == nullptr) {
        return 0;
    }
    m_File = new (std::nothrow) OpenedFile;
    if (m_File == nullptr) {
        fclose(stream);
        return 0;
    }
    m_File->stream = stream;
    m_File->isText = strchr(modeString, 'b') == nullptr;
    m_File->direction = OpenedFile::NONE;
    m_File->hasFailed = false;
    m_File->owners = 1;
    setvbuf(stream, m_File->buffer, _IOFBF, sizeof(m_File->buffer));
    return ferror(stream) == 0;
}

int ZmFile::Close()
{
    int result = 1;
    if (FILE* stream = Stream()) {
        result = fclose(stream) == 0;
        m_File->stream = nullptr;
    }
    Forget();
    return result;
}

unsigned int ZmFile::Position()
{
    FILE* stream = Stream();
    return stream != nullptr ? To32Bits(zm::TellFile(stream)) : 0;
}

unsigned int ZmFile::Size()
{
    FILE* stream = Stream();
    if (stream == nullptr) {
        return 0;
    }
    // Seeking would empty the buffer. It is left to files with bytes to write, and it ends the state "end of file".
    const int64_t regular =
        m_File->direction != OpenedFile::WRITING && feof(stream) == 0 ? zm::RegularSize(stream) : -1;
    if (regular >= 0) {
        return To32Bits(regular);
    }
    errno = 0;
    const int64_t position = zm::TellFile(stream);
    const bool atEnd = zm::SeekFile(stream, 0, SEEK_END);
    const int64_t size = zm::TellFile(stream);
    const bool done = atEnd && size >= 0 && zm::SeekFile(stream, position, SEEK_SET);
    const bool hasSize = errno != ESPIPE;  // pipes have neither a size nor a position
    m_File->hasFailed = m_File->hasFailed || (hasSize && (position < 0 || !done));
    return done ? To32Bits(size) : 0;
}

int ZmFile::IsValid()
{
    FILE* stream = Stream();
    return stream != nullptr && ferror(stream) == 0 && !m_File->hasFailed;
}

int ZmFile::Seek(int offset, SeekMode mode)
{
    FILE* stream = Stream();
    return stream != nullptr && zm::SeekFile(stream, offset, Whence(mode));
}

bool ZmFile::SeekTo(unsigned int position)
{
    if (!IsOpen()) {
        return false;
    }
    const bool done = zm::SeekFile(m_File->stream, position, SEEK_SET);
    m_File->hasFailed = m_File->hasFailed || !done;
    return done;
}

unsigned int ZmFile::Read(void* buffer, unsigned int size)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::READING);
    if (stream == nullptr) {
        return 0;
    }
    const bool whole = m_File->DropsReturns() ? ReadText(static_cast<char*>(buffer), size, stream) == size
                                              : ReadBytes(buffer, size, stream) == size;
    return whole ? size : 0;
}

unsigned int ZmFile::Write(const void* buffer, unsigned int size)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::WRITING);
    return stream != nullptr && fwrite(buffer, size, 1, stream) == 1 ? size : 0;
}

bool ZmFile::WriteLine(const char* text, unsigned int length)
{
    FILE* stream = Stream();
    return stream != nullptr && zm::WriteDirectly(stream, text, length);
}

int ZmFile::GetString(char* buffer, unsigned int size)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::READING);
    if (stream == nullptr || size == 0) {
        return 0;
    }
    if (size == 1) {  // where C libraries differ
        *buffer = 0;
        return 1;
    }
    if (fgets(buffer, int(std::min(size, unsigned(INT32_MAX))), stream) == nullptr) {
        return 0;
    }
    if (m_File->isText) {
        DropReturn(buffer, size, stream);
    }
    return 1;
}

unsigned int ZmFile::Printf(const char* format, ...)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::WRITING);
    if (stream == nullptr) {
        return unsigned(EOF);
    }
    va_list arguments;
    va_start(arguments, format);
    const int count = vfprintf(stream, format, arguments);
    va_end(arguments);
    return unsigned(count);
}

unsigned int ZmFile::Flush()
{
    FILE* stream = Stream();
    if (stream == nullptr) {
        return unsigned(EOF);
    }
    // After a read, fflush() is undefined: on Windows it drops what was read ahead, and so moves the file.
    return m_File->direction == OpenedFile::READING ? 0 : unsigned(fflush(stream));
}

int ZmFile::EndOfFile()
{
    FILE* stream = Stream();
    return stream == nullptr || feof(stream) != 0;
}

unsigned int ZmFile::Scanf(const char* format, ...)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::READING);
    if (stream == nullptr) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    const int count = vfscanf(stream, format, arguments);
    va_end(arguments);
    return unsigned(count);
}

unsigned int ZmFile::ReadItems(void* buffer, unsigned int size, unsigned int count)
{
    FILE* stream = OpenedFile::Turn(m_File, OpenedFile::READING);
    if (stream == nullptr || size == 0) {
        return 0;
    }
    return unsigned(m_File->DropsReturns() ? ReadText(static_cast<char*>(buffer), uint64_t(size) * count, stream) / size
                                           : fread(buffer, size, count, stream));
}

unsigned int ZmFile::GetFileMode(const char* name)
{
    return name != nullptr && *name != 0 ? zm::FileMode(name) : 0;
}
