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

void WriteEntry(ZmBigFile& archive, int position, OutputFile& output)
{
    constexpr unsigned kStep = 1 << 18;
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
        output.Write(bytes.data(), step);
    }
    output.Finish();
}

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

}  // namespace

int Extract(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    const std::vector<int> chosen = Chosen(archive, arguments.rest);
    std::error_code ignored;
    std::filesystem::create_directories(arguments.target, ignored);
    const Folder target(arguments.target);
    if (!target.IsOpen()) {
        throw Failure("cannot use the folder " + arguments.target + ": " + LastError());
    }
    ProgressBar progress("extracting", arguments.IsQuiet());
    size_t done = 0;
    uint64_t bytes = 0;
    for (size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = archive.GetEntryName(chosen[i]);
        try {
            if (!IsWhole(archive, chosen[i])) {
                throw Failure("is incomplete in the archive");
            }
            OutputFile output(target, arguments.target, name, arguments.Has(Arguments::FORCE));
            WriteEntry(archive, chosen[i], output);
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
