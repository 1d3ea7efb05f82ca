#include "Collect.h"

#include "System.h"
#include "Text.h"

#include <algorithm>
#include <filesystem>
#include <map>

namespace fs = std::filesystem;

namespace {

bool IsSame(const fs::path& a, const fs::path& b)
{
    std::error_code code;
    return fs::equivalent(a, b, code);
}

void AddFile(std::vector<SourceFile>& res, const fs::path& path, const fs::path& name)
{
    const std::string text = name.generic_string();
    if (text.find('\\') != std::string::npos) {
        throw Failure(Printable(path.string()) + ": names with backslashes cannot be packed");
    }
    res.push_back({LowerCase(text), path.string()});
}

void AddFolder(std::vector<SourceFile>& res, const fs::path& folder, bool flat, const std::string& archive)
{
    std::vector<SourceFile> found;
    std::error_code code;
    for (auto walk = fs::recursive_directory_iterator(folder); walk != fs::recursive_directory_iterator();) {
        const fs::path path = walk->path();
        if (walk->is_directory()) {
            if (IsLink(path.string())) {
                walk.disable_recursion_pending();
            }
        } else if (walk->is_regular_file() && !IsSame(path, archive)) {
            AddFile(found, path, flat ? path.filename() : path.lexically_relative(folder));
        }
        walk.increment(code);
        if (code) {
            throw Failure(Printable(path.string()) + " cannot be read: " + code.message());
        }
    }
    std::sort(found.begin(), found.end(), [](const SourceFile& a, const SourceFile& b) { return a.name < b.name; });
    res.insert(res.end(), found.begin(), found.end());
}

}  // namespace

std::vector<SourceFile> CollectFiles(const std::vector<std::string>& paths, bool flat, const std::string& archive)
{
    std::vector<SourceFile> res;
    for (const std::string& path : paths) {
        if (fs::is_directory(path)) {
            AddFolder(res, path, flat, archive);
        } else if (fs::is_regular_file(path)) {
            AddFile(res, path, fs::path(path).filename());
        } else {
            throw Failure(Printable(path) + ": no such file or folder");
        }
    }
    std::map<std::string, std::string> paths_of;
    for (const SourceFile& file : res) {
        const auto [other, isNew] = paths_of.emplace(file.name, file.path);
        if (!isNew) {
            throw Failure(Printable(other->second) + " and " + Printable(file.path) + " would both be named " +
                          Printable(file.name));
        }
    }
    return res;
}
