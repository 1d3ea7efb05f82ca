#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string>

namespace zm {

// Files and folders by paths of either platform: both separators are understood. Paths are never null. Functions that
// give a bool tell whether it was done.

/// What OpenFile() takes.
enum class FileKind {
    ANY,     ///< devices and pipes, too: opening a pipe waits for its other end
    REGULAR  ///< nothing else, and it waits for nothing
};

/// fopen() with one of its modes for text or, with a 'b' at the end, for bytes. Null if it fails, for a folder, and for
/// what is not of that kind. Programs that are started do not inherit the file.
///
/// A file opened for text reads bytes as they stand, and writes LF as the platform ends lines. Where it both reads and
/// writes, see TurnText().
[[nodiscard]] FILE* OpenFile(const char* path, const char* mode, FileKind kind = FileKind::ANY);

/// For a file that is opened for text, to read and to write, at first to read: what is to come. Its buffer must be
/// empty.
void TurnText(FILE* file, bool toWriting);

/// Whether reading text by the number of its characters takes CR LF as LF.
extern const bool kTextReadsDropReturns;

/// As ftell() and fseek(), for large files too; -1 if the position is unknown.
[[nodiscard]] int64_t TellFile(FILE* file);
[[nodiscard]] bool SeekFile(FILE* file, int64_t offset, int whence);

/// Writes past the buffer of a stream, which must be empty; what is written is on the disk then. False if that
/// succeeded in part or not at all. The C library does not notice: it must not be asked for positions afterwards.
[[nodiscard]] bool WriteDirectly(FILE* file, const char* text, size_t length);

/// The mode word of stat(); 0 if there is nothing of that name.
[[nodiscard]] unsigned FileMode(const char* path);

/// Whether the system says that there is nothing of that name. Also false if it cannot tell.
[[nodiscard]] bool IsMissing(const char* path);

/// What a mode word belongs to. The types have the same bits on every platform.
constexpr bool IsFolder(unsigned mode)
{
    return (mode & 0170000) == 0040000;
}
constexpr bool IsRegularFile(unsigned mode)
{
    return (mode & 0170000) == 0100000;
}

/// Renames. Fails where the new name exists and the platform's rename() does not replace it.
[[nodiscard]] bool RenamePath(const char* from, const char* to);
[[nodiscard]] bool DeleteFilePath(const char* path);
[[nodiscard]] bool MakeDirectory(const char* path);
/// An empty one only.
[[nodiscard]] bool RemoveDirectory(const char* path);
/// A folder with all that is in it; what a link points to stays. Also a single file. False if anything remains.
[[nodiscard]] bool DeleteTree(const char* path);

/// Bytes that the caller may still write in that folder; false if the system does not tell.
[[nodiscard]] bool FreeSpace(const char* path, uint64_t& bytes);

/// Where temporary files go, ending with a separator. Empty if the system does not tell.
[[nodiscard]] std::string TemporaryPath();

/// Whether the names "a" and "A" are one file.
extern const bool kFileNamesIgnoreCase;

/// A walk over the entries of one folder, in the system's order and without "." and "..".
class DirectorySearch {
public:
    DirectorySearch() = default;
    ~DirectorySearch() { Close(); }
    DirectorySearch(const DirectorySearch&) = delete;
    DirectorySearch& operator=(const DirectorySearch&) = delete;

    /// Begins with that folder. One that cannot be read has no entries.
    void Open(const char* directory);
    /// Goes to the next entry; false at the end.
    bool Next();
    void Close();

    const std::string& Name() const { return m_Name; }
    bool IsDirectory() const { return m_IsDirectory; }  ///< links to folders, too
    bool IsLink() const { return m_IsLink; }

private:
    void* m_Search = nullptr;
    std::string m_Name;
    bool m_IsDirectory = false;
    bool m_IsLink = false;
};

/// A file's bytes in memory, to be read.
struct MappedFile {
    enum Result {
        MAPPED,
        NOT_OPENED,
        NOT_MAPPABLE,
        NOT_VIEWED
    };

    void* file = nullptr;  ///< the system's handles, null for none
    void* mapping = nullptr;
    void* base = nullptr;
    uint64_t size = 0;
};

/// Fills a fresh record; on failure nothing is left open.
[[nodiscard]] MappedFile::Result MapFile(const char* path, MappedFile& res);
void UnmapFile(MappedFile& file);

}  // namespace zm
