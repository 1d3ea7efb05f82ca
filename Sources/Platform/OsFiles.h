#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string>

namespace zm {

// Files and folders. Paths may use the separators of either platform and are never null. Functions that return a bool
// return whether they succeeded.

/// What OpenFile() accepts.
enum class FileKind {
    ANY,     ///< also devices and pipes; opening a pipe waits for its other end
    REGULAR  ///< regular files only; never waits
};

/// Like fopen(), with one of its modes: text, or bytes if the mode ends with 'b'. Returns null on failure, for a
/// folder, and for a file of another kind. Child processes do not inherit the file.
///
/// A file opened for text reads the bytes unchanged, and writes LF as the line end of the platform. If it both reads
/// and writes, see TurnText().
[[nodiscard]] FILE* OpenFile(const char* path, const char* mode, FileKind kind = FileKind::ANY);

/// Announces whether a file that is open for reading and writing text will be written or read next; initially it is
/// read. Its buffer must be empty.
void TurnText(FILE* file, bool toWriting);

/// Whether reads of a number of characters in text modes turn CR LF into LF.
extern const bool kTextReadsDropReturns;

/// Like ftell() and fseek(), also for large files. TellFile() returns -1 if the position is unknown.
[[nodiscard]] int64_t TellFile(FILE* file);
[[nodiscard]] bool SeekFile(FILE* file, int64_t offset, int whence);

/// The size of a regular file without what its buffer still holds; -1 for anything else.
[[nodiscard]] int64_t RegularSize(FILE* file);

/// Writes to the system without using the stream's buffer, which must be empty. Returns false if not all was written.
/// The C library does not know of it: do not ask the stream for its position afterwards.
[[nodiscard]] bool WriteDirectly(FILE* file, const char* text, size_t length);

/// The mode word of stat(); 0 if the path does not exist.
[[nodiscard]] unsigned FileMode(const char* path);

/// Whether the system reports that the path does not exist. Also false if it cannot tell.
[[nodiscard]] bool IsMissing(const char* path);

/// The kind of file that a mode word describes. The types have the same bits on every platform.
constexpr bool IsFolder(unsigned mode)
{
    return (mode & 0170000) == 0040000;
}
constexpr bool IsRegularFile(unsigned mode)
{
    return (mode & 0170000) == 0100000;
}

/// Renames. Fails if the new name exists and the platform's rename() does not replace it.
[[nodiscard]] bool RenamePath(const char* from, const char* to);
[[nodiscard]] bool DeleteFilePath(const char* path);
[[nodiscard]] bool MakeDirectory(const char* path);
/// The folder must be empty.
[[nodiscard]] bool RemoveDirectory(const char* path);
/// Deletes a folder with its contents, or a file. The targets of links stay. Returns false if anything remains. May
/// throw std::bad_alloc.
[[nodiscard]] bool DeleteTree(const char* path);

/// The number of bytes that the caller may still write in that folder. Returns false if it is unknown.
[[nodiscard]] bool FreeSpace(const char* path, uint64_t& bytes);

/// The folder for temporary files, ending with a separator. Empty if it is unknown.
[[nodiscard]] std::string TemporaryPath();

/// Whether the names "a" and "A" denote the same file.
extern const bool kFileNamesIgnoreCase;

/// Iterates over the entries of a folder in the system's order, without "." and "..". May throw std::bad_alloc.
class DirectorySearch {
public:
    DirectorySearch() = default;
    ~DirectorySearch() { Close(); }
    DirectorySearch(const DirectorySearch&) = delete;
    DirectorySearch& operator=(const DirectorySearch&) = delete;

    /// Starts with that folder. An unreadable folder has no entries.
    void Open(const char* directory);
    /// Moves to the next entry; returns false at the end.
    bool Next();
    void Close();

    const std::string& Name() const { return m_Name; }
    bool IsDirectory() const { return m_IsDirectory; }  ///< also true for links to folders
    bool IsLink() const { return m_IsLink; }

private:
    void* m_Search = nullptr;
    std::string m_Name;
    bool m_IsDirectory = false;
    bool m_IsLink = false;
};

/// A file mapped into memory for reading.
struct MappedFile {
    enum Result {
        MAPPED,
        NOT_OPENED,
        NOT_MAPPABLE,
        NOT_VIEWED
    };

    void* file = nullptr;  ///< handles of the system; null if there is none
    void* mapping = nullptr;
    void* base = nullptr;
    uint64_t size = 0;
};

/// Fills a new record. On failure nothing stays open.
[[nodiscard]] MappedFile::Result MapFile(const char* path, MappedFile& res);
void UnmapFile(MappedFile& file);

}  // namespace zm
