#pragma once

#include <string>
#include <vector>

/// A file on disk and the name of its entry.
struct SourceFile {
    std::string name, path;
};

/// Collects the given files and all files in the given folders; those of a folder are sorted by name. An entry is named
/// by its path within the folder, with '/' and in lower case, or with `flat` by the last part of it only. Links to
/// folders are not followed, and the archive itself is left out. Throws Failure for a path that is neither a file nor a
/// folder, and if two files get the same name.
std::vector<SourceFile> CollectFiles(const std::vector<std::string>& paths, bool flat, const std::string& archive);
