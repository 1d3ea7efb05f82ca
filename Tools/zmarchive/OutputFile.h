#pragma once

#include "System.h"

#include <list>
#include <string>
#include <vector>

/// The folder that entries are extracted to, and the folders on the way to the last entry: they stay open, since the
/// next entry is often beside it. All functions throw Failure.
class OutputFolders {
public:
    explicit OutputFolders(const std::string& path);

    /// Opens a folder, and makes what is missing of it. Links are refused. The result is valid until the next call.
    const Folder& Enter(const std::vector<std::string>& parts);

    /// Whether the folder last entered was made for that, so that it holds nothing but extracted files.
    bool IsNew() const { return !m_Open.empty() && m_Open.back().isNew; }

    /// The path of a folder that has been entered, for messages.
    std::string PlaceOf(const std::vector<std::string>& parts, size_t count) const;

private:
    struct Level {
        std::string name;
        Folder folder;
        bool isNew;
    };

    void OpenNext(const std::vector<std::string>& parts);

    std::string m_Path;
    Folder m_Target;
    std::list<Level> m_Open;  ///< each within the one before it
};

/// The file that an entry is extracted to. It is written beside the place it is for, under a temporary name, and gets
/// its own name when it is complete: whatever happens before that, an existing file stays as it is. All functions throw
/// Failure.
class OutputFile {
public:
    /// Creates the folders on the way and the file. Refuses names that lead out of the target folder, links, and unless
    /// `replaces` existing files.
    OutputFile(OutputFolders& folders, const std::string& name, bool replaces);

    void Write(const char* bytes, size_t size);

    /// Gives the file its name. Without this the destructor removes it.
    void Finish();

private:
    void CheckPlace(const Folder& folder);
    void MakeBeside(const Folder& folder);

    std::string m_Name, m_Place;  ///< the latter for messages
    bool m_Replaces, m_IsThere = false;
    std::unique_ptr<NewFile> m_File;
};
