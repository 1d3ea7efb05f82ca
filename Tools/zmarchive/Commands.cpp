#include "Commands.h"

#include "Collect.h"
#include "Progress.h"
#include "Text.h"
#include "Warnings.h"
#include "ZmBigFile.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace fs = std::filesystem;

namespace {

/// Opens an archive to change it. A damaged one is refused: saving what is left of it would make the damage permanent.
void OpenToChange(ZmBigFile& archive, const Arguments& arguments)
{
    OpenArchive(archive, arguments);
    if (WarningCount() != 0) {
        throw Failure(arguments.archive +
                      " is damaged and was not changed: extract what is left and create a new archive");
    }
}

/// Saves to `path`, or in place for null. Returns 1 if there were warnings, for example about a file that has vanished.
int Save(ZmBigFile& archive, const char* path, const Arguments& arguments)
{
    const std::string summary = CountText(uint64_t(archive.GetEntryCount())) + ", " + SizeText(TotalSize(archive));
    {
        ProgressBar progress("saving", arguments.IsQuiet());
        if (!archive.Save(path, &progress)) {
            progress.Clear();
            throw Failure(arguments.archive + " was not saved");
        }
    }
    if (!arguments.IsQuiet()) {
        std::printf("%s: %s\n", Printable(arguments.archive).c_str(), summary.c_str());
    }
    return WarningCount() == 0 ? 0 : 1;
}

/// Adds a file. The library takes backslashes for slashes, so a path that has one elsewhere is read here.
bool AppendFile(ZmBigFile& archive, const SourceFile& file, bool replace)
{
    if (fs::path::preferred_separator == '\\' || file.path.find('\\') == std::string::npos) {
        return archive.Append(file.name.c_str(), file.path.c_str(), 1, replace) != 0;
    }
    std::ifstream input(file.path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(input), {});
    if (!input || bytes.size() > INT_MAX) {
        return false;
    }
    if (replace) {
        archive.Remove(file.name.c_str());
    }
    return archive.Append(file.name.c_str(), bytes.data(), unsigned(bytes.size())) != 0;
}

void AppendAll(ZmBigFile& archive, const std::vector<SourceFile>& files, bool replace)
{
    std::set<std::string> names;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        names.insert(archive.GetEntryName(i));
    }
    for (const SourceFile& file : files) {
        if (!replace && names.count(file.name) != 0) {
            throw Failure(Printable(file.name) + " is already in the archive (--replace replaces it)");
        }
        if (!AppendFile(archive, file, replace)) {
            throw Failure(Printable(file.path) + " cannot be read");
        }
    }
}

void TellOfFolders(const std::vector<SourceFile>& files, const Arguments& arguments)
{
    const bool folders = std::any_of(files.begin(), files.end(),
                                     [](const SourceFile& file) { return file.name.find('/') != std::string::npos; });
    if (folders && !arguments.IsQuiet()) {
        std::printf("note: some names include a folder; ZmBigFile::Find() ignores folders and does not find them "
                    "(--flat leaves the folders out)\n");
    }
}

std::string EndOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(Printable(path) + " cannot be read");
    }
    char last = '\n';
    if (file.seekg(-1, std::ios::end)) {
        file.get(last);
    }
    return std::string(1, last);
}

}  // namespace

void OpenArchive(ZmBigFile& archive, const Arguments& arguments)
{
    if (!fs::is_regular_file(arguments.archive)) {
        throw Failure(Printable(arguments.archive) + ": no such file");
    }
    if (!archive.OpenExisting(arguments.archive.c_str())) {
        throw Failure(Printable(arguments.archive) + " is not an archive or cannot be read");
    }
}

bool IsWhole(ZmBigFile& archive, int position)
{
    ZmSubFile sub;
    archive.GetEntryFile(position, &sub);
    return archive.GetEntrySize(position) == 0 || sub.IsValid();
}

void ReadEntry(ZmBigFile& archive, int position, const std::function<void(const char* bytes, size_t size)>& take)
{
    constexpr unsigned kStep = 1 << 18;
    if (!IsWhole(archive, position)) {
        throw Failure("is incomplete in the archive");
    }
    unsigned rest = archive.GetEntrySize(position);
    std::vector<char> bytes(std::min(kStep, rest));
    ZmSubFile sub;
    archive.GetEntryFile(position, &sub);
    for (unsigned step; rest != 0; rest -= step) {
        step = std::min(rest, kStep);
        sub.Read(bytes.data(), step);  // always says that it has succeeded
        if (!sub.IsValid()) {
            throw Failure("cannot be read");
        }
        take(bytes.data(), step);
    }
}

int Create(const Arguments& arguments)
{
    if (fs::exists(arguments.archive) && !arguments.Has(Arguments::FORCE)) {
        throw Failure(Printable(arguments.archive) + " already exists (--force replaces it)");
    }
    const std::vector<SourceFile> files = CollectFiles(arguments);
    ZmBigFile archive;
    AppendAll(archive, files, false);
    const int code = Save(archive, arguments.archive.c_str(), arguments);
    TellOfFolders(files, arguments);
    return code;
}

int Add(const Arguments& arguments)
{
    const std::vector<SourceFile> files = CollectFiles(arguments);
    ZmBigFile archive;
    OpenToChange(archive, arguments);
    AppendAll(archive, files, arguments.Has(Arguments::REPLACE));
    const int code = Save(archive, nullptr, arguments);
    TellOfFolders(files, arguments);
    return code;
}

int Remove(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenToChange(archive, arguments);
    for (const std::string& argument : arguments.rest) {
        const std::string name = LowerCase(argument);
        int removed = 0;
        for (int i = archive.GetEntryCount() - 1; i >= 0; --i) {
            if (LowerCase(archive.GetEntryName(i)) == name) {
                removed += archive.RemoveEntry(i);
            }
        }
        if (removed == 0) {
            throw Failure("there is no entry " + Printable(name));
        }
    }
    return Save(archive, nullptr, arguments);
}

int Reorder(const Arguments& arguments)
{
    const std::string& list = arguments.rest[0];
    if (EndOf(list) != "\n") {
        throw Failure(Printable(list) + ": the last line must end with a line feed");
    }
    ZmBigFile archive;
    OpenToChange(archive, arguments);
    if (!archive.LoadIndex(list.c_str()) || WarningCount() != 0) {
        throw Failure(Printable(list) + " lists names that are not in the archive; nothing was changed");
    }
    return Save(archive, nullptr, arguments);
}
