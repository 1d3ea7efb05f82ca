#include "Commands.h"

#include "Collect.h"
#include "Progress.h"
#include "Text.h"
#include "Warnings.h"
#include "ZmBigFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
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

uint64_t TotalSize(const ZmBigFile& archive)
{
    uint64_t total = 0;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        total += archive.GetEntrySize(i);
    }
    return total;
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
        if (!archive.Append(file.name.c_str(), file.path.c_str(), 1, replace)) {
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

int Create(const Arguments& arguments)
{
    if (fs::exists(arguments.archive) && !arguments.Has(Arguments::FORCE)) {
        throw Failure(Printable(arguments.archive) + " already exists (--force replaces it)");
    }
    const std::vector<SourceFile> files =
        CollectFiles(arguments.rest, arguments.Has(Arguments::FLAT), arguments.archive);
    ZmBigFile archive;
    AppendAll(archive, files, false);
    const int code = Save(archive, arguments.archive.c_str(), arguments);
    TellOfFolders(files, arguments);
    return code;
}

int Add(const Arguments& arguments)
{
    const std::vector<SourceFile> files =
        CollectFiles(arguments.rest, arguments.Has(Arguments::FLAT), arguments.archive);
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

int List(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    const int count = archive.GetEntryCount();
    for (int i = 0; i < count; ++i) {
        const std::string name = Printable(archive.GetEntryName(i));
        if (arguments.Has(Arguments::NAMES)) {
            std::printf("%s\n", name.c_str());
        } else {
            std::printf("%10s  %s%s\n", SizeText(archive.GetEntrySize(i)).c_str(), name.c_str(),
                        IsWhole(archive, i) ? "" : "  (incomplete)");
        }
    }
    if (!arguments.Has(Arguments::NAMES)) {
        std::printf("%10s  in %s\n", SizeText(TotalSize(archive)).c_str(), CountText(uint64_t(count)).c_str());
    }
    return 0;
}

int Verify(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    int problems = WarningCount(), again = 0, folders = 0, capitals = 0;
    uint64_t end = 8;
    std::set<std::string> names;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        const std::string name = archive.GetEntryName(i);
        if (!IsWhole(archive, i)) {
            std::printf("%s is incomplete\n", Printable(name).c_str());
            ++problems;
        }
        end += name.size() + 5 + archive.GetEntrySize(i);
        again += !names.insert(name).second;
        folders += name.find_first_of("/\\") != std::string::npos;
        capitals += name != LowerCase(name);
    }
    const uint64_t size = fs::file_size(arguments.archive);
    if (problems == 0 && size > end) {
        std::printf("%s after the last entry belong to no entry\n", SizeText(size - end).c_str());
        ++problems;
    }
    const auto note = [](int count, const char* what) {
        if (count != 0) {
            std::printf("note: %s %s\n", CountText(uint64_t(count)).c_str(), what);
        }
    };
    note(again, "with the name of an earlier entry, which is no longer found by name");
    note(folders, "with a folder in the name, which ZmBigFile::Find() does not find");
    note(capitals, "with capitals in the name, which cannot be found by name");
    std::printf("%s: %s of %s\nThe format has no checksum: the structure was checked, not the bytes of the entries.\n",
                problems == 0 ? "sound" : "DAMAGED", CountText(uint64_t(archive.GetEntryCount())).c_str(),
                SizeText(TotalSize(archive)).c_str());
    return problems == 0 ? 0 : 1;
}
