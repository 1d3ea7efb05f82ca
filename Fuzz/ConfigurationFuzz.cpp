// Arbitrary texts as configurations, from a file and from memory. Where both are documented to agree, they must give
// the same tree, and a tree that was read must load unchanged from the file to which it is saved.

#include "ZmConfiguration.h"
#include "ZmFileSystem.h"

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

struct TemporaryFile {
    TemporaryFile() : path(ZmGetTempPath().Text() + ("ZmMath-fuzz-" + std::to_string(std::random_device()()))) {}
    ~TemporaryFile() { remove(path.c_str()); }

    const std::string path;
};

std::string Print(const ZmConfigurationSection& section)
{
    std::string text;
    auto entry = section.BeginChildEntry();
    while (const ZmConfigurationEntry* child = section.GetNextChildEntry(entry)) {
        text += std::string("\n") + child->GetName() + '=' + child->GetValue();
    }
    auto next = section.BeginChildSection();
    while (const ZmConfigurationSection* child = section.GetNextChildSection(next)) {
        text += std::string("\n<") + child->GetName() + '>' + Print(*child) + "\n.";
    }
    return text;
}

std::string Print(const ZmConfiguration& tree)
{
    std::string text;
    auto entry = tree.BeginEntries();
    while (const ZmConfigurationEntry* child = tree.GetNextEntry(entry)) {
        text += std::string("\n") + child->GetName() + '=' + child->GetValue();
    }
    auto next = tree.BeginSections();
    while (const ZmConfigurationSection* child = tree.GetNextSection(next)) {
        text += std::string("\n<") + child->GetName() + '>' + Print(*child) + "\n.";
    }
    return text;
}

void Demand(bool condition)
{
    if (!condition) {
        abort();
    }
}

bool HasLongLine(const std::string& text)
{
    constexpr size_t kLong = 1000;
    size_t begin = 0, longest = 0;
    for (size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find('\n', begin);
        longest = std::max(longest, std::min(end, text.size()) - begin);
    }
    return longest > kLong;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const TemporaryFile file;
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (FILE* stream = fopen(file.path.c_str(), "wb")) {
        fwrite(text.data(), 1, text.size(), stream);
        fclose(stream);
    }
    ZmConfiguration fromFile(1), fromMemory(0), again(0);
    int fileLine = -1, memoryLine = -1, line = -1;
    XString fileError, memoryError, error;
    const int read = fromFile.BuildFromFile(file.path.c_str(), fileLine, fileError);
    fromMemory.BuildFromMemory((text + "\n\n").c_str(), memoryLine, memoryError);
    if (text.find_first_of(std::string("\r\x1a\0", 3)) != std::string::npos || HasLongLine(text)) {
        return 0;
    }
    Demand(Print(fromFile) == Print(fromMemory) && fileError == memoryError);
    Demand(read == 0 ? fileLine == memoryLine : fileLine <= memoryLine);
    if (fromFile.GetNumberOfSubSectionsRecursive() < 10) {
        Demand(fromFile.SaveToFile(file.path.c_str()) == 1);
        Demand(again.BuildFromFile(file.path.c_str(), line, error) == 1);
        Demand(Print(again) == Print(fromFile));
    }
    return 0;
}
