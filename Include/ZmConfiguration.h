#pragma once

#include "ZmConfigurationSection.h"

/// A tree of settings under a section named "root", and a tree of defaults under one named "default", which is asked
/// for what the first does not have. Both are walked and changed through ZmConfigurationSection, whose rules on names,
/// order, threads and memory hold here, too.
///
/// A path with its `dots` set names a chain of sections: "a.b.c" is "c" in "b" in "a". Otherwise a path is one name,
/// which may contain dots.
///
/// **The text format** has one line for each entry, "name = value", and tags for sections, "<name>" and "</name>";
/// Documentation/ConfigurationFormat.md describes it. It has no quoting. What it cannot hold is lost or read
/// differently:
/// - line feeds, and a carriage return at the end of a value; every other byte but NUL may stand in one;
/// - blanks and tabs around the names and values of entries;
/// - names of entries that contain '=' or begin with '#' or '<';
/// - names of sections that begin with '/';
/// - lines of more than 1023 characters, indentation included, which are read in pieces.
class ZmConfiguration {
public:
    /// `indent` is the number of blanks before a line for each section around it, in files that are saved.
    ZM_API explicit ZmConfiguration(unsigned short indent);
    ZM_API ~ZmConfiguration();
    ZmConfiguration(const ZmConfiguration&) = delete;
    ZmConfiguration& operator=(const ZmConfiguration&) = delete;

    /// Adds an entry where there is none of that name, as ZmConfigurationSection::AddEntry() does. `section` is a path
    /// with dots, whose missing sections are made; null is the root. **A section that is missing in the main tree but
    /// known among the defaults receives the entry there.** 1, or 0 if the section cannot be made.
    /// @{
    ZM_API int AddEntry(const char* section, const char* name, const char* value,
                        ZmConfigurationEntry** entry = nullptr);
    ZM_API int AddEntry(const char* section, const char* name, int value, ZmConfigurationEntry** entry = nullptr);
    ZM_API int AddEntry(const char* section, const char* name, unsigned int value,
                        ZmConfigurationEntry** entry = nullptr);
    ZM_API int AddEntry(const char* section, const char* name, float value, ZmConfigurationEntry** entry = nullptr);
    template <class Number, typename zm::IfWideNumber<Number>::Type = 0>
    int AddEntry(const char* section, const char* name, Number value, ZmConfigurationEntry** entry = nullptr)
    {
        return AddEntry(section, name, (XString() << value).Text(), entry);
    }
    /// @}

    /// The same among the defaults, where alone the section is searched and made.
    /// @{
    ZM_API int AddDefaultEntry(const char* section, const char* name, const char* value);
    ZM_API int AddDefaultEntry(const char* section, const char* name, int value);
    ZM_API int AddDefaultEntry(const char* section, const char* name, unsigned int value);
    ZM_API int AddDefaultEntry(const char* section, const char* name, float value);
    template <class Number, typename zm::IfWideNumber<Number>::Type = 0>
    int AddDefaultEntry(const char* section, const char* name, Number value)
    {
        return AddDefaultEntry(section, name, (XString() << value).Text());
    }
    /// @}

    /// In these a null `parent` is the root; any other is **the name of a direct child of the root, not a path**. Null
    /// or 0 if there is none. They work on the main tree only.
    /// @{
    ZM_API ZmConfigurationSection* CreateSubSection(const char* parent, const char* name);
    ZM_API int DeleteEntry(const char* parent, const char* name);
    ZM_API int DeleteSection(const char* parent, const char* name);
    ZM_API ZmConfigurationEntry* RemoveEntry(const char* parent, const char* name);
    ZM_API ZmConfigurationSection* RemoveSection(const char* parent, const char* name);
    /// @}

    /// The same among the defaults; a parent must be there already.
    ZM_API ZmConfigurationSection* CreateDefaultSubSection(const char* parent, const char* name);

    /// The section of that path, in the main tree or else among the defaults; or null.
    ZM_API ZmConfigurationSection* GetSubSection(const char* path, int dots) const;

    /// Without dots the entry of that name in the root, or else among the defaults; or null. **With dots the whole path
    /// names the section, and its last part the entry, too**: "a.b.c" finds the entry "c" of the section "a.b.c". To
    /// find the entry "c" of the section "a.b" call GetSubSection("a.b", 1) and its GetEntry("c").
    ZM_API ZmConfigurationEntry* GetEntry(const char* path, int dots) const;

    /// Empty the main tree, and the defaults.
    ZM_API void Clear();
    ZM_API void ClearDefault();

    /// The counts and walks of the root.
    /// @{
    int GetNumberOfEntries() const { return m_Root->GetNumberOfEntries(); }
    int GetNumberOfSubSections() const { return m_Root->GetNumberOfSubSections(); }
    int GetNumberOfEntriesRecursive() const { return m_Root->GetNumberOfEntriesRecursive(); }
    int GetNumberOfSubSectionsRecursive() const { return m_Root->GetNumberOfSubSectionsRecursive(); }
    ZmConfigurationSection::EntryTable::ConstIterator BeginEntries() const { return m_Root->BeginChildEntry(); }
    ZmConfigurationSection::SectionTable::ConstIterator BeginSections() const { return m_Root->BeginChildSection(); }
    ZmConfigurationEntry* GetNextEntry(ZmConfigurationSection::EntryTable::ConstIterator& position) const
    {
        return m_Root->GetNextChildEntry(position);
    }
    ZmConfigurationSection* GetNextSection(ZmConfigurationSection::SectionTable::ConstIterator& position) const
    {
        return m_Root->GetNextChildSection(position);
    }
    /// @}

    /// Clears the main tree and reads it from a file: 1, and `error` is "OK"; or 0, and `error` says why. What stands
    /// before the faulty line stays in the tree. `line` is the number of lines before that line, or of all lines; it
    /// stays as it is when no file could be opened. Sections that are opened again go on, and of two entries with one
    /// name the first wins. Files may end their lines with LF or CR LF. A folder, a device or a pipe is no such file.
    ZM_API int BuildFromFile(const char* filename, int& line, XString& error);

    /// The same from a text. **The last line is not read**, whether a line feed follows it or not; and a carriage
    /// return before a line feed belongs to the line. Null is an empty text.
    ZM_API int BuildFromMemory(const char* text, int& line, XString& error);

    /// Writes the main tree: 1 when all of it is written and the file closed, or 0. The defaults are not written.
    ///
    /// The new file is written whole beside the old one, brought to the disk and then takes its place in one step, so a
    /// full disk or a crash leaves the old one as it was (a crash may leave the unfinished one, too). A symbolic link
    /// stays and the file that it leads to is replaced; permissions and owner stay, access lists beyond them may not.
    ///
    /// Where that cannot be, the file itself is written: where it is no regular file (a pipe or device), where it has
    /// several names (hard links), and where nothing can be made in its folder or its owner not be kept. A failure then
    /// leaves it damaged. A file that may not be written is not replaced.
    ZM_API int SaveToFile(const char* filename) const;

    /// There is no binary format: these do nothing and return 0.
    /// @{
    ZM_API int BuildFromDataFile(const char* filename, XString& error);
    ZM_API int SaveToDataFile(const char* filename) const;
    /// @}

private:
    template <class Value>
    int Add(const char* section, const char* name, Value value, ZmConfigurationEntry** entry);
    template <class Value>
    int AddDefault(const char* section, const char* name, Value value);
    bool NeedDefaults();
    ZmConfigurationSection* ParentOf(const char* name) const;

    ZmConfigurationSection* m_Root;
    ZmConfigurationSection* m_Defaults;
    unsigned short m_Indent;
};
