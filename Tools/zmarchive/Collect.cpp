#include "Collect.h"

#include "System.h"
#include "Text.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

namespace fs = std::filesystem;

namespace {

bool IsSame(const fs::path& a, const fs::path& b)
{
    std::error_code code;
    return fs::equivalent(a, b, code);
}

/// Adds a file under the name or, for an empty one, under the last part of its path.
void AddFile(std::vector<SourceFile>& res, const fs::path& path, const fs::path& name, const Arguments& arguments)
{
    const fs::path whole = name.empty() || arguments.Has(Arguments::FLAT) ? path.filename() : name;
    res.push_back({LowerCase(whole.generic_string()), path.string()});
}

void AddFolder(std::vector<SourceFile>& res, const fs::path& folder, const fs::path& prefix, const Arguments& arguments)
{
    std::vector<SourceFile> found;
    std::error_code code;
    for (auto walk = fs::recursive_directory_iterator(folder); walk != fs::recursive_directory_iterator();) {
        const fs::path path = walk->path();
        if (walk->is_directory()) {
            if (IsLink(path.string())) {
                walk.disable_recursion_pending();
            }
        } else if (walk->is_regular_file() && !IsSame(path, arguments.archive)) {
            AddFile(found, path, prefix / path.lexically_relative(folder), arguments);
        }
        walk.increment(code);
        if (code) {
            throw Failure(Printable(path.string()) + " cannot be read: " + code.message());
        }
    }
    std::sort(found.begin(), found.end(), [](const SourceFile& a, const SourceFile& b) {
        return a.name != b.name ? a.name < b.name : a.path < b.path;
    });
    res.insert(res.end(), found.begin(), found.end());
}

/// Adds a file, or all files of a folder, whose names begin with the given one.
void AddPath(std::vector<SourceFile>& res, const std::string& path, const fs::path& name, const Arguments& arguments)
{
    if (fs::is_directory(path)) {
        AddFolder(res, path, name, arguments);
    } else if (fs::is_regular_file(path)) {
        AddFile(res, path, name, arguments);
    } else {
        throw Failure(Printable(path) + ": no such file or folder");
    }
}

void AddListed(std::vector<SourceFile>& res, std::istream& list, const Arguments& arguments)
{
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.empty()) {
            continue;
        }
        fs::path name = fs::path(line).lexically_normal().relative_path();
        if (!name.empty() && *name.begin() == "..") {
            throw Failure(Printable(line) + " leads out of the current folder");
        }
        AddPath(res, line, name == "." ? fs::path() : name, arguments);
    }
    if (list.bad() || !list.eof()) {
        throw Failure(Printable(arguments.from) + " cannot be read");
    }
}

/// A name like the given one that is not taken: with a number before the extension, and without backslashes.
std::string FreeName(std::string name, const std::map<std::string, std::string>& taken)
{
    std::replace(name.begin(), name.end(), '\\', '_');
    std::string res = name;
    const size_t slash = name.rfind('/');
    const size_t dot = name.find('.', slash == std::string::npos ? 1 : slash + 2);
    for (int number = 2; taken.count(res) != 0; ++number) {
        res = name;
        res.insert(std::min(dot, res.size()), "~" + std::to_string(number));
    }
    return res;
}

/// The paths by name, and what prevents the other files from having their names.
struct Names {
    explicit Names(const std::vector<SourceFile>& files)
    {
        for (const SourceFile& file : files) {
            if (HasBackslash(file)) {
                problems.push_back(Printable(file.path) + " has a backslash in its name");
            } else if (const auto [other, isNew] = paths.emplace(file.name, file.path); !isNew) {
                problems.push_back(Printable(other->second) + " and " + Printable(file.path) + " would both be named " +
                                   Printable(file.name));
            }
        }
    }

    static bool HasBackslash(const SourceFile& file) { return file.name.find('\\') != std::string::npos; }
    bool Has(const SourceFile& file) const { return !HasBackslash(file) && paths.at(file.name) == file.path; }

    std::map<std::string, std::string> paths;
    std::vector<std::string> problems;
};

/// Gives each file a name of its own that an archive can store, as --clash says.
std::vector<SourceFile> Named(const std::vector<SourceFile>& files, const Arguments& arguments)
{
    Names names(files);
    if (names.problems.empty()) {
        return files;
    }
    if (arguments.clash == Arguments::FAIL) {
        std::string text = CountText(names.problems.size()) + " cannot be packed (--clash skip or rename):";
        for (const std::string& problem : names.problems) {
            text += "\n  " + problem;
        }
        throw Failure(text);
    }
    std::vector<SourceFile> res;
    for (const SourceFile& file : files) {
        if (names.Has(file)) {
            res.push_back(file);
            continue;
        }
        std::string note = "left out";
        if (arguments.clash == Arguments::RENAME) {
            const std::string name = FreeName(file.name, names.paths);
            names.paths.emplace(name, file.path);
            res.push_back({name, file.path});
            note = "named " + Printable(name);
        }
        if (!arguments.IsQuiet()) {
            std::fprintf(stderr, "note: %s %s\n", Printable(file.path).c_str(), note.c_str());
        }
    }
    return res;
}

}  // namespace

std::vector<SourceFile> CollectFiles(const Arguments& arguments)
{
    std::vector<SourceFile> res;
    for (const std::string& path : arguments.rest) {
        AddPath(res, path, fs::path(), arguments);
    }
    if (IsStream(arguments.from)) {
        AddListed(res, std::cin, arguments);
    } else if (arguments.Has(Arguments::FROM)) {
        std::ifstream list(arguments.from);
        AddListed(res, list, arguments);
    }
    return Named(res, arguments);
}
