#include "OutputFile.h"

#include "Text.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace {

/// Splits the name of an entry. Throws Failure for a name that leads out of the target folder.
std::vector<std::string> PartsOf(const std::string& name)
{
    const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
    if (name.empty() || isSeparator(name[0]) || (name.size() > 1 && name[1] == ':')) {
        throw Failure("is not a relative name");
    }
    std::vector<std::string> parts;
    for (auto at = name.begin(); at != name.end();) {
        const auto end = std::find_if(at, name.end(), isSeparator);
        const std::string part(at, end);
        if (part.empty() || part == "." || part == ".." || IsSpecialName(part)) {
            throw Failure("is not a safe name");
        }
        parts.push_back(part);
        at = end == name.end() ? end : end + 1;
        if (end != name.end() && at == name.end()) {
            throw Failure("names a folder, not a file");
        }
    }
    return parts;
}

/// The name with a number, such as "name.1234abcd.tmp". A long name is cut, but not inside a UTF-8 character.
std::string TemporaryName(const std::string& name, uint32_t number)
{
    constexpr size_t kLongest = 255;  // in bytes, the limit of common file systems
    char ending[16];
    const size_t added = size_t(std::snprintf(ending, sizeof(ending), ".%08x.tmp", unsigned(number)));
    size_t length = name.size();
    if (length + added > kLongest) {
        length = kLongest - added;
        while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
            --length;
        }
    }
    return name.substr(0, length) + ending;
}

}  // namespace

OutputFolders::OutputFolders(const std::string& path) : m_Path(path), m_Target(path)
{
    if (!m_Target.IsOpen()) {
        throw Failure("cannot use the folder " + path + ": " + LastError());
    }
}

const Folder& OutputFolders::Enter(const std::vector<std::string>& parts)
{
    auto shared = m_Open.begin();
    for (auto part = parts.begin(); shared != m_Open.end() && part != parts.end() && shared->name == *part; ++part) {
        ++shared;
    }
    m_Open.erase(shared, m_Open.end());
    while (m_Open.size() < parts.size()) {
        OpenNext(parts);
    }
    return m_Open.empty() ? m_Target : m_Open.back().folder;
}

void OutputFolders::OpenNext(const std::vector<std::string>& parts)
{
    const std::string& part = parts[m_Open.size()];
    const Folder& parent = m_Open.empty() ? m_Target : m_Open.back().folder;
    const bool isNew = parent.MakeFolder(part);
    Folder folder(parent, part);
    if (!folder.IsOpen()) {
        const std::string reason = LastError(), place = PlaceOf(parts, m_Open.size() + 1);
        switch (parent.KindOf(part)) {
        case Folder::A_LINK: throw Failure(place + " is a link, which may lead elsewhere");
        case Folder::A_FILE:
        case Folder::OTHER: throw Failure(place + " is not a folder");
        default: throw Failure(place + " cannot be opened: " + reason);
        }
    }
    m_Open.push_back({part, std::move(folder), isNew});
}

std::string OutputFolders::PlaceOf(const std::vector<std::string>& parts, size_t count) const
{
    std::string res = m_Path;
    for (size_t i = 0; i < count; ++i) {
        res += '/' + parts[i];
    }
    return res;
}

OutputFile::OutputFile(OutputFolders& folders, const std::string& name, bool replaces) : m_Replaces(replaces)
{
    std::vector<std::string> parts = PartsOf(name);
    m_Place = folders.PlaceOf(parts, parts.size());
    m_Name = parts.back();
    parts.pop_back();
    const Folder& folder = folders.Enter(parts);
    // In a new folder only another entry can have the name. Finish() finds that, too, and the question costs a system
    // call.
    if (!folders.IsNew()) {
        CheckPlace(folder);
    }
    MakeBeside(folder);
}

void OutputFile::CheckPlace(const Folder& folder)
{
    const Folder::Kind kind = folder.KindOf(m_Name);
    m_IsThere = kind == Folder::A_FILE;
    if (kind == Folder::A_LINK) {
        throw Failure(m_Place + " is a link, which may lead elsewhere");
    }
    if (kind == Folder::A_FOLDER || kind == Folder::OTHER) {
        throw Failure(m_Place + " is not a file");
    }
    if (m_IsThere && !m_Replaces) {
        throw Failure(m_Place + " already exists (--force replaces it)");
    }
}

void OutputFile::MakeBeside(const Folder& folder)
{
    m_File = std::make_unique<NewFile>(folder);
    auto number = uint32_t(std::chrono::steady_clock::now().time_since_epoch().count());
    NewFile::Result made;
    do {
        made = m_File->Make(TemporaryName(m_Name, number++), m_IsThere);
    } while (made == NewFile::TAKEN);
    if (made == NewFile::FAILED) {
        throw Failure(m_Place + " cannot be created: " + LastError());
    }
    if (m_IsThere) {
        m_File->TakePermissionsOf(m_Name);
    }
}

void OutputFile::Write(const char* bytes, size_t size)
{
    if (!m_File->Write(bytes, size)) {
        throw Failure(m_Place + " cannot be written: " + LastError());
    }
}

void OutputFile::Finish()
{
    // Waiting for the disk takes longer than all the rest. Only an old file is worth it, which a crash of the system
    // could otherwise turn into an empty one; new files can be extracted again.
    const bool written = !m_IsThere || m_File->Synchronise();
    const NewFile::Result named = written ? m_File->Rename(m_Name, m_Replaces) : NewFile::FAILED;
    if (named == NewFile::TAKEN) {
        throw Failure(m_Place + " already exists (--force replaces it)");
    }
    if (named == NewFile::FAILED) {
        throw Failure(m_Place + " cannot be written: " + LastError());
    }
}
