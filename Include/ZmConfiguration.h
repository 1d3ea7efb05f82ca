#pragma once

#include "ZmConfigurationSection.h"

/// A tree of settings under a section named "root", and a tree of defaults under a section named "default", which
/// supplies whatever the first does not contain. Both are traversed and changed through ZmConfigurationSection, whose
/// rules on names, order, threads and memory apply here as well.
///
/// With `dots` set, a path names a chain of sections: "a.b.c" is "c" in "b" in "a". Otherwise a path is a single name,
/// which may contain dots.
///
/// **The text format** has one line for each entry, "name = value", and tags for sections, "<name>" and "</name>"; see
/// Documentation/ConfigurationFormat.md. It has no quoting. The following are lost or read differently:
/// - line feeds, and a carriage return at the end of a value; values may contain any other byte but NUL;
/// - blanks and tabs around the names and values of entries;
/// - names of entries that contain '=' or begin with '#' or '<';
/// - names of sections that begin with '/';
/// - lines of more than 1023 characters, which are read in pieces. Indentation never makes a line that long.
class ZmConfiguration {
public:
    /// `indent` is the number of blanks per section level at the start of each line in saved files.
    ZM_API explicit ZmConfiguration(unsigned short indent);
    ZM_API ~ZmConfiguration();
    ZmConfiguration(const ZmConfiguration&) = delete;
    ZmConfiguration& operator=(const ZmConfiguration&) = delete;

    /// Adds an entry unless one of that name exists, as ZmConfigurationSection::AddEntry() does. `section` is a path
    /// with dots; missing sections are created, and null is the root. **A section that is missing in the main tree but
    /// exists in the defaults receives the entry there.** Returns 1, or 0 if memory runs out.
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

    /// The same in the defaults: the section is searched and created only there.
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

    /// For these functions a null `parent` is the root; any other is **the name of a direct child of the root, not a
    /// path**. They return null or 0 if it does not exist. They work on the main tree only.
    /// @{
    ZM_API ZmConfigurationSection* CreateSubSection(const char* parent, const char* name);
    ZM_API int DeleteEntry(const char* parent, const char* name);
    ZM_API int DeleteSection(const char* parent, const char* name);
    ZM_API ZmConfigurationEntry* RemoveEntry(const char* parent, const char* name);
    ZM_API ZmConfigurationSection* RemoveSection(const char* parent, const char* name);
    /// @}

    /// The same in the defaults; the parent must already exist.
    ZM_API ZmConfigurationSection* CreateDefaultSubSection(const char* parent, const char* name);

    /// Returns the section of that path in the main tree or else in the defaults, or null.
    ZM_API ZmConfigurationSection* GetSubSection(const char* path, int dots) const;

    /// Without dots, returns the entry of that name in the root or else in the defaults, or null. **With dots, the
    /// whole path names the section, and its last part names the entry as well**: "a.b.c" finds the entry "c" of the
    /// section "a.b.c". To find the entry "c" of the section "a.b", call GetSubSection("a.b", 1) and then GetEntry("c")
    /// on it.
    ZM_API ZmConfigurationEntry* GetEntry(const char* path, int dots) const;

    /// The two trees.
    /// @{
    ZmConfigurationSection& Root() { return m_Root; }
    const ZmConfigurationSection& Root() const { return m_Root; }
    ZmConfigurationSection& Defaults() { return m_Defaults; }
    const ZmConfigurationSection& Defaults() const { return m_Defaults; }
    /// @}

    /// Values by the path of their entry: "Server.Workers" is the entry "Workers" of the section "Server", "Workers" an
    /// entry of the root. Each is the first of three that is a value of that type: the entry of the main tree, the
    /// entry of the defaults, `otherwise`. So a section of a user's file that lacks an entry does not hide its default.
    ///
    /// The whole text must be the value: a decimal number, for GetBool() one of true, false, yes, no, on, off, 1, 0 in
    /// any case. "20k", and numbers outside the range of the type, are none. Numbers have a decimal point in all
    /// locales. A text is valid until it changes.
    /// @{
    ZM_API int GetInt(const char* path, int otherwise = 0) const;
    ZM_API unsigned int GetUnsigned(const char* path, unsigned int otherwise = 0) const;
    ZM_API float GetFloat(const char* path, float otherwise = 0.0f) const;
    ZM_API bool GetBool(const char* path, bool otherwise = false) const;
    ZM_API const char* GetText(const char* path, const char* otherwise = "") const;
    /// @}

    /// The same, for programs that tell users what is wrong. If the main tree has an entry of that path, or else the
    /// defaults, it decides: returns 1 and sets `res` if it is a value of that type. Otherwise returns 0, leaves `res`
    /// unchanged and sets `why` to a text such as "Server.Workers is '20k' in line 7, which is no whole number".
    /// @{
    ZM_API int GetInt(const char* path, int& res, XString& why) const;
    ZM_API int GetUnsigned(const char* path, unsigned int& res, XString& why) const;
    ZM_API int GetFloat(const char* path, float& res, XString& why) const;
    ZM_API int GetBool(const char* path, bool& res, XString& why) const;
    /// @}

