#include "Commands.h"

#include "Lines.h"
#include "Text.h"
#include "ZmConfiguration.h"

#include <cstdio>
#include <filesystem>

namespace {

void AddListing(const ZmConfigurationSection& section, const std::string& path, std::string& res)
{
    auto entry = section.BeginChildEntry();
    while (const ZmConfigurationEntry* child = section.GetNextChildEntry(entry)) {
        res += path + child->GetName() + " = " + child->GetValue() + '\n';
    }
    auto next = section.BeginChildSection();
    while (const ZmConfigurationSection* child = section.GetNextChildSection(next)) {
        AddListing(*child, path + child->GetName() + '.', res);
    }
}

/// The name of an entry and, if it has one, the path of its section.
struct EntryPath {
    explicit EntryPath(const std::string& path)
    {
        const size_t dot = path.rfind('.');
        hasSection = dot != std::string::npos;
        section = path.substr(0, hasSection ? dot : 0);
        name = hasSection ? path.substr(dot + 1) : path;
    }

    bool hasSection;
    std::string section, name;
};

void Save(const ZmConfiguration& tree, const std::string& path)
{
    XString why;
    if (!tree.UpdateFile(path.c_str(), &why)) {
        throw Failure(Printable(path) + ": " + Printable(why.Text()));
    }
}

void Build(ZmConfiguration& tree, const std::vector<std::string>& lines, const std::string& path)
{
    int line = 0;
    XString error;
    if (!tree.BuildFromMemory(TextToRead(lines).c_str(), line, error)) {
        throw Failure(Printable(path) + ':' + std::to_string(line + 1) + ": " + Printable(error.Text()));
    }
}

std::string FormattedLine(const std::string& line)
{
    const size_t equal = line.find('=');
    if (line.empty() || line[0] == '#' || line[0] == '<' || equal == std::string::npos) {
        return line;
    }
    return Trimmed(Trimmed(line.substr(0, equal)) + " = " + Trimmed(line.substr(equal + 1)));
}

}  // namespace

void Load(ZmConfiguration& tree, const std::string& path)
{
    Build(tree, LinesOf(ReadFile(path)), path);
}

std::string ListingOf(const ZmConfiguration& tree)
{
    std::string res;
    AddListing(tree.Root(), "", res);
    return res;
}

int Get(const Arguments& arguments)
{
    ZmConfiguration tree(0);
    Load(tree, arguments.file);
    const std::string& path = arguments.rest[0];
    const ZmConfigurationEntry* entry = tree.FindEntry(path.c_str());
    if (entry == nullptr && arguments.rest.size() == 1) {
        throw Failure(Printable(arguments.file) + " has no entry " + Printable(path));
    }
    std::puts(entry != nullptr ? entry->GetValue() : arguments.rest[1].c_str());
    return 0;
}

int List(const Arguments& arguments)
{
    ZmConfiguration tree(0);
    Load(tree, arguments.file);
    std::fputs(ListingOf(tree).c_str(), stdout);
    return 0;
}

int Set(const Arguments& arguments)
{
    ZmConfiguration tree{static_cast<unsigned short>(arguments.indent)};
    if (std::filesystem::exists(arguments.file)) {
        Load(tree, arguments.file);
    }
    if (!tree.SetText(arguments.rest[0].c_str(), arguments.rest[1].c_str())) {
        throw Failure("there is no memory for " + Printable(arguments.rest[0]));
    }
    Save(tree, arguments.file);
    return 0;
}

int Remove(const Arguments& arguments)
{
    ZmConfiguration tree{static_cast<unsigned short>(arguments.indent)};
    Load(tree, arguments.file);
    for (const std::string& path : arguments.rest) {
        const EntryPath place(path);
        ZmConfigurationSection* section =
            place.hasSection ? tree.GetSubSection(place.section.c_str(), 1) : &tree.Root();
        if (section == nullptr || !section->DeleteEntry(place.name.c_str())) {
            throw Failure(Printable(arguments.file) + " has no entry " + Printable(path));
        }
    }
    Save(tree, arguments.file);
    return 0;
}

int Format(const Arguments& arguments)
{
    ZmConfiguration before(0), after(0);
    const std::vector<std::string> lines = LinesOf(ReadFile(arguments.file));
    Build(before, lines, arguments.file);
    std::string res;
    int depth = 0;
    for (const std::string& line : lines) {
        const std::string text = Trimmed(line);
        const bool closes = text.compare(0, 2, "</") == 0;
        depth -= closes ? 1 : 0;
        res += std::string(text.empty() ? 0 : size_t(depth * arguments.indent), ' ') + FormattedLine(text) + '\n';
        depth += !closes && !text.empty() && text[0] == '<' ? 1 : 0;
    }
    int line = 0;
    XString error;
    if (!after.BuildFromMemory((res + '\n').c_str(), line, error) || ListingOf(before) != ListingOf(after)) {
        throw Failure(Printable(arguments.file) + " would be read differently and was not changed");
    }
    WriteFile(arguments.file, res);
    return 0;
}
