#include "Lines.h"

#include "Text.h"
#include "ZmFile.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

std::string ReadFile(const std::string& path)
{
    std::ifstream file;
    const bool isFile = path != "-";
    if (isFile) {
        if (!std::filesystem::is_regular_file(path)) {
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
    // Beside the old file, so that it stays until the new one is complete.
    const std::string beside = path + '.' + std::to_string(std::random_device()()) + ".tmp";
    std::error_code error;
    {
        std::ofstream file(beside, std::ios::binary);
        file << bytes;
        file.close();
        if (!file) {
            std::filesystem::remove(beside, error);
            throw Failure(Printable(path) + " cannot be written");
        }
    }
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status)) {
        std::filesystem::permissions(beside, status.permissions(), error);
    }
    std::filesystem::rename(beside, path);
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
