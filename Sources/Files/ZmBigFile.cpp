#include "ZmBigFile.h"

#include "Files/BigFileEntry.h"
#include "Files/FileNameKey.h"
#include "Files/RegularFile.h"
#include "Logging/LibraryLog.h"
#include "Platform/OrEmpty.h"
#include "Platform/OsFiles.h"

#include <algorithm>
#include <new>
#include <string.h>

namespace {

constexpr int kPoolPage = 65536;

// A record of zeros has neither a name nor bytes. One says as much as several in a row, and an index full of them, as a
// crash of the system can leave it, would take fifteen times its size in memory.
constexpr int kVoidRecord = 5;

unsigned int LoadWord(const char* bytes)
{
    const auto* b = reinterpret_cast<const unsigned char*>(bytes);
    return b[0] | unsigned(b[1]) << 8 | unsigned(b[2]) << 16 | unsigned(b[3]) << 24;
}

/// Appends the name in lower case; null counts as "". Returns false if the result would be too long for a string, or if
/// memory runs out.
bool AppendLowerCase(XString& res, const char* name)
{
    const char* text = zm::OrEmpty(name);
    const size_t length = strlen(text) + res.Length();
    res << text;
    res.ToLower();
    return size_t(res.Length()) == length;
}

}  // namespace

ZmBigFile::ZmBigFile() : m_Pool(sizeof(Entry), kPoolPage) {}

ZmBigFile::~ZmBigFile()
{
    Discard();
}

void ZmBigFile::Discard()
{
    for (Entry* entry = m_Newest; entry != nullptr;) {
        Entry* older = entry->older;
        entry->Empty();
        entry->~Entry();
        entry = older;
    }
    m_Newest = nullptr;
    m_Order.Clear();
    m_Names.Clear();
    m_Pool.Clear();
    m_File.Close();
    m_FileName = nullptr;
    m_Prefix = nullptr;
    m_KeepsOrder = true;
}

int ZmBigFile::Open(const char* name, int keepOrder)
{
    if (OpenToRead(name, keepOrder)) {
        return DiscardUnless(ReadArchive());
    }
    // A file of which the system cannot tell is not empty. APPEND creates a missing one but does not truncate one that
    // another process has just created.
    const char* path = m_FileName.Text();
    return DiscardUnless(zm::IsMissing(path) && m_File.Open(path, ZmFile::APPEND) != 0);
}

int ZmBigFile::OpenExisting(const char* name, int keepOrder)
{
    return DiscardUnless(OpenToRead(name, keepOrder) && ReadArchive());
}

bool ZmBigFile::OpenToRead(const char* name, int keepOrder)
{
    const XString path(name);  // a copy: `name` may be this object's own, which Discard() clears
    Discard();
    m_FileName = path;
    m_KeepsOrder = keepOrder != 0;
    return m_File.Open(path.Text(), ZmFile::READONLY) != 0;
}

int ZmBigFile::DiscardUnless(bool done)
{
    if (!done) {
        Discard();
    }
    return done;
}

bool ZmBigFile::ReadArchive()
{
    const unsigned int fileSize = m_File.Size();
    if (fileSize == 0) {
        return true;
    }
    char header[zm::kArchiveHeader] = {};
    m_File.Read(header, std::min(fileSize, zm::kArchiveHeader));
    if (memcmp(header, zm::kArchiveMagic, sizeof(zm::kArchiveMagic)) != 0) {
        return false;
    }
    if (fileSize > zm::kLargestArchive) {
        zm::Warn(__LINE__, "ZmBigFile", "Big File %s is too large", m_FileName.Text());
        return false;
    }
    if (fileSize < zm::kArchiveHeader) {
        zm::Warn(__LINE__, "ZmBigFile", "Big File %s ends in its header", m_FileName.Text());
        return true;
    }
    return ReadIndex(LoadWord(header + sizeof(zm::kArchiveMagic)), fileSize);
}

