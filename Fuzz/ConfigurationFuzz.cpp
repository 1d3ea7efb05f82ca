// Arbitrary texts as configurations, from a file and from memory. Where both are documented to agree, they must give
// the same tree, and a tree that was read must load unchanged from the file to which it is saved.

#include "Input.h"
#include "ScratchFolder.h"
#include "ZmConfiguration.h"

namespace {

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
    static const ScratchFolder scratch;
    static const std::string path = scratch / "configuration";
    const std::string text(reinterpret_cast<const char*>(data), size);
    WriteFile(path, text);
    ZmConfiguration fromFile(1), fromMemory(0), again(0);
    int fileLine = -1, memoryLine = -1, line = -1;
    XString fileError, memoryError, error, why;
    const int read = fromFile.BuildFromFile(path.c_str(), fileLine, fileError);
    fromMemory.BuildFromMemory((text + "\n\n").c_str(), memoryLine, memoryError);
    const bool isPlain = text.find_first_of(std::string("\r\0", 2)) == std::string::npos && !HasLongLine(text);
    if (isPlain) {
        Demand(Print(fromFile) == Print(fromMemory) && fileError == memoryError);
        Demand(read == 0 ? fileLine == memoryLine : fileLine <= memoryLine);
    }
    const bool canBeSaved = fromFile.CanBeSaved(why) == 1;
    Demand(canBeSaved || !isPlain);
    if (canBeSaved && fromFile.GetNumberOfSubSectionsRecursive() < 10) {
        Demand(fromFile.SaveToFile(path.c_str()) == 1);
        Demand(again.BuildFromFile(path.c_str(), line, error) == 1);
        Demand(Print(again) == Print(fromFile));
    }
    return 0;
}
