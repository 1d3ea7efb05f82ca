#include "OutputFile.h"

#include "Text.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>

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

OutputFile::OutputFile(const Folder& target, const std::string& targetPath, const std::string& name, bool replaces)
    : m_Target(target), m_Place(targetPath), m_Replaces(replaces)
{
    const std::vector<std::string> parts = PartsOf(name);
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
        Enter(parts[i]);
    }
    m_Name = parts.back();
    CheckPlace();
    MakeBeside();
}

void OutputFile::Enter(const std::string& part)
{
    m_Place += '/' + part;
    const Folder& parent = Last();
    parent.MakeFolder(part);  // fails if it is there already
    m_Folders.emplace_back(parent, part);
    if (!m_Folders.back().IsOpen()) {
        const std::string reason = LastError();
        switch (parent.KindOf(part)) {
        case Folder::A_LINK: throw Failure(m_Place + " is a link, which may lead elsewhere");
        case Folder::A_FILE:
        case Folder::OTHER: throw Failure(m_Place + " is not a folder");
        default: throw Failure(m_Place + " cannot be opened: " + reason);
        }
    }
}

void OutputFile::CheckPlace()
{
    m_Place += '/' + m_Name;
    const Folder::Kind kind = Last().KindOf(m_Name);
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

void OutputFile::MakeBeside()
{
    m_File = std::make_unique<NewFile>(Last());
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
