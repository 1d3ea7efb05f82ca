#pragma once

#include <stdio.h>

#include <cstddef>
#include <memory>
#include <string>

// What the tools need from the operating system.

/// Whether the stream is an interactive terminal.
bool IsTerminal(FILE* stream);

/// Lets a standard stream pass all bytes as they are.
void UseBytes(FILE* stream);

/// Makes a folder that only this user can use. Returns false if the name is taken; throws Failure if there can be none.
bool MakePrivateFolder(const std::string& path);

/// Whether the path is a link of any kind, which may lead elsewhere.
bool IsLink(const std::string& path);

/// Whether the system would not create a regular file of exactly this name. `name` is a single part of a path.
bool IsSpecialName(const std::string& name);

/// Why the system has just refused something, in its own words.
std::string LastError();

/// An open folder. Its contents are reached through it rather than through its path, so no process can lead us
/// elsewhere by replacing a folder on the way with a link. The names are single parts of a path.
class Folder {
public:
    enum Kind {
        MISSING,  ///< or cannot be examined
        A_FILE,
        A_FOLDER,
        A_LINK,
        OTHER
    };

    /// Opens a folder, also through links.
    explicit Folder(const std::string& path);
    /// Opens a folder within another one, but never a link. The other one must stay open.
    Folder(const Folder& parent, const std::string& name);
    ~Folder();
    Folder(Folder&&) noexcept;
    Folder& operator=(Folder&&) = delete;

    bool IsOpen() const;

    /// Makes a folder. Fails if the name is taken.
    bool MakeFolder(const std::string& name) const;

    /// What the name stands for; links are not followed.
    Kind KindOf(const std::string& name) const;

private:
    friend class NewFile;
    struct State;
    std::unique_ptr<State> m_State;
};

/// A new file in a folder, which must stay open. Until Rename() succeeds, the destructor removes the file.
class NewFile {
public:
    explicit NewFile(const Folder& folder);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    enum Result {
        DONE,
        TAKEN,  ///< the name
        FAILED
    };

    /// Makes the file. A private one is nobody else's to read.
    Result Make(const std::string& name, bool isPrivate);

    /// Gives the file the permissions of another one in the folder, as far as possible.
    void TakePermissionsOf(const std::string& name);

    bool Write(const char* bytes, size_t size);

    /// Waits until the bytes are on the disk.
    bool Synchronise();

    /// Closes the file and gives it its final name, in one step. Never writes to an existing file, but replaces it if
    /// `replaces`.
    Result Rename(const std::string& name, bool replaces);

private:
    struct State;
    std::unique_ptr<State> m_State;
};
