#include "Commands.h"
#include "OutputFile.h"
#include "Progress.h"
#include "System.h"
#include "Text.h"
#include "ZmBigFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <set>

namespace {

/// The positions of the named entries, or of all entries if no name is given.
std::vector<int> Chosen(const ZmBigFile& archive, const std::vector<std::string>& names)
{
    std::set<std::string> wanted, missing;
    for (const std::string& name : names) {
        wanted.insert(LowerCase(name));
    }
    missing = wanted;
    std::vector<int> res;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        const std::string name = LowerCase(archive.GetEntryName(i));
        if (names.empty() || wanted.count(name) != 0) {
            res.push_back(i);
        }
        missing.erase(name);
    }
    if (!missing.empty()) {
        throw Failure("there is no entry " + Printable(*missing.begin()));
    }
    return res;
}

/// Writes the entries to the standard output, one after the other.
int Print(ZmBigFile& archive, const std::vector<int>& chosen)
{
    UseBytes(stdout);
    for (const int position : chosen) {
        ReadEntry(archive, position, [](const char* bytes, size_t size) {
            if (std::fwrite(bytes, 1, size, stdout) != size) {
                throw Failure("the output cannot be written");
            }
        });
    }
    return 0;
}

}  // namespace

int Extract(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    const std::vector<int> chosen = Chosen(archive, arguments.rest);
    if (IsStream(arguments.target)) {
        return Print(archive, chosen);
    }
    std::error_code ignored;
    std::filesystem::create_directories(arguments.target, ignored);
    OutputFolders folders(arguments.target);
    ProgressBar progress("extracting", arguments.IsQuiet());
    size_t done = 0;
    uint64_t bytes = 0;
    for (size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = archive.GetEntryName(chosen[i]);
        try {
            OutputFile output(folders, name, arguments.Has(Arguments::FORCE));
            ReadEntry(archive, chosen[i], [&](const char* piece, size_t size) { output.Write(piece, size); });
            output.Finish();
            bytes += archive.GetEntrySize(chosen[i]);
            ++done;
        } catch (const std::exception& failure) {
            progress.Clear();
            std::fprintf(stderr, "zmarchive: %s: %s\n", Printable(name).c_str(), Printable(failure.what()).c_str());
        }
        progress.Progress(int((i + 1) * 100 / chosen.size()));
    }
    progress.Clear();
    if (!arguments.IsQuiet()) {
        std::printf("%s, %s, extracted to %s\n", CountText(done).c_str(), SizeText(bytes).c_str(),
                    Printable(arguments.target).c_str());
    }
    return done == chosen.size() ? 0 : 1;
}
