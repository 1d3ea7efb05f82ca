#include "Commands.h"
#include "Progress.h"
#include "System.h"
#include "Text.h"
#include "ZmBigFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

namespace fs = std::filesystem;

namespace {

/// Splits the name of an entry. Throws Failure for a name that leads out of the target folder.
std::vector<std::string> PartsOf(const std::string& name)
{
    const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
    if (name.empty() || isSeparator(name[0]) || (name.size() > 1 && name[1] == ':'))
        throw Failure("is no relative name");
    std::vector<std::string> parts;
    for (auto at = name.begin(); at != name.end();) {
        const auto end = std::find_if(at, name.end(), isSeparator);
        const std::string part(at, end);
        if (part.empty() || part == "." || part == ".." || IsSpecialName(part))
            throw Failure("is no safe name");
        parts.push_back(part);
        at = end == name.end() ? end : end + 1;
        if (end != name.end() && at == name.end())
            throw Failure("is the name of a folder");
    }
    return parts;
}

/// Creates the folders on the way to an entry's file. Throws Failure if one of them exists as a link or as a file.
fs::path PlaceOf(const fs::path& target, const std::vector<std::string>& parts, bool replaces)
{
    fs::path place = target;
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
        place /= parts[i];
        if (IsLink(place.string()))
            throw Failure(place.string() + " is a link, which may lead elsewhere");
        if (!fs::exists(place))
            fs::create_directory(place);
        else if (!fs::is_directory(place))
            throw Failure(place.string() + " is no folder");
    }
    place /= parts.back();
    if (IsLink(place.string()))
        throw Failure(place.string() + " is a link, which may lead elsewhere");
    if (fs::exists(place)) {
        if (!fs::is_regular_file(place))
            throw Failure(place.string() + " is no file");
        if (!replaces)
            throw Failure(place.string() + " exists (--force replaces it)");
        fs::remove(place);  // hard links to the old file keep its contents
    }
    return place;
}

void WriteEntry(ZmBigFile& archive, int position, const fs::path& place)
{
    constexpr unsigned kStep = 1 << 18;
    ZmSubFile sub;
    archive.GetEntryFile(position, &sub);
    std::ofstream file(place, std::ios::binary);
    std::vector<char> bytes(std::min(kStep, sub.Size()));
    bool read = true;
    for (unsigned rest = sub.Size(), step; rest != 0 && read && file; rest -= step) {
        step = std::min(rest, kStep);
        read = sub.Read(bytes.data(), step) == step && sub.IsValid();
        file.write(bytes.data(), step);
    }
    file.close();
    if (!read || !file) {
        std::error_code ignored;
        fs::remove(place, ignored);
        throw Failure(read ? place.string() + " cannot be written" : "cannot be read");
    }
}

/// The positions of the named entries, or of all entries if no name is given.
std::vector<int> Chosen(const ZmBigFile& archive, const std::vector<std::string>& names)
{
    std::set<std::string> wanted, missing;
    for (const std::string& name : names)
        wanted.insert(LowerCase(name));
    missing = wanted;
    std::vector<int> res;
    for (int i = 0; i < archive.GetEntryCount(); ++i) {
        const std::string name = LowerCase(archive.GetEntryName(i));
        if (names.empty() || wanted.count(name) != 0)
            res.push_back(i);
        missing.erase(name);
    }
    if (!missing.empty())
        throw Failure("there is no entry " + Printable(*missing.begin()));
    return res;
}

}  // namespace

int Extract(const Arguments& arguments)
{
    ZmBigFile archive;
    OpenArchive(archive, arguments);
    const std::vector<int> chosen = Chosen(archive, arguments.Rest);
    fs::create_directories(arguments.Target);
    ProgressBar progress("extracting", arguments.IsQuiet());
    size_t done = 0;
    uint64_t bytes = 0;
    for (size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = archive.GetEntryName(chosen[i]);
        try {
            if (!IsWhole(archive, chosen[i]))
                throw Failure("is not all in the file");
            WriteEntry(archive, chosen[i], PlaceOf(arguments.Target, PartsOf(name), arguments.Has(Arguments::FORCE)));
            bytes += archive.GetEntrySize(chosen[i]);
            ++done;
        } catch (const std::exception& failure) {
            progress.Clear();
            std::fprintf(stderr, "zmarchive: %s: %s\n", Printable(name).c_str(), Printable(failure.what()).c_str());
        }
        progress.Progress(int((i + 1) * 100 / chosen.size()));
    }
    progress.Clear();
    if (!arguments.IsQuiet())
        std::printf("%s, %s, extracted to %s\n", CountText(done).c_str(), SizeText(bytes).c_str(),
                    Printable(arguments.Target).c_str());
    return done == chosen.size() ? 0 : 1;
}
