#pragma once

#include "XArray.h"
#include "XFixedSizeAllocator.h"
#include "XHashTable.h"
#include "ZmCachedFile.h"
#include "ZmSubFile.h"

/// An archive: one file that contains many named files, the entries. Entries are found by name and read in place.
/// Appending, removing and reordering change the list in memory; Save() writes a new archive. The file format is
/// described in Documentation/ArchiveFormat.md.
///
/// Names are stored in lower case. Find() looks up a name **without its directory**; all other functions take whole
/// names.
///
/// An archive has at most 2 GiB - 1 bytes. A damaged archive opens as far as possible: entries before the damaged part
/// of the index are available, with a warning in the log, and the sub-file of an entry whose bytes are not all in the
/// file is not valid.
///
/// Not thread-safe: only one thread at a time may use an archive and its sub-files. Functions return 1 on success, 0
/// on failure. Null names and paths are treated as empty.
class ZmBigFile {
public:
    /// Receives the progress of Save(). It must not change the archive.
    class ProgressionCallback {
    public:
        /// Called when the percentage of entries written has changed.
        virtual void Progress(int percent) = 0;

    protected:
        ~ProgressionCallback() = default;
    };

    ZM_API ZmBigFile();
    ZM_API ~ZmBigFile();
    ZmBigFile(const ZmBigFile&) = delete;
    ZmBigFile& operator=(const ZmBigFile&) = delete;

    /// Discards the current contents and opens an archive. Creates an empty file if there is none. Returns 0, with the
    /// object closed, if that fails or if the file is not an archive or not a regular file.
    ///
    /// **Without `keepOrder` the entries can be found but not saved**: the order that Save() and SaveIndex() follow
    /// stays empty. For archives that are only read.
    ZM_API int Open(const char* name, int keepOrder);

    /// As Open(), but never creates a file: returns 0 if there is none. Use it for reading, where a mistyped name
    /// should fail.
    ZM_API int OpenExisting(const char* name, int keepOrder = 1);

    /// Looks up an entry by the name and extension of a path, ignoring its drive and directory. An entry whose own name
    /// has a directory is therefore never found: see GetEntryFile().
    ///
    /// `sub`, unless null, is set to the entry's bytes in the archive's file. It depends on that file and must not be
    /// used after the file is closed. It is of no use for entries that are not in the file yet.
    ZM_API int Find(const char* name, ZmSubFile* sub);

    /// Adds a file from disk: now, or with `deferLoad` when the archive is saved. If an entry of that name exists,
    /// `replace` refills it in its place; without `replace` nothing is done.
    ///
    /// **A file that cannot be read leaves an empty entry**, and the result is 0. Anything but a regular file, such as
    /// a pipe, counts as unreadable. Files of 2 GiB and more are refused.
    ZM_API int Append(const char* name, const char* path, int deferLoad, int replace);

    /// Adds a copy of the bytes. Returns 0 if an entry of that name exists.
    ZM_API int Append(const char* name, const void* data, unsigned int size);

    /// Removes the entry of that name. Returns 0 if there is none.
    ZM_API int Remove(const char* name);

    /// Moves the entries listed in a text file, one name per line, to the front in the order of the file. The others
    /// follow in their previous order. Names that are not entries are logged as warnings.
    ///
    /// **Each line loses its last character**, which should be the line feed: end the last line with one as well.
    ZM_API int LoadIndex(const char* listPath);

    /// Writes such a list, or with `verbose` a list of lines "Offset %10d : %s (%d)".
    ZM_API void SaveIndex(const char* listPath, int verbose);

    /// Writes an archive of the entries in their order. Returns 0, with the file and this object unchanged, if no path
    /// is given and none is known, if the archive would be too large, if an entry's bytes are not in the file, if not
    /// all data can be read and written, or if the file cannot be replaced, such as one that another program on Windows
    /// has opened without sharing it.
    ///
    /// The archive is written to a file beside the old one and replaces it in one step once it is complete and on the
    /// disk. The new file has a unique name that ends in ".tmp", so several processes can save at the same time. If the
    /// path is a link, the file it leads to is replaced and the link stays. Permissions are kept, and the owner as far
    /// as the system allows; other names of the file (hard links) keep the old archive. A file that may not be written
    /// is not replaced. Files left behind by a killed process are removed when the same archive is saved again. If the
    /// file of a deferred entry is missing or has changed its size, zeros are written instead and a warning is logged.
    ///
    /// With a path the object stays unchanged, also if it is the path of the open archive, whose old contents the
    /// object then goes on reading. **Without a path the new archive replaces the open one, and the object is closed**:
    /// open it again.
    ///
    /// `progress`, unless null, is called once for each percentage; the last one is 100. If the order and the name
    /// table differ in size, "diff : %d <=> %d" with the two sizes is written to the standard output.
    ZM_API int Save(const char* path, ProgressionCallback* progress);

    /// Access to the entries by position: in the order that Save() writes or, if that was not kept, in the order of the
    /// name table. Positions outside 0 to GetEntryCount() - 1 give null or 0.
    /// @{
    ZM_API int GetEntryCount() const;
    ZM_API const char* GetEntryName(int position) const;  ///< valid until Open()
    ZM_API unsigned int GetEntrySize(int position) const;
    /// As Find(), but also returns 0 for an entry that is not in the file yet.
    ZM_API int GetEntryFile(int position, ZmSubFile* sub);
    /// As Remove(). Reaches each of several entries with the same name; by name only the last is found.
    ZM_API int RemoveEntry(int position);
    /// @}

private:
    struct Entry;
    /// Names with equal XHashFun values are easy to construct, and an archive with some megabytes of them would take
    /// minutes to open.
    struct NameHash {
        static uint64_t Tagged(const XBaseString& name) { return zm::SeededHash(name.Text(), name.Length()); }
    };
    /// The keys are the entries' own names.
    typedef XHashTable<Entry*, XBaseString, NameHash, XEqual<XString>> NameTable;

    void Discard();
    int DiscardUnless(bool done);
    bool OpenToRead(const char* name, int keepOrder);
    bool ReadArchive();
    bool ReadIndex(unsigned int indexSize, unsigned int fileSize);
    Entry* NewEntry(const char* name, int length);
    Entry* AddEntry(const XString& key);
    Entry* EntryAt(int position) const;
    bool KeyOf(const char* name, XString& res) const;
    void RemoveFromOrder(const Entry* entry);

    bool CanBeSaved(unsigned int& indexSize);
    bool WriteFile(const char* path, unsigned int indexSize, ProgressionCallback* progress);
    bool WriteArchive(ZmFile& output, unsigned int indexSize, ProgressionCallback* progress);
    bool WriteIndex(ZmFile& output, unsigned int indexSize) const;
    bool WriteBytes(ZmFile& output, const Entry& entry);
    bool WriteStored(ZmFile& output, const Entry& entry);

    XFixedSizeAllocator m_Pool;
    XArray<Entry*> m_Order;
    NameTable m_Names;
    XString m_FileName;
    ZmCachedFile m_File;
    XString m_Prefix;           ///< prefix for looked-up names; always empty at present
    Entry* m_Newest = nullptr;  ///< newest of all entries in the pool, including removed ones
    bool m_KeepsOrder = true;
};
