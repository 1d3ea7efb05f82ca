#pragma once

#include <string>

namespace zm {

/// A new file that takes the place of an old one: begin, write, commit. Until the commit the old file is as it was;
/// after it the new one is there whole, on the disk, in one step. An object that is destroyed without a commit removes
/// what it made.
///
/// The new file lies beside the old one, under a name that nobody has ("name.1234abcd.tmp"), and has its owner and
/// permissions. Where the path is a link, the file that it leads to is replaced and the link stays. What killed
/// processes have left of earlier replacements of the same file is removed at the next one.
class Replacement {
public:
    enum Options {
        /// Begins only where nobody could notice: not for a file with several names or another owner that the new one
        /// cannot have.
        EXACT = 0,
        /// Takes as much of the owner as the system allows. Other names of the file keep the old one.
        CLOSEST = 1,
        /// A file that did not exist is for its owner alone.
        PRIVATE = 2
    };

    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Makes the new file, empty. False, and nothing is made, where that is impossible or where the path is no regular
    /// file or may not be written.
    bool Begin(const char* path, Options options);

    /// The new file, to be opened by its path, written and closed before Commit().
    const char* Path() const { return m_Fresh.c_str(); }

    /// Brings the new file to the disk and gives it the old one's name. False if that fails; the old one stays then.
    bool Commit();

private:
    bool MakeBeside(Options options);
    void RemoveLeftovers() const;

    std::string m_Target;
    std::string m_Stem;   ///< what the names of all new files of this target begin with
    std::string m_Fresh;
    void* m_Held = nullptr;
};

}  // namespace zm
