#pragma once

#include <string>
#include <vector>

/// A file of the disk and the name that its entry gets.
struct SourceFile {
    std::string Name, Path;
};

/// The files that are named, and all in the folders that are, each folder's by name. An entry's name is the path in its
/// folder with '/', in lower case; with `flat` only the last part of it. Links to folders are not followed, and the
/// archive itself is left out. Throws Failure for what is neither file nor folder and where two get one name.
std::vector<SourceFile> CollectFiles(const std::vector<std::string>& paths, bool flat, const std::string& archive);
