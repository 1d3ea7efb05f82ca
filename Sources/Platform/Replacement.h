#pragma once

#include <string>

namespace zm {

/// Replaces a file: begin, write, commit. The old file is unchanged until the commit, which puts the complete new file
/// in its place in one step, after its bytes have reached the disk. An object destroyed without a commit removes its
/// new file.
///
/// The new file is created beside the old one under an unused name ("name.1234abcd.tmp") with the same owner and
/// permissions. If the path is a link, its target is replaced and the link is kept; Windows, where links are rare,
/// refuses them. New files that killed processes have left behind are removed when the same file is replaced the next
/// time.
class Replacement {
public:
    enum Options {
        /// Refuses what another program could notice: replacing a file that has several names, or whose owner the new
        /// file cannot be given.
        EXACT = 0,
        /// Keeps the owner as far as the system allows. Other names of the file keep the old contents.
        CLOSEST = 1,
        /// A file that did not exist is accessible to its owner only.
        PRIVATE = 2
    };

    Replacement() = default;
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// Creates the new file, empty. Returns false, with nothing created, if that fails or if the path is not a regular
    /// file that the caller may write.
    bool Begin(const char* path, Options options);

    /// After Begin() has returned false: whether the system failed it (no memory, no descriptor, a read error), so that
    /// it may succeed another time. Otherwise the file cannot be replaced because of what it is or where it lies.
    bool HasFailed() const { return m_HasFailed; }

    /// The new file: open it by this path, write it, and close it before Commit().
    const char* Path() const { return m_Fresh.c_str(); }

    /// Writes the new file to the disk and renames it. Returns false if that fails; the old file is then unchanged.
    bool Commit();

private:
    bool MakeBeside(Options options);
    void RemoveLeftovers() const;

    bool Prepare(const char* path, Options options);

    std::string m_Target;
    std::string m_Stem;  ///< common beginning of the names of this target's new files
    std::string m_Fresh;
    bool m_HasFailed = false;
    void* m_Held = nullptr;  ///< of MakeNewFile(); null before Begin() and after Commit()
};

}  // namespace zm