bool ZmBigFile::ReadIndex(unsigned int indexSize, unsigned int fileSize)
{
    const unsigned int available = std::min(indexSize, fileSize - zm::kArchiveHeader);
    char* index = static_cast<char*>(zm::NewBlock(available));
    if (index == nullptr) {
        return false;
    }
    m_File.Seek(zm::kArchiveHeader, ZmStream::START);
    m_File.Read(index, available);
    bool done = m_File.IsValid() != 0;
    uint64_t offset = uint64_t(zm::kArchiveHeader) + indexSize;
    bool followsVoid = false;
    const char *record = index, *const end = index + available;
    while (done && record != end) {
        const auto* nul = static_cast<const char*>(memchr(record, 0, size_t(end - record)));
        if (nul == nullptr || end - nul <= 4 || nul - record > XString::kMaxLength) {
            break;
        }
        const unsigned int size = LoadWord(nul + 1);
        const bool isVoid = nul == record && size == 0;
        if (isVoid && followsVoid) {
            record += kVoidRecord;
            continue;
        }
        followsVoid = isVoid;
        Entry* entry = NewEntry(record, int(nul - record));
        const bool listed = entry != nullptr && (!m_KeepsOrder || m_Order.PushBack(entry));
        const NameTable::Inserted inserted =
            listed ? m_Names.Insert(XBaseString(entry->name), entry) : NameTable::Inserted{m_Names.End(), false};
        if (inserted.position == m_Names.End()) {
            done = false;  // out of memory
            break;
        }
        entry->offset = unsigned(std::min(offset, uint64_t(UINT32_MAX)));  // beyond any file: nothing can be read
        entry->size = int(size);
        inserted.position->value = entry;  // the later of two entries with one name wins
        offset += size;
        record = nul + 5;
    }
    if (done && (record != end || available != indexSize)) {
        zm::Warn(__LINE__, "ZmBigFile", "The index of Big File %s is damaged after %lld bytes", m_FileName.Text(),
                 static_cast<long long>(record - index));
    }
    zm::DeleteBlock(index);
    return done;
}

ZmBigFile::Entry* ZmBigFile::NewEntry(const char* name, int length)
{
    void* block = m_Pool.Allocate();
    if (block == nullptr) {
        return nullptr;
    }
    m_Newest = new (block) Entry{XString(name, length), nullptr, m_Newest, 0, 0, false};
    return m_Newest->name.Length() == length ? m_Newest : nullptr;
}

ZmBigFile::Entry* ZmBigFile::AddEntry(const XString& key)
{
    Entry* entry = NewEntry(key.Text(), key.Length());
    if (entry == nullptr || !m_Order.PushBack(entry)) {
        return nullptr;
    }
    if (!m_Names.InsertUnique(XBaseString(entry->name), entry)) {
        m_Order.PopBack();
        return nullptr;
    }
    return entry;
}

bool ZmBigFile::KeyOf(const char* name, XString& res) const
{
    res = m_Prefix;
    return AppendLowerCase(res, name);
}

int ZmBigFile::Find(const char* name, ZmSubFile* sub)
{
    XString prefixed;
    if (!m_Prefix.IsEmpty()) {
        prefixed = m_Prefix;
        prefixed << name;
        name = prefixed.Text();
    }
    const zm::FileNameKey key(zm::OrEmpty(name));
    Entry* const* entry = m_Names.LookUp(key);
    if (entry == nullptr) {
        return 0;
    }
    if (sub != nullptr) {
        sub->Set(&m_File, (*entry)->offset, unsigned((*entry)->size));
    }
    return 1;
}

int ZmBigFile::Append(const char* name, const char* path, int deferLoad, int replace)
{
    XString key;
    if (!AppendLowerCase(key, name)) {
        return 0;
    }
    Entry** found = m_Names.LookUp(key);
    if (found != nullptr && replace == 0) {
        return 0;
    }
    ZmFile file;
    bool opened = zm::OpenRegularFile(file, path, ZmFile::READONLY) != 0;
    const unsigned int size = file.Size();
    opened = opened && file.IsValid();
    if (size > zm::kLargestArchive) {
        zm::Warn(__LINE__, "ZmBigFile", "File %s is too large for a big file", path);
        return 0;
    }
    Entry* entry = found != nullptr ? *found : AddEntry(key);
    if (entry == nullptr) {
        return 0;
    }
    entry->Empty();
    if (opened && deferLoad != 0) {
        const unsigned int length = unsigned(strlen(path)) + 1;
        if (char* source = entry->MakeSource(length)) {
            memcpy(source, path, length);
            entry->size = -int(size);
        }
    } else if (opened) {
        char* source = entry->MakeSource(size);
        if (source != nullptr && file.Read(source, size) == size) {
            entry->size = int(size);
        } else {
            entry->Empty();
        }
    }
    return entry->source != nullptr;
}

int ZmBigFile::Append(const char* name, const void* data, unsigned int size)
{
    XString key;
    if (size > zm::kLargestArchive || (data == nullptr && size != 0) || !AppendLowerCase(key, name) ||
        m_Names.LookUp(key) != nullptr) {
        return 0;
    }
    char* source = static_cast<char*>(zm::NewBlock(size));
    Entry* entry = source != nullptr ? AddEntry(key) : nullptr;
    if (entry == nullptr) {
        zm::DeleteBlock(source);
        return 0;
    }
    if (size != 0) {
        memcpy(source, data, size);
    }
    entry->source = source;
    entry->size = int(size);
    return 1;
}

