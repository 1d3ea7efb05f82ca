#pragma once

#include "XHashTable.h"
#include "ZmConfigurationEntry.h"

namespace zm {
class ConfigurationReader;
}

/// A named node of a configuration: entries and sections below it, each kind with names of its own. Names are compared
/// byte by byte. A null name reads as the empty one, and so does a name of more than 65534 characters; the empty name
/// is a name as any other.
///
/// A section owns what is in it. Children are visited in the order in which they were added, except that a removal puts
/// the last child into the place of the removed one. No operation recurses, however deep the tree.
///
/// One thread at a time may change a tree; many may read it. Memory: what finds none adds nothing.
class ZmConfigurationSection {
public:
    /// Children by name, in the order in which they are visited.
    typedef XHashTable<ZmConfigurationEntry*, XString, XHashFun<XString>, XEqual<XString>> EntryTable;
    typedef XHashTable<ZmConfigurationSection*, XString, XHashFun<XString>, XEqual<XString>> SectionTable;

    /// A section of one's own; the parent does not learn of it and may be null.
    ZM_API ZmConfigurationSection(const char* name, ZmConfigurationSection* parent);
    ZM_API ~ZmConfigurationSection();
    ZmConfigurationSection(const ZmConfigurationSection&) = delete;
    ZmConfigurationSection& operator=(const ZmConfigurationSection&) = delete;

    /// The name, which never changes.
    const char* GetName() const { return m_Name.Text(); }

    /// Null for the root of a tree. A removed section keeps the parent that it had.
    ZmConfigurationSection* GetParent() const { return m_Parent; }

    /// Adds an entry, unless there is one of that name: **the first one wins**, its value stays. `entry`, which may be
    /// null, receives the entry that was there before, or null if the name was new; change its value by SetValue().
    /// @{
    ZM_API void AddEntry(const char* name, const char* value, ZmConfigurationEntry** entry = nullptr);
    ZM_API void AddEntry(const char* name, int value, ZmConfigurationEntry** entry = nullptr);
    ZM_API void AddEntry(const char* name, unsigned int value, ZmConfigurationEntry** entry = nullptr);
    ZM_API void AddEntry(const char* name, float value, ZmConfigurationEntry** entry = nullptr);
    template <class Number, typename zm::IfWideNumber<Number>::Type = 0>
    void AddEntry(const char* name, Number value, ZmConfigurationEntry** entry = nullptr)
    {
        AddEntry(name, (XString() << value).Text(), entry);
    }
    /// @}

    /// The section of that name, made if there is none. Null without memory.
    ZM_API ZmConfigurationSection* CreateSubSection(const char* name);

    /// A direct child, or null. Dots have no meaning here.
    /// @{
    ZM_API ZmConfigurationEntry* GetEntry(const char* name) const;
    ZM_API ZmConfigurationSection* GetSubSection(const char* name) const;
    /// @}

    /// Takes a direct child out and returns it; the caller owns it from now on and deletes it. Null if there is none.
    /// @{
    ZM_API ZmConfigurationEntry* RemoveEntry(const char* name);
    ZM_API ZmConfigurationSection* RemoveSection(const char* name);
    /// @}

    /// Destroys a direct child, with all below it: 1, or 0 if there is none.
    /// @{
    ZM_API int DeleteEntry(const char* name);
    ZM_API int DeleteSection(const char* name);
    /// @}

    /// Destroys everything in the section.
    ZM_API void Clear();

    /// Of this section alone.
    int GetNumberOfEntries() const { return m_Entries.Size(); }
    int GetNumberOfSubSections() const { return m_Sections.Size(); }

    /// Of this section and all below it; a section does not count itself.
    ZM_API int GetNumberOfEntriesRecursive() const;
    ZM_API int GetNumberOfSubSectionsRecursive() const;

    /// A walk over the direct children, which must not change meanwhile: begin, then take the next until it is null.
    ///
    ///     auto position = section.BeginChildEntry();
    ///     while (const ZmConfigurationEntry* entry = section.GetNextChildEntry(position)) ...
    /// @{
    EntryTable::ConstIterator BeginChildEntry() const { return m_Entries.Begin(); }
    SectionTable::ConstIterator BeginChildSection() const { return m_Sections.Begin(); }
    ZmConfigurationEntry* GetNextChildEntry(EntryTable::ConstIterator& position) const
    {
        return position != m_Entries.End() ? (*position++).value : nullptr;
    }
    ZmConfigurationSection* GetNextChildSection(SectionTable::ConstIterator& position) const
    {
        return position != m_Sections.End() ? (*position++).value : nullptr;
    }
    /// @}

    /// Sections come from the memory that all modules share, so that anybody may delete one that was removed.
    /// @{
    static void* operator new(size_t size) noexcept { return zm::NewBlock(size); }
    static void operator delete(void* block) { zm::DeleteBlock(block); }
    /// @}

private:
    friend class ZmConfiguration;
    friend class zm::ConfigurationReader;

    ZmConfigurationSection(const XBaseString& name, ZmConfigurationSection* parent) : m_Parent(parent), m_Name(name) {}

    template <class Value>
    void AddValue(const XBaseString& name, const Value& value, ZmConfigurationEntry** entry);
    void Add(const XBaseString& name, const XBaseString& value);
    ZmConfigurationSection* Create(const XBaseString& name);
    void DropChildren(ZmConfigurationSection*& dropped);

    template <class Visit>
    void VisitAll(Visit visit) const;

    ZmConfigurationSection* m_Parent;
    XString m_Name;
    EntryTable m_Entries;
    SectionTable m_Sections;
};
