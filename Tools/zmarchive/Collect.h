#pragma once

#include "Arguments.h"

#include <string>
#include <vector>

/// A file on disk and the name of its entry.
struct SourceFile {
    std::string name, path;
};

/// Collects the given files and all files in the given folders; those of a folder are sorted by name. An entry is named
/// by its path within the folder, with '/' and in lower case, or with --flat by the last part of it only. Then come the
/// files that the list of --from names, in its order and named as they are written there. Links to folders are not
/// followed, and the archive itself is left out. Throws Failure for a path that is neither a file nor a folder.
///
/// Names with a backslash, and names that another file has, cannot be packed: --clash says what becomes of these files.
std::vector<SourceFile> CollectFiles(const Arguments& arguments);