int ZmBigFile::Remove(const char* name)
{
    XString key;
    const Entry* entry = KeyOf(name, key) ? m_Names.Remove(key) : nullptr;
    if (entry == nullptr) {
        return 0;
    }
    RemoveFromOrder(entry);
    return 1;
}

int ZmBigFile::RemoveEntry(int position)
{
    const Entry* entry = EntryAt(position);
    if (entry == nullptr) {
        return 0;
    }
    Entry* const* named = m_Names.LookUp(entry->name);
    if (named != nullptr && *named == entry) {
        m_Names.Remove(entry->name);
    }
    RemoveFromOrder(entry);
    return 1;
}

void ZmBigFile::RemoveFromOrder(const Entry* entry)
{
    Entry* const* place = std::find(m_Order.Begin(), m_Order.End(), entry);
    if (place != m_Order.End()) {
        m_Order.RemoveAt(int(place - m_Order.Begin()));
    }
}

int ZmBigFile::LoadIndex(const char* listPath)
{
    ZmFile list;
    XArray<Entry*> order;
    if (listPath == nullptr || !list.Open(listPath, ZmFile::OpenMode(ZmFile::READONLY | ZmFile::TEXT)) ||
        !order.Reserve(std::max(m_Names.Size(), m_Order.Size()))) {
        return 0;
    }
    char line[512];
    bool done = true;
    while (done && list.GetString(line, sizeof(line))) {
        // The last character is always cut, even where it is not a line feed (in pieces of a long line, or in a last
        // line without one). Existing lists depend on this (ZmBigFileTest, IndexListsReorderAndLoseALastCharacter).
        XString name(line);
        done = size_t(name.Length()) == strlen(line);
        name.ToLower();
        name.Crop(0, uint16_t(std::max(name.Length() - 1, 0)));
        Entry** found = m_Names.LookUp(name);
        if (found == nullptr) {
            zm::Warn(zm::kLineOfUnknownEntry, "ZmBigFile", "Entry %s not found in Big File %s", name.Text(),
                     m_FileName.Text());
        } else if (!(*found)->isListed) {
            (*found)->isListed = true;
            order.PushBack(*found);
        }
    }
    const int listed = order.Size();
    std::for_each(m_Order.Begin(), m_Order.End(), [&](Entry* entry) {
        if (!entry->isListed) {
            order.PushBack(entry);
        }
    });
    std::for_each(order.Begin(), order.Begin() + listed, [](Entry* entry) { entry->isListed = false; });
    if (!done || !list.IsValid()) {
        return 0;
    }
    m_Order.Swap(order);
    return 1;
}

void ZmBigFile::SaveIndex(const char* listPath, int verbose)
{
    ZmFile list;
    if (!list.Open(listPath, ZmFile::OpenMode(ZmFile::WRITEONLY | ZmFile::TEXT))) {
        return;
    }
    for (const Entry* const* place = m_Order.Begin(); place != m_Order.End(); ++place) {
        const Entry& entry = **place;
        if (verbose != 0) {
            list.Printf("Offset %10d : %s (%d)\n", int(entry.offset), entry.name.Text(), entry.size);
        } else {
            list.Printf("%s\n", entry.name.Text());
        }
    }
}

ZmBigFile::Entry* ZmBigFile::EntryAt(int position) const
{
    if (position < 0 || position >= GetEntryCount()) {
        return nullptr;
    }
    return m_KeepsOrder ? m_Order[position] : m_Names.ItemAt(position).value;
}

int ZmBigFile::GetEntryCount() const
{
    return m_KeepsOrder ? m_Order.Size() : m_Names.Size();
}

const char* ZmBigFile::GetEntryName(int position) const
{
    const Entry* entry = EntryAt(position);
    return entry != nullptr ? entry->name.Text() : nullptr;
}

unsigned int ZmBigFile::GetEntrySize(int position) const
{
    const Entry* entry = EntryAt(position);
    return entry != nullptr ? entry->ByteCount() : 0;
}

int ZmBigFile::GetEntryFile(int position, ZmSubFile* sub)
{
    const Entry* entry = EntryAt(position);
    if (entry == nullptr || entry->source != nullptr) {
        return 0;
    }
    if (sub != nullptr) {
        sub->Set(&m_File, entry->offset, entry->ByteCount());
    }
    return 1;
}
