#pragma once

#include "XHashTable.h"
#include "ZmConfigurationEntry.h"

namespace zm {
class ConfigurationReader;
}

/// A named node of a configuration. It holds entries and sections, whose names are separate. Names are compared byte by
/// byte. A null name, or a name of more than 65534 characters, is treated as empty; the empty name is a valid name.
///
/// A section owns its contents. Children are visited in the order in which they were added, except that the last child
/// takes the place of a removed one. No operation recurses, however deep the tree is.
///
/// Only one thread at a time may change a tree; several may read it. If memory runs out, nothing is added.
class ZmConfigurationSection {
public:
    /// Children by name, in the order of iteration.
    typedef XHashTable<ZmConfigurationEntry*, XString, XHashFun<XString>, XEqual<XString>> EntryTable;
    typedef XHashTable<ZmConfigurationSection*, XString, XHashFun<XString>, XEqual<XString>> SectionTable;

    /// Creates an independent section; it is not added to the parent, which may be null.
    ZM_API ZmConfigurationSection(const char* name, ZmConfigurationSection* parent);
    ZM_API ~ZmConfigurationSection();
    ZmConfigurationSection(const ZmConfigurationSection&) = delete;
    ZmConfigurationSection& operator=(const ZmConfigurationSection&) = delete;

    /// The name, which never changes.
    const char* GetName() const { return m_Name.Text(); }

    /// Null for the root of a tree. A removed section keeps its former parent.
    ZmConfigurationSection* GetParent() const { return m_Parent; }

    /// Adds an entry unless one of that name exists: **the first one wins**, and its value stays. `entry`, unless null,
    /// receives the entry that already existed, or null if the name was new. Use SetValue() to change a value.
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

    /// Returns the section of that name, created if necessary, or null if memory runs out.
    ZM_API ZmConfigurationSection* CreateSubSection(const char* name);

    /// Returns a direct child, or null. Dots have no meaning here.
    /// @{
    ZM_API ZmConfigurationEntry* GetEntry(const char* name) const;
    ZM_API ZmConfigurationSection* GetSubSection(const char* name) const;
    /// @}

    /// Removes a direct child and returns it, or null if there is none. The caller owns it and must delete it.
    /// @{
    ZM_API ZmConfigurationEntry* RemoveEntry(const char* name);
    ZM_API ZmConfigurationSection* RemoveSection(const char* name);
    /// @}

    /// Destroys a direct child and everything below it. Returns 1, or 0 if there is none.
    /// @{
    ZM_API int DeleteEntry(const char* name);
    ZM_API int DeleteSection(const char* name);
    /// @}

    /// Destroys everything in the section.
    ZM_API void Clear();

    /// Count the children of this section alone.
    int GetNumberOfEntries() const { return m_Entries.Size(); }
    int GetNumberOfSubSections() const { return m_Sections.Size(); }

    /// Count this section's children and everything below; a section does not count itself.
    ZM_API int GetNumberOfEntriesRecursive() const;
    ZM_API int GetNumberOfSubSectionsRecursive() const;

    /// Iterates over the direct children, which must not change meanwhile: begin, then take the next until it is null.
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

    /// Sections use the heap shared by all modules, so any module may delete a removed section.
    /// @{
    static void* operator new(size_t size) noexcept { return zm::NewBlock(size); }
    static void operator delete(void* block) { zm::DeleteBlock(block); }
    /// @}

private:
    friend class ZmConfiguration;
    friend class zm::ConfigurationReader;

    ZmConfigurationSection(const XBaseString& name, ZmConfigurationSection* parent) : m_Parent(parent), m_Name(name) {}

    template <class Value>
    bool AddValue(const XBaseString& name, const Value& value, ZmConfigurationEntry** entry, int line = 0);
    ZmConfigurationSection* Create(const XBaseString& name);
    void DropChildren(ZmConfigurationSection*& dropped);

    template <class Visit>
    void VisitAll(Visit visit) const;

    ZmConfigurationSection* m_Parent;
    XString m_Name;
    EntryTable m_Entries;
    SectionTable m_Sections;
};
