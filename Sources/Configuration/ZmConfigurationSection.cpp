#include "ZmConfigurationSection.h"

ZmConfigurationSection::ZmConfigurationSection(const char* name, ZmConfigurationSection* parent)
    : ZmConfigurationSection(XBaseString(name), parent)
{
}

ZmConfigurationSection::~ZmConfigurationSection()
{
    Clear();
}

// Returns false if memory ran out; nothing is added then. An XString that cannot get its memory is empty.
template <class Value>
bool ZmConfigurationSection::AddValue(const XBaseString& name, const Value& value, ZmConfigurationEntry** entry,
                                      int line)
{
    const EntryTable::Inserted inserted = m_Entries.Insert(name);
    const bool isThere = inserted.position != m_Entries.End();
    if (entry != nullptr) {
        *entry = isThere && !inserted.created ? inserted.position->value : nullptr;
    }
    if (!inserted.created) {
        return isThere;
    }
    ZmConfigurationEntry* added = new ZmConfigurationEntry(name, this);
    if (added == nullptr || added->m_Name.Length() != name.Length() || !added->Assign(value)) {
        m_Entries.Remove(name);
        delete added;
        return false;
    }
    added->m_Line = line;
    inserted.position->value = added;
    return true;
}

template bool ZmConfigurationSection::AddValue(const XBaseString&, const XBaseString&, ZmConfigurationEntry**, int);
template bool ZmConfigurationSection::AddValue(const XBaseString&, const int&, ZmConfigurationEntry**, int);
template bool ZmConfigurationSection::AddValue(const XBaseString&, const unsigned int&, ZmConfigurationEntry**, int);
template bool ZmConfigurationSection::AddValue(const XBaseString&, const float&, ZmConfigurationEntry**, int);

void ZmConfigurationSection::AddEntry(const char* name, const char* value, ZmConfigurationEntry** entry)
{
    AddValue(name, XBaseString(value), entry);
}

void ZmConfigurationSection::AddEntry(const char* name, int value, ZmConfigurationEntry** entry)
{
    AddValue(name, value, entry);
}

void ZmConfigurationSection::AddEntry(const char* name, unsigned int value, ZmConfigurationEntry** entry)
{
    AddValue(name, value, entry);
}

void ZmConfigurationSection::AddEntry(const char* name, float value, ZmConfigurationEntry** entry)
{
    AddValue(name, value, entry);
}

ZmConfigurationSection* ZmConfigurationSection::CreateSubSection(const char* name)
{
    return Create(name);
}

ZmConfigurationSection* ZmConfigurationSection::Create(const XBaseString& name)
{
    const SectionTable::Inserted inserted = m_Sections.Insert(name);
    if (!inserted.created) {
        return inserted.position != m_Sections.End() ? inserted.position->value : nullptr;
    }
    ZmConfigurationSection* created = new ZmConfigurationSection(name, this);
    if (created == nullptr || created->m_Name.Length() != name.Length()) {
        m_Sections.Remove(name);
        delete created;
        return nullptr;
    }
    inserted.position->value = created;
    return created;
}

ZmConfigurationEntry* ZmConfigurationSection::GetEntry(const char* name) const
{
    ZmConfigurationEntry* const* entry = m_Entries.LookUp(name);
    return entry != nullptr ? *entry : nullptr;
}

ZmConfigurationSection* ZmConfigurationSection::GetSubSection(const char* name) const
{
    ZmConfigurationSection* const* section = m_Sections.LookUp(name);
    return section != nullptr ? *section : nullptr;
}

ZmConfigurationEntry* ZmConfigurationSection::RemoveEntry(const char* name)
{
    return m_Entries.Remove(name);
}

ZmConfigurationSection* ZmConfigurationSection::RemoveSection(const char* name)
{
    return m_Sections.Remove(name);
}

int ZmConfigurationSection::DeleteEntry(const char* name)
{
    const ZmConfigurationEntry* entry = RemoveEntry(name);
    delete entry;
    return entry != nullptr;
}

int ZmConfigurationSection::DeleteSection(const char* name)
{
    const ZmConfigurationSection* section = RemoveSection(name);
    delete section;
    return section != nullptr;
}

// Iterative, since a recursion would exhaust the stack on a deep tree: the sections to be destroyed form a list through
// their parent pointers, which are no longer needed.
void ZmConfigurationSection::Clear()
{
    ZmConfigurationSection* dropped = nullptr;
    DropChildren(dropped);
    while (dropped != nullptr) {
        ZmConfigurationSection* section = dropped;
        dropped = section->m_Parent;
        section->DropChildren(dropped);
        delete section;
    }
}

void ZmConfigurationSection::DropChildren(ZmConfigurationSection*& dropped)
{
    constexpr int kAhead = 4;  // prefetch distance: entries lie anywhere in memory
    const int count = m_Entries.Size();
    for (int i = 0; i < count; ++i) {
        __builtin_prefetch(i + kAhead < count ? m_Entries.ItemAt(i + kAhead).value : nullptr);
        delete m_Entries.ItemAt(i).value;
    }
    m_Entries.Clear();
    for (int i = 0; i < m_Sections.Size(); ++i) {
        ZmConfigurationSection* section = m_Sections.ItemAt(i).value;
        section->m_Parent = dropped;
        dropped = section;
    }
    m_Sections.Clear();
}

// Visits this section and all below it, in no particular order.
template <class Visit>
void ZmConfigurationSection::VisitAll(Visit visit) const
{
    XArray<const ZmConfigurationSection*> waiting;
    waiting.PushBack(this);
    while (!waiting.IsEmpty()) {
        const ZmConfigurationSection* section = waiting.Back();
        waiting.PopBack();
        visit(*section);
        for (int i = 0; i < section->m_Sections.Size(); ++i) {
            waiting.PushBack(section->m_Sections.ItemAt(i).value);
        }
    }
}

int ZmConfigurationSection::GetNumberOfEntriesRecursive() const
{
    int count = 0;
    VisitAll([&count](const ZmConfigurationSection& section) { count += section.GetNumberOfEntries(); });
    return count;
}

int ZmConfigurationSection::GetNumberOfSubSectionsRecursive() const
{
    int count = 0;
    VisitAll([&count](const ZmConfigurationSection& section) { count += section.GetNumberOfSubSections(); });
    return count;
}
