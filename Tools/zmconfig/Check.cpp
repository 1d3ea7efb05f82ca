#include "Commands.h"
#include "Lines.h"
#include "Text.h"
#include "ZmConfiguration.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace {

constexpr size_t kLongest = 1023;

/// What is wrong with the lines, by their numbers from 1 on.
typedef std::multimap<int, std::string> Mistakes;

// The library stops at the first mistake: each is noted and its line left out, until the rest is read.
void FindErrors(std::vector<std::string> lines, ZmConfiguration& tree, Mistakes& res)
{
    for (std::string& line : lines) {
        line.resize(std::min(line.size(), kLongest));  // the library would count its pieces
    }
    int line = 0;
    XString error;
    while (!tree.BuildFromMemory(TextToRead(lines).c_str(), line, error) && size_t(line) < lines.size()) {
        res.emplace(line + 1, Printable(error.Text()));
        lines[size_t(line)].clear();
    }
}

void CollectLines(const ZmConfigurationSection& section, std::set<int>& res)
{
    auto entry = section.BeginChildEntry();
    while (const ZmConfigurationEntry* child = section.GetNextChildEntry(entry)) {
        res.insert(child->GetLine());
    }
    auto next = section.BeginChildSection();
    while (const ZmConfigurationSection* child = section.GetNextChildSection(next)) {
        CollectLines(*child, res);
    }
}

// What is read, but not as its writer may believe.
void FindTraps(const std::vector<std::string>& lines, const ZmConfiguration& tree, Mistakes& res)
{
    std::set<int> read;
    CollectLines(tree.Root(), read);
    std::vector<int> open;
    for (int number = 1; number <= int(lines.size()); ++number) {
        const std::string line = Trimmed(lines[size_t(number - 1)]);
        const bool isWrong = res.count(number) != 0;
        if (lines[size_t(number - 1)].size() > kLongest) {
            res.emplace(number, "longer than 1023 characters: it is read in pieces");
        } else if (isWrong || line.empty() || line[0] == '#') {
            continue;
        } else if (line.compare(0, 2, "</") == 0) {
            open.pop_back();
        } else if (line[0] == '<') {
            open.push_back(number);
        } else if (read.count(number) == 0) {
            res.emplace(number, "an earlier entry has this name, and the first one wins");
        }
    }
    for (const int number : open) {
        res.emplace(number, "the section is not closed");
    }
}

size_t CheckFile(const std::string& path)
{
    Mistakes mistakes;
    const std::vector<std::string> lines = LinesOf(ReadFile(path));
    ZmConfiguration tree(0);
    FindErrors(lines, tree, mistakes);
    FindTraps(lines, tree, mistakes);
    for (const auto& [line, text] : mistakes) {
        std::printf("%s:%d: %s\n", Printable(path).c_str(), line, text.c_str());
    }
    return mistakes.size();
}

}  // namespace

int Check(const Arguments& arguments)
{
    size_t count = CheckFile(arguments.file);
    for (const std::string& path : arguments.rest) {
        count += CheckFile(path);
    }
    return count == 0 ? 0 : 1;
}