    /// Set the value of an entry of the main tree by its path, and create what is missing. A float becomes the shortest
    /// text that gives it again, a bool "true" or "false". Return 1, or 0 if memory runs out or the path is null.
    /// @{
    ZM_API int SetInt(const char* path, int value);
    ZM_API int SetUnsigned(const char* path, unsigned int value);
    ZM_API int SetFloat(const char* path, float value);
    ZM_API int SetBool(const char* path, bool value);
    ZM_API int SetText(const char* path, const char* value);
    /// @}

    /// Returns the entry of a path, as GetInt() finds it: in the main tree or else in the defaults. Null if there is
    /// none.
    ZM_API ZmConfigurationEntry* FindEntry(const char* path) const;

    /// Empty the main tree or the defaults.
    ZM_API void Clear();
    ZM_API void ClearDefault();

    /// Counts and iteration for the root.
    /// @{
    int GetNumberOfEntries() const { return m_Root.GetNumberOfEntries(); }
    int GetNumberOfSubSections() const { return m_Root.GetNumberOfSubSections(); }
    int GetNumberOfEntriesRecursive() const { return m_Root.GetNumberOfEntriesRecursive(); }
    int GetNumberOfSubSectionsRecursive() const { return m_Root.GetNumberOfSubSectionsRecursive(); }
    ZmConfigurationSection::EntryTable::ConstIterator BeginEntries() const { return m_Root.BeginChildEntry(); }
    ZmConfigurationSection::SectionTable::ConstIterator BeginSections() const { return m_Root.BeginChildSection(); }
    ZmConfigurationEntry* GetNextEntry(ZmConfigurationSection::EntryTable::ConstIterator& position) const
    {
        return m_Root.GetNextChildEntry(position);
    }
    ZmConfigurationSection* GetNextSection(ZmConfigurationSection::SectionTable::ConstIterator& position) const
    {
        return m_Root.GetNextChildSection(position);
    }
    /// @}

    /// Clears the main tree and reads it from a file. Returns 1 and sets `error` to "OK", or returns 0 and sets `error`
    /// to the reason. Everything before the faulty line stays in the tree. `line` is the number of lines before that
    /// line, or of all lines; it stays unchanged if the file could not be opened. A section that is opened again is
    /// continued; of two entries with the same name the first wins. Reading stops with "out of memory" where memory
    /// runs out. Lines may end in LF or CR LF. Folders, devices and pipes cannot be opened.
    ZM_API int BuildFromFile(const char* filename, int& line, XString& error);

    /// The same from a text. **The last line is not read**, whether a line feed follows it or not. A carriage return
    /// before a line feed is part of the line. Null is treated as an empty text.
    ZM_API int BuildFromMemory(const char* text, int& line, XString& error);

    /// Writes the main tree; the defaults are not written. Returns 1 if everything was written and the file closed,
    /// else 0.
    ///
    /// The new file is written completely beside the old one, flushed to disk and then replaces it in one step. A full
    /// disk or a crash therefore leaves the old file intact; an unfinished new file that a crash leaves behind is
    /// removed at the next save. A symbolic link is kept, and its target is replaced. Permissions and owner are kept;
    /// further access lists may be lost.
    ///
    /// The file itself is overwritten if it can never be replaced: if it is not a regular file (a pipe or device), if
    /// it has several names (hard links), or if no file can be created in its folder or its owner cannot be kept. A
    /// failure then leaves it damaged. A write-protected file is not replaced.
    ZM_API int SaveToFile(const char* filename) const;

    /// Saves the main tree into an existing file whose comments, order and blank lines stay: only the lines of entries
    /// that have changed are new. New entries stand behind the last one of their section, new sections at its end; what
    /// the tree does not contain is left out. Sections left open are closed, and all lines end as the first one does.
    /// Without such a file this is SaveToFile(). The file is replaced as there.
    ///
    /// Returns 1, or 0 with the reason in `why`, unless null, and the file unchanged: if CanBeSaved() says no, if the
    /// file is no configuration (a line of it is wrong, has 1023 or more characters or a NUL), or if the new one cannot
    /// be written.
    ZM_API int UpdateFile(const char* filename, XString* why = nullptr) const;

    /// Returns 1 if a file saved now would load as this tree: no name or value is of those that the format loses or
    /// reads differently (see above). Otherwise returns 0 and sets `why` to the reason and the path of the first such
    /// name, as in "a value has a line feed, or ends with a carriage return: Server.Motto". SaveToFile() writes such
    /// names and values as they are: call this first if they come from outside.
    ZM_API int CanBeSaved(XString& why) const;

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
    ZmConfigurationSection* ParentOf(const char* name);
    template <class Value>
    int Read(const char* path, Value& res, XString& why) const;
    template <class Value>
    Value ReadOr(const char* path, Value otherwise) const;

    ZmConfigurationSection m_Root;
    ZmConfigurationSection m_Defaults;
    unsigned short m_Indent;
};
