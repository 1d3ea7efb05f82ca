#pragma once

#include "XArray.h"
#include "XFixedSizeAllocator.h"
#include "XHashTable.h"
#include "ZmCachedFile.h"
#include "ZmSubFile.h"

/// An archive: many named files, the entries, in one file. Entries are found by name and read in place; appending,
/// removing and reordering change the list in memory, and Save() writes a new archive. Documentation/ArchiveFormat.md
/// describes the file.
///
/// Names are kept in lower case. Find() looks a name up **without its directory**; everything else takes whole names.
///
/// An archive has at most 2 GiB - 1 bytes. Damaged ones open as far as they make sense: entries up to the damage of the
/// index are there, with a warning in the log, and the sub-file of one whose bytes are not all in the file is not
/// valid.
///
/// One thread uses an archive, and the sub-files of it, at a time. Functions return 1, or 0 if it was not done; names
/// and paths may be null, which reads as empty.
class ZmBigFile {
public:
    /// Hears how far Save() is. It must not change the archive.
    class ProgressionCallback {
    public:
        /// Called when the share of the entries that are written, in percent, has changed.
        virtual void Progress(int percent) = 0;

    protected:
        ~ProgressionCallback() = default;
    };

    ZM_API ZmBigFile();
    ZM_API ~ZmBigFile();
    ZmBigFile(const ZmBigFile&) = delete;
    ZmBigFile& operator=(const ZmBigFile&) = delete;

    /// Forgets everything, and opens an archive. Where there is no file, an empty one is made. 0 if that fails or if
    /// the file is no archive, or no file of the disk; the object is closed then.
    ///
    /// **Without `keepOrder` the entries are found but not saved**: the order, which Save() and SaveIndex() follow,
    /// stays empty. For archives that are only read.
    ZM_API int Open(const char* name, int keepOrder);

    /// As Open(), but makes no file: 0 where there is none, as after a slip of the keyboard. For what only reads.
    ZM_API int OpenExisting(const char* name, int keepOrder = 1);

    /// Looks up the name and extension of a path; its drive and directory do not count. So an entry whose own name has
    /// a directory is not found: see GetEntryFile().
    ///
    /// `sub`, unless null, becomes the entry's bytes in the archive's file, which it uses until that is closed. For
    /// entries that are not in the file yet it is of no use.
    ZM_API int Find(const char* name, ZmSubFile* sub);

    /// Adds a file of the disk: at once, or with `deferLoad` when the archive is saved. An entry of that name is
    /// refilled in its place with `replace`; without, nothing is done.
    ///
    /// **A file that cannot be read leaves an empty entry**, and the result is 0; what is no file of the disk, such as
    /// a pipe, counts as one. Files of 2 GiB and more are refused.
    ZM_API int Append(const char* name, const char* path, int deferLoad, int replace);

    /// Adds a copy of bytes. 0 if there is an entry of that name.
    ZM_API int Append(const char* name, const void* data, unsigned int size);

    /// Forgets the entry of that name; 0 if there is none.
    ZM_API int Remove(const char* name);

    /// Brings the entries that a text file lists, one name a line, to the front, in its order. The others follow in
    /// theirs. What is no entry is warned of.
    ///
    /// **Each line loses its last character**, which should be the line feed: end the last line with one, too.
    ZM_API int LoadIndex(const char* listPath);

    /// Writes such a list, or with `verbose` one of lines "Offset %10d : %s (%d)".
    ZM_API void SaveIndex(const char* listPath, int verbose);

    /// Writes an archive of the entries in their order. 0 changes nothing: neither the file nor this object. It is
    /// returned without a path where none is known, if the archive would be too large, if an entry's bytes are not in
    /// the file, if not all can be written, and where the system does not replace a file that somebody has open.
    ///
    /// The archive takes the place of what was there in one step, when it is whole and on the disk; until then it is
    /// written beside it, under a name that ends in ".tmp" and that nobody else has, so that any number of processes may
    /// save at once. Where the path is a link, the file that it leads to is replaced and the link stays. Permissions
    /// stay, and the owner as far as the system allows; other names of the file (hard links) keep the old archive. A
    /// file that may not be written is not replaced. What a killed process has left is removed when the same archive is
    /// saved again. Of a file that a deferred entry names and that is gone, or
    /// of another size, zeros are written and the log gets a warning.
    ///
    /// With a path the object stays as it is. **Without, the archive replaces the one that is open, and the object is
    /// closed**: open it again.
    ///
    /// `progress`, unless null, hears each percentage once; the last is 100. Where the order has not as many entries as
    /// there are names, the standard output gets "diff : %d <=> %d" with the two numbers.
    ZM_API int Save(const char* path, ProgressionCallback* progress);

    /// What is inside, by position: the order in which Save() writes, or, if that was not kept, the order of the table
    /// of names. Positions outside 0 to GetEntryCount() - 1 give null, 0 and 0.
    /// @{
    ZM_API int GetEntryCount() const;
    ZM_API const char* GetEntryName(int position) const;  ///< valid until Open()
    ZM_API unsigned int GetEntrySize(int position) const;
    /// As Find(), with 0 also for an entry that is not in the file yet.
    ZM_API int GetEntryFile(int position, ZmSubFile* sub);
    /// As Remove(). The way to one of several entries of the same name, of which names find the last.
    ZM_API int RemoveEntry(int position);
    /// @}

private:
    struct Entry;
    /// With a secret of the process in it: names with the same XHashFun are easily made, and an archive of some
    /// megabytes full of them would take minutes to open.
    struct NameHash {
        static uint64_t Tagged(const XBaseString& name);
    };
    /// The keys are the entries' own texts.
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
    bool WriteFile(const char* path, bool regular, unsigned int indexSize, ProgressionCallback* progress);
    bool WriteArchive(ZmFile& output, unsigned int indexSize, ProgressionCallback* progress);
    bool WriteIndex(ZmFile& output, unsigned int indexSize) const;
    bool WriteBytes(ZmFile& output, const Entry& entry);
    bool WriteStored(ZmFile& output, const Entry& entry);

    XFixedSizeAllocator m_Pool;
    XArray<Entry*> m_Order;
    NameTable m_Names;
    XString m_FileName;
    ZmCachedFile m_File;
    XString m_Prefix;           ///< of the names that are looked for; nothing sets it yet
    Entry* m_Newest = nullptr;  ///< of all entries in the pool, removed ones included
    bool m_KeepsOrder = true;
};
