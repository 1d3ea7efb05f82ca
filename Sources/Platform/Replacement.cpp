#include "Platform/Replacement.h"

#include "Platform/OsClock.h"
#include "Platform/OsFiles.h"
#include "Platform/OsReplacement.h"
#include "Platform/OutOfMemory.h"

#include <stdio.h>

namespace zm {

namespace {

constexpr size_t kLongestName = 255;  // in bytes, the limit of common file systems
constexpr size_t kDigits = 8;         // of the number in a new file's name
constexpr char kEnding[] = ".tmp";
constexpr size_t kAdded = 1 + kDigits + sizeof(kEnding) - 1;

size_t NameStart(const std::string& path)
{
    const size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? 0 : separator + 1;
}

// The path and a dot. A long name is cut to leave room for the ending, but not inside a UTF-8 character.
std::string StemOf(const std::string& path)
{
    size_t length = path.size() - NameStart(path);
    if (length + kAdded > kLongestName) {
        length = kLongestName - kAdded;
        while (length > 0 && (static_cast<unsigned char>(path[NameStart(path) + length]) & 0xC0) == 0x80) {
            --length;
        }
    }
    return path.substr(0, NameStart(path) + length) + '.';
}

bool IsNewFileOf(const std::string& stem, const std::string& name)
{
    return name.size() == stem.size() - 1 + kAdded && name.compare(0, stem.size(), stem) == 0 &&
           name.compare(stem.size() + kDigits, std::string::npos, kEnding) == 0 &&
           name.find_first_not_of("0123456789abcdef", stem.size()) == stem.size() + kDigits;
}

}  // namespace

Replacement::~Replacement()
{
    if (m_Held != nullptr) {
        DiscardNewFile(m_Held, m_Fresh.c_str());
    }
}

bool Replacement::Begin(const char* path, Options options)
{
    m_HasFailed = true;
    return UnlessOutOfMemory(false, [&] {
        const bool begun = Prepare(path, options);
        m_HasFailed = !begun && SystemFailed();
        return begun;
    });
}

bool Replacement::Prepare(const char* path, Options options)
{
    m_Target = ReplacedPath(path);
    if (m_Target.empty() || !TakesReplacement(m_Target.c_str(), options)) {
        return false;
    }
    m_Stem = StemOf(m_Target);
    RemoveLeftovers();
    return MakeBeside(options);
}

bool Replacement::MakeBeside(Options options)
{
    uint32_t number = uint32_t(ReadCounter());
    bool taken = false;
    do {
        char ending[kAdded + 1];
        snprintf(ending, sizeof(ending), "%08x%s", number++, kEnding);
        m_Fresh = m_Stem + ending;
        m_Held = MakeNewFile(m_Fresh.c_str(), m_Target.c_str(), options, taken);
    } while (m_Held == nullptr && taken);
    return m_Held != nullptr;
}

void Replacement::RemoveLeftovers() const
{
    const size_t start = NameStart(m_Stem);
    const std::string folder = m_Stem.substr(0, start), stem = m_Stem.substr(start);
    DirectorySearch search;
    for (search.Open(start == 0 ? "." : folder.c_str()); search.Next();) {
        if (IsNewFileOf(stem, search.Name())) {
            RemoveUnheldFile((folder + search.Name()).c_str());
        }
    }
}

bool Replacement::Commit()
{
    return m_Held != nullptr && GiveName(m_Held, m_Fresh.c_str(), m_Target.c_str());
}

}  // namespace zm
