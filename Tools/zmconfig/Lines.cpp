#include "Lines.h"

#include "System.h"
#include "Text.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

std::string ReadFile(const std::string& path)
{
    std::ifstream file;
    const bool isFile = path != "-";
    if (isFile) {
        if (!fs::is_regular_file(path)) {
            throw Failure(Printable(path) + ": no such file");
        }
        file.open(path, std::ios::binary);
    }
    std::istream& input = isFile ? file : std::cin;
    std::string res(std::istreambuf_iterator<char>(input), {});
    if (input.bad() || (isFile && !file.is_open())) {
        throw Failure(Printable(path) + " cannot be read");
    }
    return res;
}

void WriteFile(const std::string& path, const std::string& bytes)
{
    if (path == "-") {
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        return;
    }
    // Beside the old file, which stays until the new one is complete and on the disk. A link stays, too.
    const fs::path target = fs::weakly_canonical(fs::absolute(path));
    const std::string name = target.filename().string();
    const Folder folder(target.parent_path().string());
    NewFile file(folder);
    const bool made = folder.IsOpen() &&
                      file.Make(name + '.' + std::to_string(std::random_device()()) + ".tmp", false) == NewFile::DONE;
    if (made) {
        file.TakePermissionsOf(name);
    }
    if (!made || !file.Write(bytes.data(), bytes.size()) || !file.Synchronise() ||
        file.Rename(name, true) != NewFile::DONE) {
        throw Failure(Printable(path) + " cannot be written: " + LastError());
    }
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> res;
    for (size_t at = 0; at < text.size();) {
        const size_t feed = std::min(text.find('\n', at), text.size());
        res.push_back(text.substr(at, feed - at));
        if (!res.back().empty() && res.back().back() == '\r') {
            res.back().pop_back();
        }
        at = feed + 1;
    }
    return res;
}

std::string TextToRead(const std::vector<std::string>& lines)
{
    std::string res;
    for (const std::string& line : lines) {
        res += line + '\n';
    }
    return res + '\n';
}

std::string Trimmed(const std::string& text)
{
    const size_t first = text.find_first_not_of(" \t"), last = text.find_last_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}
