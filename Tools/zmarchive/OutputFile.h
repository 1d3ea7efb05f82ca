#pragma once

#include "System.h"

#include <list>
#include <string>
#include <vector>

/// The file that an entry is extracted to. It is written beside the place it is for, under a temporary name, and gets
/// its own name when it is complete: whatever happens before that, an existing file stays as it is. All functions throw
/// Failure.
class OutputFile {
public:
    /// Creates the folders on the way and the file. Refuses names that lead out of the target folder, links, and unless
    /// `replaces` existing files. `targetPath` is for messages.
    OutputFile(const Folder& target, const std::string& targetPath, const std::string& name, bool replaces);

    void Write(const char* bytes, size_t size);

    /// Gives the file its name. Without this the destructor removes it.
    void Finish();

private:
    void Enter(const std::string& part);
    void CheckPlace();
    void MakeBeside();
    const Folder& Last() const { return m_Folders.empty() ? m_Target : m_Folders.back(); }

    const Folder& m_Target;
    std::string m_Place;          ///< for messages
    std::list<Folder> m_Folders;  ///< from the target to the file, open until it is written
    std::string m_Name;
    bool m_Replaces, m_IsThere = false;
    std::unique_ptr<NewFile> m_File;
};
