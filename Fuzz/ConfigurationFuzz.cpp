// Arbitrary texts as configurations, from a file and from memory. Where both are documented to agree, they must give
// the same tree. A tree that was read, or one built of any texts for which CanBeSaved() is true, must load unchanged
// from the file to which it is saved.

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
    return Print(tree.Root());
}

bool IsEqual(const ZmConfigurationSection& a, const ZmConfigurationSection& b)
{
    bool res =
        a.GetNumberOfEntries() == b.GetNumberOfEntries() && a.GetNumberOfSubSections() == b.GetNumberOfSubSections();
    auto entry = a.BeginChildEntry();
    while (const ZmConfigurationEntry* child = res ? a.GetNextChildEntry(entry) : nullptr) {
        const ZmConfigurationEntry* other = b.GetEntry(child->GetName());
        res = other != nullptr && XString(child->GetValue()) == other->GetValue();
    }
    auto next = a.BeginChildSection();
    while (const ZmConfigurationSection* child = res ? a.GetNextChildSection(next) : nullptr) {
        const ZmConfigurationSection* other = b.GetSubSection(child->GetName());
        res = other != nullptr && IsEqual(*child, *other);
    }
    return res;
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

/// A tree for which CanBeSaved() is true must load as it was saved.
bool TestSaving(const ZmConfiguration& tree, const std::string& path)
{
    constexpr int kMostSections = 10;  // of deep trees, indentation takes time
    ZmConfiguration again(0);
    XString error, why;
    int line = 0;
    const bool canBeSaved = tree.CanBeSaved(why) == 1;
    if (canBeSaved && tree.GetNumberOfSubSectionsRecursive() < kMostSections) {
        Demand(tree.SaveToFile(path.c_str()) == 1);
        Demand(again.BuildFromFile(path.c_str(), line, error) == 1);
        Demand(Print(again) == Print(tree));
    }
    return canBeSaved;
}

/// A tree of any names and values, some of them about as long as a line can be.
void TestBuiltTree(Input input, const std::string& path)
{
    constexpr int kAboutLine = 1000;
    ZmConfiguration tree(uint16_t(input.UpTo(5)));
    ZmConfigurationSection* section = nullptr;
    for (int step = 0; step < 8 && !input.IsEmpty(); ++step) {
        const int choice = input.UpTo(7);
        std::string name = input.Text(input.UpTo(4)).c_str(), value = input.Text(input.UpTo(6)).c_str();
        (choice == 6 ? name : value).append(choice >= 6 ? size_t(kAboutLine + input.UpTo(30)) : 0, 'x');
        if (choice == 0) {
            section = tree.CreateSubSection(nullptr, name.c_str());
        } else if (choice == 1 && section != nullptr) {
            section = section->CreateSubSection(name.c_str());
        } else if (section != nullptr) {
            section->AddEntry(name.c_str(), value.c_str());
        } else {
            tree.AddEntry(nullptr, name.c_str(), value.c_str());
        }
    }
    TestSaving(tree, path);
}

/// A file that is updated must load as the tree, in whatever order; one that is refused must stay.
void TestUpdate(Input input, const std::string& path)
{
    const std::string all = input.Text(input.UpTo(1000)), old = input.Rest();
    MakeFile(path, all);
    ZmConfiguration tree(2), again(0);
    XString error, why;
    int line = 0;
    tree.BuildFromFile(path.c_str(), line, error);
    MakeFile(path, old);
    if (tree.UpdateFile(path.c_str(), &why) == 1) {
        Demand(again.BuildFromFile(path.c_str(), line, error) == 1 && IsEqual(tree.Root(), again.Root()));
    } else {
        Demand(!why.IsEmpty() && BytesOf(path) == old);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const ScratchFolder scratch;
    static const std::string path = scratch / "configuration";
    if (size != 0 && data[0] == 0xFF) {
        TestBuiltTree(Input(data + 1, size - 1), path);
        return 0;
    }
    if (size != 0 && data[0] == 0xFE) {
        TestUpdate(Input(data + 1, size - 1), path);
        return 0;
    }
    const std::string text(reinterpret_cast<const char*>(data), size);
    MakeFile(path, text);
    ZmConfiguration fromFile(1), fromMemory(0);
    int fileLine = -1, memoryLine = -1;
    XString fileError, memoryError;
    const int read = fromFile.BuildFromFile(path.c_str(), fileLine, fileError);
    fromMemory.BuildFromMemory((text + "\n\n").c_str(), memoryLine, memoryError);
    const bool isPlain = text.find_first_of(std::string("\r\0", 2)) == std::string::npos && !HasLongLine(text);
    if (isPlain) {
        Demand(Print(fromFile) == Print(fromMemory) && fileError == memoryError);
        Demand(read == 0 ? fileLine == memoryLine : fileLine <= memoryLine);
    }
    Demand(TestSaving(fromFile, path) || !isPlain);
    return 0;
}
